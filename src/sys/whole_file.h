#pragma once

#include <sys/types.h>

#include <cstddef>

// Whole files in as few system calls as they take. Functions that fail return
// false with errno set and print nothing: the callers have messages of their own.

// A file read into memory. `data` is owned by the record: file_release frees it.
struct file_image {
  char* data;
  size_t length;
  mode_t mode;
  uid_t owner;
  gid_t group;
  // False for a symbolic link and for a file with several names: a rename over
  // it would leave its other names behind.
  bool renameable;
};

// Reads a regular file; anything else is refused with EINVAL, so that a FIFO in
// its place cannot block the reader, and 2 GiB or more with EFBIG.
[[nodiscard]] bool file_read(const char* path, file_image* image);
void file_release(file_image* image);

// Reads at most `size` bytes from `offset` on. False when the file cannot be
// opened; `*length` receives what was there, 0 for an offset outside the file.
[[nodiscard]] bool file_read_piece(const char* path, off_t offset, char* data, size_t size,
                                   size_t* length);

// Creates a new file with one write and flushes it to its device. Only its
// owner may read it. A leftover of that name is removed first, as is whatever another
// user made there, even a directory; on failure nothing is left. Returns the step that failed.
enum class file_step { kDone, kOpen, kWrite };
[[nodiscard]] file_step file_create(const char* path, const char* data, size_t length);

// Gives a file that file_create made the mode and owner of `like`, then renames
// it over `target`. Fails without a change when the target is a mount point or
// lies on another filesystem.
[[nodiscard]] bool file_rename_over(const char* path, const char* target, const file_image* like);

// Overwrites a file in place with one write, then cuts it to length; creates it
// when it is missing. `old` is what the file holds: room for the new content is
// made sure of first, and a failure puts the old one back. A symbolic link is
// followed: what is at its end has been read. Anything but a regular file is refused.
[[nodiscard]] bool file_overwrite(const char* path, const char* data, size_t length,
                                  const file_image* old);

// The same for an own file, see own_file.h for errno: gives it `mode` before the
// content, and cuts it to length where it was longer.
[[nodiscard]] bool file_overwrite_own(const char* path, const char* data, size_t length,
                                      mode_t mode);

// Whether there is a file that holds something.
[[nodiscard]] bool file_is_filled(const char* path);

// Whether a copy has the length of its original; both must be there.
[[nodiscard]] bool file_is_whole_copy(const char* path, const char* original);

// Removes a file; one that is not there is as good.
void file_remove(const char* path);
