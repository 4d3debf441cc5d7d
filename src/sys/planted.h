#pragma once

// What other users have put where the daemon's files in /tmp belong.

// Removes, with a message, what another user made at `path`, or a plain file of ours that
// someone gave a second name. A directory that is not empty is moved into a new one,
// /tmp/.planted.*. Our own links and special files stay. Returns whether something was
// removed.
bool planted_remove(const char* path);

// Prepares for a command line that writes to `path`: it must not reach another file or
// wait for a FIFO's reader. Anything but a plain file of ours is replaced, with a
// message, by an empty one that nobody else can replace or remove. `keep_link`: a
// symbolic link of ours may stay. False when something else is still there: do not run
// the command.
[[nodiscard]] bool planted_make_way(const char* path, bool keep_link);

// Call after the command: removes the file if it is still empty.
void planted_give_up(const char* path);
