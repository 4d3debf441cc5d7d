// The driver's kernel modules: which exist, which are loaded, and what loading one does to the box:
// its radio's interfaces appear, and /sys/module and /proc/modules show it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/board.h"

struct module_row {
  const char* name;
  unsigned card;  // id of the PCI card that it drives
  int first;      // its interfaces are ra<first> and up
  int count;
};

struct modules_state {
  const board* hardware;
  std::vector<const module_row*> loaded;  // oldest first
};

constexpr int kModulesMax = 3;
constexpr const char* kModulesProcText = "/run/gwbox/proc_modules";  // shown as /proc/modules
constexpr const char* kModulesSysDir = "/sys/module";

// All modules of the gateway's software; ROW from 0 to kModulesMax - 1.
const module_row& modules_row(int row);

// The module with that name, or null.
const module_row* modules_find(std::string_view name);

// True when the board has the card that the module drives.
bool modules_fits(const module_row& module, const board& hardware);

// These load and unload a module; 0 or a negative errno, as from the kernel.
[[nodiscard]] int modules_load(modules_state& state, const module_row& module);
[[nodiscard]] int modules_unload(modules_state& state, const module_row& module);
