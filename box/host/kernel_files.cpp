#include "host/kernel_files.h"

#include <sys/mount.h>
#include <unistd.h>
#include <cerrno>
#include <cstdio>

#include "base/files.h"
#include "base/report.h"
#include "host/modules.h"
#include "host/sandbox.h"

static const std::string kPciDirectory = "/sys/bus/pci";
static const std::string kIrqDirectory = "/proc/irq";
static constexpr const char* kSlots[] = {"0000:02:00.0", "0000:03:00.0"};

// Interrupts of the boards. udma1 is that of the packets.
static constexpr struct {
  int number;
  const char* name;
} kInterrupts[] = {{30, "udma0"}, {31, "udma1"}, {65, "pcie0"}, {66, "pcie1"}};

static bool mount_new(const std::string& path) {
  if (mount("tmpfs", path.c_str(), "tmpfs", MS_NOSUID | MS_NODEV, "mode=0755") == 0) return true;
  return report_errno(nullptr, "mount tmpfs on %s of the box", path.c_str());
}

static bool note(std::string& notes, const std::string& text) {
  notes += text + "\n";
  return true;
}

// A kernel without a PCI bus has no such directory; then all of /sys/bus is replaced.
static bool mount_pci() {
  if (access(kPciDirectory.c_str(), F_OK) == 0) return mount_new(kPciDirectory);
  return mount_new("/sys/bus") && directory_make(kPciDirectory);
}

static bool make_pci_files(sysfs_state& recorded) {
  for (const char* slot : kSlots) {
    std::string power = kPciDirectory, device = kPciDirectory;
    power.append("/slots/").append(slot);
    device.append("/devices/").append(slot);
    if (!directory_make(power) || !sysfs_make_pipe(recorded, power + "/power") ||
        !directory_make(device) || !sysfs_make_pipe(recorded, device + "/remove")) {
      return false;
    }
  }
  return sysfs_make_pipe(recorded, kPciDirectory + "/rescan");
}

static bool make_irq_files(sysfs_state& recorded, std::string& notes) {
  if (access(kIrqDirectory.c_str(), F_OK) != 0) {
    return note(notes, "this kernel has no /proc/irq: affinities cannot be written");
  }
  if (!mount_new(kIrqDirectory)) return false;
  for (const auto& interrupt : kInterrupts) {
    std::string dir = kIrqDirectory + "/" + std::to_string(interrupt.number);
    if (!directory_make(dir) || !sysfs_make_plain(recorded, dir + "/smp_affinity", "3\n")) {
      return false;
    }
  }
  return true;
}

// Writes TEXT to the box's own file SOURCE and shows that at PATH.
static bool show(const std::string& source, const std::string& text, const std::string& path,
                 std::string& notes) {
  if (!file_write(source, text)) return false;
  if (access(path.c_str(), F_OK) != 0) {
    return note(notes, "this kernel has no " + path + ": it is missing in the box, too");
  }
  if (mount(source.c_str(), path.c_str(), nullptr, MS_BIND, nullptr) == 0) return true;
  return report_errno(nullptr, "show the box's own %s", path.c_str());
}

static std::string interrupt_table() {
  std::string text = "           CPU0       CPU1       \n";
  char line[80];
  for (const auto& interrupt : kInterrupts) {
    snprintf(line, sizeof line, "%3d: %10d %10d   MIPS GIC  %2d  %s\n", interrupt.number,
             interrupt.number * 97, 0, interrupt.number + 7, interrupt.name);
    text += line;
  }
  return text;
}

bool kernel_files_install(sysfs_state& recorded) {
  std::string notes, interrupts = std::string(kSandboxRunDir) + "/proc_interrupts";
  if (!sysfs_open(recorded) || !mount_pci() || !make_pci_files(recorded) ||
      !make_irq_files(recorded, notes) ||
      !show(interrupts, interrupt_table(), "/proc/interrupts", notes) ||
      !show(kModulesProcText, "", "/proc/modules", notes)) {
    return false;
  }
  if (access(kModulesSysDir, F_OK) != 0) {
    note(notes, "this kernel has no /sys/module: rmmod(8) finds no module in the box");
  } else if (!mount_new(kModulesSysDir)) {
    return false;
  }
  return notes.empty() || file_write(kKernelFilesNotes, notes);
}
