// Puts a scenario into effect around the radios.
#include <algorithm>

#include "base/journal.h"
#include "driver/parts.h"

void driver_take_counters(driver_bss& bss, const scenario_bss& given) {
  std::copy(std::begin(given.counters), std::end(given.counters), bss.counters);
  bss.ssid_rx_bytes = given.ssid_rx_bytes;
  bss.ssid_tx_bytes = given.ssid_tx_bytes;
}

static bool same(const scenario_bss& a, const scenario_bss& b) {
  return std::equal(std::begin(a.counters), std::end(a.counters), b.counters) &&
         a.ssid_rx_bytes == b.ssid_rx_bytes && a.ssid_tx_bytes == b.ssid_tx_bytes;
}

// Sets the counters of a BSS whose scenario values have changed. The others keep growing.
static void take_bss(driver_state& state, const std::vector<scenario_bss>& before) {
  for (const scenario_bss& given : state.around.bss) {
    auto was = std::find_if(before.begin(), before.end(),
                            [&](const scenario_bss& b) { return b.bss == given.bss; });
    if (was == before.end() || !same(*was, given))
      driver_take_counters(state.bss[given.bss], given);
  }
}

static bool same(const scenario_traffic& a, const scenario_traffic& b) {
  return a.rx_bytes == b.rx_bytes && a.tx_bytes == b.tx_bytes && a.rx_packets == b.rx_packets &&
         a.tx_packets == b.tx_packets && a.tx_failures == b.tx_failures;
}

// True if both make the station be at the same place at the same time.
static bool same_place(const scenario_station& a, const scenario_station& b) {
  return a.bss == b.bss && a.others == b.others && a.by_wps == b.by_wps && a.appears == b.appears &&
         a.leaves == b.leaves;
}

static driver_station take_station(driver_state& state, const scenario_station& given) {
  driver_station station = {};
  station.preferred = -1;
  station.returns_us = -1;
  if (const driver_station* known = driver_find_station(state, given.mac)) station = *known;
  if (!same(station.is.start, given.start)) station.traffic = given.start;
  if (station.is.bss != given.bss) station.preferred = -1;
  if (!same_place(station.is, given)) station.obstacles.fill(kObstacleUnknown);
  station.is = given;
  return station;
}

static void take_stations(driver_state& state, const std::vector<scenario_station>& given) {
  std::vector<driver_station> stations;
  for (const scenario_station& station : given)
    stations.push_back(take_station(state, station));
  stations.swap(state.stations);
  for (driver_station& before : stations) {
    if (before.associated && !driver_find_station(state, before.is.mac)) {
      driver_leave(state, before, "scenario");
    }
  }
}

void driver_take_scenario(driver_state& state, const scenario& around) {
  std::vector<scenario_bss> before = state.around.bss;
  int channels[kScenarioRadios];
  for (int radio = 0; radio < kScenarioRadios; ++radio)
    channels[radio] = state.around.radios[radio].channel;
  state.around = around;
  if (state.clock.speed != around.speed) {
    clock_set_speed(state.clock, around.speed, state.now_us, journal_now_us());
  }
  take_stations(state, around.stations);
  take_bss(state, before);
  for (int radio = 0; radio < kScenarioRadios; ++radio) {
    int channel = around.radios[radio].channel;
    if (channel != 0 && channel != channels[radio]) state.radios[radio].channel = channel;
  }
  driver_settle(state);
}
