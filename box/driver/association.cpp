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

static bool is_listed(const std::vector<mac_address>& list, const mac_address& mac) {
  return std::find(list.begin(), list.end(), mac) != list.end();
}

static bool is_blacklisted(const driver_state& state, int radio, const mac_address& mac) {
  for (const driver_blacklisted& entry : state.blacklist) {
    if (entry.radio == radio && entry.mac == mac && entry.until_us > state.now_us) return true;
  }
  return false;
}

static bool is_full(const driver_state& state, int radio, const driver_station& but) {
  if (state.stations.size() <= kDriverStationsMax) return false;  // saves time in most scenarios
  auto counts = [&](const driver_station& station) {
    return station.associated && driver_radio_of(station.bss) == radio && &station != &but;
  };
  return std::count_if(state.stations.begin(), state.stations.end(), counts) >= kDriverStationsMax;
}

// What keeps the station from being anywhere.
static driver_obstacle obstacle_anywhere(const driver_state& state, const driver_station& station) {
  if (state.now_us < driver_microseconds(station.is.appears)) return kObstacleNotYet;
  if (state.now_us >= driver_microseconds(station.is.leaves)) return kObstacleLeft;
  if (station.is.by_wps && !station.joined_by_wps) return kObstacleWps;
  return state.now_us < station.returns_us ? kObstacleAway : kObstacleNone;
}

static driver_obstacle obstacle_at(const driver_state& state, const driver_station& station,
                                   int n) {
  const driver_acl& acl = state.bss[n].acl;
  const mac_address& mac = station.is.mac;
  if (!driver_beacons(state, n)) return kObstacleOffAir;
  if (acl.policy == 1 && !is_listed(acl.list, mac)) return kObstacleAccessList;
  if (acl.policy == 2 && is_listed(acl.list, mac)) return kObstacleAccessList;
  if (is_blacklisted(state, driver_radio_of(n), mac)) return kObstacleBlacklist;
  return is_full(state, driver_radio_of(n), station) ? kObstacleFull : kObstacleNone;
}

static driver_obstacles obstacles_of(const driver_state& state, const driver_station& station) {
  driver_obstacles obstacles;
  obstacles.fill(obstacle_anywhere(state, station));
  if (obstacles[0] != kObstacleNone) return obstacles;
  for (int n = 0; n < kBoardMaxInterfaces; ++n)
    obstacles[n] = obstacle_at(state, station, n);
  return obstacles;
}

// The BSS where the station belongs now: where it was sent, else its own, else another; -1: none.
static int place_of(const driver_station& station) {
  auto may_be_at = [&](int n) { return n >= 0 && station.obstacles[n] == kObstacleNone; };
  for (int n : {station.preferred, station.is.bss}) {
    if (may_be_at(n)) return n;
  }
  for (int n : station.is.others) {
    if (may_be_at(n)) return n;
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
  station.associated = false;  // its old association id is free again
  station.aid = free_aid(state, driver_radio_of(n));
  station.associated = true;
  station.bss = n;
  station.since_us = state.now_us;
  station.traffic = station.is.start;
}

void driver_leave(driver_state& state, driver_station& station, const char* why) {
  driver_tell_station(state, station, "leaves", station.bss, why);
  station.associated = false;
}

// Why a station with that obstacle leaves its BSS.
static const char* why_out(driver_obstacle obstacle) {
  switch (obstacle) {
    case kObstacleLeft:
      return "switched off";
    case kObstacleOffAir:
      return "off air";
    case kObstacleAccessList:
      return "access list";
    case kObstacleBlacklist:
      return "blacklist";
    case kObstacleUnknown:
    case kObstacleNone:
    case kObstacleNotYet:
    case kObstacleAway:
    case kObstacleWps:
    case kObstacleFull:
      break;  // an associated station meets these only when its scenario is changed, or never
  }
  return "scenario";
}

// Why a station comes to a BSS when that obstacle is gone.
static const char* why_in(driver_obstacle obstacle) {
  switch (obstacle) {
    case kObstacleNotYet:
      return "appeared";
    case kObstacleAway:
      return "returned";
    case kObstacleWps:
      return "wps";
    case kObstacleOffAir:
      return "on air";
    case kObstacleAccessList:
      return "access list";
    case kObstacleBlacklist:
      return "blacklist";
    case kObstacleFull:
      return "room";
    case kObstacleUnknown:
    case kObstacleNone:
    case kObstacleLeft:
      break;
  }
  return "scenario";
}

static void bring_in(driver_state& state, driver_station& station, int place,
                     driver_obstacle before) {
  driver_obstacle here = station.associated ? station.obstacles[station.bss] : kObstacleNone;
  int from = station.associated ? station.bss : -1;
  const char* why = here != kObstacleNone ? why_out(here) : why_in(before);
  if (here == kObstacleNone && before == kObstacleNone && place == station.preferred) {
    why = "transition";
  }
  associate(state, station, place);
  driver_tell_station(state, station, from < 0 ? "joins" : "roams", from, why);
}

// A station that loses its BSS to an outage takes its time to come back.
static void put_out(driver_state& state, driver_station& station) {
  driver_obstacle here = station.obstacles[station.bss];
  driver_leave(state, station, why_out(here));
  if (here != kObstacleOffAir || station.is.returns_after < 0) return;
  station.returns_us = state.now_us + driver_microseconds(station.is.returns_after);
  station.obstacles = obstacles_of(state, station);
}

void driver_settle(driver_state& state) {
  driver_tell_beacons(state);
  for (driver_station& station : state.stations) {
    const driver_obstacles before = station.obstacles;
    station.obstacles = obstacles_of(state, station);
    int place = place_of(station);
    if (station.associated && place < 0) put_out(state, station);
    if (place >= 0 && !(station.associated && station.bss == place)) {
      bring_in(state, station, place, before[place]);
    }
  }
}

void driver_disconnect(driver_state& state, driver_station& station) {
  driver_leave(state, station, "disconnected");
  double away = station.is.returns_after;
  station.returns_us = away < 0 ? kDriverNever : state.now_us + driver_microseconds(away);
  station.obstacles.fill(kObstacleAway);
}
