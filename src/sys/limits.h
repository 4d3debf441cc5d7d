#pragma once

// Limits that the kernel puts on this process.

// Raises the limit of open descriptors, for this process and its children, to the hard
// limit, at most 16384. The kernel has some 28,000 ports for unbound sockets, and these
// must not run out first.
void set_descriptor_limit();

// Makes a refused write fail instead of killing the process: to a pipe without a reader,
// or beyond the maximum file size. Child programs get the signals' default actions.
void survive_failed_writes();
