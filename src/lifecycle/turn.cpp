#include "lifecycle/turn.h"

#include <pthread.h>

std::atomic<bool> init_running;
std::atomic<bool> load_running;
std::atomic<bool> reset_running;
std::atomic<bool> restart_running;

// Guards whether the turn is taken, and that no change of the flags above goes
// unnoticed by a reset that is about to wait.
static pthread_mutex_t turn_mutex = PTHREAD_MUTEX_INITIALIZER;
static pthread_cond_t turn_changed = PTHREAD_COND_INITIALIZER;
static bool turn_taken;

void set_running(std::atomic<bool>* kind, bool running) {
  pthread_mutex_lock(&turn_mutex);
  *kind = running;
  pthread_cond_broadcast(&turn_changed);
  pthread_mutex_unlock(&turn_mutex);
}

void begin_turn() {
  pthread_mutex_lock(&turn_mutex);
  while (turn_taken)
    pthread_cond_wait(&turn_changed, &turn_mutex);
  turn_taken = true;
  pthread_mutex_unlock(&turn_mutex);
}

void end_turn() {
  pthread_mutex_lock(&turn_mutex);
  turn_taken = false;
  pthread_cond_broadcast(&turn_changed);
  pthread_mutex_unlock(&turn_mutex);
}

static const char* refuses_reset() {
  if (init_running) return "init";
  return restart_running ? "restart" : nullptr;
}

const char* begin_reset_turn() {
  pthread_mutex_lock(&turn_mutex);
  const char* running = refuses_reset();
  while (running == nullptr && turn_taken) {
    pthread_cond_wait(&turn_changed, &turn_mutex);
    running = refuses_reset();
  }
  if (running == nullptr) turn_taken = true;
  pthread_mutex_unlock(&turn_mutex);
  return running;
}
