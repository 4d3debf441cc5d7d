#pragma once

// What other users have put in the places of the daemon's files in /tmp.

// Removes what another user made at `path`, and a plain file of ours that somebody
// gave a second name, with a message. A directory that is not empty is moved into a
// new one, /tmp/.planted.*. Returns whether something was removed. A link of ours, and
// what is no plain file though ours, is left.
bool planted_remove(const char* path);

// Has a command line that writes to `path` find a plain file of ours there, so that
// it neither reaches another file nor waits for a FIFO's reader: whatever else is
// there is replaced with a message by an empty file, which nobody else can replace or
// take away. `keep_link`: a symbolic link of ours may stay. False when something else
// is there still: the command must not run.
[[nodiscard]] bool planted_make_way(const char* path, bool keep_link);

// After the command: removes the file when it is still empty.
void planted_give_up(const char* path);
