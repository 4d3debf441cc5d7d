// What the box replaces of /sys and /proc, so that a gateway's software finds its own hardware
// there and cannot reach the host's:
//
//   /sys/bus/pci       power switches of the slots, rescan, removal: writes are recorded
//   /sys/module        the loaded modules, see modules.h
//   /proc/irq          the interrupts of the board, their affinities writable and recorded
//   /proc/interrupts   a table with these interrupts
//   /proc/modules      the loaded modules
//
// A kernel that lacks one of the files under /proc leaves no place to show it at. That is written
// to kKernelFilesNotes, a line for each, and the box goes on without.
#pragma once

#include "host/sysfs.h"

constexpr const char* kKernelFilesNotes = "/run/gwbox/notes";

// Inside the box, as its first process. Reports what failed.
[[nodiscard]] bool kernel_files_install(sysfs_state& recorded);
