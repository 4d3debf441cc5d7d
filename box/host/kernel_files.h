// The parts of /sys and /proc that the box replaces, so that a gateway's software finds its own
// hardware there and cannot reach the host's:
//
//   /sys/bus/pci       power switches of the slots, rescan, removal: writes are recorded
//   /sys/module        the loaded modules, see modules.h
//   /proc/irq          the interrupts of the board, their affinities writable and recorded
//   /proc/interrupts   a table with these interrupts
//   /proc/modules      the loaded modules
//
// Where the kernel lacks /sys/module or one of those under /proc, there is no place to show it. The
// box goes on without it and writes a line to kKernelFilesNotes.
#pragma once

#include "host/sysfs.h"

constexpr const char* kKernelFilesNotes = "/run/gwbox/notes";

// Inside the box, as its first process. Reports what failed.
[[nodiscard]] bool kernel_files_install(sysfs_state& recorded);
