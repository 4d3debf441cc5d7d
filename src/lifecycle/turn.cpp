#include "lifecycle/turn.h"

#include "lifecycle/state.h"

void set_running(std::atomic<bool>* kind, bool running) {
  pthread_mutex_lock(&lifecycle.lock);
  *kind = running;
  pthread_cond_broadcast(&lifecycle.turn_changed);
  pthread_mutex_unlock(&lifecycle.lock);
}

void begin_turn() {
  pthread_mutex_lock(&lifecycle.lock);
  while (lifecycle.turn_taken)
    pthread_cond_wait(&lifecycle.turn_changed, &lifecycle.lock);
  lifecycle.turn_taken = true;
  pthread_mutex_unlock(&lifecycle.lock);
}

void end_turn() {
  pthread_mutex_lock(&lifecycle.lock);
  lifecycle.turn_taken = false;
  pthread_cond_broadcast(&lifecycle.turn_changed);
  pthread_mutex_unlock(&lifecycle.lock);
}

static const char* refuses_reset() {
  if (lifecycle.init_running) return "init";
  return lifecycle.restart_running ? "restart" : nullptr;
}

const char* begin_reset_turn() {
  pthread_mutex_lock(&lifecycle.lock);
  const char* running = refuses_reset();
  while (running == nullptr && lifecycle.turn_taken) {
    pthread_cond_wait(&lifecycle.turn_changed, &lifecycle.lock);
    running = refuses_reset();
  }
  if (running == nullptr) lifecycle.turn_taken = true;
  pthread_mutex_unlock(&lifecycle.lock);
  return running;
}
