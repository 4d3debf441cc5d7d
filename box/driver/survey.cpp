// The site survey, and the choice of a channel from it.
#include <cerrno>
#include <cstring>

#include "driver/layout.h"
#include "driver/parts.h"

static bool is_running(const driver_state& state, int radio) {
  int64_t start = state.radios[radio].survey_us;
  double seconds = state.around.radios[radio].survey_seconds;
  return start >= 0 && state.now_us < start + static_cast<int64_t>(seconds * 1e6);
}

static layout_neighbour entry_of(const scenario_neighbour& neighbour) {
  layout_neighbour entry = {};
  memcpy(entry.bssid, neighbour.bssid.data(), sizeof entry.bssid);
  entry.channel = static_cast<uint8_t>(neighbour.channel);
  entry.rssi = static_cast<int8_t>(neighbour.rssi);
  neighbour.ssid.copy(entry.ssid, sizeof entry.ssid - 1);
  neighbour.security.copy(entry.security, sizeof entry.security - 1);
  neighbour.mode.copy(entry.mode, sizeof entry.mode - 1);
  return entry;
}

// Nothing is known before the first survey since the radio went up.
int driver_query_survey(driver_state& state, driver_request& r) {
  static_assert(sizeof(layout_survey::busiest) > UINT8_MAX);
  int radio = driver_radio_of(r.bss);
  if (is_running(state, radio)) return -EAGAIN;
  layout_survey result = {};
  bool done = state.radios[radio].survey_us >= 0;
  for (const scenario_neighbour& neighbour : state.around.neighbours) {
    if (!done || neighbour.radio != radio || result.count == kLayoutSurveyMax) continue;
    layout_neighbour entry = entry_of(neighbour);
    result.entries[result.count++] = entry;
    ++result.busiest[entry.channel];
  }
  driver_decode(r, "networks", std::to_string(result.count));
  size_t used = offsetof(layout_survey, entries) + result.count * sizeof(layout_neighbour);
  return driver_answer(r, &result, sizeof result, used);
}

static const std::vector<int>& channels_of(int radio) {
  static const std::vector<int> kLow = {1, 6, 11};
  static const std::vector<int> kHigh = {36, 40, 44, 48, 149, 153, 157, 161};
  return radio == 0 ? kLow : kHigh;
}

// Neighbours in the 2.4 GHz band disturb four channels on either side.
int driver_best_channel(const driver_state& state, int radio) {
  int best = 0, fewest = INT32_MAX;
  for (int channel : channels_of(radio)) {
    int disturbing = 0;
    for (const scenario_neighbour& neighbour : state.around.neighbours) {
      int distance = neighbour.channel - channel;
      int reach = radio == 0 ? 4 : 0;
      if (neighbour.radio == radio && distance <= reach && distance >= -reach) disturbing++;
    }
    if (disturbing >= fewest) continue;
    best = channel;
    fewest = disturbing;
  }
  return best;
}
