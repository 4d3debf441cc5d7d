#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "companions/processes.h"
#include "hnc/listener.h"
#include "hnc/settings.h"
#include "hnc/tables.h"
#include "lifecycle/calibration.h"
#include "statistics/radio.h"
#include "statistics/radstat_client.h"
#include "steer/dcs_settings.h"
#include "steer/events.h"
#include "support/check.h"
#include "support/outside.h"

// Answers of companions and commands: the controller's listener, the statistics and
// control daemons, command output. A call record is an operation's number in the
// table below and the byte of a radio. Results are compared with the answer's bytes
// at their offsets.

namespace {

struct operation {
  const char* name;
  void (*run)(int radio);
};

// Outcomes of a companion, see outside_network.cpp.
constexpr uint8_t kRefuses = 1;
constexpr uint8_t kCannotBind = 3;
constexpr uint8_t kFull = 4;
constexpr uint8_t kSilent = 5;
constexpr uint8_t kReceiveFails = 6;
constexpr uint8_t kPeerOutcomes = 10;

}  // namespace

// The next companion's answer, without taking it.
static outside_answer coming() {
  const answer_queue& queue = simulated->peers;
  return queue.used < queue.answers.size() ? queue.answers[queue.used] : outside_answer{0, {}};
}

static bool exact() {
  return simulated->faults.empty() && !simulated->faults_struck;
}

// ---- The listener.

static constexpr size_t kReplySize = 2860;

// What a zeroed reply becomes with the listener's answer; false if none comes.
static bool listener_reply(std::array<char, kReplySize>* reply) {
  const outside_answer answer = coming();
  const uint8_t outcome = answer.outcome % kPeerOutcomes;
  *reply = {};
  if ((simulated->there & kControllerOn) == 0) return false;
  // Without a time-out nothing is asked, which counts as answered.
  if (outcome == kCannotBind) return true;
  if (outcome == kRefuses || outcome == kSilent || outcome == kReceiveFails) return false;
  answer.bytes.copy(reply->data(), kReplySize);
  return true;
}

static std::string value_of(const std::array<char, kReplySize>& reply) {
  const std::string field(reply.data(), 131);
  return field.c_str();
}

static void compare_number(bool answered, int status, int got, int expected) {
  if (!exact()) return;
  CHECK(status == (answered ? 0 : -1));
  CHECK(!answered || got == expected);
}

template <typename Getter>
static void ask_flag(Getter get) {
  std::array<char, kReplySize> reply;
  const bool answered = listener_reply(&reply);
  int flag = 7;
  const int status = get(&flag);
  compare_number(answered, status, flag, reply[0] == '1' ? 1 : 0);
}

template <typename Getter>
static void ask_number(Getter get) {
  std::array<char, kReplySize> reply;
  const bool answered = listener_reply(&reply);
  int number = 7;
  const int status = get(&number);
  compare_number(answered, status, number, atoi(value_of(reply).c_str()));
}

template <typename Getter>
static void ask_text(Getter get) {
  std::array<char, kReplySize> reply;
  const bool answered = listener_reply(&reply);
  // On the heap, where the sanitizer knows its end.
  struct buffer {
    char text[kHncTextSize];
  };
  const std::unique_ptr<buffer> room(new buffer());
  const int status = get(room->text);
  const std::string_view text = room->text;
  if (!exact()) return;
  CHECK(status == (answered ? 0 : -1));
  CHECK(text == (answered ? value_of(reply) : std::string()));
}

static void ask_settings(int radio) {
  ask_flag([=](int* out) { return hnc_getEnable(radio, out); });
  ask_flag([=](int* out) { return hnc_getTopologyEnable(radio, out); });
  ask_flag([](int* out) { return hnc_getRRMEnable(out); });
  ask_number([=](int* out) { return hnc_getSupportedHNENumberOfEntries(radio, out); });
  ask_number([](int* out) { return hnc_getHneConfigDuration(out); });
  ask_text([=](auto& out) { return hnc_getUpdateFWURL(radio, out); });
  ask_text([=](auto& out) { return hnc_getSupportedHNEModelname(radio, out); });
}

