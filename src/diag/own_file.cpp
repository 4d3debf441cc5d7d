#include "diag/own_file.h"

#include <fcntl.h>
#include <sys/auxv.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

static constexpr int kLinksMax = 8;

// Every profile update asks three times. The kernel supplied this value at start, so it
// costs no system call.
uid_t own_user() {
  return static_cast<uid_t>(getauxval(AT_EUID));
}

// Why a file is not an own file, or 0.
static int objection(const struct stat& status) {
  if (status.st_uid != own_user()) return EACCES;
  if (!S_ISREG(status.st_mode)) return EINVAL;
  return status.st_nlink > 1 ? EMLINK : 0;
}

static int checked(int file, struct stat* status) {
  const int error = fstat(file, status) != 0 ? errno : objection(*status);
  if (error == 0) return file;
  close(file);
  errno = error;
  return -1;
}

int own_directory_open(const char* path) {
  static constexpr int kFlags = O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
  const int directory = open(path, kFlags);
  // These are the errors for a link.
  if (directory >= 0 || (errno != ENOTDIR && errno != ELOOP)) return directory;
  char target[PATH_MAX];
  return own_file_resolve(AT_FDCWD, path, target) ? open(target, kFlags) : -1;
}

int own_file_open(int directory, const char* path, int flags, mode_t mode, struct stat* status) {
  flags |= O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
  int file = openat(directory, path, flags, mode);
  // With O_CREAT the kernel returns EACCES for another user's link.
  if (file < 0 && (errno == ELOOP || errno == EACCES)) {
    char target[PATH_MAX];
    if (!own_file_resolve(directory, path, target)) return -1;
    file = openat(directory, target, flags, mode);
  }
  return file < 0 ? -1 : checked(file, status);
}

// Replaces the path of a link, which is itself open, by the link's target.
static bool follow(int link, char (&path)[PATH_MAX]) {
  char target[PATH_MAX];
  const ssize_t length = readlinkat(link, "", target, sizeof target);
  if (length <= 0) return false;
  // A relative target starts in the link's directory.
  const char* slash = target[0] == '/' ? nullptr : strrchr(path, '/');
  const size_t kept = slash == nullptr ? 0 : static_cast<size_t>(slash + 1 - path);
  if (kept + static_cast<size_t>(length) >= sizeof path) {
    errno = ENAMETOOLONG;
    return false;
  }
  memcpy(path + kept, target, static_cast<size_t>(length));
  path[kept + static_cast<size_t>(length)] = '\0';
  return true;
}

// Takes one step along the links; `*more` is set when `path` was one.
static bool step(int place, char (&path)[PATH_MAX], bool* more) {
  struct stat status;
  if (fstat(place, &status) != 0) return false;
  *more = S_ISLNK(status.st_mode);
  if (!*more) return true;
  // Anybody may have given a link of ours a second name.
  if (status.st_uid == own_user() && status.st_nlink == 1) return follow(place, path);
  errno = ELOOP;
  return false;
}

bool own_file_resolve(int directory, const char* path, char (&target)[PATH_MAX]) {
  snprintf(target, sizeof target, "%s", path);
  bool more = true;
  for (int links = 0; more && links <= kLinksMax; ++links) {
    // Inspect and read the link itself, even if the path is replaced meanwhile.
    const int place = openat(directory, target, O_PATH | O_NOFOLLOW | O_CLOEXEC);
    if (place < 0) return errno == ENOENT;
    const bool done = step(place, target, &more);
    const int error = errno;
    close(place);
    errno = error;
    if (!done) return false;
  }
  if (more) errno = ELOOP;
  return !more;
}

bool own_file_was_shared(int file, mode_t mode, const struct stat& status) {
  constexpr mode_t kOthers = 077;
  if ((status.st_mode & kOthers & ~mode) == 0 || fchmod(file, mode) != 0) return false;
  struct stat now;
  return fstat(file, &now) == 0 && (now.st_mode & kOthers & ~mode) == 0;
}
