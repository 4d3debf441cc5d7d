#include "companions/companion.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/signalfd.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/clock.h"
#include "base/files.h"
#include "companions/start.h"

static constexpr size_t kDatagramMax = 65536;

companion companion_begin(std::initializer_list<int> more) {
  sigset_t watched;
  sigemptyset(&watched);
  for (int number : {SIGTERM, SIGINT, SIGHUP})
    sigaddset(&watched, number);
  for (int number : more)
    sigaddset(&watched, number);
  sigprocmask(SIG_BLOCK, &watched, nullptr);
  return {signalfd(-1, &watched, SFD_CLOEXEC | SFD_NONBLOCK), false, 0};
}

void companion_ready() {
  const char* told = getenv("GWBOX_READY_FD");
  if (!told) return;
  int fd = atoi(told);
  if (write(fd, "+", 1) < 0) perror("GWBOX_READY_FD");
  close(fd);
  unsetenv("GWBOX_READY_FD");
}

static void take_signal(companion& self) {
  signalfd_siginfo info;
  if (read(self.signals, &info, sizeof info) != sizeof info) return;
  int number = static_cast<int>(info.ssi_signo);
  if (number == SIGTERM || number == SIGINT || number == SIGHUP) {
    self.ended = true;
  } else {
    self.signalled = number;
  }
}

bool companion_pause(companion& self, double seconds) {
  pollfd watched = {self.signals, POLLIN, 0};
  if (poll(&watched, 1, seconds < 0 ? -1 : static_cast<int>(seconds * 1000)) > 0) take_signal(self);
  return !self.ended;
}

static int64_t monotonic_us() {
  timespec now = {};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now.tv_sec * 1000000LL + now.tv_nsec / 1000;
}

static box_clock clock_now() {
  box_clock clock = {};
  if (!clock_parse(file_read(kClockPath), clock)) {
    clock = {atoll(file_read(kCompanionsStartFile).c_str()), 0, 1, false};
  }
  return clock;
}

// Polls, because nothing announces a change of the clock.
bool companion_wait(companion& self, double seconds) {
  constexpr double kLookAgain = 0.02, kTick = 0.001;
  if (seconds < 0) return companion_pause(self, -1);
  double end = companion_box_time() + seconds;
  for (double left; !self.ended && (left = end - companion_box_time()) > 0;) {
    box_clock clock = clock_now();
    double most = clock_runs(clock) ? left / clock.speed + kTick : kLookAgain;
    companion_pause(self, most < kLookAgain ? most : kLookAgain);
  }
  return !self.ended;
}

// Inode of the socket that this process created; a companion creates at most one.
static ino_t own_inode;

static ino_t inode_of(const char* path) {
  struct stat status;
  return lstat(path, &status) == 0 ? status.st_ino : 0;
}

int companion_listen(const char* path) {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  strncpy(address.sun_path, path, sizeof address.sun_path - 1);
  unlink(path);
  int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (fd >= 0 && bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0) {
    own_inode = inode_of(path);
    return fd;
  }
  perror(path);
  if (fd >= 0) close(fd);
  return -1;
}

void companion_unlisten(const char* path) {
  if (inode_of(path) == own_inode) unlink(path);
}

bool companion_receive(companion& self, int fd, companion_datagram& datagram) {
  pollfd watched[] = {{fd, POLLIN, 0}, {self.signals, POLLIN, 0}};
  while (!self.ended) {
    if (poll(watched, 2, -1) < 0) continue;
    if (watched[1].revents) take_signal(self);
    if (!watched[0].revents) continue;
    datagram.bytes.resize(kDatagramMax);
    datagram.from_size = sizeof datagram.from;
    ssize_t got = recvfrom(fd, datagram.bytes.data(), datagram.bytes.size(), MSG_DONTWAIT,
                           reinterpret_cast<sockaddr*>(&datagram.from), &datagram.from_size);
    if (got < 0) continue;
    datagram.bytes.resize(static_cast<size_t>(got));
    return true;
  }
  return false;
}

// Errors are ignored: the client may be gone already.
void companion_answer(int fd, const companion_datagram& to, const std::string& bytes) {
  if (to.from_size <= sizeof(sa_family_t)) return;  // a client without an address
  static_cast<void>(sendto(fd, bytes.data(), bytes.size(), MSG_DONTWAIT,
                           reinterpret_cast<const sockaddr*>(&to.from), to.from_size));
}

double companion_time() {
  int64_t start = atoll(file_read(kCompanionsStartFile).c_str());
  return static_cast<double>(monotonic_us() - start) / 1e6;
}

double companion_box_time() {
  return static_cast<double>(clock_box_us(clock_now(), monotonic_us())) / 1e6;
}

// One write for the whole line: several companions may have the file open.
void companion_record(const char* path, const nlohmann::ordered_json& line) {
  using json = nlohmann::ordered_json;
  json whole = {{"time", round(companion_time() * 1e6) / 1e6}};
  whole.update(line);
  std::string text = whole.dump(-1, ' ', false, json::error_handler_t::replace) + "\n";
  int fd = open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
  if (fd < 0 || write(fd, text.data(), text.size()) < 0) perror(path);
  if (fd >= 0) close(fd);
}
