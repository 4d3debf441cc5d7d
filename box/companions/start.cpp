#include "companions/start.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>
#include <cstdlib>

#include <string>

#include "base/files.h"
#include "base/journal.h"
#include "base/report.h"
#include "host/payload.h"
#include "host/sandbox.h"

static constexpr const char* kPaths[] = {"/usr/sbin/HncInit", "/usr/sbin/hnc-listener"};
static constexpr int kCount = sizeof kPaths / sizeof *kPaths;
static constexpr int64_t kPatienceUs = 5000000;

bool companions_tell_start(int64_t start_us) {
  return file_write(kCompanionsStartFile, std::to_string(start_us) + "\n");
}

// The companion writes a byte to the descriptor named in the environment.
[[noreturn]] static void become_companion(const char* path, int ready) {
  payload_reset_signals();
  int null = open("/dev/null", O_RDWR | O_CLOEXEC), told = dup(ready);
  for (int fd = 0; fd <= 2 && null >= 0; ++fd)
    dup2(null, fd);
  setsid();
  setenv("GWBOX_READY_FD", std::to_string(told).c_str(), 1);
  execl(path, path, nullptr);
  _exit(127);
}

bool companions_start(companions_starting& starting) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) < 0) return report_errno(nullptr, "make a pipe");
  starting.ready = ends[0];
  for (const char* path : kPaths) {
    if (access(path, X_OK) < 0) return report_errno("build gwbox-companion", "start %s", path);
    pid_t pid = fork();
    if (pid == 0) become_companion(path, ends[1]);
    if (pid < 0) return report_errno(nullptr, "start %s", path);
  }
  close(ends[1]);
  return true;
}

// The pipe ends once every companion has exited or said that it is ready.
bool companions_await(companions_starting& starting) {
  int64_t give_up = journal_now_us() + kPatienceUs;
  int ready = 0;
  pollfd readable = {starting.ready, POLLIN, 0};
  for (int64_t left; ready < kCount && (left = give_up - journal_now_us()) > 0;) {
    if (poll(&readable, 1, static_cast<int>(left / 1000 + 1)) <= 0) continue;
    char bytes[kCount];
    ssize_t got = read(starting.ready, bytes, sizeof bytes);
    if (got <= 0) break;
    ready += static_cast<int>(got);
  }
  close(starting.ready);
  if (ready == kCount) return true;
  return report("HncInit or hnc-listener did not start"), false;
}
