#include <algorithm>
#include <cstring>
#include <memory>
#include <string>

#include "rpc/dispatch.h"
#include "rpc/handlers.h"
#include "statistics/byte_counters.h"
#include "statistics/channel_utilization.h"
#include "statistics/traffic.h"
#include "steer/band_steering_settings.h"
#include "steer/btm.h"
#include "steer/btm_list.h"
#include "steer/client_steering.h"
#include "steer/measurements.h"
#include "steer/nonassoc.h"
#include "support/check.h"
#include "support/outside.h"
#include "sys/board.h"
#include "wlan/rates.h"
#include "wlan/stations.h"
#include "wlan/survey.h"
#include "wlan/tx_power.h"
#include "wlan/wps.h"

// Records of the driver: station table, statistics, survey, power limits, reports,
// list of stations. A call record is an operation's number in the table below and
// the byte of a BSS. Results are compared with the bytes of the driver's answer at
// their offsets.

namespace {

struct operation {
  const char* name;
  void (*run)(int bss);
};

}  // namespace

// The answer that a request of `announced` bytes will get, padded with zeros to `size`;
// false if the driver refuses. `ahead`: how many answers to skip.
static bool answer_to_come(size_t announced, size_t size, std::string* bytes, size_t ahead = 0) {
  const answer_queue& queue = simulated->driver;
  const size_t place = queue.used + ahead;
  *bytes = std::string(size, '\0');
  if (place >= queue.answers.size()) return true;
  if (queue.answers[place].outcome % 8 != 0) return false;
  const std::string_view given = queue.answers[place].bytes.substr(0, announced);
  bytes->replace(0, given.size(), given);
  return true;
}

static uint32_t word_at(const std::string& bytes, size_t at) {
  uint32_t word = 0;
  memcpy(&word, bytes.data() + at, sizeof word);
  return word;
}

static uint8_t byte_at(const std::string& bytes, size_t at) {
  return static_cast<uint8_t>(bytes[at]);
}

// Position of a BSS in the driver's tables for its radio.
static int position_of(int bss) {
  return bss < 9 ? bss - 1 : bss - 9;
}

// ---- Stations.

static constexpr size_t kTable = 5124;
static constexpr size_t kEntry = 40;

static int stations_of(const std::string& table, int bss) {
  const uint32_t count = std::min<uint32_t>(word_at(table, 0), 128);
  int found = 0;
  for (uint32_t i = 0; i < count; ++i)
    found += byte_at(table, 4 + kEntry * i) == position_of(bss);
  return found;
}

static void count_stations(int bss) {
  std::string table;
  const bool answered = answer_to_come(kTable - 1, kTable, &table);
  int count = 77;
  const int status = wlan_getAssocDevicesNum(bss, &count);
  CHECK(status == (answered ? 0 : -1));
  CHECK(count == (answered ? stations_of(table, bss) : 0));
}

static void read_table(int bss) {
  std::string expected;
  const bool answered = answer_to_come(kTable - 1, kTable, &expected);
  const auto table = std::make_unique<driver_station_table>();
  CHECK(wlan_getAssocDevicesTable_2(bss, table.get()) == (answered ? 0 : -1));
  CHECK(!answered || memcmp(table.get(), expected.data(), kTable) == 0);
}

static void read_statistics(int bss) {
  std::string expected;
  const bool answered = answer_to_come(6659, 6660, &expected);
  const auto table = std::make_unique<driver_statistics_table>();
  CHECK(wlan_getAssocDevicesStatistics(bss, table.get()) == (answered ? 0 : -1));
  CHECK(!answered || memcmp(table.get(), expected.data(), 6660) == 0);
}

static void check_listed(const btm_station& station, const std::string& table, size_t place) {
  char mac[18];
  const size_t at = 4 + kEntry * place;
  snprintf(mac, sizeof mac, "%02x:%02x:%02x:%02x:%02x:%02x", byte_at(table, at + 1),
           byte_at(table, at + 2), byte_at(table, at + 3), byte_at(table, at + 4),
           byte_at(table, at + 5), byte_at(table, at + 6));
  CHECK(memcmp(station.mac, mac, sizeof station.mac) == 0);
  CHECK(station.rssi <= -1 && station.rssi >= -127);
  CHECK(station.downlink_rate >= 1000 && station.tx_mcs >= 0 && station.tx_mcs < 64);
}

static void list_stations(int bss) {
  std::string table;
  static_cast<void>(answer_to_come(kTable - 1, kTable, &table));
  wlan_config_result_data_t result = {};
  CHECK(wlan_get_btm_associated_device_1_svc(bss, &result, nullptr) == 1);
  btm_list list;
  CHECK(result.return_data.return_data_len == sizeof list);
  memcpy(&list, result.return_data.return_data_val, sizeof list);
  xdr_free(reinterpret_cast<xdrproc_t>(reinterpret_cast<void (*)()>(xdr_wlan_config_result_data_t)),
           &result);
  CHECK(list.count <= 32);
  unsigned listed = 0;
  for (uint32_t i = 0; i < std::min<uint32_t>(word_at(table, 0), 128) && listed < list.count; ++i) {
    if (byte_at(table, 4 + kEntry * i) == position_of(bss))
      check_listed(list.stations[listed++], table, i);
  }
  CHECK(listed == list.count);
}

