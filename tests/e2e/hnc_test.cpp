#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <filesystem>
#include <iterator>

#include "support/daemon.h"
#include "support/files.h"
#include "support/gateway.h"
#include "support/hnc_listener.h"
#include "support/wire.h"

// The home network controller: with gwbox's listener or, for thousands of calls, with the
// stand-in.

static constexpr uint32_t kGetHncEnable = 0x0100004E;
static constexpr uint32_t kSetHncEnable = 0x0100004F;
static constexpr uint32_t kGetUrl = 0x01000054;
static constexpr uint32_t kSetUrl = 0x01000055;
static constexpr uint32_t kGetTopology = 0x0100005E;
static constexpr uint32_t kGetNumberOfEntries = 0x01000060;
static constexpr uint32_t kSetNumberOfEntries = 0x01000061;
static constexpr uint32_t kGetAttempts = 0x01000070;
static constexpr uint32_t kGetDuration = 0x01000072;
static constexpr uint32_t kGetHneRow = 0x01000076;
static constexpr uint32_t kSetDeviceName = 0x01000077;
static constexpr uint32_t kGetSupportedRow = 0x01000078;
static constexpr uint32_t kSetRowStatus = 0x01000079;
static constexpr uint32_t kSetSupportedRow = 0x0100007A;

static constexpr char kMarker[] = "/nvram/hnc_enable";
static constexpr char kHncError[] = "[REV-RPC] \033[40m\033[31;40m**ERROR**\033[0m ";

// Answers of the getters.
static std::string int_answer(uint32_t value, int32_t code = 0) {
  return xdr_word(static_cast<uint32_t>(code)) + xdr_word(4) + xdr_word(value) +
         std::string(12, '\0') + xdr_word(0);
}

static std::string text_answer(const std::string& text, int32_t code = 0) {
  return xdr_word(static_cast<uint32_t>(code)) + xdr_word(0) + xdr_text(text + '\0');
}

static std::string image_answer(const std::string& image, int32_t code = 0) {
  return xdr_word(static_cast<uint32_t>(code)) + xdr_word(0) + xdr_text(image);
}

static pid_t start_with_controller() {
  write_file(kMarker, "");
  run("hnc-listener </dev/null >/dev/null 2>&1 &");
  EXPECT_TRUE(wait_until([] { return !run("ss -Huln sport = 4567").empty(); }));
  return start_daemon();
}

// The requests that the listener recorded, one per line: "type name index value".
static std::string noted() {
  return run("jq -r '\"\\(.type) \\(.name) \\(.index) \\(.value)\"' /run/gwbox/hnc.jsonl");
}

namespace {

// A setting: its getter, whether it takes an instance, its key, and the instance that the
// listener receives for instance 2.
struct hnc_setting {
  uint32_t get;
  bool instance;
  const char* key;
  const char* sent;
};

}  // namespace

static constexpr hnc_setting kFlags[] = {
    {0x01000050, true, "ACMEnable", "0"},          {0x01000052, true, "HNEFWUpgradeEnable", "0"},
    {0x0100005E, true, "TopologyEnable", "0"},     {0x01000062, true, "HNEConfigOnDemand", "2"},
    {0x0100006A, false, "ClientSteerEnable", "0"}, {0x0100006C, false, "RRMEnable", "0"},
    {0x0100006E, false, "MSearchEnable", "0"},     {0x01000074, false, "SecurityEnable", "0"},
};

static constexpr hnc_setting kNumbers[] = {
    {0x01000060, true, "HNENumberOfEntries", "2"},
    {0x01000070, false, "ConfigAttempts", "0"},
    {0x01000072, false, "ConfigDuration", "0"},
};

static constexpr hnc_setting kTexts[] = {
    {0x01000054, true, "UpdateFwUrl", "2"},      {0x01000056, true, "UpdateFwFilename", "2"},
    {0x01000058, true, "UpdateFwUsername", "2"}, {0x0100005A, true, "UpdateFwPassword", "2"},
    {0x01000064, true, "HNEManufacturer", "2"},  {0x01000066, true, "HNEModelname", "2"},
    {0x01000068, true, "HNEModelnumber", "2"},
};

