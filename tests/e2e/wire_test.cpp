#include <gtest/gtest.h>
#include <signal.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <cerrno>
#include <map>
#include <set>
#include <vector>

#include "rpc/back_ends.h"
#include "support/daemon.h"
#include "support/files.h"
#include "support/snapshot.h"
#include "support/wire.h"

static constexpr uint32_t kSetPrekOperation = 0x010000A9;

namespace {

struct row {
  std::string kind;
  std::string arguments;  // zeros and empty texts
  std::string payload;
  size_t size;
};

}  // namespace

// Zero arguments of each type.
static std::string zero_int() {
  return xdr_word(0);
}
static std::string zero_u_int() {
  return xdr_word(0);
}
static std::string zero_bool_t() {
  return xdr_word(0);
}
static std::string zero_u_short() {
  return xdr_word(0);
}
static std::string zero_string_t() {
  return xdr_text("");
}
static std::string zero_hnc_supported_hne_table() {
  return std::string(4 * (2 + 3 * 64 + 4 * 256 + 2), '\0');
}

static std::map<uint32_t, row> table() {
  return {
#define NOTHING
#define SHARED(stem)
#define INDEX(name) +zero_int()
#define FIELD(type, name) +zero_##type()
#define ONLY_INDEX(name) +zero_int()
#define ONLY(type, name) +zero_##type()
#define CODE "CODE", 0
#define UPDATE "CODE", 0
#define INT(label) "INT", 4
#define TEXT(label) "TEXT", 0
#define WORDS(type) "WORDS", sizeof(type)
#define IMAGE(type) "IMAGE", sizeof(type)
#define NONE "NONE", 0
#define PROCEDURE(number, name, stem, topic, members, answer, ...) \
  {number, {"built", std::string() members, answer}},
#define INERT(number, name, stem, topic, members, answer, ...) \
  {number, {"inert", std::string() members, answer}},
#define OWN(number, name, stem, topic, members, answer, ...) \
  {number, {"own", std::string() members, answer}},
#include "rpc/procedures.def"
  };
}

static std::string words(size_t count) {
  return xdr_word(static_cast<uint32_t>(count)) + std::string(4 * count, '\0');
}

// The reply of an inert procedure after its status.
static std::string empty_payload(const row& procedure) {
  if (procedure.payload == "INT") return words(4) + xdr_word(0);
  if (procedure.payload == "TEXT") return xdr_word(0) + xdr_text(std::string(1, '\0'));
  if (procedure.payload == "WORDS") return words(procedure.size) + xdr_word(0);
  if (procedure.payload == "IMAGE")
    return xdr_word(0) + xdr_text(std::string(procedure.size, '\0'));
  return procedure.payload == "NONE" ? xdr_word(0) + xdr_word(0) : "";
}

TEST(Table, HasAllProcedures) {
  EXPECT_EQ(table().size(), snapshot_procedures()) << kSnapshotGrows;
}

TEST(Table, EveryProcedureAnswersOverTheWire) {
  const pid_t child = service_child(start_daemon());
  for (const auto& [number, procedure] : table()) {
    // This would run the radios' self-test, which sleeps for four seconds.
    if (number == kSetPrekOperation) continue;
    reply_message reply = {};
    ASSERT_TRUE(call(number, procedure.arguments, &reply)) << number;
    EXPECT_EQ(reply.accept_status, kAcceptSuccess) << number;
    if (procedure.kind != "inert") continue;
    const int32_t code = static_cast<int32_t>(word_at(reply.payload, 0));
    EXPECT_TRUE(code == 0 || code == -1) << number;
    EXPECT_EQ(reply.payload.substr(4), empty_payload(procedure)) << number;
  }
  EXPECT_EQ(kill(child, 0), 0);
}

TEST(Table, InertProceduresTouchNothing) {
  start_daemon();
  // Notices every file opened, created or changed in the daemon's directories.
  const int watch = inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
  constexpr uint32_t kTouched = IN_OPEN | IN_CREATE | IN_MODIFY | IN_DELETE | IN_ATTRIB;
  ASSERT_NE(inotify_add_watch(watch, "/tmp", kTouched), -1);
  ASSERT_NE(inotify_add_watch(watch, "/nvram", kTouched), -1);
  for (const auto& [number, procedure] : table()) {
    reply_message reply = {};
    if (procedure.kind != "inert") continue;
    ASSERT_TRUE(call(number, procedure.arguments, &reply)) << number;
  }
  char event[4096];
  EXPECT_EQ(read(watch, event, sizeof event), -1) << "a file was touched";
  EXPECT_EQ(errno, EAGAIN);
  // The watch does notice a call that touches files.
  ASSERT_EQ(call_for_code(22, xdr_word(1) + xdr_text("touch")), 0);
  EXPECT_GT(read(watch, event, sizeof event), 0);
  close(watch);
  EXPECT_EQ(run("grep '\"name\"' /run/gwbox/journal.jsonl"), "") << "a request of the driver";
  EXPECT_EQ(run("grep '\"call\"' /run/gwbox/journal.jsonl | grep -v wlan_set_ssid"), "");
}

