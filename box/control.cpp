#include "control.h"

#include <errno.h>
#include <stdio.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "report.h"

static constexpr size_t MESSAGE_MAX = 512;
static constexpr int BACKLOG = 16;

static sockaddr_un control_address() {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  strcpy(address.sun_path, CONTROL_PATH);
  return address;
}

// Everybody in the box may use it: a box has no users to protect from each other.
int control_listen() {
  sockaddr_un address = control_address();
  int fd = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
  if (fd >= 0 && bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
      chmod(CONTROL_PATH, 0666) == 0 && listen(fd, BACKLOG) == 0) {
    return fd;
  }
  report_errno(nullptr, "open the control socket %s", CONTROL_PATH);
  if (fd >= 0) close(fd);
  return -1;
}

int control_accept(int listener) {
  return accept4(listener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
}

// WHAT and HOW contain no blanks; fields beyond them do not matter to an old message.
static std::string act(const char* message, std::vector<fault_rule>& faults) {
  char what[MESSAGE_MAX] = "", how[MESSAGE_MAX] = "";
  int count = 0;
  if (strcmp(message, "fail clear") == 0) {
    faults.clear();
    return "ok";
  }
  if (sscanf(message, "fail %511s %511s %d", what, how, &count) != 3 || count < 1) {
    return "unknown message";
  }
  fault_rule rule;
  std::string wrong;
  if (!fault_parse(what, how, count, rule, wrong)) return wrong;
  faults.push_back(rule);
  return "ok";
}

void control_serve(int client, std::vector<fault_rule>& faults) {
  char message[MESSAGE_MAX] = "";
  if (recv(client, message, sizeof message - 1, 0) > 0) {
    std::string answer = act(message, faults);
    (void)send(client, answer.data(), answer.size(), MSG_NOSIGNAL);
  }
  close(client);
}

static bool exchange(const std::string& message, std::string& answer) {
  sockaddr_un address = control_address();
  char text[MESSAGE_MAX];
  int fd = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
  bool connected =
      fd >= 0 && connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
  if (!connected) {
    report_errno("there is one inside a box only: gwbox run", "reach the box at %s", CONTROL_PATH);
  }
  ssize_t got = -1;
  if (connected && send(fd, message.data(), message.size(), MSG_NOSIGNAL) > 0) {
    got = recv(fd, text, sizeof text, 0);
    if (got > 0) answer.assign(text, static_cast<size_t>(got));
    if (got <= 0) report("the box did not answer");
  }
  if (fd >= 0) close(fd);
  return got > 0;
}

int control_fail(const std::string& what, const std::string& how, int count) {
  std::string message = "fail clear", wrong, answer;
  fault_rule rule;
  if (what != "clear" || !how.empty()) {
    if (!fault_parse(what, how, count, rule, wrong)) {
      report("%s", wrong.c_str());
      return EXIT_USAGE;
    }
    message = "fail " + what + " " + how + " " + std::to_string(count);
  }
  if (!exchange(message, answer)) return 1;
  if (answer == "ok") return 0;
  report("%s", answer.c_str());
  return EXIT_USAGE;
}