// Sets, then gets, and checks what the listener received.
static void expect_round_trip(const hnc_setting& row, const std::string& value,
                              const std::string& text, const std::string& answer) {
  unlink("/run/gwbox/hnc.jsonl");
  const std::string instance = row.instance ? xdr_word(2) : "";
  EXPECT_EQ(call_for_code(row.get + 1, instance + value), 0) << row.key;
  EXPECT_EQ(noted(), "set " + std::string(row.key) + " " + row.sent + " " + text + "\n");
  EXPECT_EQ(call_for_payload(row.get, instance), answer) << row.key;
  EXPECT_TRUE(noted().find("\nget " + std::string(row.key) + " " + row.sent + " ") !=
              std::string::npos)
      << noted();
}

TEST(Hnc, EveryFlagReachesTheListenerAndComesBack) {
  start_with_controller();
  for (const hnc_setting& row : kFlags) {
    expect_round_trip(row, xdr_word(1), "1", int_answer(1));
    expect_round_trip(row, xdr_word(0), "0", int_answer(0));
  }
  EXPECT_EQ(call_for_payload(kGetHncEnable, xdr_word(1)), int_answer(1));
  EXPECT_EQ(daemon_errors(), "");
}

TEST(Hnc, EveryNumberReachesTheListenerAndComesBack) {
  start_with_controller();
  for (const hnc_setting& row : kNumbers) {
    expect_round_trip(row, xdr_word(17), "17", int_answer(17));
    expect_round_trip(row, xdr_word(0xFFFFFFFF), "-1", int_answer(0xFFFFFFFF));
    expect_round_trip(row, xdr_word(0x80000000), "-2147483648", int_answer(0x80000000));
  }
}

TEST(Hnc, EveryTextReachesTheListenerAndComesBack) {
  start_with_controller();
  const std::string odd = "%n $(touch /tmp/pwned) `id` '\";|&";
  for (const hnc_setting& row : kTexts) {
    expect_round_trip(row, xdr_text("plain"), "plain", text_answer("plain"));
    expect_round_trip(row, xdr_text(""), "", text_answer(""));
    expect_round_trip(row, xdr_text(odd), odd, text_answer(odd));
  }
  // The listener keeps this one as a number.
  expect_round_trip({0x0100005C, true, "UpdateFwTime", "2"}, xdr_text("1700000000"), "1700000000",
                    text_answer("1700000000"));
  EXPECT_FALSE(exists("/tmp/pwned"));
}

TEST(Hnc, LongTextIsCutTo127Bytes) {
  start_with_controller();
  const std::string sent(127, 'u');
  expect_round_trip({kGetUrl, true, "UpdateFwUrl", "2"}, xdr_text(std::string(8000, 'u')), sent,
                    text_answer(sent));
}

TEST(Hnc, InstancesWithoutARowAreTheListenersBusiness) {
  start_with_controller();
  for (const uint32_t instance : {0u, 17u, 0xFFFFFFFFu, 0x80000000u, 0x7FFFFFFFu}) {
    EXPECT_EQ(call_for_code(kSetNumberOfEntries, xdr_word(instance) + xdr_word(5)), 0);
    EXPECT_EQ(call_for_payload(kGetNumberOfEntries, xdr_word(instance)), int_answer(5)) << instance;
  }
}

TEST(Hnc, ItsSwitchMakesAndRemovesTheMarker) {
  start_daemon();
  EXPECT_EQ(call_for_code(kSetHncEnable, xdr_word(1) + xdr_word(1)), 0);
  EXPECT_TRUE(exists(kMarker));
  EXPECT_EQ(call_for_code(kSetHncEnable, xdr_word(1) + xdr_word(1)), 0);
  EXPECT_EQ(call_for_code(kSetHncEnable, xdr_word(1) + xdr_word(0)), 0);
  EXPECT_FALSE(exists(kMarker));
  const std::string prefix = std::string(kHncError) + "hnc_setEnable hnc_setEnable:";
  EXPECT_EQ(daemon_errors(),
            prefix + "Creating hnc_enable fle to START HNC process. \n" + prefix +
                "HNC status is enabled and request is to enable. Nothing to do. \n" + prefix +
                "Stopping HNC by deleting hnc_enable fle. \n");
}

// What each operation reports when it fails.

namespace {

// Which messages an operation has, and whether its name and a blank precede the first.
enum says { kNothing, kNotRunning, kBoth, kBothWithABlank };

struct operation {
  uint32_t procedure;
  const char* name;
  says what;
};

}  // namespace

