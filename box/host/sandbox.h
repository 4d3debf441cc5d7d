// The file system of a box: built from the host's own by the box's first process, in mount, pid
// and network namespaces of its own, and gone with them.
//
//   /usr /etc /var        the host's, under an overlay that takes every change
//   /dev                  new: null, zero, full, random, urandom, tty, terminals of its own, shm
//   /tmp /run /nvram /etc/Wireless   new and empty
//   /proc /sys            new; /proc/bus/pci/devices lists the board's cards, and see
//                         kernel_files.h
//   /scripts              new; see firmware.h
//   everything else       the host's own, read-only
//
// The working copy around the current directory, or else that directory, and the directory of the
// program are the host's own, readable and writable, unless they are directories of the system. In
// /proc and /sys only what belongs to the box can be written. Programs in the box have no
// capability to change the clock, load modules, reach the hardware or restart the machine.
#pragma once

#include <string>

struct sandbox_plan {
  std::string program_dir;  // directory of gwbox
  std::string work_dir;     // current directory of whoever started the box
  std::string pci_devices;  // text of /proc/bus/pci/devices
};

constexpr const char* kSandboxHostName = "gateway";
constexpr const char* kSandboxRunDir = "/run/gwbox";  // the box's own files, inside
constexpr const char* kSandboxPortmap = "/usr/sbin/portmap";

// Builds the tree and makes it the calling process's root. The working directory is the plan's if
// that is visible inside, else "/". Reports what failed and returns false.
[[nodiscard]] bool sandbox_enter(const sandbox_plan& plan);
