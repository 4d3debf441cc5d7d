#include "host/portmap.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>
#include <cerrno>
#include <cstdint>
#include <cstring>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "base/files.h"
#include "base/report.h"
#include "client/base/text.h"
#include "host/payload.h"
#include "host/sandbox.h"

static constexpr int kPort = 111;
static constexpr int kTries = 5000;
static constexpr int kTryMs = 1;
static constexpr size_t kLinesShown = 5;
static constexpr const char* kSystemLog = "/dev/log";

// The portmapper buffers its messages unless it writes to a terminal, hence stdbuf. Its name is
// portmap either way.
[[noreturn]] static void become_portmap() {
  payload_reset_signals();
  int null = open("/dev/null", O_RDONLY | O_CLOEXEC);
  int log = open(kPortmapLog, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
  if (null < 0 || log < 0) _exit(127);
  dup2(null, 0);
  dup2(log, 1);
  dup2(log, 2);
  setsid();
  execlp("stdbuf", "stdbuf", "-oL", kSandboxPortmap, "-f", nullptr);
  execl(kSandboxPortmap, "portmap", "-f", nullptr);
  _exit(127);
}

// A box has no system log, so this process takes its place until the portmapper answers.
static int system_log_open() {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  strcpy(address.sun_path, kSystemLog);
  int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (fd >= 0 && bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
      chmod(kSystemLog, 0666) == 0) {
    return fd;
  }
  report_errno(nullptr, "open %s", kSystemLog);
  if (fd >= 0) close(fd);
  return -1;
}

static void system_log_close(int fd) {
  close(fd);
  unlink(kSystemLog);
}

// Each message, "<priority>date program: text", becomes a line of the log.
static void system_log_take(int fd) {
  char message[1024];
  for (ssize_t got; (got = recv(fd, message, sizeof message, 0)) > 0;) {
    std::string text(message, static_cast<size_t>(got));
    size_t program_end = text.find(": ");
    if (program_end != std::string::npos) text.erase(0, program_end + 2);
    std::ofstream(kPortmapLog, std::ios::app) << text << "\n";
  }
}

bool portmap_start(portmap& p) {
  if (access(kSandboxPortmap, X_OK) < 0) {
    report("rpcbind is not installed (apt-get install rpcbind, or start with --no-portmap)");
    return false;
  }
  p.system_log = system_log_open();
  if (p.system_log < 0) return false;
  p.pid = fork();
  if (p.pid == 0) become_portmap();
  return p.pid > 0 || report_errno(nullptr, "start the portmapper");
}

// An RPC call of procedure 0, which only answers.
static bool answers_null_call(int fd) {
  static const uint32_t kCall[] = {htonl(0x6762),  // transaction
                                   htonl(0),       // a call
                                   htonl(2),       // of RPC version 2
                                   htonl(100000),
                                   htonl(2),
                                   htonl(0),  // program, version, procedure
                                   0,
                                   0,
                                   0,
                                   0};  // no credentials
  if (send(fd, kCall, sizeof kCall, 0) < 0) return false;
  pollfd readable = {fd, POLLIN, 0};
  if (poll(&readable, 1, kTryMs) <= 0) return false;
  char reply[64];
  return recv(fd, reply, sizeof reply, 0) > 0;
}

static void report_with_last_lines(const std::string& what) {
  std::istringstream log(file_read(kPortmapLog));
  std::vector<std::string> lines;
  for (std::string line; std::getline(log, line);)
    lines.push_back(line);
  report("the portmapper %s", what.c_str());
  for (size_t i = lines.size() > kLinesShown ? lines.size() - kLinesShown : 0; i < lines.size();
       i++)
    report("it said: %s", text_escape(lines[i]).c_str());
}

void portmap_report_end(int status) {
  report_with_last_lines(WIFSIGNALED(status)
                             ? "was ended by signal " + std::to_string(WTERMSIG(status))
                             : "ended with status " + std::to_string(WEXITSTATUS(status)));
}

// A call is refused at once while nobody listens: the pause keeps the loop from spinning.
static bool await_answer(int fd, const portmap& p) {
  for (int i = 0; i < kTries; ++i) {
    int status = 0;
    if (answers_null_call(fd)) return true;
    pid_t ended = waitpid(p.pid, &status, WNOHANG);
    system_log_take(p.system_log);
    if (ended == p.pid) {
      portmap_report_end(status);
      return false;
    }
    poll(nullptr, 0, kTryMs);
  }
  report_with_last_lines("did not answer within " + std::to_string(kTries * kTryMs / 1000) +
                         " seconds");
  return false;
}

bool portmap_await(portmap& p) {
  int fd = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  sockaddr_in local = {};
  local.sin_family = AF_INET;
  local.sin_port = htons(kPort);
  local.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (fd < 0 || connect(fd, reinterpret_cast<sockaddr*>(&local), sizeof local) < 0) {
    return report_errno(nullptr, "reach the portmapper");
  }
  bool answering = await_answer(fd, p);
  close(fd);
  system_log_close(p.system_log);
  return answering;
}