TEST(Table, OnlyTheseInertProceduresRefuse) {
  start_daemon();
  std::vector<uint32_t> refusing;
  for (const auto& [number, procedure] : table()) {
    if (procedure.kind != "inert") continue;
    reply_message reply = {};
    ASSERT_TRUE(call(number, procedure.arguments, &reply)) << number;
    if (static_cast<int32_t>(word_at(reply.payload, 0)) == -1) refusing.push_back(number);
  }
  // IGMP snooping, 802.11u switch and attribute in both directions, airtime.
  EXPECT_EQ(refusing, (std::vector<uint32_t>{210, 0x01000010, 0x01000011, 0x01000012, 0x01000013,
                                             0x01000015}));
}

// Numbers within and around each range, and some far away.
TEST(Table, EveryGapIsUnavailable) {
  constexpr uint32_t kAround = 20;
  start_daemon();
  const std::map<uint32_t, row> known = table();
  std::set<uint32_t> numbers = {0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
  for (const auto& [number, procedure] : known) {
    for (uint32_t near = number > kAround ? number - kAround : 1; near <= number + kAround; ++near)
      numbers.insert(near);
  }
  for (const uint32_t number : numbers) {
    if (known.contains(number)) continue;
    reply_message reply = {};
    ASSERT_TRUE(call(number, xdr_word(1), &reply)) << number;
    EXPECT_EQ(reply.accept_status, kProcedureUnavailable) << number;
    EXPECT_EQ(reply.payload, "") << number;
  }
}

TEST(Reply, NullProcedureIsEmpty) {
  start_daemon();
  reply_message reply = {};
  ASSERT_TRUE(call(0, "", &reply));
  EXPECT_EQ(reply.accept_status, kAcceptSuccess);
  EXPECT_EQ(reply.payload, "");
}

TEST(Reply, IntegerGetterIsTwentyEightBytesWithZerosBehindTheValue) {
  start_daemon();
  reply_message reply = {};
  ASSERT_TRUE(call(16, xdr_word(1), &reply));
  EXPECT_EQ(reply.payload, xdr_word(0) + xdr_word(4) + std::string(16, '\0') + xdr_word(0));
}

TEST(Reply, EmptyTextIsOneNul) {
  start_daemon();
  reply_message reply = {};
  ASSERT_TRUE(call(21, xdr_word(99), &reply));
  EXPECT_EQ(reply.payload, xdr_word(0) + xdr_word(0) + xdr_word(1) + std::string(4, '\0'));
}

TEST(Reply, EmptyRecordIsTwelveBytes) {
  start_daemon();
  reply_message reply = {};
  ASSERT_TRUE(call(300, xdr_word(1), &reply));
  EXPECT_EQ(reply.payload, std::string(12, '\0'));
}

static uint32_t accept_status_of(uint32_t procedure, const std::string& arguments) {
  reply_message reply = {};
  EXPECT_TRUE(call(procedure, arguments, &reply)) << procedure;
  return reply.accept_status;
}

TEST(CutOff, ArgumentsAreNeverCompletedFromAnEarlierRequest) {
  start_daemon();
  const std::string secret = "the neighbour's secret";
  const std::string whole = xdr_word(3) + xdr_text(secret);
  for (size_t length = 0; length < whole.size(); ++length) {
    ASSERT_EQ(accept_status_of(22, whole), kAcceptSuccess);
    // Another BSS with the same text, cut at every byte.
    const std::string cut = (xdr_word(4) + xdr_text(secret)).substr(0, length);
    EXPECT_EQ(accept_status_of(22, cut), kGarbageArguments) << length;
  }
  const std::string profile = read_file("/tmp/mt76xx_24.dat");
  EXPECT_EQ(profile.find("SSID4=" + secret), profile.npos);
}

TEST(CutOff, HeaderIsNeverCompletedFromAnEarlierRequest) {
  const pid_t child = service_child(start_daemon());
  const std::string whole = call_message(22, xdr_word(4) + xdr_text("again"), 77);
  const std::string before = read_file("/tmp/mt76xx_24.dat");
  for (size_t length = 0; length < 40; ++length) {
    ASSERT_EQ(call_for_code(22, xdr_word(3) + xdr_text("bait" + std::to_string(length))), 0);
    reply_message reply = {};
    EXPECT_FALSE(exchange(whole.substr(0, length), 77, &reply, 0.02)) << length;
  }
  const std::string profile = read_file("/tmp/mt76xx_24.dat");
  EXPECT_EQ(profile.find("SSID4=again"), profile.npos);
  EXPECT_EQ(kill(child, 0), 0);
}

TEST(CutOff, CredentialsThatReachBeyondTheDatagramAreDropped) {
  start_daemon();
  ASSERT_EQ(call_for_code(22, xdr_word(3) + xdr_text(std::string(400, 'a'))), 0);
  const std::string header = xdr_word(5) + xdr_word(0) + xdr_word(2) + xdr_word(kProgramNumber) +
                             xdr_word(1) + xdr_word(0);
  const std::string credentials = xdr_word(0) + xdr_word(400) + xdr_word(0) + xdr_word(0);
  reply_message reply = {};
  EXPECT_FALSE(exchange(header + credentials, 5, &reply, 0.1));
  EXPECT_TRUE(daemon_answers());
}

TEST(Malformed, OtherProgramsAndVersionsAreRefused) {
  start_daemon();
  reply_message reply = {};
  ASSERT_TRUE(exchange(call_message(0, "", 5, 0x20131338), 5, &reply));
  EXPECT_EQ(reply.accept_status, kProgramUnavailable);
  ASSERT_TRUE(exchange(call_message(0, "", 6, kProgramNumber, 2), 6, &reply));
  EXPECT_EQ(reply.accept_status, kProgramMismatch);
  EXPECT_EQ(reply.payload, xdr_word(1) + xdr_word(1));
}

TEST(Malformed, BadLengthsAreGarbage) {
  start_daemon();
  for (const uint32_t length : {0xFFFFFFFFu, 0xFFFFFFFEu, 0x7FFFFFFFu, 0x80000000u, 9000u, 100u}) {
    EXPECT_EQ(accept_status_of(22, xdr_word(1) + xdr_word(length) + "abcd"), kGarbageArguments)
        << length;
  }
}

TEST(Malformed, DatagramsOfAnySizeNeverEndTheChild) {
  const pid_t child = service_child(start_daemon());
  for (size_t size = 0; size <= 9000; size += size < 128 ? 1 : 97) {
    send_datagram(std::string(size, '\0'));
    send_datagram(std::string(size, '\xFF'));
    send_datagram(call_message(22, std::string(size, '\x01')));
    send_datagram(call_message(0x0100007A, std::string(size, '\x7F')));
    if (size % 64 != 0) continue;
    ASSERT_TRUE(wait_until(daemon_answers)) << size;
  }
  EXPECT_TRUE(wait_until(daemon_answers));
  EXPECT_EQ(kill(child, 0), 0);
}

TEST(Trace, SwitchTakesEffectAtTheNextCall) {
  start_daemon();
  ASSERT_EQ(accept_status_of(16, xdr_word(1)), kAcceptSuccess);
  EXPECT_EQ(daemon_output(), "");
  write_file("/tmp/wlandbg", "");
  ASSERT_EQ(accept_status_of(16, xdr_word(1)), kAcceptSuccess);
  EXPECT_EQ(daemon_output(),
            "\033[1;32;40m[RPC] wlan_get_channel_1_svc\033[0m  WLAN RPC server : index 1\n"
            "\033[1;32;40m[RPC] wlan_get_channel_1_svc\033[0m  WLAN RPC server : [channel = 0 ]\n");
}

TEST(Trace, TextGetterShowsIndexLengthAndText) {
  start_daemon();
  write_file("/tmp/wlandbg", "");
  ASSERT_EQ(accept_status_of(21, xdr_word(3)), kAcceptSuccess);
  const std::string prefix = "\033[1;32;40m[RPC] wlan_get_ssid_1_svc\033[0m ";
  EXPECT_EQ(daemon_output(), prefix + " WLAN RPC server : [index 3]\n" + prefix +
                                 " WLAN RPC server : [len = 1]\n" + prefix +
                                 " WLAN RPC server : [ssid ]\n");
}

TEST(Trace, LogCollectsTheMessagesOfCalls) {
  start_daemon();
  run("mkdir /tmp/auto_debug; touch /tmp/auto_debug/rpc_dbg_en");
  ASSERT_EQ(accept_status_of(16, xdr_word(9)), kAcceptSuccess);
  const std::string log = read_file("/tmp/auto_debug/dbg_rpc.log");
  EXPECT_NE(log.find(" -  WLAN RPC server : index 9\n"), log.npos) << log;
}
