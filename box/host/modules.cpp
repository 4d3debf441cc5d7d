#include "host/modules.h"

#include <sys/stat.h>
#include <unistd.h>
#include <cerrno>

#include <algorithm>

#include "base/files.h"
#include "host/interfaces.h"

static constexpr module_row kRows[] = {
    {"mt7603e_ap", 0x14c37603, 0, 8},
    {"mt7612e_ap", 0x14c37612, 8, 8},
    {"mt7615_ap", 0x14c37615, 0, 16},
};
static_assert(sizeof kRows / sizeof *kRows == kModulesMax);

static constexpr struct {
  const char* name;
  const char* text;
} kAttributes[] = {
    {"initstate", "live\n"}, {"refcnt", "0\n"}, {"coresize", "1572864\n"}, {"taint", "PO\n"}};

const module_row& modules_row(int row) {
  return kRows[row];
}

const module_row* modules_find(std::string_view name) {
  for (const module_row& row : kRows) {
    if (name == row.name) return &row;
  }
  return nullptr;
}

bool modules_fits(const module_row& module, const board& hardware) {
  for (int i = 0; i < hardware.card_count; ++i) {
    if (hardware.cards[i].id == module.card) return true;
  }
  return false;
}

static bool is_loaded(const modules_state& state, const module_row& module) {
  return std::find(state.loaded.begin(), state.loaded.end(), &module) != state.loaded.end();
}

static std::string directory_of(const module_row& module) {
  return std::string(kModulesSysDir) + "/" + module.name;
}

// The newest comes first, as in the kernel's own list. The file is overwritten in place because
// /proc/modules is a bind mount of this very file.
static bool publish_list(const modules_state& state) {
  std::string text;
  for (size_t i = state.loaded.size(); i-- > 0;) {
    text += std::string(state.loaded[i]->name) + " 1572864 0 - Live 0x0000000000000000 (PO)\n";
  }
  return file_write(kModulesProcText, text);
}

static bool publish_entry(const module_row& module) {
  if (access(kModulesSysDir, F_OK) != 0) return true;  // a kernel without modules
  std::string directory = directory_of(module);
  if (!directory_make(directory + "/holders")) return false;
  for (const auto& attribute : kAttributes) {
    if (!file_write(directory + "/" + attribute.name, attribute.text)) return false;
  }
  return true;
}

static void hide_entry(const module_row& module) {
  std::string directory = directory_of(module);
  for (const auto& attribute : kAttributes)
    unlink((directory + "/" + attribute.name).c_str());
  rmdir((directory + "/holders").c_str());
  rmdir(directory.c_str());
}

int modules_load(modules_state& state, const module_row& module) {
  if (is_loaded(state, module)) return -EEXIST;
  if (!modules_fits(module, *state.hardware)) return -ENODEV;
  if (!net_make_radios(module.first, module.count) || !publish_entry(module)) {
    static_cast<void>(net_remove_radios(module.first));
    hide_entry(module);
    return -ENOMEM;
  }
  state.loaded.push_back(&module);
  static_cast<void>(publish_list(state));  // reported; the module is loaded anyway
  return 0;
}

int modules_unload(modules_state& state, const module_row& module) {
  if (!is_loaded(state, module)) return -ENOENT;
  if (!net_remove_radios(module.first)) return -EBUSY;
  std::erase(state.loaded, &module);
  hide_entry(module);
  static_cast<void>(publish_list(state));
  return 0;
}
