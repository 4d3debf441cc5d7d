#pragma once

#include <limits.h>
#include <sys/stat.h>
#include <sys/types.h>

// Files with fixed names in directories where everybody may make files, as in /tmp.
// An own file is a plain file of this process's user with one name: what another
// user made, or gave a second name, may be read by that user or be a different file.

// The user that this process was started as: root, on a box.
[[nodiscard]] uid_t own_user();

// Opens the directory at `path`, for the names in it. A symbolic link is followed when
// this process's user made it. Returns the descriptor (O_PATH), or -1 with errno: ELOOP
// for the link of another user, or what open() says.
[[nodiscard]] int own_directory_open(const char* path);

// Opens the own file at `path`, which begins in `directory` (AT_FDCWD: in the working
// directory) when it is relative; with O_CREAT in `flags` one that is missing is made
// with `mode`. A symbolic link is followed when this process's user made it. Never
// blocks, not even on a FIFO without a reader. `*status` receives what fstat tells.
// Returns the descriptor, or -1 with errno: ELOOP for the link of another user, EACCES
// for a file of another user, EMLINK for one with several names, EINVAL for what is no
// plain file, or what open() says.
[[nodiscard]] int own_file_open(int directory, const char* path, int flags, mode_t mode,
                                struct stat* status);

// Where the links lead that begin at `path`; `path` itself when it is none. False with
// errno when one of them is another user's. `directory` as above.
[[nodiscard]] bool own_file_resolve(int directory, const char* path, char (&target)[PATH_MAX]);

// Whether others may have the open own file in their hands: `status` says that more
// people may read or write it than `mode` lets. It has that mode then, but who opened it
// before still reads it: make a new one. False on a filesystem without modes.
[[nodiscard]] bool own_file_was_shared(int file, mode_t mode, const struct stat& status);
