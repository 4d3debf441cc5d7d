#include "sys/planted.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "diag/own_file.h"
#include "diag/trace.h"

// More than two are needed only against someone who keeps making and removing
// directories.
static constexpr int kMoveTriesMax = 64;
static constexpr mode_t kMode = 0644;

static bool is_foreign(const struct stat& status) {
  return status.st_uid != own_user();
}

static bool has_second_name(const struct stat& status) {
  return !S_ISDIR(status.st_mode) && status.st_nlink > 1;
}

// Another user's directory is not walked through: its owner may move it meanwhile.
static bool move_aside(const char* path) {
  char place[] = "/tmp/.planted.XXXXXX";
  if (mkdtemp(place) == nullptr) return false;
  char target[sizeof place + 8];
  snprintf(target, sizeof target, "%s/moved", place);
  if (rename(path, target) == 0) return true;
  const int error = errno;
  rmdir(place);
  errno = error;
  return false;
}

// Puts an empty file of ours over anything but a directory, in one step, so that the path
// is never free for others.
static bool put_over(const char* path) {
  char file[] = "/tmp/.planted.XXXXXX";
  const int made = mkostemp(file, O_CLOEXEC);
  if (made < 0) return false;
  const bool put = fchmod(made, kMode) == 0 && rename(file, path) == 0;
  const int error = errno;
  close(made);
  if (!put) unlink(file);
  errno = error;
  return put;
}

static const char* clear_directory(const char* path) {
  if (rmdir(path) == 0) return "removed";
  return move_aside(path) ? "moved out of the way" : nullptr;
}

static const char* clear_file(const char* path, bool replace) {
  const bool cleared = replace ? put_over(path) : unlink(path) == 0;
  return cleared ? "removed" : nullptr;
}

// A directory cannot be replaced in one step.
static bool remove_planted(const char* path, const struct stat& status, bool replace) {
  const char* done = S_ISDIR(status.st_mode) ? clear_directory(path) : clear_file(path, replace);
  if (done == nullptr) {
    RPC_ERROR("%s cannot be removed: %s\n", path, strerror(errno));
  } else if (is_foreign(status)) {
    RPC_ERROR("%s of user %u is %s\n", path, status.st_uid, done);
  } else {
    RPC_ERROR("%s is %s: it is no plain file with one name\n", path, done);
  }
  return done != nullptr;
}

bool planted_remove(const char* path) {
  struct stat status;
  if (lstat(path, &status) != 0) return false;
  return (is_foreign(status) || has_second_name(status)) && remove_planted(path, status, false);
}

static bool may_stay(const struct stat& status, bool keep_link) {
  if (is_foreign(status) || has_second_name(status)) return false;
  return S_ISREG(status.st_mode) || (keep_link && S_ISLNK(status.st_mode));
}

// Creates an own file at `path`. False when something is there already.
static bool make_first(const char* path) {
  const int file = open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kMode);
  if (file >= 0) close(file);
  // The command itself will report any other error.
  return file >= 0 || errno != EEXIST;
}

bool planted_make_way(const char* path, bool keep_link) {
  for (int tries = 0; tries < kMoveTriesMax; ++tries) {
    struct stat status;
    if (make_first(path)) return true;
    if (lstat(path, &status) != 0) continue;
    if (may_stay(status, keep_link)) return true;
    if (!remove_planted(path, status, true)) break;
    if (!S_ISDIR(status.st_mode)) return true;
  }
  return false;
}

void planted_give_up(const char* path) {
  struct stat status;
  if (lstat(path, &status) == 0 && S_ISREG(status.st_mode) && status.st_size == 0) unlink(path);
}
