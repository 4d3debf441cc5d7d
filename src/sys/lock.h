#pragma once

#include <sys/stat.h>
#include <sys/types.h>

// Advisory flock() locks on lock files, shared with every other process on the
// box that follows the same convention. Blocking, without a time-out.

// flock() with LOCK_EX, LOCK_SH and LOCK_UN; 0 or -1 with errno.
[[nodiscard]] int write_lock(int fd);
[[nodiscard]] int read_lock(int fd);
[[nodiscard]] int unlock(int fd);

// Opens a lock file, an own one, see diag/own_file.h for `status` and errno; makes it
// with `mode` when it is missing. What another user made in its place, or gave a
// second name, is removed with a message and made anew. A descriptor, or -1.
[[nodiscard]] int open_lock_file(const char* path, mode_t mode, struct stat* status);

// Opens the lock file at `path` so, creating it when it is missing, and takes the
// exclusive or the shared lock. Returns the descriptor, to be given to funlock,
// or 0 after a message on standard error: the caller then goes on unlocked.
[[nodiscard]] int fwrite_lock(const char* path);
[[nodiscard]] int fread_lock(const char* path);

// Releases and closes a descriptor of the above; 0 or less is ignored.
void funlock(int fd);
