#include "sys/lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

static int flock_through_signals(int fd, int operation) {
  int result;
  do {
    result = flock(fd, operation);
  } while (result == -1 && errno == EINTR);
  return result;
}

int write_lock(int fd) {
  return flock_through_signals(fd, LOCK_EX);
}

int read_lock(int fd) {
  return flock_through_signals(fd, LOCK_SH);
}

int unlock(int fd) {
  return flock_through_signals(fd, LOCK_UN);
}

static void report(const char* what, const char* which, const char* reason) {
  const int error = errno;
  fprintf(stderr, "%s %s error\n", what, which);
  errno = error;
  perror(reason);
}

// Everybody may write to the directory: nothing is created where a link points to.
static int open_lock_file(const char* path) {
  return open(path, O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0666);
}

int fwrite_lock(const char* path) {
  const int fd = open_lock_file(path);
  if (fd < 0) {
    report("open", path, "fwrite_lock");
    return 0;
  }
  if (write_lock(fd) == 0) return fd;
  report("mtk_rpc", "fwrite_lock", "flock");
  close(fd);
  return 0;
}

int fread_lock(const char* path) {
  const int fd = open_lock_file(path);
  if (fd < 0) {
    report("fopen", path, "fread_lock");
    return 0;
  }
  if (read_lock(fd) == 0) return fd;
  report("mtk_rpc", "fread_lock", "flock");
  close(fd);
  return 0;
}

void funlock(int fd) {
  if (fd <= 0) return;
  if (unlock(fd) != 0) perror("funlock fcntl error");
  close(fd);
}
