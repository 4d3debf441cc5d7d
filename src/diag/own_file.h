#pragma once

#include <limits.h>
#include <sys/stat.h>
#include <sys/types.h>

// Files with fixed names in directories where anyone may create files, such as /tmp. An
// own file is a plain file of this process's user with only one name. Another user may be
// able to read any other file, or it may really be a different file.

// The user that started this process: root, on a box.
[[nodiscard]] uid_t own_user();

// Opens the directory at `path`, for access to its entries. A symbolic link is followed
// if this process's user made it. Returns the descriptor (O_PATH), or -1 with errno:
// ELOOP for another user's link, or open()'s.
[[nodiscard]] int own_directory_open(const char* path);

// Opens the own file at `path`; a relative path starts in `directory` (AT_FDCWD: the
// working directory). With O_CREAT in `flags` a missing file is created with `mode`. A
// symbolic link is followed if this process's user made it. Never blocks, not even on a
// FIFO without a reader. `*status` receives the result of fstat. Returns the descriptor,
// or -1 with errno: ELOOP for another user's link, EACCES for another user's file, EMLINK
// for a file with several names, EINVAL for anything but a plain file, or open()'s.
[[nodiscard]] int own_file_open(int directory, const char* path, int flags, mode_t mode,
                                struct stat* status);

// Resolves the links that start at `path`; `path` itself if it is not a link. False with
// errno when one of them is another user's. `directory` as above.
[[nodiscard]] bool own_file_resolve(int directory, const char* path, char (&target)[PATH_MAX]);

// Whether others may have the open own file open too: `status` shows permissions beyond
// `mode`. The function reduces them to `mode`, but whoever opened the file before can
// still read it: make a new one. False on a filesystem without modes.
[[nodiscard]] bool own_file_was_shared(int file, mode_t mode, const struct stat& status);
