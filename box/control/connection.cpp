#include "control/connection.h"

#include <sys/socket.h>
#include <unistd.h>
#include <cerrno>
#include <cstring>

#include "base/report.h"

bool control_address(const std::string& root, sockaddr_un& address) {
  std::string path = root + kControlPath;
  address = {};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) return false;
  strcpy(address.sun_path, path.c_str());
  return true;
}

int control_socket(int more) {
  timeval patience = {kControlPatience + more, 0};
  int fd = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
  if (fd < 0) return -1;
  static_cast<void>(setsockopt(fd, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience));
  static_cast<void>(setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience));
  return fd;
}

bool control_report_silence(bool sent) {
  report("the box did not answer within %d seconds%s", kControlPatience,
         sent ? "; it may still carry the command out" : "; the command was not sent");
  return false;
}

static bool connect_to(int fd, const std::string& root) {
  sockaddr_un address;
  if (fd >= 0 && control_address(root, address) &&
      connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0) {
    return true;
  }
  if (errno == EAGAIN) return control_report_silence(false);
  return report_errno("inside a box, or with --box from outside", "reach the box at %s%s",
                      root.c_str(), kControlPath);
}

static bool exchange_on(int fd, const std::string& message, std::string& answer) {
  answer.resize(kControlMessageMax);
  bool sent = send(fd, message.data(), message.size(), MSG_NOSIGNAL) >= 0;
  ssize_t got = sent ? recv(fd, answer.data(), answer.size(), 0) : -1;
  answer.resize(got > 0 ? static_cast<size_t>(got) : 0);
  if (got > 0) return true;
  if (got < 0 && errno == EAGAIN) return control_report_silence(sent);
  report("the box ended without an answer");
  return false;
}

bool control_exchange(const std::string& root, const std::string& message, int more,
                      std::string& answer) {
  int fd = control_socket(more);
  bool done = connect_to(fd, root) && exchange_on(fd, message, answer);
  if (fd >= 0) close(fd);
  return done;
}
