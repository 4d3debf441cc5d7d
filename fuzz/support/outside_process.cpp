#include <sys/syscall.h>

#include <cerrno>
#include <cstdarg>
#include <cstring>

#include "support/check.h"
#include "support/outside.h"
#include "support/sim_calls.h"

// The clock, the worker thread, the process's end, kernel modules and the host's
// library.

time_t sim_time(time_t* now) {
  CHECK(now == nullptr);
  return static_cast<time_t>(simulated->clock_us / 1'000'000);
}

int sim_gettimeofday(timeval* now, void* zone) {
  CHECK(zone == nullptr);
  simulated->clock_us += 977;
  now->tv_sec = static_cast<time_t>(simulated->clock_us / 1'000'000);
  now->tv_usec = static_cast<suseconds_t>(simulated->clock_us % 1'000'000);
  return 0;
}

static void pass(uint64_t seconds) {
  simulated->clock_us += seconds * 1'000'000;
}

int sim_nanosleep(const timespec* duration, timespec*) {
  pass(static_cast<uint64_t>(duration->tv_sec));
  return 0;
}

unsigned sim_sleep(unsigned seconds) {
  pass(seconds);
  return 0;
}

pid_t sim_getpid() {
  return 4711;
}

// The process list cannot be read, so no running companion is found.
DIR* sim_opendir(const char* path) {
  CHECK(strcmp(path, "/proc") == 0);
  return nullptr;
}

// No thread is created: the worker runs on the harness's thread, which calls its start
// routine. Where it would wait for a request, it returns to the harness.
int sim_pthread_create(pthread_t* thread, const pthread_attr_t*, void* (*start)(void*),
                       void* argument) {
  CHECK(argument == nullptr && !simulated->worker_there);
  simulated->worker = start;
  uint8_t how = 0;
  if (strike(&how)) return EAGAIN;
  simulated->worker_there = true;
  memset(thread, 0, sizeof *thread);
  return 0;
}

int sim_pthread_cond_wait(pthread_cond_t*, pthread_mutex_t* mutex) {
  if (!simulated->worker_runs) broken("the service thread waits for ever");
  pthread_mutex_unlock(mutex);
  longjmp(simulated->worker_idle, 1);
}

// The service may end only in a controller's exchange without a socket. What was decoded
// is freed on behalf of the process that would be gone.
void sim_exit(int status) {
  if (!simulated->exit_allowed || !simulated->no_socket || status != 1) {
    broken("the service ends with status %d", status);
  }
  if (simulated->at_exit != nullptr) simulated->at_exit();
  longjmp(simulated->ended, 1);
}

long sim_syscall(long number, ...) {
  va_list list;
  va_start(list, number);
  if (number == SYS_init_module) {
    const auto* image = va_arg(list, const char*);
    const auto size = va_arg(list, size_t);
    must_be_there(image, size);
    CHECK(*va_arg(list, const char*) == '\0');
  } else {
    CHECK(number == SYS_delete_module && *va_arg(list, const char*) != '\0');
  }
  va_end(list);
  uint8_t how = 0;
  return strike(&how) ? -1 : 0;
}

static int library;

static void hear_setting(int bss, int, const char* value) {
  CHECK(bss != 0 && strlen(value) < 100000);
}

void* sim_dlopen(const char* name, int) {
  CHECK(strcmp(name, "libvexal_rev_rpc_client.so") == 0);
  if ((simulated->there & kHostLibrary) == 0) return nullptr;
  ++simulated->libraries;
  return &library;
}

void* sim_dlsym(void* from, const char* name) {
  CHECK(from == &library && strcmp(name, "rev_set_bh_setting") == 0);
  if ((simulated->there & kHostFunction) == 0) return nullptr;
  return reinterpret_cast<void*>(hear_setting);
}

int sim_dlclose(void* from) {
  CHECK(from == &library && simulated->libraries > 0);
  --simulated->libraries;
  return 0;
}
