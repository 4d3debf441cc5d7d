#pragma once

#include <sys/types.h>

#include <cstddef>

// Whole files in as few system calls as possible. Functions return false with errno on
// failure and print nothing: the callers have their own messages.

// A file read into memory. The record owns `data`; file_release frees it.
struct file_image {
  char* data;
  size_t length;
  mode_t mode;
  uid_t owner;
  gid_t group;
  // False for a symbolic link and for a file with several names: a rename would detach
  // the other names.
  bool renameable;
};

// Reads a regular file. Anything else is refused with EINVAL, so a FIFO cannot block the
// reader; 2 GiB or more with EFBIG.
[[nodiscard]] bool file_read(const char* path, file_image* image);
void file_release(file_image* image);

// Reads at most `size` bytes from `offset` on. False when the file cannot be opened;
// `*length` receives how many were read, 0 for an offset outside the file.
[[nodiscard]] bool file_read_piece(const char* path, off_t offset, char* data, size_t size,
                                   size_t* length);

// Creates a new file with one write and flushes it to the device. Only its owner may read
// it. Anything left at that path is removed first, even another user's directory; nothing
// remains after a failure. Returns the step that failed.
enum class file_step { kDone, kOpen, kWrite };
[[nodiscard]] file_step file_create(const char* path, const char* data, size_t length);

// Gives a file made by file_create the mode and owner of `like`, then renames it over
// `target`. Fails without a change when the target is a mount point or is on another
// filesystem.
[[nodiscard]] bool file_rename_over(const char* path, const char* target, const file_image* like);

// Overwrites a file in place with one write, then truncates it; creates it when it is
// missing. `old` is its current content: space is reserved first, and a failure restores
// `old`. A symbolic link is followed, as when reading. Anything but a regular file is
// refused.
[[nodiscard]] bool file_overwrite(const char* path, const char* data, size_t length,
                                  const file_image* old);

// The same for an own file, see own_file.h for errno: sets `mode` before writing, and
// truncates a file that was longer.
[[nodiscard]] bool file_overwrite_own(const char* path, const char* data, size_t length,
                                      mode_t mode);

// Whether a path exists. A symbolic link must lead to something.
[[nodiscard]] bool path_exists(const char* path);

// Whether the name exists, even as a symbolic link that leads nowhere.
[[nodiscard]] bool name_exists(const char* path);

// Whether the file exists and is not empty.
[[nodiscard]] bool file_is_filled(const char* path);

// Whether a copy is as long as its original; both must exist.
[[nodiscard]] bool file_is_whole_copy(const char* path, const char* original);

// Removes a file; a missing one is no error.
void file_remove(const char* path);
