#pragma once

#include <sys/stat.h>
#include <sys/types.h>

// Advisory flock() locks on lock files, shared with every other process on the box that
// uses them. They block without a time-out.

// flock() with LOCK_EX, LOCK_SH and LOCK_UN; 0, or -1 with errno.
[[nodiscard]] int write_lock(int fd);
[[nodiscard]] int read_lock(int fd);
[[nodiscard]] int unlock(int fd);

// Opens a lock file, which must be our own: diag/own_file.h explains that, `status`
// and errno. Creates it with `mode` when it is missing. A file that another user made, or
// gave a second name, is removed with a message and created again. A descriptor, or -1.
[[nodiscard]] int open_lock_file(const char* path, mode_t mode, struct stat* status);

// Opens such a lock file at `path` and takes the exclusive or the shared lock. Returns
// the descriptor, to be released with funlock, or 0 after a message on standard error;
// the caller then continues without the lock.
[[nodiscard]] int fwrite_lock(const char* path);
[[nodiscard]] int fread_lock(const char* path);

// Unlocks and closes such a descriptor; 0 or less is ignored.
void funlock(int fd);
