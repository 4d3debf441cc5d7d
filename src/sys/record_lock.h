#pragma once

// The single-instance test's lock.

// Opens a lock file as open_lock_file does, a new one for this user alone, tries a
// POSIX write lock over all of it, truncates it and closes it again, which releases
// the lock. Returns whether the lock was granted; a file that cannot be opened is
// reported. One that another user has locked is removed with a message and made anew.
[[nodiscard]] bool try_record_lock(const char* path);
