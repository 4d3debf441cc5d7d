#include "gateway/pending.h"

#include <cctype>
#include <cstdlib>

#include <nlohmann/json.hpp>

#include "base/files.h"
#include "base/profile_text.h"
#include "host/profiles.h"

using json = nlohmann::ordered_json;

// Position of the BSS within its radio that the value is for: SSID1 is for the first.
static size_t position_of(const profile_change& change, std::string& name) {
  name = change.key;
  if (change.field >= 0) return static_cast<size_t>(change.field);
  size_t digits = name.size();
  while (digits > 0 && isdigit(static_cast<unsigned char>(name[digits - 1])))
    --digits;
  int number = atoi(name.c_str() + digits);
  if (number > 0) name.resize(digits);
  return number > 0 ? static_cast<size_t>(number - 1) : 0;
}

// Whether the interface was told the value since, by a text of the same name.
static bool was_told(const driver_state& driver, int first, const profile_change& change) {
  std::string name;
  size_t position = position_of(change, name);
  if (position >= kBoardFirst5ghz) return false;
  const driver_bss& bss = driver.bss[static_cast<size_t>(first) + position];
  auto told = bss.settings.find(name);
  return told != bss.settings.end() && told->second == change.after;
}

static void add(const trap_state& trap, int radio, std::vector<pending_change>& pending) {
  int first = radio == 0 ? 0 : kBoardFirst5ghz;
  const char* file = radio == 0 ? kProfile24 : kProfile5;
  if (!trap.driver.bss[first].up) return;
  auto now = profile_text_read(profile_file_read(file));
  for (const auto& change : profile_value_changes(trap.driver.radios[radio].profile, now)) {
    if (!was_told(trap.driver, first, change)) pending.push_back({file, first, change});
  }
}

std::vector<pending_change> pending_changes(const trap_state& trap) {
  std::vector<pending_change> pending;
  for (int radio = 0; radio < kScenarioRadios; ++radio)
    add(trap, radio, pending);
  return pending;
}

std::string pending_json(const trap_state& trap) {
  json list = json::array();
  for (const pending_change& pending : pending_changes(trap)) {
    json entry = {{"file", pending.file},
                  {"interface", "ra" + std::to_string(pending.radio)},
                  {"key", pending.change.key}};
    if (pending.change.field >= 0) entry["field"] = pending.change.field;
    list.push_back(entry);
  }
  return list.dump(-1, ' ', false, json::error_handler_t::replace);
}
