#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstring>

#include "support/check.h"
#include "support/outside.h"
#include "support/profile_lines.h"
#include "support/sim_calls.h"

// Files and locks. Only files of the store, the debug log and files that a command
// writes may be opened for writing. Only profiles can be links or FIFOs.

// What the daemon creates before a command writes to it, and removes if it stays empty.
static bool is_place(std::string_view path) {
  // The tables of the two radios, by country.
  const bool generated = path.ends_with("_1.dat") || path.ends_with("_9.dat");
  if (generated && path.starts_with("/tmp/")) return true;
  const bool table = path.starts_with("/tmp/.mt76") && path.find("_SingleSKU") != path.npos;
  return table || path == "/tmp/l1profile.dat" || path == "/tmp/wifi_restart";
}

static bool may_be_written(std::string_view path) {
  static constexpr std::string_view kWritten[] = {
      "/dev/null",
      "/tmp/.mt76xx_24.dat.lock",
      "/tmp/.mt76xx_5.dat.lock",
      "/tmp/mt76xx_24.dat.hnc",
      "/tmp/mt76xx_5.dat.hnc",
      "/tmp/auto_debug/dbg_rpc.log",
  };
  const bool listed =
      std::find(std::begin(kWritten), std::end(kWritten), path) != std::end(kWritten);
  return listed || profile_number_of(path) >= 0 || is_temporary(path) || is_place(path);
}

static int refuse(int error) {
  errno = error;
  return -1;
}

static outside_file* existing(std::string_view path) {
  outside_file* file = find_file(path);
  if (file == nullptr && outside_has(path)) {
    file = make_file(path);
    file->content = path.ends_with(".ko") ? "\x7f"
                                            "ELF"
                                          : "";
  }
  return file;
}

// The one directory that is opened.
static outside_file* log_directory(std::string_view path) {
  CHECK(path == "/tmp/auto_debug");
  outside_file* directory = find_file(path);
  return directory != nullptr ? directory : make_file(path);
}

int sim_open(const char* path, int flags, ...) {
  const bool writing = (flags & O_ACCMODE) != O_RDONLY;
  if (writing && !may_be_written(path)) broken("%s is opened for writing", path);
  uint8_t how = 0;
  if (strike(&how)) return -1;
  outside_file* file = (flags & O_DIRECTORY) != 0 ? log_directory(path) : existing(path);
  if (file == nullptr && (flags & O_CREAT) == 0) return refuse(ENOENT);
  if (file != nullptr && (flags & O_EXCL) != 0) return refuse(EEXIST);
  if (file != nullptr && file->symlink && (flags & O_NOFOLLOW) != 0) return refuse(ELOOP);
  if (file == nullptr) {
    va_list values;
    va_start(values, flags);
    file = make_file(path);
    file->mode = va_arg(values, mode_t);
    va_end(values);
  }
  if ((flags & O_TRUNC) != 0) file->content.clear();
  const int fd = new_descriptor(descriptor_kind::kFile);
  descriptor_of(fd)->file = file;
  return fd;
}

int sim_open_2(const char* path, int flags) {
  return sim_open(path, flags);
}

static std::string path_in(int directory, const char* path) {
  if (directory == AT_FDCWD || path[0] == '/') return path;
  return descriptor_of(directory)->file->path + "/" + path;
}

