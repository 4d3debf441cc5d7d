#pragma once

// The lock of the single-instance check.

// Opens a lock file as open_lock_file does, a new one accessible to this user alone,
// tries a POSIX write lock on all of it, truncates it and closes it, which releases the
// lock. Returns whether the lock was granted; a file that cannot be opened is reported. A
// file that another user has locked is removed with a message and created again.
[[nodiscard]] bool try_record_lock(const char* path);