static constexpr operation kOperations[] = {
    {0x0100004E, "hnc_getEnable", kBoth},
    {0x01000050, "hnc_getAcmEnable", kNothing},
    {0x01000051, "hnc_setAcmEnable", kNotRunning},
    {0x01000052, "hnc_getUpdateFWEnable", kBoth},
    {0x01000053, "hnc_setUpdateFWEnable", kBoth},
    {0x01000054, "hnc_getUpdateFWURL", kNothing},
    {0x01000055, "hnc_setUpdateFWURL", kNothing},
    {0x01000056, "hnc_getUpdateFWFilename", kNothing},
    {0x01000057, "hnc_setUpdateFWFilename", kNothing},
    {0x01000058, "hnc_getUpdateFWUsername", kNothing},
    {0x01000059, "hnc_setUpdateFWUsername", kNothing},
    {0x0100005A, "hnc_getUpdateFWPassword", kNothing},
    {0x0100005B, "hnc_setUpdateFWPassword", kNothing},
    {0x0100005C, "hnc_getUpdateFWTime", kNothing},
    {0x0100005D, "hnc_setUpdateFWTime", kNothing},
    {0x0100005E, "hnc_getTopologyEnable", kBoth},
    {0x0100005F, "hnc_setTopologyEnable", kBoth},
    {0x01000060, "hnc_getSupportedHNENumberOfEntries", kNothing},
    {0x01000061, "hnc_setSupportedHNENumberOfEntries", kNothing},
    {0x01000062, "hnc_getSupportedHNEConfigOnDemand", kNothing},
    {0x01000063, "hnc_setSupportedHNEConfigOnDemand", kNothing},
    {0x01000064, "hnc_getSupportedHNEManufacturer", kNothing},
    {0x01000065, "hnc_setSupportedHNEManufacturer", kNothing},
    {0x01000066, "hnc_getSupportedHNEModelname", kNothing},
    {0x01000067, "hnc_setSupportedHNEModelname", kNothing},
    {0x01000068, "hnc_getSupportedHNEModelnumber", kNothing},
    {0x01000069, "hnc_setSupportedHNEModelnumber", kNothing},
    {0x0100006A, "hnc_getClientSteeringEnable", kBoth},
    {0x0100006B, "hnc_setClientSteeringEnable", kBoth},
    {0x0100006C, "hnc_getRRMEnable", kBoth},
    {0x0100006D, "hnc_setRRMEnable", kBoth},
    {0x0100006E, "hnc_getHneMSearchEnable", kBoth},
    {0x0100006F, "hnc_setHneMSearchEnable", kBoth},
    {0x01000070, "hnc_getHneConfigAttempts", kBoth},
    {0x01000071, "hnc_setHneConfigAttempts", kBoth},
    {0x01000072, "hnc_getHneConfigDuration", kBoth},
    {0x01000073, "hnc_setHneConfigDuration", kBoth},
    {0x01000074, "hnc_getHneSecurityEnable", kBoth},
    {0x01000075, "hnc_setHneSecurityEnable", kBoth},
    {0x01000076, "hnc_getHneTableEntry", kBoth},
    {0x01000077, "hnc_setHneDeviceName", kBothWithABlank},
    {0x01000078, "hnc_getSupportedHneTableEntry", kBothWithABlank},
    {0x01000079, "hnc_setSupportedHneRowStatus", kBothWithABlank},
    {0x0100007A, "hnc_setSupportedHneTableEntry", kBothWithABlank},
};
static_assert(std::size(kOperations) == 44);

static std::string not_running(const operation& row) {
  if (row.what == kNothing) return "";
  return std::string(kHncError) + row.name + " " + row.name +
         (row.what == kBothWithABlank ? " " : ":") + "HNC Process is not running\n";
}

static std::string not_sent(const operation& row) {
  if (row.what < kBoth) return "";
  return std::string(kHncError) + row.name + " " + row.name +
         " Failed to send messgae to HNC Listner\n";
}

// Fits every procedure of the controller: a number, then zeros, which also make an empty
// text.
static const std::string kAnyArgument = xdr_word(1) + std::string(6000, '\0');

