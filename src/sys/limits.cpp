#include "sys/limits.h"

#include <sys/resource.h>

void raise_descriptor_limit() {
  rlimit limit;
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
  limit.rlim_cur = limit.rlim_max;
  // The soft limit may always become the hard one; if not, it stays as it is.
  static_cast<void>(setrlimit(RLIMIT_NOFILE, &limit));
}
