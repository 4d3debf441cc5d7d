// Stations that probe without being associated: the last four probes of each, in a ring.
#include <cerrno>
#include <cstring>

#include "driver/layout.h"
#include "driver/parts.h"

int driver_query_nonassoc_capable(driver_state& state, driver_request& r) {
  if (!state.around.radios[driver_radio_of(r.bss)].nonassoc) return -EOPNOTSUPP;
  int32_t capable = 1;
  return driver_answer(r, &capable, sizeof capable, sizeof capable);
}

int driver_set_nonassoc(driver_state& state, driver_request& r) {
  int radio = driver_radio_of(r.bss);
  uint8_t enable = 0;
  if (!state.around.radios[radio].nonassoc) return -EOPNOTSUPP;
  int status = driver_take(r, &enable, sizeof enable);
  if (status != 0) return status;
  driver_decode(r, "enabled", std::to_string(enable));
  state.radios[radio].nonassoc_on = enable != 0;
  return 0;
}

static int watch(driver_state& state, int radio, driver_request& r) {
  uint8_t bytes[6];
  int status = driver_take(r, bytes, sizeof bytes);
  if (status != 0) return status;
  driver_decode(r, "watch", mac_text(mac_at(bytes)));
  std::vector<mac_address>& watched = state.radios[radio].watched;
  std::erase(watched, mac_at(bytes));
  if (watched.size() == kLayoutNonassoc) watched.erase(watched.begin());
  watched.push_back(mac_at(bytes));
  return 0;
}

static layout_nonassoc entry_of(const scenario_nonassoc& station) {
  layout_nonassoc entry = {};
  memcpy(entry.mac, station.mac.data(), sizeof entry.mac);
  size_t seen = station.observations.size();
  for (size_t i = seen > kLayoutProbes ? seen - kLayoutProbes : 0; i < seen; ++i) {
    layout_probe& probe = entry.probes[i % kLayoutProbes];
    probe.rssi = static_cast<int8_t>(station.observations[i].rssi);
    memcpy(probe.date, station.observations[i].date, sizeof probe.date);
    entry.newest = static_cast<uint8_t>(i % kLayoutProbes + 1);
  }
  entry.count = static_cast<uint8_t>(seen < kLayoutProbes ? seen : kLayoutProbes);
  if (station.newest >= 0) entry.newest = static_cast<uint8_t>(station.newest);
  return entry;
}

// A short query names a station to watch; a long one gets the report, which is empty while off.
int driver_query_nonassoc(driver_state& state, driver_request& r) {
  int radio = driver_radio_of(r.bss);
  if (!state.around.radios[radio].nonassoc) return -EOPNOTSUPP;
  if (!r.input.empty()) return watch(state, radio, r);
  layout_nonassocs report = {};
  for (const scenario_nonassoc& station : state.around.nonassoc) {
    if (!state.radios[radio].nonassoc_on || station.radio != radio) continue;
    if (report.count == kLayoutNonassoc) break;
    report.entries[report.count++] = entry_of(station);
  }
  driver_decode(r, "stations", std::to_string(report.count));
  return driver_answer(r, &report, sizeof report, offsetof(layout_nonassocs, reserved_1921));
}
