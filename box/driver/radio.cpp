// What a radio measures and may do: channel load, operating class, power limits, EEPROM.
#include <cctype>
#include <cerrno>
#include <cstdlib>

#include "driver/layout.h"
#include "driver/parts.h"

int driver_query_load(driver_state& state, driver_request& r) {
  int radio = driver_radio_of(r.bss);
  if (!state.radios[radio].load_on) return -EFAULT;
  layout_load load = {};
  load.period = state.around.radios[radio].load_period;
  load.busy = state.around.radios[radio].load_busy;
  driver_decode(r, "period", std::to_string(load.period));
  driver_decode(r, "busy", std::to_string(load.busy));
  return driver_answer(r, &load, sizeof load, sizeof load);
}

struct class_row {
  int first, last;  // channels
  uint32_t number;  // global operating class, 20 MHz
};

static constexpr class_row kClasses[] = {
    {1, 13, 81},     {14, 14, 82},    {36, 48, 115},   {52, 64, 118},
    {100, 144, 121}, {149, 161, 124}, {165, 169, 125},
};

// Callers announce three bytes, one less than the record has; the last one is never needed.
int driver_query_operating_class(driver_state& state, driver_request& r) {
  int radio = driver_radio_of(r.bss);
  uint32_t number = radio == 0 ? 81 : 115;
  for (const class_row& row : kClasses) {
    int channel = state.radios[radio].channel;
    if (channel >= row.first && channel <= row.last) number = row.number;
  }
  driver_decode(r, "class", std::to_string(number));
  return driver_answer(r, &number, sizeof number, sizeof number);
}

static std::vector<scenario_power> limits_of(const driver_state& state, int radio) {
  std::vector<scenario_power> limits = state.around.radios[radio].power;
  if (!limits.empty()) return limits;
  if (radio == 0) {
    for (int channel = 1; channel <= 13; ++channel)
      limits.push_back({channel, 20});
    return limits;
  }
  for (int channel = 36; channel <= 64; channel += 4)
    limits.push_back({channel, 23});
  for (int channel = 100; channel <= 140; channel += 4)
    limits.push_back({channel, 27});
  return limits;
}

template <typename Table>
static int answer_power(driver_request& r, const std::vector<scenario_power>& limits) {
  Table table = {};
  for (const scenario_power& limit : limits) {
    if (table.count == kLayoutPowerMax) break;
    auto& entry = table.entries[table.count++];
    entry.channel = static_cast<uint8_t>(limit.channel);
    entry.dbm = static_cast<uint8_t>(limit.dbm);
  }
  driver_decode(r, "channels", std::to_string(table.count));
  size_t used =
      offsetof(Table, entries) + static_cast<size_t>(table.count) * sizeof table.entries[0];
  return driver_answer(r, &table, sizeof table, used);
}

int driver_query_power(driver_state& state, driver_request& r) {
  std::vector<scenario_power> limits = limits_of(state, driver_radio_of(r.bss));
  if (driver_is_dual_band_chip(state)) return answer_power<layout_powers_large>(r, limits);
  return answer_power<layout_powers_small>(r, limits);
}

static bool parse_hex(const std::string& text, unsigned long highest, unsigned long& number) {
  if (text.empty() || !isxdigit(static_cast<unsigned char>(text[0]))) return false;
  char* end = nullptr;
  number = strtoul(text.c_str(), &end, 16);
  return *end == 0 && number <= highest;
}

// "52" reads the word at that address, "52=0002" writes it; commas separate several. The answer has
// a line for each, after an empty one, since tools print a name first.
int driver_do_e2p(driver_state& state, driver_request& r) {
  int owner = driver_is_dual_band_chip(state) ? 0 : driver_radio_of(r.bss);
  uint16_t* words = state.radios[owner].eeprom;
  std::string rest = std::string(r.input.c_str()) + ",", answer = "\n";
  for (size_t comma; (comma = rest.find(',')) != std::string::npos; rest.erase(0, comma + 1)) {
    std::string item = rest.substr(0, comma);
    size_t equals = item.find('=');
    unsigned long at = 0, value = 0;
    if (!parse_hex(item.substr(0, equals), kDriverEepromWords * 2 - 1, at)) return -EINVAL;
    bool writes = equals != std::string::npos;
    if (writes && !parse_hex(item.substr(equals + 1), UINT16_MAX, value)) return -EINVAL;
    if (writes) words[at / 2] = static_cast<uint16_t>(value);
    char line[32];
    snprintf(line, sizeof line, "[0x%04lX]:0x%04X\n", at, words[at / 2]);
    answer += line;
  }
  if (answer.size() >= kDriverTextMax) return -E2BIG;
  // The caller's buffer is as large as the private list says, however long the request in it was.
  r.output = answer;
  r.output.push_back('\0');
  r.has_answer_length = true;
  r.answer_length = static_cast<uint16_t>(r.output.size());
  return 0;
}
