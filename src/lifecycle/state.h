#pragma once

#include <pthread.h>

#include <atomic>
#include <cstdint>

// The daemon's lifecycle state, in one record. Two threads use it: the RPC thread, which
// queues requests and runs resets, and the worker, which runs requests. They also share
// `drivers_inited` (wlan/driver_gate.h) and the companions.

// What the worker runs for a request: load, init, restart or reset. The traces give these
// functions' names, which end in _handler_func. `mask` is the radios of a restart, else
// null. Returns the address of the last result, 0 or -1, which is not reported.
using lifecycle_sequence = void* (*)(const uint8_t* mask);

constexpr int kRequestName = 16;

// A queued request. Its members are set before queueing and changed under the lock.
struct lifecycle_request {
  lifecycle_sequence sequence;
  bool has_mask;
  uint8_t mask;
  char name[kRequestName];  // not necessarily terminated
  std::atomic<bool>* state;
  bool started;  // a restart that has taken its radios
  lifecycle_request* next;
};

struct lifecycle_state {
  pthread_mutex_t lock;         // held only briefly, never while a sequence runs
  pthread_cond_t turn_changed;  // signals `turn_taken` or a running flag, under the lock
  pthread_cond_t queue_filled;  // signals `queue_head`, under the lock

  // Written by both threads under the lock: a sequence is running (see turn.h).
  bool turn_taken;

  // Written with set_running under the lock by the thread that has the turn, while a
  // request of that kind runs; read by both at any time.
  std::atomic<bool> load_running;
  std::atomic<bool> init_running;
  std::atomic<bool> restart_running;
  std::atomic<bool> reset_running;

  // Written by load and reset in a turn; read in a turn: the kernel has the modules.
  bool modules_loaded;
  // Written by the worker's load and by resets, in a turn; read in a turn. Starts true,
  // so that an init is accepted before any load.
  bool wlan_loaded;
  // Written by the worker's init and by resets, in a turn; read in a turn. Starts true,
  // so that a restart is accepted before any init.
  bool wlan_initialized;
  // Written by the worker alone: its last request's result, 0 or -1.
  int last_result;

  // Written under the lock: the RPC thread appends, the worker removes finished requests.
  lifecycle_request* queue_head;
  // Written under the lock: the RPC thread adds radios; a restart on the worker takes
  // all.
  uint8_t pending_restart;
  // Written and read by the RPC thread alone.
  bool worker_created;
};

extern lifecycle_state lifecycle;
