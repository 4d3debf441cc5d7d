// The state of the radios: fresh, with a scenario around it, as interfaces go up and down.
#include <stdlib.h>

#include <algorithm>

#include "base/journal.h"
#include "driver/parts.h"

static driver_radio fresh_radio(const driver_radio& before) {
  driver_radio radio = {};
  radio.on = true;
  radio.survey_us = -1;
  std::copy(std::begin(before.eeprom), std::end(before.eeprom), radio.eeprom);
  return radio;
}

// What a scenario adds to the counters of a BSS.
static void take_counters(driver_bss& bss, const scenario_bss& given) {
  std::copy(std::begin(given.counters), std::end(given.counters), bss.counters);
  bss.ssid_rx_bytes = given.ssid_rx_bytes;
  bss.ssid_tx_bytes = given.ssid_tx_bytes;
}

void driver_init(driver_state& state, const board& hardware, const scenario& around) {
  state = {};
  state.hardware = &hardware;
  state.clock.speed = around.speed;
  for (driver_radio& radio : state.radios)
    radio = fresh_radio(radio);
  driver_take_scenario(state, around, 0);
}

void driver_init(driver_state& state, const board& hardware) {
  scenario around;
  if (!scenario_load(kScenarioDefault, around)) abort();
  driver_init(state, hardware, around);
}

static bool same(const scenario_bss& a, const scenario_bss& b) {
  return std::equal(std::begin(a.counters), std::end(a.counters), b.counters) &&
         a.ssid_rx_bytes == b.ssid_rx_bytes && a.ssid_tx_bytes == b.ssid_tx_bytes;
}

// Counters are set where the scenario's values for them are new, and go on growing elsewhere.
static void take_bss(driver_state& state, const std::vector<scenario_bss>& before) {
  for (const scenario_bss& given : state.around.bss) {
    auto was = std::find_if(before.begin(), before.end(),
                            [&](const scenario_bss& b) { return b.bss == given.bss; });
    if (was == before.end() || !same(*was, given)) take_counters(state.bss[given.bss], given);
  }
}

static bool same(const scenario_traffic& a, const scenario_traffic& b) {
  return a.rx_bytes == b.rx_bytes && a.tx_bytes == b.tx_bytes && a.rx_packets == b.rx_packets &&
         a.tx_packets == b.tx_packets && a.tx_failures == b.tx_failures;
}

static driver_station take_station(driver_state& state, const scenario_station& given) {
  driver_station station = {};
  station.preferred = -1;
  station.returns_us = -1;
  if (const driver_station* known = driver_find_station(state, given.mac)) station = *known;
  if (!same(station.is.start, given.start)) station.traffic = given.start;
  if (station.is.bss != given.bss) station.preferred = -1;
  station.is = given;
  return station;
}

void driver_take_scenario(driver_state& state, const scenario& around, int64_t now_us) {
  driver_advance(state, now_us);
  std::vector<scenario_bss> before = state.around.bss;
  int channels[kScenarioRadios];
  for (int radio = 0; radio < kScenarioRadios; radio++)
    channels[radio] = state.around.radios[radio].channel;
  std::vector<driver_station> stations;
  for (const scenario_station& given : around.stations)
    stations.push_back(take_station(state, given));
  state.around = around;
  if (state.clock.speed != around.speed) {
    clock_set_speed(state.clock, around.speed, state.now_us, journal_now_us());
  }
  state.stations = stations;
  take_bss(state, before);
  for (int radio = 0; radio < kScenarioRadios; radio++) {
    int channel = around.radios[radio].channel;
    if (channel != 0 && channel != channels[radio]) state.radios[radio].channel = channel;
  }
  driver_settle(state);
}

void driver_radio_loaded(driver_state& state, int first_n, int64_t now_us) {
  driver_advance(state, now_us);
  int radio = driver_radio_of(first_n);
  state.radios[radio] = fresh_radio(state.radios[radio]);
  for (int n = first_n; n < first_n + kDriverRadioBsss; n++)
    state.bss[n] = {};
  for (const scenario_bss& given : state.around.bss) {
    if (driver_radio_of(given.bss) == radio) take_counters(state.bss[given.bss], given);
  }
  std::erase_if(state.blacklist, [&](const auto& entry) { return entry.radio == radio; });
  driver_settle(state);
}

driver_station* driver_find_station(driver_state& state, const mac_address& mac) {
  for (driver_station& station : state.stations) {
    if (station.is.mac == mac) return &station;
  }
  return nullptr;
}

std::vector<const driver_station*> driver_associated(const driver_state& state, int radio) {
  std::vector<const driver_station*> found;
  for (const driver_station& station : state.stations) {
    if (station.associated && (radio < 0 || driver_radio_of(station.bss) == radio)) {
      found.push_back(&station);
    }
  }
  std::sort(found.begin(), found.end(),
            [](const driver_station* a, const driver_station* b) { return a->aid < b->aid; });
  return found;
}
