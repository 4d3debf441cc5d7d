#include "statistics/traffic.h"

#include "diag/trace.h"
#include "profile/values.h"
#include "sys/board.h"
#include "sys/wext.h"
#include "wlan/station_layout.h"
#include "wlan/stations.h"

static constexpr int kBsssPerRadio = 8;

// Which driver counter each word of the reply takes.
enum { kPacketsSent, kPacketsReceived, kBytesReceived, kBytesSent };
static constexpr uint8_t kStatsCounters[] = {6, 4, 8, 9, 7, 5, 10, 11, 12, 13};

// A radio's sums. The words in between are not filled: kept on purpose.
struct radio_word {
  uint8_t word;
  uint8_t counter;
};
static constexpr radio_word kRadioCounters[] = {
    {0, 6}, {1, 4}, {4, 7}, {5, 5}, {11, 3}, {12, 2}, {13, 0}, {14, 1},
};

static driver_counters read_counters(int bss) {
  driver_counters counters = {};
  static_cast<void>(rtpriv_get_ioctl(bss, kRtprivObject, kBssCounters, &counters, sizeof counters));
  return counters;
}

int wlan_getBasicStats(int bss, basic_stats* out) {
  const driver_counters counters = read_counters(bss);
  int stations = 0;
  static_cast<void>(wlan_getAssocDevicesNum(bss, &stations));
  out->bytes_sent = counters.words[kBytesSent];
  out->bytes_received = counters.words[kBytesReceived];
  out->packets_sent = counters.words[kPacketsSent];
  out->packets_received = counters.words[kPacketsReceived];
  out->associations = static_cast<uint32_t>(stations);
  return 0;
}

int wlan_getStats(int bss, traffic_stats& out) {
  REV_TRACE("%s: index=%d\n", __func__, bss);
  const driver_counters counters = read_counters(bss);
  int place = 0;
  for (const uint8_t counter : kStatsCounters)
    out[place++] = counters.words[counter];
  out[place] = 0;
  return 0;
}

static void add_counters(int bss, traffic_stats& out) {
  const driver_counters counters = read_counters(bss);
  for (const radio_word& row : kRadioCounters)
    out[row.word] += counters.words[row.counter];
}

int wlan_getRadioStats(int bss, traffic_stats& out) {
  REV_TRACE("%s: index=%d\n", __func__, bss);
  const int radio = bss_to_radio_index(bss);
  if (radio == -1) return -1;
  for (int index = radio; index < radio + kBsssPerRadio; ++index) {
    const int enabled = bss_number(index, "BssEnabled", kSwitchLimit);
    if (enabled == 1) {
      add_counters(index, out);
    } else {
      REV_TRACE("SSID index=%d, bss_enable = %d\n", index, enabled);
    }
  }
  return 0;
}
