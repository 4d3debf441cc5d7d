// The state of the radios at the start and after a module is loaded.
#include <cstdlib>

#include <algorithm>

#include "driver/parts.h"

static driver_radio fresh_radio(const driver_radio& before) {
  driver_radio radio = {};
  radio.on = true;
  radio.survey_us = -1;
  std::copy(std::begin(before.eeprom), std::end(before.eeprom), radio.eeprom);
  return radio;
}

void driver_init(driver_state& state, const board& hardware, const scenario& around) {
  state = {};
  state.hardware = &hardware;
  state.clock.speed = around.speed;
  for (driver_radio& radio : state.radios)
    radio = fresh_radio(radio);
  driver_take_scenario(state, around);
}

void driver_init(driver_state& state, const board& hardware) {
  scenario around;
  if (!scenario_load(kScenarioDefault, around)) abort();
  driver_init(state, hardware, around);
}

void driver_radio_loaded(driver_state& state, int first_n, int64_t now_us) {
  driver_advance(state, now_us);
  int radio = driver_radio_of(first_n);
  state.radios[radio] = fresh_radio(state.radios[radio]);
  for (int n = first_n; n < first_n + kDriverRadioBsss; ++n)
    state.bss[n] = {};
  for (const scenario_bss& given : state.around.bss) {
    if (driver_radio_of(given.bss) == radio) driver_take_counters(state.bss[given.bss], given);
  }
  std::erase_if(state.blacklist, [&](const auto& entry) { return entry.radio == radio; });
  driver_settle(state);
}
