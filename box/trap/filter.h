// Which system calls of a box stop until the box has looked at them: those that its driver model
// answers instead of the kernel, and those that only tell what goes on.
//
// A thread of the box's first process installs the filter on itself and starts everything else from
// there, so that every process in the box inherits it. The thread that answers has no filter: it
// could not answer itself.
#pragma once

struct filter_options {
  bool answer_setgroups;  // setgroups succeeds without doing anything
};

// Installs the filter on the calling thread and returns the descriptor on which trapped calls
// arrive, or -1 after a report.
[[nodiscard]] int filter_install(const filter_options& options);
