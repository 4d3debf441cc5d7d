#include "sys/whole_file.h"

#include <fcntl.h>
#include <sys/auxv.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "diag/own_file.h"
#include "sys/planted.h"

static constexpr mode_t kNewFileMode = 0666;
static constexpr mode_t kPrivateMode = 0600;
// With one more byte it must still fit a 32-bit size_t.
static constexpr off_t kLargest = INT32_MAX;

// Closes after a failure and preserves errno.
static bool fail_closing(int file) {
  const int error = errno;
  close(file);
  errno = error;
  return false;
}

static bool read_fully(int file, char* data, size_t length, size_t* got) {
  *got = 0;
  while (*got < length) {
    const ssize_t part = read(file, data + *got, length - *got);
    if (part < 0 && errno == EINTR) continue;
    if (part < 0) return false;
    if (part == 0) break;
    *got += static_cast<size_t>(part);
  }
  return true;
}

static bool write_fully(int file, const char* data, size_t length) {
  while (length > 0) {
    const ssize_t part = write(file, data, length);
    if (part < 0 && errno == EINTR) continue;
    if (part < 0) return false;
    data += part;
    length -= static_cast<size_t>(part);
  }
  return true;
}

static bool read_open_file(int file, file_image* image) {
  struct stat status;
  if (fstat(file, &status) != 0) return false;
  if (!S_ISREG(status.st_mode)) {
    errno = EINVAL;
    return false;
  }
  image->mode = status.st_mode & 07777;
  image->owner = status.st_uid;
  image->group = status.st_gid;
  if (status.st_nlink > 1) image->renameable = false;
  if (status.st_size > kLargest) {
    errno = EFBIG;
    return false;
  }
  const size_t size = static_cast<size_t>(status.st_size);
  image->data = static_cast<char*>(malloc(size + 1));
  if (image->data == nullptr) return false;
  if (read_fully(file, image->data, size, &image->length)) return true;
  file_release(image);
  return false;
}

bool file_read(const char* path, file_image* image) {
  *image = {};
  image->renameable = true;
  constexpr int kFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK;
  int file = open(path, kFlags | O_NOFOLLOW);
  if (file < 0 && errno == ELOOP) {
    image->renameable = false;
    file = open(path, kFlags);
  }
  if (file < 0) return false;
  if (!read_open_file(file, image)) return fail_closing(file);
  close(file);
  return true;
}

void file_release(file_image* image) {
  free(image->data);
  image->data = nullptr;
  image->length = 0;
}

bool file_read_piece(const char* path, off_t offset, char* data, size_t size, size_t* length) {
  const int file = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (file < 0) return false;
  *length = 0;
  // A negative offset gives nothing, like one beyond the end.
  if (lseek(file, offset, SEEK_SET) >= 0) {
    static_cast<void>(read_fully(file, data, size, length));
  }
  close(file);
  return true;
}

file_step file_create(const char* path, const char* data, size_t length) {
  constexpr int kFlags = O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC;
  int file = open(path, kFlags, kPrivateMode);
  if (file < 0 && errno == EEXIST && (unlink(path) == 0 || planted_remove(path))) {
    file = open(path, kFlags, kPrivateMode);
  }
  if (file < 0) return file_step::kOpen;
  const bool written = write_fully(file, data, length) && fsync(file) == 0;
  if (written && close(file) == 0) return file_step::kDone;
  const int error = errno;
  if (!written) close(file);
  unlink(path);
  errno = error;
  return file_step::kWrite;
}

bool file_rename_over(const char* path, const char* target, const file_image* like) {
  if (chmod(path, like->mode) != 0) return false;
  const bool same_owner = like->owner == own_user() && like->group == getauxval(AT_EGID);
  if (!same_owner && chown(path, like->owner, like->group) != 0) return false;
  return rename(path, target) == 0;
}

static bool replace_content(int file, const char* data, size_t length) {
  return write_fully(file, data, length) && ftruncate(file, static_cast<off_t>(length)) == 0;
}

// Reserves disk space for the growth without changing the size: a reader must not see the
// file grow before it is written.
static bool make_room(int file, size_t length, const file_image* old) {
  if (length <= old->length) return true;
  const off_t size = static_cast<off_t>(length);
  return fallocate(file, FALLOC_FL_KEEP_SIZE, 0, size) == 0 || errno == EOPNOTSUPP;
}

// Never blocks, even if the path is a FIFO.
static int open_to_overwrite(const char* path) {
  const int file = open(path, O_WRONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK, kNewFileMode);
  if (file < 0) return -1;
  struct stat status;
  if (fstat(file, &status) == 0 && S_ISREG(status.st_mode)) return file;
  close(file);
  errno = EINVAL;
  return -1;
}

bool file_overwrite(const char* path, const char* data, size_t length, const file_image* old) {
  const int file = open_to_overwrite(path);
  if (file < 0) return false;
  if (make_room(file, length, old) && replace_content(file, data, length)) return close(file) == 0;
  const int error = errno;
  if (lseek(file, 0, SEEK_SET) == 0) {
    // The old content fits where it was; if not, there is nothing left to do.
    static_cast<void>(replace_content(file, old->data, old->length));
  }
  errno = error;
  return fail_closing(file);
}

// A filesystem without modes, common on USB drives, refuses to set one.
static bool give_mode(int file, const struct stat& status, mode_t mode) {
  return (status.st_mode & 07777) == mode || fchmod(file, mode) == 0 || errno == EPERM;
}

// Replaces a file that others may have open.
static int open_own(const char* path, mode_t mode, struct stat* status) {
  constexpr int kFlags = O_WRONLY | O_CREAT;
  const int file = own_file_open(AT_FDCWD, path, kFlags, mode, status);
  if (file < 0 || !own_file_was_shared(file, mode, *status)) return file;
  close(file);
  char real[PATH_MAX];
  if (!own_file_resolve(AT_FDCWD, path, real) || unlink(real) != 0) return -1;
  return own_file_open(AT_FDCWD, path, kFlags, mode, status);
}

bool file_overwrite_own(const char* path, const char* data, size_t length, mode_t mode) {
  struct stat status;
  const int file = open_own(path, mode, &status);
  if (file < 0) return false;
  const bool longer = status.st_size > static_cast<off_t>(length);
  const bool written = give_mode(file, status, mode) && write_fully(file, data, length) &&
                       (!longer || ftruncate(file, static_cast<off_t>(length)) == 0);
  return written ? close(file) == 0 : fail_closing(file);
}

bool path_exists(const char* path) {
  return access(path, F_OK) == 0;
}

bool name_exists(const char* path) {
  struct stat status;
  return lstat(path, &status) == 0;
}

bool file_is_filled(const char* path) {
  struct stat status;
  return stat(path, &status) == 0 && status.st_size > 0;
}

bool file_is_whole_copy(const char* path, const char* original) {
  struct stat copy;
  struct stat whole;
  return stat(path, &copy) == 0 && stat(original, &whole) == 0 && copy.st_size == whole.st_size;
}

void file_remove(const char* path) {
  unlink(path);
}
