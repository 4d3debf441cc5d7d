#include "portmap.h"

#include <arpa/inet.h>
#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <stdint.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "payload.h"
#include "report.h"
#include "sandbox.h"

static constexpr int kPort = 111;
static constexpr int kTries = 5000;
static constexpr int kTryMs = 1;

[[noreturn]] static void become_portmap() {
  payload_reset_signals();
  int null = open("/dev/null", O_RDWR | O_CLOEXEC);
  for (int fd = 0; fd <= 2 && null >= 0; fd++)
    dup2(null, fd);
  setsid();
  execl(kSandboxPortmap, "portmap", "-f", nullptr);
  _exit(127);
}

pid_t portmap_start() {
  if (access(kSandboxPortmap, X_OK) < 0) {
    report("rpcbind is not installed (apt-get install rpcbind, or start with --no-portmap)");
    return -1;
  }
  pid_t pid = fork();
  if (pid == 0) become_portmap();
  if (pid < 0) report_errno(nullptr, "start the portmapper");
  return pid;
}

// An RPC call of procedure 0, which does nothing but answer.
static bool answers_null_call(int fd) {
  static const uint32_t CALL[] = {htonl(0x6762),  // transaction
                                  htonl(0),       // a call
                                  htonl(2),       // of RPC version 2
                                  htonl(100000),
                                  htonl(2),
                                  htonl(0),  // program, version, procedure
                                  0,
                                  0,
                                  0,
                                  0};  // no credentials
  if (send(fd, CALL, sizeof CALL, 0) < 0) return false;
  pollfd readable = {fd, POLLIN, 0};
  if (poll(&readable, 1, kTryMs) <= 0) return false;
  char reply[64];
  return recv(fd, reply, sizeof reply, 0) > 0;
}

// While nobody listens, a call is refused at once; then the pause keeps the loop from spinning.
static bool await_answer(int fd, pid_t pid) {
  for (int i = 0; i < kTries; i++) {
    if (answers_null_call(fd)) return true;
    if (waitpid(pid, nullptr, WNOHANG) == pid) {
      report("the portmapper ended as soon as it was started");
      return false;
    }
    poll(nullptr, 0, kTryMs);
  }
  report("the portmapper did not answer within %d seconds", kTries * kTryMs / 1000);
  return false;
}

bool portmap_await(pid_t pid) {
  int fd = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  sockaddr_in local = {};
  local.sin_family = AF_INET;
  local.sin_port = htons(kPort);
  local.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (fd < 0 || connect(fd, reinterpret_cast<sockaddr*>(&local), sizeof local) < 0) {
    return report_errno(nullptr, "reach the portmapper");
  }
  bool answering = await_answer(fd, pid);
  close(fd);
  return answering;
}
