#include "lifecycle/queue.h"

#include <pthread.h>
#include <time.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "diag/trace.h"
#include "lifecycle/restart.h"
#include "lifecycle/state.h"
#include "lifecycle/turn.h"

static void* lir_handler_thread(void*);

static void create_worker() {
  // Below the system's minimum, so the default is used: kept on purpose.
  static constexpr size_t kStackSize = 1024;
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, kStackSize);
  pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
  pthread_t worker;
  lifecycle.worker_created = pthread_create(&worker, &attributes, lir_handler_thread, nullptr) == 0;
  pthread_attr_destroy(&attributes);
}

static void trace_queued(const lifecycle_request* request) {
  trace_rev("add_lir_to_list",
            "queue'd -> request_ptr:%p routine: %p arg: %d name: %.16s state: %d\n",
            static_cast<const void*>(request), reinterpret_cast<void*>(request->sequence),
            request->has_mask ? request->mask : 0, request->name,
            request->state != nullptr && request->state->load());
}

// Whether a restart that has not taken its radios yet is at the head.
static bool restart_waits() {
  return lifecycle.queue_head != nullptr &&
         lifecycle.queue_head->sequence == restart_handler_func && !lifecycle.queue_head->started;
}

// Links the request, or drops it if a waiting restart covers it. The queue holds two: a
// third request replaces the second, on purpose.
static void link_request(lifecycle_request* request) {
  if (request->has_mask) {
    lifecycle.pending_restart |= request->mask;
    if (restart_waits()) {
      free(request);
      return;
    }
  }
  if (lifecycle.queue_head == nullptr) {
    lifecycle.queue_head = request;
  } else {
    free(lifecycle.queue_head->next);
    lifecycle.queue_head->next = request;
  }
  trace_queued(request);
}

static void add_lir_to_list(lifecycle_sequence sequence, const uint8_t* mask, const char* name,
                            std::atomic<bool>* state) {
  auto* request = static_cast<lifecycle_request*>(calloc(1, sizeof(lifecycle_request)));
  if (request == nullptr) return;
  request->sequence = sequence;
  request->has_mask = mask != nullptr;
  if (mask != nullptr) request->mask = *mask;
  if (name != nullptr) memcpy(request->name, name, strnlen(name, kRequestName));
  request->state = state;
  pthread_mutex_lock(&lifecycle.lock);
  link_request(request);
  pthread_cond_signal(&lifecycle.queue_filled);
  pthread_mutex_unlock(&lifecycle.lock);
}

int wlan_queueLifecycleRequest(lifecycle_sequence sequence, const uint8_t* mask, const char* name,
                               std::atomic<bool>* state) {
  if (!lifecycle.worker_created) create_worker();
  add_lir_to_list(sequence, mask, name, state);
  return 0;
}

static lifecycle_request* wait_for_request() {
  pthread_mutex_lock(&lifecycle.lock);
  while (lifecycle.queue_head == nullptr)
    pthread_cond_wait(&lifecycle.queue_filled, &lifecycle.lock);
  lifecycle_request* request = lifecycle.queue_head;
  pthread_mutex_unlock(&lifecycle.lock);
  return request;
}

// The request stays at the head while it runs.
static void advance_queue() {
  pthread_mutex_lock(&lifecycle.lock);
  lifecycle_request* done = lifecycle.queue_head;
  lifecycle.queue_head = done->next;
  pthread_mutex_unlock(&lifecycle.lock);
  trace_rev("lir_handler_thread",
            "de-queue'd -> request_ptr: %p routine: %p arg: %d name: %.16s state: %d next_req=%p\n",
            static_cast<void*>(done), reinterpret_cast<void*>(done->sequence),
            done->has_mask ? done->mask : 0, done->name,
            done->state != nullptr && done->state->load(), static_cast<void*>(done->next));
  free(done);
}

static void sleep_one_second() {
  timespec left = {1, 0};
  while (nanosleep(&left, &left) == -1 && errno == EINTR) {
  }
}

static void* lir_handler_thread(void*) {
  REV_TRACE("lir_handler_thread started\n");
  for (;;) {
    lifecycle_request* request = wait_for_request();
    // The window in which requests meet; it also limits them to one a second.
    sleep_one_second();
    begin_turn();
    if (request->sequence != nullptr)
      request->sequence(request->has_mask ? &request->mask : nullptr);
    end_turn();
    advance_queue();
  }
}
