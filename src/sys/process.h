#pragma once

// Whether a live process of our own user has the name. Another user's process of that
// name does not count.
[[nodiscard]] bool process_runs(const char* name);

// Makes sure that descriptors 0 to 2 are open, on /dev/null if necessary, so that no
// socket or file of the daemon becomes standard output.
void reserve_standard_streams();
