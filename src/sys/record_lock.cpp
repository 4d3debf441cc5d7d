#include "sys/record_lock.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "diag/own_file.h"
#include "diag/trace.h"
#include "sys/lock.h"
#include "sys/whole_file.h"

static constexpr mode_t kRecordFileMode = 0600;
static constexpr int kRecordTriesMax = 16;

// The user who started a process; false when unknown. The owner of /proc/PID would not do:
// a process can make that root.
static bool user_of(pid_t process, uid_t* user) {
  char path[32];
  char text[512] = {};
  size_t length = 0;
  snprintf(path, sizeof path, "/proc/%d/status", process);
  if (!file_read_piece(path, 0, text, sizeof text - 1, &length)) return false;
  const char* line = strstr(text, "\nUid:");
  return line != nullptr && sscanf(line, " Uid: %u", user) == 1;
}

static struct flock whole_file() {
  struct flock whole = {};
  whole.l_type = F_WRLCK;
  whole.l_whence = SEEK_SET;
  return whole;
}

// Whether another user holds the lock: anyone who may open the file can lock it.
static bool held_by_stranger(int file, const struct stat& status) {
  if ((status.st_mode & 077) == 0) return false;
  struct flock held = whole_file();
  uid_t user = 0;
  return fcntl(file, F_GETLK, &held) == 0 && held.l_type != F_UNLCK &&
         !(user_of(held.l_pid, &user) && user == own_user());
}

namespace {
enum class verdict { kGranted, kRefused, kStranger };
}  // namespace

static verdict try_lock(int file, const struct stat& status) {
  const struct flock whole = whole_file();
  if (fcntl(file, F_SETLK, &whole) != 0)
    return held_by_stranger(file, status) ? verdict::kStranger : verdict::kRefused;
  if (status.st_size > 0 && ftruncate(file, 0) != 0) return verdict::kRefused;
  return verdict::kGranted;
}

bool try_record_lock(const char* path) {
  for (int tries = 0; tries < kRecordTriesMax; ++tries) {
    struct stat status;
    const int file = open_lock_file(path, kRecordFileMode, &status);
    if (file < 0) {
      RPC_ERROR("%s cannot be opened: %s\n", path, strerror(errno));
      return false;
    }
    const verdict result = try_lock(file, status);
    close(file);
    if (result != verdict::kStranger) return result == verdict::kGranted;
    RPC_ERROR("%s is removed: another user has locked it\n", path);
    unlink(path);
  }
  return false;
}
