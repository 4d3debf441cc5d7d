// Which station is associated with which BSS, and where it belongs.
#include <algorithm>
#include <cmath>

#include "driver/parts.h"

int64_t driver_microseconds(double seconds) {
  return seconds < 0 ? kDriverNever : static_cast<int64_t>(std::llround(seconds * 1e6));
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

bool driver_beacons(const driver_state& state, int n) {
  int radio = driver_radio_of(n);
  return state.bss[n].up && driver_radio_up(state, radio) && state.radios[radio].on &&
         state.radios[radio].ready_us <= state.now_us;
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
  return driver_microseconds(station.is.appears) <= state.now_us &&
         state.now_us < driver_microseconds(station.is.leaves) &&
         station.returns_us <= state.now_us && (!station.is.by_wps || station.joined_by_wps);
}

// The BSS where the station belongs now: where it was sent, else its own, else another; -1: none.
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
  for (int aid = 1; aid < 256; ++aid) {
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
