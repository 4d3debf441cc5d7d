#include "sys/lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "diag/own_file.h"
#include "sys/planted.h"

static constexpr mode_t kLockFileMode = 0666;
static constexpr int kLockTriesMax = 16;
static constexpr int kPausesMax = 100;  // one second in total

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

// Waits a while for the holder of a file that is to be removed, so that no two processes
// hold the lock, one through the old file and one through the new. Not forever: any user
// can lock a file that he may open. Returns its descriptor, or -1.
static int wait_for_holder(const char* path) {
  const int file = open(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (file < 0) return -1;
  const timespec pause = {0, 10'000'000};
  for (int i = 0; i < kPausesMax && flock(file, LOCK_EX | LOCK_NB) != 0; ++i)
    nanosleep(&pause, nullptr);
  return file;
}

int open_lock_file(const char* path, mode_t mode, struct stat* status) {
  int file = own_file_open(AT_FDCWD, path, O_RDWR | O_CREAT, mode, status);
  for (int tries = 0; file < 0 && tries < kLockTriesMax; ++tries) {
    const int error = errno;
    const int old = tries == 0 ? wait_for_holder(path) : -1;
    const bool removed = planted_remove(path);
    if (old >= 0) close(old);
    errno = error;
    // On the first try, another process may have removed it already.
    if (!removed && tries > 0) return -1;
    file = own_file_open(AT_FDCWD, path, O_RDWR | O_CREAT, mode, status);
  }
  return file;
}

// Whether the locked file is still the one at the path: a lock on a file that was removed
// during the wait is worthless.
static bool still_in_place(const char* path, const struct stat& file) {
  struct stat now;
  return stat(path, &now) == 0 && now.st_dev == file.st_dev && now.st_ino == file.st_ino &&
         now.st_nlink == 1;
}

static int close_failing(int fd) {
  const int error = errno;
  close(fd);
  errno = error;
  return -1;
}

// Opens the file at `path` and locks it. Returns its descriptor, or -1 with errno;
// `*opened` is set when opening succeeded.
static int lock_file(const char* path, int operation, bool* opened) {
  for (int tries = 0; tries < kLockTriesMax; ++tries) {
    struct stat status;
    const int fd = open_lock_file(path, kLockFileMode, &status);
    *opened = fd >= 0;
    if (fd < 0) return -1;
    if (flock_through_signals(fd, operation) != 0) return close_failing(fd);
    if (still_in_place(path, status)) return fd;
    close(fd);
  }
  errno = EBUSY;
  return -1;
}

int fwrite_lock(const char* path) {
  bool opened = false;
  const int fd = lock_file(path, LOCK_EX, &opened);
  if (fd >= 0) return fd;
  if (opened) {
    report("mtk_rpc", "fwrite_lock", "flock");
  } else {
    report("open", path, "fwrite_lock");
  }
  return 0;
}

int fread_lock(const char* path) {
  bool opened = false;
  const int fd = lock_file(path, LOCK_SH, &opened);
  if (fd >= 0) return fd;
  if (opened) {
    report("mtk_rpc", "fread_lock", "flock");
  } else {
    report("fopen", path, "fread_lock");
  }
  return 0;
}

void funlock(int fd) {
  if (fd <= 0) return;
  if (unlock(fd) != 0) perror("funlock fcntl error");
  close(fd);
}