static void expect_refusals(std::string (*message)(const operation&)) {
  for (const operation& row : kOperations) {
    const size_t before = daemon_errors().size();
    EXPECT_EQ(call_for_payload(row.procedure, kAnyArgument).substr(0, 4), xdr_word(0xFFFFFFFF))
        << row.name;
    EXPECT_EQ(daemon_errors().substr(before), message(row)) << row.name;
  }
}

TEST(Hnc, WithoutTheMarkerEverythingFailsAndNothingIsSent) {
  start_with_controller();
  ASSERT_EQ(unlink(kMarker), 0);
  expect_refusals(not_running);
  for (const hnc_setting& row : kFlags)
    EXPECT_EQ(call_for_payload(row.get, row.instance ? xdr_word(1) : ""), int_answer(0, -1))
        << row.key;
  for (const hnc_setting& row : kNumbers)
    EXPECT_EQ(call_for_payload(row.get, row.instance ? xdr_word(1) : ""), int_answer(0, -1))
        << row.key;
  for (const hnc_setting& row : kTexts)
    EXPECT_EQ(call_for_payload(row.get, xdr_word(1)), text_answer("", -1)) << row.key;
  EXPECT_EQ(call_for_payload(kGetHneRow, xdr_word(1)), image_answer(std::string(1492, '\0'), -1));
  EXPECT_EQ(call_for_payload(kGetSupportedRow, xdr_word(1)),
            image_answer(std::string(1232, '\0'), -1));
  EXPECT_FALSE(exists("/run/gwbox/hnc.jsonl"));
}

TEST(Hnc, WhenNothingCanBeSentEverythingFails) {
  start_with_controller();
  // From now on only the listener's port is unreachable.
  ASSERT_EQ(run("ip rule add pref 5 ipproto udp dport 4567 prohibit 2>&1 && "
                "ip rule add pref 10 lookup local 2>&1 && ip rule del pref 0 2>&1"),
            "");
  expect_refusals(not_sent);
  EXPECT_FALSE(exists("/run/gwbox/hnc.jsonl"));
}

TEST(Hnc, ExtenderRowsComeAsTheyAre) {
  start_with_controller();
  const std::string payload = call_for_payload(kGetHneRow, xdr_word(1));
  ASSERT_EQ(payload.size(), 12u + 1492u);
  EXPECT_EQ(payload.substr(0, 12), xdr_word(0) + xdr_word(0) + xdr_word(1492));
  EXPECT_EQ(payload.substr(12, 4), little_endian(1));
  EXPECT_EQ(payload.substr(12 + 916, 4), little_endian(1700000000));
  EXPECT_EQ(call_for_code(kSetDeviceName, xdr_word(1) + xdr_text("Loft")), 0);
  EXPECT_NE(call_for_payload(kGetHneRow, xdr_word(1)).find(std::string("Loft\0", 5)),
            std::string::npos);
  for (const uint32_t row : {0u, 2u, 17u, 0xFFFFFFFFu}) {
    EXPECT_EQ(call_for_payload(kGetHneRow, xdr_word(row)),
              image_answer(std::string(1492, '\0'), -1));
    EXPECT_EQ(call_for_code(kSetDeviceName, xdr_word(row) + xdr_text("Nowhere")), -1);
  }
}

// The characters of a vector on the wire, one word each.
static std::string char_words(const std::string& text, size_t size) {
  std::string words;
  for (size_t i = 0; i < size; ++i)
    words += xdr_word(i < text.size() ? static_cast<uint32_t>(text[i]) : 0);
  return words;
}

static std::string padded(std::string text, size_t size) {
  text.resize(size, '\0');
  return text;
}