// ---- Counters.

static uint64_t received[2][8], sent[2][8];

static void sum_bytes(int bss) {
  std::string table;
  const int radio = bss < 9 ? 1 : 9;
  const bool answered = answer_to_come(771, 772, &table);
  CHECK(wlan_getSSIDTxRxBytes(radio) == (answered ? 0 : -1));
  const int count = answered ? static_cast<int>(word_at(table, 0)) : 0;
  const int band = radio == 1 ? 0 : 1;
  for (int i = 0; i < std::min(count, 8); ++i) {
    received[band][i] += word_at(table, 4 + 96 * static_cast<size_t>(i) + 8);
    sent[band][i] += word_at(table, 4 + 96 * static_cast<size_t>(i) + 12);
  }
  if (bss < 1 || bss > 16) {
    CHECK(bss_bytes(bss, &byte_counter::sent) == 0 && radio_bytes(bss, &byte_counter::sent) == 0);
    return;
  }
  uint64_t all = 0;
  for (const uint64_t each : received[band])
    all += each;
  CHECK(radio_bytes(bss, &byte_counter::received) == all);
  CHECK(bss_bytes(bss, &byte_counter::sent) == sent[band][position_of(bss)]);
}

static void read_basic(int bss) {
  std::string counters, table;
  const bool answered = answer_to_come(55, 56, &counters);
  const bool listed = answer_to_come(kTable - 1, kTable, &table, 1);
  basic_stats stats;
  CHECK(wlan_getBasicStats(bss, &stats) == 0);
  uint32_t words[5];
  static_assert(sizeof words == sizeof stats);
  memcpy(words, &stats, sizeof words);
  for (size_t i = 0; i < 4; ++i) {
    static constexpr size_t kFrom[] = {3, 2, 0, 1};
    CHECK(words[i] == (answered ? word_at(counters, 4 * kFrom[i]) : 0));
  }
  CHECK(words[4] == static_cast<uint32_t>(listed ? stations_of(table, bss) : 0));
}

static void read_counters(int bss) {
  std::string counters;
  const bool answered = answer_to_come(55, 56, &counters);
  // On the heap, where the sanitizer sees a write beyond them.
  struct record_of_stats {
    traffic_stats words;
  };
  const auto stats = std::make_unique<record_of_stats>();
  traffic_stats& words = stats->words;
  CHECK(wlan_getStats(bss, words) == 0);
  CHECK(words[0] == (answered ? word_at(counters, 24) : 0) && words[10] == 0);
  CHECK(words[9] == (answered ? word_at(counters, 52) : 0) && words[11] == 0);
  *stats = {};
  CHECK(wlan_getRadioStats(bss, words) == (bss >= 1 && bss <= 16 ? 0 : -1));
  CHECK(words[2] == 0 && words[3] == 0 && words[15] == 0);
}

// ---- Survey and channel.

static void survey(int bss) {
  CHECK(wlan_ApSiteSurvey(bss) == 0);
  int state = 9;
  CHECK(wlan_ApSiteSurveyStatus(bss, &state) == 0 && state >= 0 && state <= 3);
}

static void read_survey(int bss) {
  std::string answer;
  const bool answered = answer_to_come(13163, 13164, &answer);
  const auto record = std::make_unique<survey_record>();
  unsigned length = 0;
  const int status = wlan_getApScanResult(bss, record.get(), &length);
  CHECK(length == 6764 && (status == 0) == answered);
  if (!answered) return;
  CHECK(record->count == std::min<uint32_t>(word_at(answer, 0), 64));
  CHECK(memcmp(record->entries, answer.data() + 4, 6400) == 0);
  CHECK(memcmp(record->tail, answer.data() + 12804, 360) == 0);
}

static void read_channel(int bss) {
  int channel = 0;
  int rate = 0;
  static_cast<void>(wlan_getCurrentChannel(bss, &channel));
  static_cast<void>(wlan_getRadioMaxBitRate(bss, &rate));
  CHECK(rate >= -2147 && rate <= 2147);
}

static void read_power(int bss) {
  // The daemon asks once and keeps the answer, whatever the board becomes.
  const bool dual = hasMTK7615() != 0;
  const size_t size = dual ? 948 : 592;
  std::string answer;
  const bool answered = answer_to_come(size - 1, size, &answer);
  int highest = 0;
  const int status = wlan_getRadioMaxTxPowerdBm(bss, &highest);
  CHECK(status == (answered ? 0 : -1));
  int expected = 0;
  const auto count = static_cast<int32_t>(word_at(answer, 0));
  for (int32_t i = 0; answered && i < count; ++i) {
    const size_t at = (dual ? 6 : 4) + (dual ? 16 : 10) * static_cast<size_t>(i) + 4;
    if (at >= size) break;
    expected = std::max<int>(expected, byte_at(answer, at));
  }
  CHECK(highest == expected);
  int now = 0;
  static_cast<void>(wlan_getOnChannelMaxTxPowerdBm(bss, &now));
  CHECK(now >= 0 && now <= 255);
}