// A row that is at `offset` of the reply.
template <typename Record, typename Getter>
static void ask_row(Getter get, size_t offset) {
  constexpr size_t kSize = sizeof(Record);
  std::array<char, kReplySize> reply;
  const bool answered = listener_reply(&reply);
  int32_t error = 0;
  memcpy(&error, reply.data() + 2856, sizeof error);
  const std::unique_ptr<Record> row(new Record);
  memset(row.get(), 0x5A, kSize);
  const int status = get(row.get());
  if (!exact()) return;
  const bool there = answered && error != -1;
  CHECK(status == (there ? 0 : -1));
  const std::string untouched(kSize, 0x5A);
  CHECK(memcmp(row.get(), there ? reply.data() + offset : untouched.data(), kSize) == 0);
}

static void ask_tables(int radio) {
  const auto number = static_cast<unsigned>(radio);
  ask_row<hnc_hne>([=](hnc_hne* row) { return hnc_getHneTableEntry(number, row); }, 132);
  ask_row<hnc_supported_hne>(
      [=](hnc_supported_hne* row) { return hnc_getSupportedHneTableEntry(number, row); }, 1624);
}

static void set_rows(int radio) {
  const auto number = static_cast<unsigned>(radio);
  // Texts that fill their fields, overwritten with the answer's bytes.
  hnc_supported_hne row;
  memset(&row, 0x41, sizeof row);
  const std::string_view bytes = coming().bytes;
  bytes.copy(reinterpret_cast<char*>(&row), sizeof row);
  static_cast<void>(hnc_setSupportedHneTableEntry(number, &row));
  static_cast<void>(hnc_setSupportedHneRowStatus(number, radio));
  const std::string name(bytes.substr(0, bytes.find('\0')));
  static_cast<void>(hnc_setHneDeviceName(number, name.c_str()));
  static_cast<void>(hnc_setUpdateFWPassword(radio, name.c_str()));
}

// ---- The statistics daemon: its words, and the previous ones.

static constexpr size_t kWords = 48;
using radstat_words = std::array<int32_t, kWords>;
static radstat_words kept[2];

// Whether the daemon answers; then *words is what is expected.
static bool radstat_answers(int radio, radstat_words* words) {
  const outside_answer answer = coming();
  const uint8_t outcome = answer.outcome % kPeerOutcomes;
  *words = {};
  if (outcome == kRefuses || outcome == kCannotBind || outcome == kFull || outcome == kSilent ||
      outcome == kReceiveFails) {
    return false;
  }
  const std::string_view bytes = answer.bytes.substr(0, sizeof *words);
  radstat_words& old = kept[radio > 7 ? 1 : 0];
  if (bytes.find_first_not_of('\0') == bytes.npos) {
    *words = old;
  } else {
    memcpy(words->data(), bytes.data(), bytes.size());
    memcpy(old.data(), bytes.data(), bytes.size());
  }
  return true;
}

static void ask_shares(int radio) {
  radstat_words words;
  const bool answers = radstat_answers(radio, &words);
  int32_t got[3];
  CHECK(wlan_getChannelStatistics(radio, &got[0], &got[1], &got[2]) == 0);
  for (int i = 0; exact() && i < 3; ++i)
    CHECK(got[i] == (answers ? words[static_cast<size_t>(i)] : -1));
}

static void ask_noise(int radio) {
  radstat_words words;
  const bool answers = radstat_answers(radio, &words);
  int32_t low, high, median, average;
  CHECK(wlan_getChannelNoiseFloor(radio, &low, &high, &median, &average) == 0);
  if (!exact()) return;
  CHECK(high == (answers ? words[3] : -1) && low == (answers ? words[4] : -1));
  CHECK(median == (answers ? words[5] : -1) && average == (answers ? words[6] : -1));
}