TEST(Hnc, SupportedRowsGoThereAndBack) {
  start_with_controller();
  const std::string full(64, 'M');
  const struct {
    const char* text;
    size_t size;
  } texts[] = {{"Extender", 64}, {"X9", 64},    {"http://192.168.254.254/", 256},
               {"x9.bin", 256},  {"user", 256}, {"pass", 256}};
  std::string argument = xdr_word(7) + xdr_word(3) + xdr_word(1) + char_words(full, 64);
  std::string image = little_endian(3) + little_endian(1) + full;
  for (const auto& text : texts) {
    argument += char_words(text.text, text.size);
    image += padded(text.text, text.size);
  }
  argument += xdr_word(1700000000) + xdr_word(1);
  image += little_endian(1700000000) + little_endian(1);
  EXPECT_EQ(call_for_code(kSetSupportedRow, argument), 0);
  EXPECT_EQ(call_for_payload(kGetSupportedRow, xdr_word(7)), image_answer(image));
  EXPECT_EQ(run("jq -r .record.manufacturer /run/gwbox/hnc.jsonl | head -1"), full + "\n");
  // Row status 6 removes the row.
  EXPECT_EQ(call_for_code(kSetRowStatus, xdr_word(7) + xdr_word(6)), 0);
  EXPECT_EQ(call_for_payload(kGetSupportedRow, xdr_word(7)),
            image_answer(std::string(1232, '\0'), -1));
  EXPECT_EQ(call_for_code(kSetRowStatus, xdr_word(7) + xdr_word(6)), 0) << "not looked at";
}

TEST(Hnc, OddAnswersAreSuccesses) {
  const pid_t child = service_child(start_with_controller());
  set_companion("hnc.behaviour", "empty");
  EXPECT_EQ(call_for_payload(kGetTopology, xdr_word(1)), int_answer(0));
  EXPECT_EQ(call_for_payload(kGetUrl, xdr_word(1)), text_answer(""));
  EXPECT_EQ(call_for_payload(kGetHneRow, xdr_word(99)), image_answer(std::string(1492, '\0')));
  set_companion("hnc.behaviour", "short");
  EXPECT_EQ(call_for_payload(kGetDuration, ""), int_answer(300));
  EXPECT_EQ(call_for_payload(kGetSupportedRow, xdr_word(99)),
            image_answer(std::string(1232, '\0')));
  set_companion("hnc.behaviour", "huge");
  EXPECT_EQ(call_for_payload(kGetDuration, ""), int_answer(300));
  set_companion("hnc.behaviour", "unterminated");
  EXPECT_EQ(call_for_payload(kGetUrl, xdr_word(1)), text_answer(std::string(131, 'U')));
  EXPECT_EQ(call_for_payload(kGetHneRow, xdr_word(1)), image_answer(std::string(1492, 'U')));
  EXPECT_EQ(kill(child, 0), 0);
}

TEST(Hnc, LateAnswerIsNotTakenForTheNextOne) {
  start_with_controller();
  set_companion("hnc.behaviour", "late");
  EXPECT_EQ(call_for_payload(kGetDuration, ""), int_answer(0, -1));
  EXPECT_EQ(daemon_errors(), std::string(kHncError) +
                                 "hnc_getHneConfigDuration hnc_getHneConfigDuration Failed to "
                                 "send messgae to HNC Listner\n");
  set_companion("hnc.behaviour", "normal");
  EXPECT_EQ(call_for_payload(kGetAttempts, ""), int_answer(3));
  EXPECT_EQ(call_for_payload(kGetDuration, ""), int_answer(300));
}

TEST(Hnc, CallsAreTracedFromTheDispatcherToTheListener) {
  start_with_controller();
  EXPECT_EQ(call_for_code(kSetUrl, xdr_word(1) + xdr_text("http://x/")), 0);
  write_file("/tmp/wlandbg", "");
  EXPECT_EQ(call_for_payload(kGetUrl, xdr_word(1)), text_answer("http://x/"));
  const auto rpc = [](const std::string& function) {
    return "\033[1;32;40m[RPC] " + function + "\033[0m ";
  };
  const auto rev = [](const std::string& function) {
    return "[REV-RPC] \033[40m\033[31;40m" + function + "\033[0m ";
  };
  const std::string handler = rpc("hnc_get_updatefw_url_1_svc");
  EXPECT_EQ(daemon_output(),
            rpc("wlan_config_rpc_prog_1") +
                "DEBUG >>>>>>>>>>>>>>>>>>>>>>>>> case HNC_GET_UPDATEFW_URL \n" +
                rpc("_hnc_get_updatefw_url_1") +
                "DEBUG:>>>>>>>>>>>>>>>>>>>>>>>>> _hnc_get_updatefw_url_1. \n" + handler +
                " WLAN RPC server : [index 1]\n" + rev("hnc_getUpdateFWURL") +
                "hnc_getUpdateFWURL entered\n" + rev("sendMessage") +
                "DEBUG >>>>>>>>>>>>>>>>>>>>>>>>> In func sendMessage. \n" + rev("sendMessage") +
                ">>>>>>>>>>>>>>>>>>>sendMessage fuunction: Sent Request UpdateFwUrl\n" +
                rev("sendMessage") +
                ">>>>>>>>>>>>>>>>>>>sendMessage function: Received Response http://x/\n" +
                rev("hnc_getUpdateFWURL") + "hnc_getUpdateFWURL:UpdateFwUrl http://x/\n" + handler +
                " WLAN RPC server : [len = 10]\n" + handler +
                " WLAN RPC server : [updatefw_url http://x/]\n" + handler +
                "DEBUG>>>>>>>>>>>>>>>>>In hnc_get_updatefw_url_1_svc fun. "
                "result->return_data.return_data_val:-http://x/-\n");
}

