#include "unit_support.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/net.h>
#include <linux/seccomp.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <sstream>

std::string rpc_prefix(const std::string& function) {
  return "\033[1;32;40m[RPC] " + function + "\033[0m ";
}

std::string rpc_error_prefix(const std::string& function) {
  return "\033[1;31;40m[RPC] **ERROR**\033[0m " + function + " ";
}

std::string rev_prefix(const std::string& function) {
  return "[REV-RPC] \033[40m\033[31;40m" + function + "\033[0m ";
}

std::string rev_error_prefix(const std::string& function) {
  return "[REV-RPC] \033[40m\033[31;40m**ERROR**\033[0m " + function + " ";
}

void switch_log_on() {
  mkdir("/tmp/auto_debug", 0755);
  write_file("/tmp/auto_debug/rpc_dbg_en", "");
}

void switch_console_on() {
  write_file("/tmp/wlandbg", "");
}

// The size of "Sat Nov 21 03:25:05 2026", the time stamp.
constexpr size_t kStampSize = 24;

static bool begins_with_stamp(const std::string& line) {
  return line.size() >= kStampSize + 3 && line.compare(kStampSize, 3, " - ") == 0 &&
         line[13] == ':' && line[16] == ':';
}

std::string logged() {
  std::istringstream lines(read_file("/tmp/auto_debug/dbg_rpc.log"));
  std::string text;
  for (std::string line; std::getline(lines, line);) {
    text += (begins_with_stamp(line) ? line.substr(kStampSize + 3) : line) + "\n";
  }
  return text;
}

int open_descriptors() {
  return static_cast<int>(names_in("/proc/self/fd").size());
}

std::vector<std::string> names_in(const std::string& directory, const std::string& prefix) {
  std::vector<std::string> names;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(directory, error)) {
    const std::string name = entry.path().filename().string();
    if (name.starts_with(prefix)) names.push_back(name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

bool give_to_nobody(const std::string& path) {
  return lchown(path.c_str(), 65534, 65534) == 0;
}

static void install(sock_filter* filter, unsigned short length) {
  const sock_fprog program = {length, filter};
  ASSERT_EQ(prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0), 0);
  ASSERT_EQ(prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program), 0);
}

#ifdef __i386__
// On this processor glibc makes these through one call, selected by its first argument.
static constexpr struct {
  long number;
  unsigned within;
} kSocketCalls[] = {{SYS_socket, SYS_SOCKET},
                    {SYS_sendto, SYS_SENDTO},
                    {SYS_sendto, SYS_SEND},
                    {SYS_setsockopt, SYS_SETSOCKOPT}};
#endif

void fail_system_call(long number, int error) {
#ifdef __i386__
  for (const auto& call : kSocketCalls) {
    if (call.number == number) fail_system_call_if(SYS_socketcall, 0, call.within, error);
  }
#endif
  sock_filter filter[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(number), 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | static_cast<unsigned>(error)),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  install(filter, 4);
}

void fail_system_call_if(long number, unsigned position, unsigned value, int error) {
  const unsigned argument =
      static_cast<unsigned>(offsetof(seccomp_data, args)) + position * sizeof(__u64);
  sock_filter filter[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(number), 0, 3),
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, argument),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, value, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | static_cast<unsigned>(error)),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  install(filter, 6);
}

void mount_tmpfs(const std::string& directory, const std::string& options) {
  mkdir(directory.c_str(), 0755);
  ASSERT_EQ(mount("tmpfs", directory.c_str(), "tmpfs", 0, options.c_str()), 0) << directory;
}

bool lock_awaited(const std::string& path) {
  struct stat status;
  if (stat(path.c_str(), &status) != 0) return false;
  const std::string inode = ":" + std::to_string(status.st_ino) + " ";
  std::istringstream locks(read_file("/proc/locks"));
  for (std::string line; std::getline(locks, line);) {
    if (contains(line, "-> FLOCK") && contains(line, inode)) return true;
  }
  return false;
}

int try_exclusive(const std::string& path) {
  const int file = open(path.c_str(), O_RDWR | O_CLOEXEC);
  if (file < 0) return -1;
  if (flock(file, LOCK_EX | LOCK_NB) == 0) return file;
  close(file);
  return -1;
}

std::vector<std::string> driver_requests() {
  std::vector<std::string> requests;
  std::istringstream lines(read_file("/run/gwbox/journal.jsonl"));
  for (std::string line; std::getline(lines, line);) {
    if (contains(line, "\"name\":")) requests.push_back(line);
  }
  return requests;
}

bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

void install_host_library(const char* from) {
  write_file(kHostLibrary, read_file(from));
}

pid_t start_process_named(const std::string& name) {
  const pid_t child = fork();
  if (child == 0) {
    prctl(PR_SET_NAME, name.c_str());
    for (;;)
      pause();
  }
  const std::string path = "/proc/" + std::to_string(child) + "/comm";
  EXPECT_TRUE(wait_until([&] { return read_file(path) == name + "\n"; }));
  return child;
}

void end_process(pid_t child) {
  kill(child, SIGKILL);
  EXPECT_EQ(waitpid(child, nullptr, 0), child);
}
