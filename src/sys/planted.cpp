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

// Somebody who makes files in a loop gives up the place now and then.
static constexpr int kTriesMax = 64;
static constexpr mode_t kMode = 0644;

static bool is_foreign(const struct stat& status) {
  return status.st_uid != own_user();
}

static bool has_second_name(const struct stat& status) {
  return !S_ISDIR(status.st_mode) && status.st_nlink > 1;
}

// A directory of others is not walked through: its owner may move it meanwhile.
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

static bool remove_planted(const char* path, const struct stat& status) {
  const bool removed =
      S_ISDIR(status.st_mode) ? rmdir(path) == 0 || move_aside(path) : unlink(path) == 0;
  if (!removed) {
    RPC_ERROR("%s cannot be removed: %s\n", path, strerror(errno));
  } else if (is_foreign(status)) {
    RPC_ERROR("%s of user %u is removed\n", path, status.st_uid);
  } else {
    RPC_ERROR("%s is removed: it is no plain file with one name\n", path);
  }
  return removed;
}

bool planted_remove(const char* path) {
  struct stat status;
  if (lstat(path, &status) != 0) return false;
  return (is_foreign(status) || has_second_name(status)) && remove_planted(path, status);
}

static bool may_stay(const struct stat& status, bool keep_link) {
  if (is_foreign(status) || has_second_name(status)) return false;
  return S_ISREG(status.st_mode) || (keep_link && S_ISLNK(status.st_mode));
}

bool planted_make_way(const char* path, bool keep_link) {
  for (int tries = 0; tries < kTriesMax; ++tries) {
    const int file = open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kMode);
    if (file >= 0) close(file);
    // What cannot be made for another reason, the command tells.
    if (file >= 0 || errno != EEXIST) return true;
    struct stat status;
    if (lstat(path, &status) != 0) continue;
    if (may_stay(status, keep_link)) return true;
    if (!remove_planted(path, status)) break;
  }
  return false;
}

void planted_give_up(const char* path) {
  struct stat status;
  if (lstat(path, &status) == 0 && S_ISREG(status.st_mode) && status.st_size == 0) unlink(path);
}