TEST(Hnc, OnlyItsOwnTextsAreShownTwice) {
  start_with_controller();
  write_file("/tmp/wlandbg", "");
  call_for_payload(21, xdr_word(1));
  EXPECT_EQ(daemon_output().find("return_data_val"), std::string::npos) << daemon_output();
}

TEST(Hnc, SupportedRowIsTracedByItsHandler) {
  start_daemon();
  write_file("/tmp/wlandbg", "");
  const std::string texts(4 * (3 * 64 + 4 * 256), '\0');
  EXPECT_EQ(call_for_code(kSetSupportedRow, xdr_word(7) + xdr_word(3) + xdr_word(1) + texts +
                                                xdr_word(0) + xdr_word(0)),
            -1);
  EXPECT_TRUE(
      daemon_output().starts_with("\033[1;32;40m[RPC] hnc_set_hne_table_entry_1_svc\033[0m "
                                  " WLAN RPC server : [row=7][index=3][row_status=1]\n"))
      << daemon_output();
}

// Starts the daemon with a limit, and the stand-in, and waits for the daemon.
static pid_t start_limited(const std::string& limits) {
  write_file(kMarker, "");
  const pid_t supervisor = start_supervisor_through(limits + "; exec ");
  EXPECT_TRUE(wait_until(daemon_answers)) << daemon_errors();
  start_listener();
  listener_answers(hnc_reply_bytes("5"));
  return supervisor;
}

// Makes 5,000 calls one after the other and returns how many were not answered. After
// each of these it waits for the service.
static int lost_of_5000_calls(double seconds) {
  int lost = 0;
  for (int i = 0; i < 5000; ++i) {
    reply_message reply = {};
    if (!call(kGetAttempts, "", &reply, seconds)) {
      ++lost;
      EXPECT_TRUE(wait_until(daemon_answers));
    } else {
      EXPECT_EQ(reply.payload, int_answer(5)) << i;
    }
  }
  return lost;
}

static size_t descriptors_of(pid_t pid) {
  size_t count = 0;
  for (const auto& entry :
       std::filesystem::directory_iterator("/proc/" + std::to_string(pid) + "/fd"))
    count += !entry.path().empty();
  return count;
}

// Takes four seconds: each of the four lost calls times out after one.
TEST(HncDescriptors, ChildThatRunsOutIsReplacedAndOnlyTheCallAtHandIsLost) {
  // The leak checker would need descriptors when the child ends.
  const pid_t supervisor =
      start_limited("export ASAN_OPTIONS=$ASAN_OPTIONS:detect_leaks=0; ulimit -n 1024");
  const pid_t first = service_child(supervisor);
  const int lost = lost_of_5000_calls(1.0);
  EXPECT_EQ(lost, 4);
  EXPECT_EQ(count_of(daemon_errors(), "ERROR opening socket: Too many open files\n"), 4u);
  EXPECT_NE(service_child(supervisor), first);
  EXPECT_TRUE(daemon_answers());
}

TEST(HncDescriptors, ChildRaisesItsLimitAndLosesNothing) {
  const pid_t supervisor = start_limited("ulimit -Sn 1024; ulimit -Hn 8192");
  const pid_t child = service_child(supervisor);
  EXPECT_EQ(lost_of_5000_calls(2.0), 0);
  EXPECT_EQ(service_child(supervisor), child);
  EXPECT_GT(descriptors_of(child), 5000u);
  EXPECT_EQ(daemon_errors(), "");
  EXPECT_TRUE(daemon_answers());
}
