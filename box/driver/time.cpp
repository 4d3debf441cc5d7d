// What time does to the radios: stations come, move and go, counters grow, events happen.
#include <algorithm>
#include <cmath>

#include "base/report.h"
#include "driver/parts.h"

// Words of the counter block that the stations' traffic goes into. Sent: towards the stations.
enum { kSentPackets, kReceivedPackets, kReceivedBytes, kSentBytes };

static int64_t microseconds(double seconds) {
  return seconds < 0 ? kDriverNever : static_cast<int64_t>(std::llround(seconds * 1e6));
}

bool driver_beacons(const driver_state& state, int n) {
  int radio = driver_radio_of(n);
  return state.bss[n].up && driver_radio_up(state, radio) && state.radios[radio].on;
}

static bool is_listed(const std::vector<mac_address>& list, const mac_address& mac) {
  return std::find(list.begin(), list.end(), mac) != list.end();
}

static bool is_blacklisted(const driver_state& state, int radio, const mac_address& mac) {
  for (const driver_blacklisted& entry : state.blacklist) {
    if (entry.radio == radio && entry.mac == mac && entry.until_us > state.now_us) return true;
  }
  return false;
}

static bool takes(const driver_state& state, int n, const mac_address& mac) {
  if (n < 0 || !driver_beacons(state, n)) return false;
  const driver_acl& acl = state.bss[n].acl;
  if (acl.policy == 1 && !is_listed(acl.list, mac)) return false;
  if (acl.policy == 2 && is_listed(acl.list, mac)) return false;
  return !is_blacklisted(state, driver_radio_of(n), mac);
}

static bool is_about(const driver_state& state, const driver_station& station) {
  return microseconds(station.is.appears) <= state.now_us &&
         state.now_us < microseconds(station.is.leaves) && station.returns_us <= state.now_us &&
         (!station.is.by_wps || station.joined_by_wps);
}

// Where it belongs now: where it was sent, at home, elsewhere; -1: nowhere.
static int place_of(const driver_state& state, const driver_station& station) {
  if (!is_about(state, station)) return -1;
  for (int n : {station.preferred, station.is.bss}) {
    if (takes(state, n, station.is.mac)) return n;
  }
  for (int n : station.is.others) {
    if (takes(state, n, station.is.mac)) return n;
  }
  return -1;
}

static uint8_t free_aid(const driver_state& state, int radio) {
  bool used[256] = {};
  for (const driver_station* station : driver_associated(state, radio))
    used[station->aid] = true;
  for (int aid = 1; aid < 256; aid++) {
    if (!used[aid]) return static_cast<uint8_t>(aid);
  }
  return 0;
}

static void associate(driver_state& state, driver_station& station, int n) {
  int radio = driver_radio_of(n);
  if (driver_associated(state, radio).size() >= kDriverStationsMax) return;
  station.aid = free_aid(state, radio);
  station.associated = true;
  station.bss = n;
  station.since_us = state.now_us;
  station.traffic = station.is.start;
}

void driver_settle(driver_state& state) {
  for (driver_station& station : state.stations) {
    int place = place_of(state, station);
    if (station.associated && station.bss != place) station.associated = false;
    if (!station.associated && place >= 0) associate(state, station, place);
  }
}

void driver_disconnect(driver_station& station, int64_t returns_us) {
  station.associated = false;
  station.returns_us = returns_us;
}

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

// Nothing changes between now and TO but what grows.
static void let_grow(driver_state& state, int64_t to) {
  double seconds = static_cast<double>(to - state.now_us) / 1e6;
  for (driver_station& station : state.stations) {
    if (!station.associated) continue;
    grow(station.traffic, station.is.per_second, seconds);
    grow_bss(state.bss[station.bss], station.is.per_second, seconds);
  }
  for (const scenario_bss& bss : state.around.bss) {
    if (!driver_beacons(state, bss.bss)) continue;
    for (int i = 0; i < kScenarioBssCounters; i++)
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
    consider(microseconds(station.is.appears));
    consider(microseconds(station.is.leaves));
    consider(station.returns_us);
  }
  for (const driver_blacklisted& entry : state.blacklist)
    consider(entry.until_us);
  for (const scenario_event& event : state.around.events)
    consider(microseconds(event.at));
  for (int radio = 0; radio < kScenarioRadios; radio++)
    consider(driver_wps_next_us(state, radio));
  return next;
}

// The texts of events were checked with the scenario; what they name may be gone all the same.
static void run_events(driver_state& state) {
  scenario changed = state.around;
  bool any = false;
  for (const scenario_event& event : state.around.events) {
    if (microseconds(event.at) != state.now_us) continue;
    if (!event.fail.empty()) state.fails.push_back(event.fail);
    if (event.set.empty()) continue;
    std::string wrong;
    if (scenario_edit_line(changed, event.set, wrong)) any = true;
    if (!wrong.empty()) report("event at %g s: %s", event.at, wrong.c_str());
  }
  if (!any) return;
  driver_take_scenario(state, changed, state.now_us);
  state.scenario_changed = true;
}

void driver_advance(driver_state& state, int64_t now_us) {
  double speed = state.clock.speed;
  for (int64_t next; (next = driver_next_us(state)) <= now_us;) {
    let_grow(state, next);
    std::erase_if(state.blacklist, [&](const auto& entry) { return entry.until_us <= next; });
    for (int radio = 0; radio < kScenarioRadios; radio++)
      driver_wps_advance(state, radio);
    run_events(state);
    driver_settle(state);
    if (state.clock.speed != speed) return;
  }
  if (now_us > state.now_us) let_grow(state, now_us);
}
