// Steering: the blacklist, transition requests, and which stations know those.
//
// A blacklisted station is kept off the radio. A station that knows transition requests goes to
// another BSS as soon as one reaches it.
#include <cerrno>
#include <cstring>

#include "driver/layout.h"
#include "driver/parts.h"

enum { kBlacklistTakeOff, kBlacklistForGood, kBlacklistForATime };
static constexpr uint32_t kKindBlacklist = 0, kKindTransition = 1;
static constexpr size_t kActionFramesKept = 64;

static void blacklist(driver_state& state, int radio, const layout_steer& steer) {
  mac_address mac = mac_at(steer.mac);
  std::erase_if(state.blacklist,
                [&](const auto& entry) { return entry.radio == radio && entry.mac == mac; });
  int64_t until =
      steer.action == kBlacklistForGood ? kDriverNever : state.now_us + steer.seconds * 1000000LL;
  if (steer.action != kBlacklistTakeOff) state.blacklist.push_back({radio, mac, until});
  driver_settle(state);
}

int driver_set_steer(driver_state& state, driver_request& r) {
  layout_steer steer = {};
  int status = driver_take(r, &steer, sizeof steer);
  if (status != 0) return status;
  driver_decode(r, "mac", mac_text(mac_at(steer.mac)));
  driver_decode(r, "kind", steer.kind == kKindBlacklist ? "blacklist" : std::to_string(steer.kind));
  driver_decode(r, "action", std::to_string(steer.action));
  driver_decode(r, "seconds", std::to_string(steer.seconds));
  if (steer.kind == kKindTransition) return 0;  // the station has gone already
  bool known = steer.kind == kKindBlacklist && steer.action >= kBlacklistTakeOff &&
               steer.action <= kBlacklistForATime && steer.seconds >= 0;
  if (!known) return -EINVAL;
  blacklist(state, driver_radio_of(r.bss), steer);
  return 0;
}

// Where a station goes when it is told to leave: where its scenario lets it go, else to the BSS in
// the same place on the other radio, else to any other one.
static int way_out(const driver_state& state, const driver_station& station) {
  std::vector<int> candidates = station.is.others;
  candidates.push_back(station.is.bss);
  candidates.push_back((station.bss + kDriverRadioBsss) % kBoardMaxInterfaces);
  for (int n = 0; n < kBoardMaxInterfaces; ++n)
    candidates.push_back(n);
  for (int n : candidates) {
    if (n != station.bss && driver_beacons(state, n)) return n;
  }
  return -1;
}

static void transition(driver_state& state, int radio, driver_request& r, const mac_address& mac) {
  driver_station* station = driver_find_station(state, mac);
  bool here = station && station->associated && driver_radio_of(station->bss) == radio;
  if (!here || !station->is.btm) {
    driver_decode(r, "station", here ? "does not know transition requests" : "is not here");
    return;
  }
  station->preferred = way_out(state, *station);
  driver_settle(state);
  driver_decode(r, "station", "goes to ra" + std::to_string(station->bss));
}

int driver_set_action_frame(driver_state& state, driver_request& r) {
  char bytes[kLayoutActionFrameSize];
  int status = driver_take(r, bytes, sizeof bytes);
  if (status != 0) return status;
  driver_action_frame frame = {};
  frame.time_us = state.now_us;
  frame.bss = r.bss;
  memcpy(&frame.category, bytes, sizeof frame.category);
  frame.mac = mac_at(bytes + offsetof(layout_action_frame, mac));
  frame.body.assign(bytes + offsetof(layout_action_frame, body), bytes + sizeof bytes);
  frame.body.resize(frame.body.find_last_not_of('\0') + 1);
  driver_decode(r, "mac", mac_text(frame.mac));
  driver_decode(r, "category", std::to_string(frame.category));
  driver_decode(r, "body_bytes", std::to_string(frame.body.size()));
  if (state.action_frames.size() == kActionFramesKept) {
    state.action_frames.erase(state.action_frames.begin());
  }
  state.action_frames.push_back(frame);
  transition(state, driver_radio_of(r.bss), r, frame.mac);
  return 0;
}

static int query_station_btm(driver_state& state, driver_request& r) {
  layout_station_btm record = {};
  memcpy(&record, r.input.data(), r.input.size() < sizeof record ? r.input.size() : sizeof record);
  driver_decode(r, "mac", mac_text(mac_at(record.mac)));
  if (record.kind != 4) return -EINVAL;
  const driver_station* station = driver_find_station(state, mac_at(record.mac));
  if (!station || !station->associated) return -ENOENT;
  record.capable = station->is.btm;
  driver_decode(r, "capable", std::to_string(record.capable));
  return driver_answer(r, &record, sizeof record, offsetof(layout_station_btm, reserved_8));
}

// There are two forms: for the radio, two bytes of which the first says whether it is enabled; and
// for one station, whose address the caller puts into the record.
int driver_query_btm(driver_state& state, driver_request& r) {
  int radio = driver_radio_of(r.bss);
  if (!state.around.radios[radio].btm) return -EOPNOTSUPP;
  if (!r.input.empty()) return query_station_btm(state, r);
  uint8_t record[2] = {state.radios[radio].btm_on, 0};
  driver_decode(r, "enabled", std::to_string(record[0]));
  return driver_answer(r, record, sizeof record, 1);
}

// Three bytes: 2, 0 and the value.
int driver_set_btm(driver_state& state, driver_request& r) {
  int radio = driver_radio_of(r.bss);
  uint8_t record[3];
  if (!state.around.radios[radio].btm) return -EOPNOTSUPP;
  int status = driver_take(r, record, sizeof record);
  if (status != 0) return status;
  if (record[0] != 2) return -EINVAL;
  driver_decode(r, "enabled", std::to_string(record[2]));
  state.radios[radio].btm_on = record[2] != 0;
  return 0;
}