static void ask_counts(int radio) {
  radstat_words words;
  bool answers = radstat_answers(radio, &words);
  int64_t count = 0;
  CHECK(wlan_getRadioTxPackets(radio, &count) == 0);
  CHECK(!exact() || count == (answers ? words[8] : 0));
  answers = radstat_answers(radio, &words);
  CHECK(wlan_getRadioRxPackets(radio, &count) == 0);
  CHECK(!exact() || count == (answers ? words[9] : 0));
  answers = radstat_answers(radio, &words);
  int percent = 0;
  CHECK(wlan_getRetransmissionMetric(radio, &percent) == 0);
  CHECK(!exact() || percent == (answers ? words[7] : -1));
}

static void ask_rssi(int radio) {
  radstat_words words;
  const bool answers = radstat_answers(radio, &words);
  int64_t table[kRssiEntries];
  CHECK(wlan_getRSSITable(radio, table) == 0);
  for (size_t i = 0; exact() && i < kRssiEntries; ++i)
    CHECK(table[i] == (answers ? words[10 + i] : -1));
}

static void stop_statistics(int radio) {
  CHECK(wlan_setRadStatEnable(radio, 0, 1, 2) == 0);
  if (radio >= 1) kept[radio > 7 ? 1 : 0].fill(-1);
}

// ---- The control daemon, and one that never answers.

static void check_event(const char* report, size_t place, std::string_view event) {
  const char* got = report + 36 * place;
  char mac[18];
  const auto byte = [&](size_t at) { return static_cast<uint8_t>(event[at]); };
  snprintf(mac, sizeof mac, "%02x:%02x:%02x:%02x:%02x:%02x", byte(2), byte(3), byte(4), byte(5),
           byte(6), byte(7));
  CHECK(memcmp(got + 4, mac, 17) == 0 && got[0] == event[0] && got[1] == 0);
  CHECK(memcmp(got + 24, event.data() + 8, 4) == 0);
  CHECK(std::to_string(static_cast<int8_t>(event[1])) == got + 28);
}

static void ask_events(int radio) {
  const outside_answer answer = coming();
  const std::unique_ptr<steer_event_report> record(new steer_event_report());
  if (wlan_getSteerEventReport(radio, record.get()) != 0) return;
  const char* report = reinterpret_cast<const char*>(record.get());
  std::string reply(answer.bytes.substr(0, 404));
  reply.resize(404);
  CHECK(static_cast<uint8_t>(report[1152]) == static_cast<uint8_t>(reply[396]));
  const size_t count = std::min<size_t>(static_cast<uint8_t>(reply[396]), 32);
  for (size_t i = 0; i < count; ++i)
    check_event(report, i, std::string_view(reply).substr(12 + 12 * i, 12));
}

static void tell_dcs(int radio) {
  const std::string text(coming().bytes.substr(0, coming().bytes.find('\0')));
  static_cast<void>(wlan_setDCSRSSIWeight(radio, text.c_str()));
  static_cast<void>(wlan_setDCSDebugLevel(radio, radio));
  static_cast<void>(wlan_setDCSServingChannelSampleTime(radio, radio));
}

// ---- Command output.

static void ask_calibration(int) {
  const int status = wlan_get_prek_status("iwpriv ra0 e2p 52");
  CHECK(status == 3 || status == 2 || status == 0 || status == -1);
}

static void look_for_authenticators(int radio) {
  rtdot1x_start(radio > 7 ? 9 : 1, 0);
}

static const operation kOperations[] = {
    {"settings", ask_settings},
    {"tables", ask_tables},
    {"rows", set_rows},
    {"shares", ask_shares},
    {"noise", ask_noise},
    {"counts", ask_counts},
    {"rssi", ask_rssi},
    {"stop", stop_statistics},
    {"events", ask_events},
    {"dcs", tell_dcs},
    {"calibration", ask_calibration},
    {"authenticators", look_for_authenticators},
};

static void run_call(std::string_view bytes) {
  const operation& chosen = kOperations[take_byte(&bytes) % std::size(kOperations)];
  outside_before_call();
  chosen.run(static_cast<int8_t>(take_byte(&bytes)));
  outside_after_call();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  kept[0] = kept[1] = {};
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