int sim_openat(int directory, const char* path, int flags, ...) {
  va_list values;
  va_start(values, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(values, mode_t) : 0;
  va_end(values);
  return sim_open(path_in(directory, path).c_str(), flags, mode);
}

int sim_openat_2(int directory, const char* path, int flags) {
  return sim_openat(directory, path, flags);
}

static outside_descriptor* open_file(int fd) {
  outside_descriptor* found = descriptor_of(fd);
  CHECK(found->kind == descriptor_kind::kFile);
  return found;
}

int sim_close(int fd) {
  outside_descriptor* closed = descriptor_of(fd);
  const int number = closed->file == nullptr ? -1 : profile_number_of(closed->file->path);
  if (number >= 0) simulated->profiles[number].in_place = false;
  if (closed->kept) broken("a socket that must stay open is closed");
  *closed = {};
  // The descriptor is closed even if close fails.
  uint8_t how = 0;
  return strike(&how) ? -1 : 0;
}

ssize_t sim_read(int fd, void* data, size_t size) {
  outside_descriptor* from = open_file(fd);
  uint8_t how = 0;
  if (strike(&how)) {
    if ((how & 16) == 0 || size < 2) return -1;
    size /= 2;
  }
  const std::string& content = from->file->content;
  const size_t start = std::min(from->offset, content.size());
  const size_t length = content.copy(static_cast<char*>(data), size, start);
  from->offset += length;
  return static_cast<ssize_t>(length);
}

ssize_t sim_read_chk(int fd, void* data, size_t size, size_t room) {
  CHECK(size <= room);
  return sim_read(fd, data, size);
}

// From now on the profile may hold what was flushed to a temporary file. That must be an
// update of what it holds now.
static void allow_candidate(int number, const std::string& old) {
  profile_watch& watch = simulated->profiles[number];
  if (watch.allowed.empty()) watch.allowed.push_back(old);
  if (old == watch.candidate) return;
  const std::string objection =
      simulated->any_key_forced ? std::string() : profile_objection(old, watch.candidate);
  if (!objection.empty()) broken("profile: %s", objection.c_str());
  watch.allowed.push_back(watch.candidate);
}

// Two failures in a row would destroy a profile that is overwritten in place, since its
// old content cannot be restored. So only one is simulated.
static bool strike_write(const outside_file& file, uint8_t* how) {
  const int number = profile_number_of(file.path);
  if (number < 0) return strike(how);
  profile_watch& watch = simulated->profiles[number];
  if (!watch.in_place) allow_candidate(number, file.content);
  watch.in_place = true;
  if (watch.failed) return false;
  return watch.failed = strike(how);
}

ssize_t sim_write(int fd, const void* data, size_t size) {
  outside_descriptor* to = open_file(fd);
  uint8_t how = 0;
  if (strike_write(*to->file, &how)) {
    if ((how & 16) == 0 || size < 2) return -1;
    size /= 2;
  }
  std::string& content = to->file->content;
  if (content.size() < to->offset + size) content.resize(to->offset + size);
  content.replace(to->offset, size, static_cast<const char*>(data), size);
  to->offset += size;
  return static_cast<ssize_t>(size);
}

off_t sim_lseek(int fd, off_t offset, int whence) {
  CHECK(whence == SEEK_SET);
  if (offset < 0) return refuse(EINVAL);
  open_file(fd)->offset = static_cast<size_t>(offset);
  return offset;
}

int sim_fsync(int fd) {
  const outside_file& file = *open_file(fd)->file;
  uint8_t how = 0;
  if (strike(&how)) return -1;
  if (is_temporary(file.path)) {
    const int number = file.path.starts_with("/tmp/wifitemp.24.") ? 0 : 1;
    simulated->profiles[number].candidate = file.content;
  }
  return 0;
}

int sim_ftruncate(int fd, off_t length) {
  outside_file* file = open_file(fd)->file;
  uint8_t how = 0;
  if (strike_write(*file, &how)) return -1;
  file->content.resize(static_cast<size_t>(length));
  return 0;
}

int sim_fallocate(int fd, int mode, off_t, off_t) {
  CHECK(mode == FALLOC_FL_KEEP_SIZE);
  static_cast<void>(open_file(fd));
  uint8_t how = 0;
  return strike(&how) ? -1 : 0;
}

static void describe(const outside_file& file, struct stat* status) {
  *status = {};
  status->st_mode = (file.fifo ? S_IFIFO : S_IFREG) | file.mode;
  status->st_nlink = file.hard_linked ? 2 : 1;
  static const uid_t kOwner = geteuid();
  static const gid_t kGroup = getegid();
  status->st_uid = kOwner;
  status->st_gid = file.hard_linked ? kGroup + 1 : kGroup;
  status->st_size = static_cast<off_t>(file.content.size());
}

int sim_fstat(int fd, struct stat* status) {
  if (fd == -1) return refuse(EBADF);
  describe(*open_file(fd)->file, status);
  uint8_t how = 0;
  return strike(&how) ? -1 : 0;
}

int sim_stat(const char* path, struct stat* status) {
  const outside_file* file = existing(path);
  if (file == nullptr) return refuse(ENOENT);
  describe(*file, status);
  return 0;
}

// No path that the daemon passes to lstat is a link here.
int sim_lstat(const char* path, struct stat* status) {
  return sim_stat(path, status);
}

int sim_access(const char* path, int mode) {
  CHECK(mode == F_OK);
  return outside_has(path) ? 0 : refuse(ENOENT);
}

int sim_chmod(const char* path, mode_t mode) {
  outside_file* file = find_file(path);
  CHECK(file != nullptr && is_temporary(path));
  uint8_t how = 0;
  if (strike(&how)) return -1;
  file->mode = mode;
  return 0;
}

int sim_fchmod(int fd, mode_t mode) {
  outside_file* file = open_file(fd)->file;
  CHECK(file->path.ends_with(".hnc") || file->path.ends_with("dbg_rpc.log"));
  uint8_t how = 0;
  if (strike(&how)) return -1;
  file->mode = mode;
  return 0;
}

int sim_chown(const char* path, uid_t, gid_t) {
  CHECK(find_file(path) != nullptr && is_temporary(path));
  uint8_t how = 0;
  return strike(&how) ? -1 : 0;
}

int sim_unlink(const char* path) {
  outside_file* file = find_file(path);
  const std::string_view name = path;
  const bool image = name.starts_with("/nvram/") && name.find("EEPROM") != name.npos;
  const bool known = is_temporary(name) || name.starts_with("/tmp/rad_ctrl_") || is_place(name) ||
                     image || name.ends_with(".hnc");
  if (!known) broken("%s is removed", path);
  if (file == nullptr) return refuse(ENOENT);
  file->there = false;
  return 0;
}

int sim_rmdir(const char* path) {
  broken("%s is removed as a directory", path);
}

char* sim_mkdtemp(char* pattern) {
  broken("%s is made", pattern);
}

int sim_mkostemp(char* pattern, int) {
  broken("%s is made", pattern);
}

ssize_t sim_readlinkat(int, const char*, char*, size_t) {
  broken("a link is read");
}

ssize_t sim_readlinkat_chk(int directory, const char* path, char* target, size_t size, size_t) {
  return sim_readlinkat(directory, path, target, size);
}

int sim_rename(const char* from, const char* to) {
  outside_file* file = find_file(from);
  CHECK(file != nullptr);
  uint8_t how = 0;
  if (strike(&how)) return -1;
  const int number = profile_number_of(to);
  if (number >= 0) {
    CHECK(is_temporary(from) && file->content == simulated->profiles[number].candidate);
    const outside_file* old = find_file(to);
    allow_candidate(number, old == nullptr ? std::string() : old->content);
  } else if (strcmp(to, "/tmp/auto_debug/dbg_rpc.log.bak") != 0) {
    broken("%s is renamed to %s", from, to);
  }
  outside_file* target = make_file(to);
  target->content = file->content;
  target->symlink = target->hard_linked = false;
  file->there = false;
  return 0;
}

int sim_renameat(int old_directory, const char* from, int new_directory, const char* to) {
  return sim_rename(path_in(old_directory, from).c_str(), path_in(new_directory, to).c_str());
}

int sim_flock(int fd, int operation) {
  outside_descriptor* lock = open_file(fd);
  CHECK(lock->file->path.ends_with(".lock"));
  uint8_t how = 0;
  if (strike(&how)) return -1;
  if (operation == LOCK_UN) {
    CHECK(lock->locked);
    lock->locked = false;
    return 0;
  }
  for (const outside_descriptor& other : simulated->descriptors) {
    const bool held = other.locked && other.file == lock->file;
    if (held) broken("%s is waited for by its own holder", lock->file->path.c_str());
  }
  lock->locked = true;
  return 0;
}

int sim_fcntl(int, int, ...) {
  return 0;
}

void* sim_mmap(void*, size_t size, int, int, int fd, off_t) {
  uint8_t how = 0;
  if (fd == -1 || size == 0 || strike(&how)) {
    errno = fd == -1 ? EBADF : EINVAL;
    return MAP_FAILED;
  }
  CHECK(open_file(fd)->file->content.size() == size);
  char* copy = new char[size];
  memcpy(copy, open_file(fd)->file->content.data(), size);
  simulated->mappings.push_back(copy);
  return copy;
}

int sim_munmap(void* start, size_t) {
  std::vector<void*>& all = simulated->mappings;
  const auto found = std::find(all.begin(), all.end(), start);
  CHECK(found != all.end());
  delete[] static_cast<char*>(start);
  all.erase(found);
  return 0;
}
