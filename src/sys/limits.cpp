#include "sys/limits.h"

#include <signal.h>
#include <sys/resource.h>

#include <algorithm>

void set_descriptor_limit() {
  static constexpr rlim_t kMost = 16384;
  rlimit limit;
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
  limit.rlim_cur = std::min(limit.rlim_max, kMost);
  // Raising a soft limit up to the hard one cannot fail; if it does, the limit stays.
  static_cast<void>(setrlimit(RLIMIT_NOFILE, &limit));
}

static void do_nothing(int) {}

void survive_failed_writes() {
  struct sigaction action = {};
  // Not SIG_IGN: child programs would inherit that.
  action.sa_handler = do_nothing;
  action.sa_flags = SA_RESTART;
  sigaction(SIGPIPE, &action, nullptr);
  sigaction(SIGXFSZ, &action, nullptr);
}
