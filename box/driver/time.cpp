// What time does to the radios: stations come, move and go, counters grow, events happen.
#include <algorithm>

#include "base/report.h"
#include "driver/parts.h"

// Words of the counter block that the stations' traffic goes into. Sent: towards the stations.
enum { kSentPackets, kReceivedPackets, kReceivedBytes, kSentBytes };

static void grow(scenario_traffic& sum, const scenario_traffic& rate, double seconds) {
  sum.rx_bytes += rate.rx_bytes * seconds;
  sum.tx_bytes += rate.tx_bytes * seconds;
  sum.rx_packets += rate.rx_packets * seconds;
  sum.tx_packets += rate.tx_packets * seconds;
  sum.tx_failures += rate.tx_failures * seconds;
}

static void grow_bss(driver_bss& bss, const scenario_traffic& rate, double seconds) {
  bss.counters[kReceivedBytes] += rate.rx_bytes * seconds;
  bss.counters[kSentBytes] += rate.tx_bytes * seconds;
  bss.counters[kReceivedPackets] += rate.rx_packets * seconds;
  bss.counters[kSentPackets] += rate.tx_packets * seconds;
  bss.ssid_rx_bytes += rate.rx_bytes * seconds;
  bss.ssid_tx_bytes += rate.tx_bytes * seconds;
}

// Between now and TO nothing changes but the counters.
static void let_grow(driver_state& state, int64_t to) {
  double seconds = static_cast<double>(to - state.now_us) / 1e6;
  for (driver_station& station : state.stations) {
    if (!station.associated) continue;
    grow(station.traffic, station.is.per_second, seconds);
    grow_bss(state.bss[station.bss], station.is.per_second, seconds);
  }
  for (const scenario_bss& bss : state.around.bss) {
    if (!driver_beacons(state, bss.bss)) continue;
    for (int i = 0; i < kScenarioBssCounters; ++i)
      state.bss[bss.bss].counters[i] += bss.per_second[i] * seconds;
  }
  state.now_us = to;
}

int64_t driver_next_us(const driver_state& state) {
  int64_t next = kDriverNever;
  auto consider = [&](int64_t time) {
    if (time > state.now_us && time < next) next = time;
  };
  for (const driver_station& station : state.stations) {
    consider(driver_microseconds(station.is.appears));
    consider(driver_microseconds(station.is.leaves));
    consider(station.returns_us);
  }
  for (const driver_blacklisted& entry : state.blacklist)
    consider(entry.until_us);
  for (const scenario_event& event : state.around.events)
    consider(driver_microseconds(event.at));
  for (int radio = 0; radio < kScenarioRadios; ++radio)
    consider(driver_wps_next_us(state, radio));
  for (const driver_radio& radio : state.radios)
    consider(radio.ready_us);
  return next;
}

// The texts of events were checked with the scenario, but what they name may be gone by now.
static void run_events(driver_state& state) {
  scenario changed = state.around;
  bool any = false;
  for (const scenario_event& event : state.around.events) {
    if (driver_microseconds(event.at) != state.now_us) continue;
    if (!event.fail.empty()) state.fails.push_back(event.fail);
    if (event.set.empty()) continue;
    std::string wrong;
    if (scenario_edit_line(changed, event.set, wrong)) any = true;
    if (!wrong.empty()) report("event at %g s: %s", event.at, wrong.c_str());
  }
  if (!any) return;
  driver_take_scenario(state, changed);
  state.scenario_changed = true;
}

void driver_advance(driver_state& state, int64_t now_us) {
  double speed = state.clock.speed;
  for (int64_t next; (next = driver_next_us(state)) <= now_us;) {
    let_grow(state, next);
    std::erase_if(state.blacklist, [&](const auto& entry) { return entry.until_us <= next; });
    for (int radio = 0; radio < kScenarioRadios; ++radio)
      driver_wps_advance(state, radio);
    run_events(state);
    driver_settle(state);
    if (state.clock.speed != speed) return;
  }
  if (now_us > state.now_us) let_grow(state, now_us);
}
