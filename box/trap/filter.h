// Which system calls of a box are handled by its driver model instead of the kernel.
//
// The box's first process installs the filter on itself before it starts anything, so that every
// process in the box inherits it. That process must never make a trapped call itself: nobody would
// answer it.
#pragma once

struct filter_options {
  bool answer_setgroups;  // setgroups succeeds without doing anything
};

// Installs the filter on the calling process and returns the descriptor on which trapped calls
// arrive, or -1 after a report.
[[nodiscard]] int filter_install(const filter_options& options);
