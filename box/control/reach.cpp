#include "control/reach.h"

#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <unistd.h>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <set>
#include <sstream>

#include "base/files.h"
#include "base/report.h"
#include "client/base/text.h"
#include "control/connection.h"

static constexpr size_t kNameMaxSize = 64;
static constexpr int kNameBacklog = 64;
static constexpr const char* kAddressHead = "gwbox/";

// An abstract socket address: it begins with a zero byte and has no file.
static socklen_t name_address(const std::string& name, sockaddr_un& address) {
  std::string text = kAddressHead + name;
  address = {};
  address.sun_family = AF_UNIX;
  text.copy(address.sun_path + 1, sizeof address.sun_path - 1);
  return static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + text.size());
}

static bool is_number(const std::string& text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

static bool is_good_name(const std::string& name) {
  bool plain = name.find_first_not_of(
                   "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                   "0123456789._-") == std::string::npos;
  if (plain && !name.empty() && name.size() <= kNameMaxSize && !is_number(name)) return true;
  report(
      "%s is not a valid name for a box: expected 1 to 64 letters, digits, \".\", \"_\" or "
      "\"-\", and not digits alone",
      text_quote(name).c_str());
  return false;
}

bool reach_take_name(const std::string& name, int& fd) {
  sockaddr_un address;
  if (!is_good_name(name)) return false;
  socklen_t size = name_address(name, address);
  fd = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (fd >= 0 && bind(fd, reinterpret_cast<sockaddr*>(&address), size) == 0) return true;
  if (errno == EADDRINUSE) {
    report("there is a box \"%s\" already", name.c_str());
  } else {
    report_errno(nullptr, "name the box");
  }
  if (fd >= 0) close(fd);
  return false;
}

bool reach_listen(int fd) {
  return listen(fd, kNameBacklog) == 0 || report_errno(nullptr, "listen on the name of the box");
}

void reach_serve(int fd) {
  for (int caller; (caller = accept4(fd, nullptr, nullptr, SOCK_CLOEXEC)) >= 0;)
    close(caller);
}

// The kernel lists an address with "@" for its zero byte, and again for each connection.
std::vector<std::string> reach_names() {
  std::set<std::string> names;
  std::istringstream lines(file_read("/proc/net/unix"));
  std::string head = std::string(" @") + kAddressHead;
  for (std::string line; std::getline(lines, line);) {
    size_t at = line.find(head);
    if (at != std::string::npos) names.insert(line.substr(at + head.size()));
  }
  return {names.begin(), names.end()};
}

// The process that listens on the name; 0 if none does, -1 if it does not accept in time.
static pid_t process_named(const std::string& name) {
  sockaddr_un address;
  socklen_t size = name_address(name, address), credentials_size = sizeof(ucred);
  ucred credentials = {};
  int fd = control_socket(0);
  bool known = fd >= 0 && connect(fd, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
               getsockopt(fd, SOL_SOCKET, SO_PEERCRED, &credentials, &credentials_size) == 0;
  pid_t pid = known ? credentials.pid : errno == EAGAIN ? -1 : 0;
  if (fd >= 0) close(fd);
  return pid;
}

static std::string root_of(pid_t pid) {
  return "/proc/" + std::to_string(pid) + "/root";
}

static bool is_in_box(pid_t pid) {
  return pid > 0 && access((root_of(pid) + kControlPath).c_str(), F_OK) == 0;
}

// `gwbox run` has one child, the box's first process.
static pid_t child_of(pid_t pid) {
  std::string id = std::to_string(pid);
  return atoi(file_read("/proc/" + id + "/task/" + id + "/children").c_str());
}

int reach_open_end(const std::string& root) {
  pid_t pid = 0;
  if (sscanf(root.c_str(), "/proc/%d/root", &pid) != 1) return -1;
  return static_cast<int>(syscall(SYS_pidfd_open, pid, 0));
}

bool reach_root(const std::string& box, std::string& root) {
  root.clear();
  if (box.empty()) return true;
  pid_t pid = is_number(box) ? atoi(box.c_str()) : process_named(box);
  if (pid < 0) return control_report_silence(false);
  if (!is_in_box(pid)) pid = pid > 0 ? child_of(pid) : 0;
  root = root_of(pid);
  if (is_in_box(pid)) return true;
  report("there is no box \"%s\", or it is another user's", box.c_str());
  return false;
}
