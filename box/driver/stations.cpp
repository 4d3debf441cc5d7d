// Tables of the associated stations and the byte counters.
#include <cstring>

#include "driver/layout.h"
#include "driver/parts.h"

static int64_t seconds_since(const driver_state& state, int64_t time_us) {
  return (state.now_us - time_us) / 1000000;
}

// 32-bit counters wrap around.
static uint32_t counter(double value) {
  return static_cast<uint32_t>(static_cast<uint64_t>(value));
}

static layout_station station_entry(const driver_state& state, const driver_station& station) {
  layout_station entry = {};
  entry.bss = static_cast<uint8_t>(station.bss % kDriverRadioBsss);
  memcpy(entry.mac, station.is.mac.data(), sizeof entry.mac);
  entry.aid = station.aid;
  entry.power_save = station.is.asleep;
  for (size_t i = 0; i < station.is.rssi.size() && i < sizeof entry.rssi; ++i)
    entry.rssi[i] = static_cast<int8_t>(station.is.rssi[i]);
  entry.connected_s = static_cast<uint32_t>(seconds_since(state, station.since_us));
  entry.tx_rate = driver_rate_word(station.is.tx_rate, driver_is_dual_band_chip(state));
  entry.rx_rate = driver_rate_word(station.is.rx_rate, driver_is_dual_band_chip(state));
  entry.tx_packets = counter(station.traffic.tx_packets);
  entry.tx_failures = counter(station.traffic.tx_failures);
  return entry;
}

int driver_query_stations(driver_state& state, driver_request& r) {
  layout_stations table = {};
  for (const driver_station* station : driver_associated(state, driver_radio_of(r.bss)))
    table.entries[table.count++] = station_entry(state, *station);
  driver_decode(r, "stations", std::to_string(table.count));
  size_t used = offsetof(layout_stations, entries) + table.count * sizeof(layout_station);
  return driver_answer(r, &table, sizeof table, used);
}

static layout_traffic traffic_entry(const driver_state& state, const driver_station& station) {
  layout_traffic entry = {};
  entry.bss = static_cast<uint8_t>(station.bss % kDriverRadioBsss);
  memcpy(entry.mac, station.is.mac.data(), sizeof entry.mac);
  entry.phy = static_cast<uint8_t>(
      driver_rate_word(station.is.tx_rate, driver_is_dual_band_chip(state)) >> 13);
  entry.rx_bytes = counter(station.traffic.rx_bytes);
  entry.tx_bytes = counter(station.traffic.tx_bytes);
  entry.rx_packets = counter(station.traffic.rx_packets);
  entry.tx_packets = counter(station.traffic.tx_packets);
  return entry;
}

int driver_query_traffic(driver_state& state, driver_request& r) {
  layout_traffics table = {};
  for (const driver_station* station : driver_associated(state, driver_radio_of(r.bss)))
    table.entries[table.count++] = traffic_entry(state, *station);
  driver_decode(r, "stations", std::to_string(table.count));
  size_t used = offsetof(layout_traffics, entries) +
                static_cast<size_t>(table.count) * sizeof(layout_traffic);
  return driver_answer(r, &table, sizeof table, used);
}

int driver_query_counters(driver_state& state, driver_request& r) {
  layout_counters counters;
  for (int i = 0; i < kScenarioBssCounters; ++i)
    counters.words[i] = counter(state.bss[r.bss].counters[i]);
  return driver_answer(r, &counters, sizeof counters, sizeof counters);
}

// Bytes since the last such query, for all BSSs of the radio up to the last one that is up. Callers
// add them up.
int driver_query_ssids(driver_state& state, driver_request& r) {
  layout_ssids table = {};
  int first = driver_first_of(driver_radio_of(r.bss));
  for (int i = 0; i < kLayoutSsids; ++i) {
    const driver_bss& bss = state.bss[first + i];
    if (!bss.up) continue;
    layout_ssid& entry = table.entries[i];
    entry.rx_bytes = counter(bss.ssid_rx_bytes);
    entry.tx_bytes = counter(bss.ssid_tx_bytes);
    bss.ssid.copy(entry.ssid, sizeof entry.ssid - 1);
    table.count = i + 1;
  }
  driver_decode(r, "ssids", std::to_string(table.count));
  size_t used =
      offsetof(layout_ssids, entries) + static_cast<size_t>(table.count) * sizeof(layout_ssid);
  int status = driver_answer(r, &table, sizeof table, used);
  for (int i = 0; status == 0 && i < table.count; ++i) {
    state.bss[first + i].ssid_rx_bytes -= table.entries[i].rx_bytes;
    state.bss[first + i].ssid_tx_bytes -= table.entries[i].tx_bytes;
  }
  return status;
}
