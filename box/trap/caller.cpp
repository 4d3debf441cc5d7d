#include "trap/caller.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>
#include <cstdlib>
#include <cstring>

#include "base/files.h"

bool caller_read(int32_t tid, uint64_t address, void* to, size_t size) {
  iovec here = {to, size}, there = {reinterpret_cast<void*>(address), size};
  return process_vm_readv(tid, &here, 1, &there, 1, 0) == static_cast<ssize_t>(size);
}

bool caller_write(int32_t tid, uint64_t address, const void* from, size_t size) {
  iovec here = {const_cast<void*>(from), size}, there = {reinterpret_cast<void*>(address), size};
  return process_vm_writev(tid, &here, 1, &there, 1, 0) == static_cast<ssize_t>(size);
}

// Never reads beyond the page of the text's last byte: the next page may not be mapped.
bool caller_read_text(int32_t tid, uint64_t address, size_t limit, std::string& text) {
  constexpr uint64_t kPage = 4096;
  char piece[kPage];
  text.clear();
  while (text.size() < limit) {
    uint64_t at = address + text.size();
    size_t size = kPage - at % kPage;
    if (size > limit - text.size()) size = limit - text.size();
    if (!caller_read(tid, at, piece, size)) return false;
    size_t length = strnlen(piece, size);
    text.append(piece, length);
    if (length < size) return true;
  }
  return true;
}

std::string caller_proc_path(int32_t tid, const std::string& name) {
  return "/proc/" + std::to_string(tid) + "/" + name;
}

std::vector<int32_t> caller_threads(pid_t pid) {
  std::vector<int32_t> threads;
  DIR* entries = opendir(caller_proc_path(pid, "task").c_str());
  if (!entries) return threads;
  while (dirent* entry = readdir(entries)) {
    if (int32_t tid = atoi(entry->d_name); tid > 0) threads.push_back(tid);
  }
  closedir(entries);
  return threads;
}

// Most callers are the first thread of their process, whose id is also that of the process.
// pidfd_open fails for any other thread.
static pid_t process_of(int32_t tid) {
  int fd = static_cast<int>(syscall(SYS_pidfd_open, tid, 0));
  if (fd >= 0) {
    close(fd);
    return tid;
  }
  std::string status = file_read(caller_proc_path(tid, "status"));
  size_t at = status.find("\nTgid:");
  return at == std::string::npos ? tid : atoi(status.c_str() + at + strlen("\nTgid:"));
}

static void learn(caller_known& known, int32_t tid) {
  if (known.comm_fd > 0) close(known.comm_fd);
  known.tid = tid;
  known.pid = process_of(tid);
  known.comm_fd = open(caller_proc_path(tid, "comm").c_str(), O_RDONLY | O_CLOEXEC);
}

// Calls from one thread come in runs, so the last caller is cached. Its open file shows when it is
// gone, even if its thread id has been reused, and its new name after an exec.
void caller_identify(caller_known& known, int32_t tid, pid_t& pid, std::string& comm) {
  char name[32];
  ssize_t size = known.tid == tid ? pread(known.comm_fd, name, sizeof name, 0) : -1;
  if (size <= 0) {
    learn(known, tid);
    size = pread(known.comm_fd, name, sizeof name, 0);
  }
  pid = known.pid;
  if (size > 0) comm.assign(name, static_cast<size_t>(size - 1));  // without its newline
}