// ---- Steering.

static void read_load(int bss) {
  int share = 0;
  if (wlan_getChannelUtilization(bss, &share) == 0) CHECK(share >= 0 && share <= 100);
  int on = 0;
  if (wlan_getChannelUtilizationEnable(bss, &on) == 0) CHECK(on == 0 || on == 1);
}

static void read_transition(int bss) {
  int value = 0;
  if (wlan_getBtmCapable(bss, &value) == 0) CHECK(value == 0 || value == 1);
  if (wlan_getBtmEnable(bss, &value) == 0) CHECK(value == 0 || value == 1);
  static_cast<void>(wlan_getOperatingClass(bss, &value));
  if (wlan_getNonAssocRptCapable(bss, &value) == 0) CHECK(value == 0 || value == 1);
}

static void read_probes(int bss) {
  std::string report;
  const bool answered = answer_to_come(1923, 1924, &report);
  const auto answer = std::make_unique<nonassoc_answer>();
  const int status = wlan_getNonAssocRptTable(bss, answer.get());
  CHECK(answered || status == -1);
  CHECK(answer->valid == 0 || (answer->valid == 1 && status == 0));
  if (answer->valid == 0) return;
  // One of the entries with a newest probe from 1 to 4.
  bool found = false;
  for (size_t i = 0; i < std::min<size_t>(byte_at(report, 1920), 16); ++i) {
    const uint8_t newest = byte_at(report, 120 * i + 7);
    if (newest < 1 || newest > 4) continue;
    const auto rssi = static_cast<int8_t>(report[120 * i + 8 + 28 * (newest - size_t{1})]);
    found = found || rssi == answer->probes[0].rssi;
  }
  CHECK(found);
}

static void steer(int bss) {
  for (const int type : {0, 1, 3})
    static_cast<void>(wlan_setHncSteerStaType(bss, type));
}

// ---- WPS.

static void read_wps(int bss) {
  // On the heap, where the sanitizer knows their ends.
  struct uuid_room {
    char text[kWpsUuidSize];
  };
  const std::unique_ptr<uuid_room> uuid(new uuid_room);
  CHECK(wlan_getWpsUuid(bss, uuid->text) == 0);
  CHECK(memchr(uuid->text, 0, kWpsUuidSize) != nullptr);
  struct status_room {
    char text[kWpsResultStatusSize];
  };
  const std::unique_ptr<status_room> status(new status_room());
  const bool radio = bss == 1 || bss == 9;
  CHECK(wlan_getWpsResultStatus(bss, status->text) == (radio ? 0 : -1));
  CHECK((status->text[0] != '\0') == radio);
}

static void read_rates(int bss) {
  for (const unsigned half : {0u, 0xFFu}) {
    const auto word = static_cast<uint16_t>(static_cast<unsigned>(bss & 0xFF) << 8 | half);
    int32_t rate = 0;
    uint8_t mcs = 0;
    uint16_t brought = 0;
    setMCS(word, &brought);
    getRate(word, &rate, &mcs);
    CHECK(rate >= 1000 && (word & ~0x3Fu) == (brought & ~0x3Fu));
  }
}

static const operation kOperations[] = {
    {"count", count_stations},
    {"table", read_table},
    {"statistics", read_statistics},
    {"list", list_stations},
    {"bytes", sum_bytes},
    {"basic", read_basic},
    {"counters", read_counters},
    {"survey", survey},
    {"survey result", read_survey},
    {"channel", read_channel},
    {"power", read_power},
    {"load", read_load},
    {"transition", read_transition},
    {"probes", read_probes},
    {"steer", steer},
    {"wps", read_wps},
    {"rates", read_rates},
};

static void run_call(std::string_view bytes) {
  const operation& chosen = kOperations[take_byte(&bytes) % std::size(kOperations)];
  outside_before_call();
  chosen.run(static_cast<int8_t>(take_byte(&bytes)));
  outside_after_call();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  memset(received, 0, sizeof received);
  memset(sent, 0, sizeof sent);
  setenv("TZ", "UTC0", 1);
  outside world;
  outside_begin(&world);
  std::string_view rest(reinterpret_cast<const char*>(data), size);
  record what;
  for (int calls = 0; calls < 16 && next_record(&rest, &what);) {
    if (what.type == record_type::kCall) {
      ++calls;
      run_call(what.bytes);
    } else if (what.type != record_type::kFaults) {
      outside_apply(what);
    }
  }
  outside_end();
  return 0;
}
