#include "hnc/settings.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <climits>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "hnc/listener.h"
#include "support/hnc_listener.h"
#include "unit_support.h"

namespace {

// Which of the two messages an operation writes.
enum messages { kNone, kNotRunning, kBoth };

struct number_row {
  std::string name;  // of the operations, after hnc_get and hnc_set
  std::string key;
  bool flag;
  uint32_t index;  // the one sent for instance 7
  std::string filler;
  messages get_says;
  messages set_says;
  std::function<int(int*)> get;
  std::function<int(int)> set;
};

struct text_row {
  std::string name;
  std::string key;
  bool null_checked;
  std::function<int(char*)> get;
  std::function<int(const char*)> set;
};

}  // namespace

#define WITH_INSTANCE(name)                           \
  [](int* value) { return hnc_get##name(7, value); }, \
      [](int value) { return hnc_set##name(7, value); }
#define WITHOUT_INSTANCE(name) \
  [](int* value) { return hnc_get##name(value); }, [](int value) { return hnc_set##name(value); }

static const std::vector<number_row>& numbers() {
  static const std::vector<number_row> kRows = {
      {"AcmEnable", "ACMEnable", true, 0, "0", kNone, kNotRunning, WITH_INSTANCE(AcmEnable)},
      {"TopologyEnable", "TopologyEnable", true, 0, "0", kBoth, kBoth,
       WITH_INSTANCE(TopologyEnable)},
      {"UpdateFWEnable", "HNEFWUpgradeEnable", true, 0, "", kBoth, kBoth,
       WITH_INSTANCE(UpdateFWEnable)},
      {"SupportedHNENumberOfEntries", "HNENumberOfEntries", false, 7, "", kNone, kNone,
       WITH_INSTANCE(SupportedHNENumberOfEntries)},
      {"SupportedHNEConfigOnDemand", "HNEConfigOnDemand", true, 7, "", kNone, kNone,
       WITH_INSTANCE(SupportedHNEConfigOnDemand)},
      {"ClientSteeringEnable", "ClientSteerEnable", true, 0, "", kBoth, kBoth,
       WITHOUT_INSTANCE(ClientSteeringEnable)},
      {"RRMEnable", "RRMEnable", true, 0, "", kBoth, kBoth, WITHOUT_INSTANCE(RRMEnable)},
      {"HneMSearchEnable", "MSearchEnable", true, 0, "", kBoth, kBoth,
       WITHOUT_INSTANCE(HneMSearchEnable)},
      {"HneConfigAttempts", "ConfigAttempts", false, 0, "", kBoth, kBoth,
       WITHOUT_INSTANCE(HneConfigAttempts)},
      {"HneConfigDuration", "ConfigDuration", false, 0, "", kBoth, kBoth,
       WITHOUT_INSTANCE(HneConfigDuration)},
      {"HneSecurityEnable", "SecurityEnable", true, 0, "", kBoth, kBoth,
       WITHOUT_INSTANCE(HneSecurityEnable)},
  };
  return kRows;
}

#define TEXT_OF_INSTANCE(name)                                                                 \
  [](char* text) { return hnc_get##name(7, *reinterpret_cast<char(*)[kHncTextSize]>(text)); }, \
      [](const char* text) { return hnc_set##name(7, text); }

static const std::vector<text_row>& texts() {
  static const std::vector<text_row> kRows = {
      {"UpdateFWURL", "UpdateFwUrl", true, TEXT_OF_INSTANCE(UpdateFWURL)},
      {"UpdateFWFilename", "UpdateFwFilename", true, TEXT_OF_INSTANCE(UpdateFWFilename)},
      {"UpdateFWUsername", "UpdateFwUsername", true, TEXT_OF_INSTANCE(UpdateFWUsername)},
      {"UpdateFWPassword", "UpdateFwPassword", true, TEXT_OF_INSTANCE(UpdateFWPassword)},
      {"UpdateFWTime", "UpdateFwTime", true, TEXT_OF_INSTANCE(UpdateFWTime)},
      {"SupportedHNEManufacturer", "HNEManufacturer", false,
       TEXT_OF_INSTANCE(SupportedHNEManufacturer)},
      {"SupportedHNEModelname", "HNEModelname", false, TEXT_OF_INSTANCE(SupportedHNEModelname)},
      {"SupportedHNEModelnumber", "HNEModelnumber", false,
       TEXT_OF_INSTANCE(SupportedHNEModelnumber)},
  };
  return kRows;
}

static void run_controller() {
  write_file("/nvram/hnc_enable", "");
}

static void start_controller() {
  run_controller();
  start_listener();
}

static void move_listener_out_of_reach() {
  HOST_IP = "203.0.113.1";
}

static std::string not_running(const std::string& operation) {
  return rev_error_prefix(operation) + operation + ":HNC Process is not running\n";
}

static std::string not_sent(const std::string& operation) {
  return rev_error_prefix(operation) + operation + " Failed to send messgae to HNC Listner\n";
}

// The operation's own lines, without those of the exchange.
static std::string own_lines(const std::string& output, const std::string& operation) {
  std::string lines;
  const std::string prefix = rev_prefix(operation);
  for (size_t at = 0; at < output.size();) {
    const size_t end = output.find('\n', at) + 1;
    if (output.compare(at, prefix.size(), prefix) == 0) {
      lines += output.substr(at + prefix.size(), end - at - prefix.size());
    }
    at = end;
  }
  return lines;
}

TEST(HncSettings, NumbersAreSetAsDecimalText) {
  start_controller();
  const std::pair<int, std::string> values[] = {
      {0, "0"}, {1, "1"}, {-7, "-7"}, {INT_MAX, "2147483647"}, {INT_MIN, "-2147483648"}};
  for (const number_row& row : numbers()) {
    for (const auto& [value, text] : values) {
      EXPECT_EQ(row.set(value), 0) << row.name;
      EXPECT_EQ(last_listener_request(), hnc_request_bytes(1, row.key, row.index, text))
          << row.name << " " << value;
    }
  }
}

TEST(HncSettings, GetsNameKeyAndInstance) {
  start_controller();
  for (const number_row& row : numbers()) {
    int value = 77;
    EXPECT_EQ(row.get(&value), 0) << row.name;
    EXPECT_EQ(value, 0) << row.name;
    EXPECT_EQ(last_listener_request(), hnc_request_bytes(0, row.key, row.index, row.filler))
        << row.name;
  }
  for (const text_row& row : texts()) {
    char text[132] = {};
    EXPECT_EQ(row.get(text), 0) << row.name;
    EXPECT_EQ(last_listener_request(), hnc_request_bytes(0, row.key, 7, "")) << row.name;
  }
  int enabled = 77;
  EXPECT_EQ(hnc_getEnable(7, &enabled), 0);
  EXPECT_EQ(enabled, 0);
  EXPECT_EQ(last_listener_request(), hnc_request_bytes(0, "Enable", 0, "0"));
}

TEST(HncSettings, InstancesAreSentAsTheyAre) {
  start_controller();
  for (const int instance : {0, 1, 17, -1, INT_MIN, INT_MAX}) {
    EXPECT_EQ(hnc_setSupportedHNENumberOfEntries(instance, 3), 0);
    EXPECT_EQ(last_listener_request(),
              hnc_request_bytes(1, "HNENumberOfEntries", static_cast<uint32_t>(instance), "3"));
    EXPECT_EQ(hnc_setTopologyEnable(instance, 1), 0);
    EXPECT_EQ(last_listener_request(), hnc_request_bytes(1, "TopologyEnable", 0, "1"));
  }
}

TEST(HncSettings, FlagIsOneWhenTheAnswerBeginsWithAOne) {
  start_controller();
  const std::pair<std::string, int> answers[] = {
      {"1", 1},    {"10", 1}, {"1 no", 1},
      {"0", 0},    {"01", 0}, {" 1", 0},
      {"true", 0}, {"", 0},   {std::string(2860, '1'), 1}};
  for (const auto& [answer, expected] : answers) {
    listener_answers(answer);
    int enabled = 77;
    EXPECT_EQ(hnc_getEnable(1, &enabled), 0);
    EXPECT_EQ(enabled, expected) << answer;
    for (const number_row& row : numbers()) {
      if (!row.flag) continue;
      int value = 77;
      EXPECT_EQ(row.get(&value), 0) << row.name;
      EXPECT_EQ(value, expected) << row.name << " " << answer;
    }
  }
}

TEST(HncSettings, NumberIsWhatTheAnswerBeginsWith) {
  start_controller();
  const std::pair<std::string, int> answers[] = {
      {"300", 300},
      {"-3", -3},
      {" 12 minutes", 12},
      {" 5", 5},
      {"+5", 5},
      {"017", 17},
      {"0x1F", 0},
      {"abc", 0},
      {"", 0},
      {"2147483647", INT_MAX},
      {"-2147483648", INT_MIN},
      // Anything after the value is not part of it.
      {std::string(131, '0') + "99999", 0},
  };
  for (const auto& [answer, expected] : answers) {
    listener_answers(answer);
    for (const number_row& row : numbers()) {
      if (row.flag) continue;
      int value = 77;
      EXPECT_EQ(row.get(&value), 0) << row.name;
      EXPECT_EQ(value, expected) << row.name << " " << answer;
    }
  }
}

// The resulting number is unspecified.
TEST(HncSettings, NumberOutOfRangeIsASuccess) {
  start_controller();
  for (const std::string answer : {"2147483648", "-99999999999", "9999999999999999999999"}) {
    listener_answers(answer);
    int value = 0;
    EXPECT_EQ(hnc_getHneConfigDuration(&value), 0) << answer;
  }
}

TEST(HncSettings, TextsAreSentWholeUpTo127Bytes) {
  start_controller();
  const std::string odd = "%n%s $(touch /tmp/pwned) `id` '\";|&\nTopologyEnable=0\xff";
  const std::string longest(127, 'x');
  const std::pair<std::string, std::string> values[] = {
      {"http://192.168.254.254/fw", "http://192.168.254.254/fw"},
      {"", ""},
      {odd, odd},
      {longest, longest},
      {longest + "y", longest},
      {longest + std::string(8000, 'y'), longest},
  };
  for (const text_row& row : texts()) {
    for (const auto& [value, sent] : values) {
      EXPECT_EQ(row.set(value.c_str()), 0) << row.name;
      EXPECT_EQ(last_listener_request(), hnc_request_bytes(1, row.key, 7, sent)) << row.name;
    }
  }
  EXPECT_FALSE(exists("/tmp/pwned"));
}

TEST(HncSettings, TextAnswersStayInsideTheirField) {
  start_controller();
  const std::pair<std::string, std::string> answers[] = {
      {hnc_reply_bytes("x1.bin"), "x1.bin"},
      {"x1", "x1"},
      {"", ""},
      {hnc_reply_bytes(std::string(131, 'a')), std::string(131, 'a')},
      {std::string(2860, 'U'), std::string(131, 'U')},
      {std::string(65000, 'U'), std::string(131, 'U')},
  };
  for (const text_row& row : texts()) {
    for (const auto& [answer, expected] : answers) {
      listener_answers(answer);
      char text[1024] = {};
      EXPECT_EQ(row.get(text), 0) << row.name;
      EXPECT_EQ(std::string(text, sizeof text),
                expected + std::string(sizeof text - expected.size(), '\0'))
          << row.name;
    }
  }
}

TEST(HncSettings, TextIsStoredWithoutATerminator) {
  start_controller();
  listener_answers("ab");
  char text[kHncTextSize] = "######";
  EXPECT_EQ(hnc_getUpdateFWURL(1, text), 0);
  EXPECT_STREQ(text, "ab####");
}

// Checks the messages of all operations; `least` is the one that `message` makes.
static void expect_messages(const std::function<std::string(const std::string&)>& message,
                            messages least) {
  const auto expected = [&](messages says, const std::string& operation) {
    return says >= least ? message(operation) : "";
  };
  for (const number_row& row : numbers()) {
    int value = 77;
    EXPECT_EQ(errors_of([&] { EXPECT_EQ(row.get(&value), -1); }),
              expected(row.get_says, "hnc_get" + row.name));
    EXPECT_EQ(value, 77) << row.name;
    EXPECT_EQ(errors_of([&] { EXPECT_EQ(row.set(1), -1); }),
              expected(row.set_says, "hnc_set" + row.name));
  }
  for (const text_row& row : texts()) {
    char text[] = "untouched";
    EXPECT_EQ(errors_of([&] { EXPECT_EQ(row.get(text), -1); }), "") << row.name;
    EXPECT_STREQ(text, "untouched") << row.name;
    EXPECT_EQ(errors_of([&] { EXPECT_EQ(row.set("value"), -1); }), "") << row.name;
  }
  int enabled = 77;
  EXPECT_EQ(errors_of([&] { EXPECT_EQ(hnc_getEnable(1, &enabled), -1); }),
            message("hnc_getEnable"));
  EXPECT_EQ(enabled, 77);
}

TEST(HncSettings, ControllerThatDoesNotRunIsReportedByThoseThatDoAndAskedNothing) {
  start_listener();
  expect_messages(not_running, kNotRunning);
  EXPECT_TRUE(listener_requests().empty());
}

TEST(HncSettings, FailedExchangeIsReportedByThoseThatDo) {
  run_controller();
  move_listener_out_of_reach();
  expect_messages(not_sent, kBoth);
}

TEST(HncSettings, SilentListenerFailsAfterASecond) {
  start_controller();
  listener_is_silent();
  EXPECT_EQ(errors_of([] { EXPECT_EQ(hnc_setTopologyEnable(1, 1), -1); }),
            not_sent("hnc_setTopologyEnable"));
  EXPECT_EQ(listener_requests().size(), 1u);
}

TEST(HncSettings, RefusedSetIsNotNoticed) {
  start_controller();
  listener_answers(hnc_reply_bytes("", -1));
  EXPECT_EQ(hnc_setTopologyEnable(1, 1), 0);
  EXPECT_EQ(hnc_setUpdateFWURL(1, "x"), 0);
  listener_answers("");
  EXPECT_EQ(hnc_setHneConfigAttempts(3), 0);
}

TEST(HncSettings, NullTextIsRefusedByTheFirmwareSetters) {
  start_controller();
  switch_console_on();
  int checked = 0;
  for (const text_row& row : texts()) {
    if (!row.null_checked) continue;
    const std::string operation = "hnc_set" + row.name;
    EXPECT_EQ(output_of([&] { EXPECT_EQ(row.set(nullptr), -1); }),
              rev_prefix(operation) + "DEBUG >>>>>>>>>>>>>>>>>>>>>>>>> Pointer is NULL in " +
                  operation + " func. \n");
    ++checked;
  }
  EXPECT_EQ(checked, 5);
  EXPECT_TRUE(listener_requests().empty());
}

// No caller passes null to these: it would end the process.
TEST(HncSettingsDeathTest, NullTextIsNotLookedForByTheSettersOfSupportedExtenders) {
  start_controller();
  int unchecked = 0;
  for (const text_row& row : texts()) {
    if (row.null_checked) continue;
    EXPECT_DEATH(static_cast<void>(row.set(nullptr)), "") << row.name;
    ++unchecked;
  }
  EXPECT_EQ(unchecked, 3);
}

// What an operation writes to standard output while the controller is not running.
static std::string output_of_refused(const std::function<int()>& operation) {
  std::string output;
  errors_of([&] { output = output_of([&] { EXPECT_EQ(operation(), -1); }); });
  return output;
}

TEST(HncSettings, EntryIsTracedBeforeTheControllerIsLookedFor) {
  switch_console_on();
  const auto entered = [](const std::string& operation) {
    return rev_prefix(operation) + operation + " entered\n";
  };
  int value = 0;
  char text[132] = {};
  EXPECT_EQ(output_of_refused([&] { return hnc_getEnable(1, &value); }), entered("hnc_getEnable"));
  for (const number_row& row : numbers()) {
    EXPECT_EQ(output_of_refused([&] { return row.get(&value); }), entered("hnc_get" + row.name));
    EXPECT_EQ(output_of_refused([&] { return row.set(1); }), entered("hnc_set" + row.name));
  }
  for (const text_row& row : texts()) {
    EXPECT_EQ(output_of_refused([&] { return row.get(text); }), entered("hnc_get" + row.name));
    EXPECT_EQ(output_of_refused([&] { return row.set("x"); }), entered("hnc_set" + row.name));
  }
}

TEST(HncSettings, OperationsTraceTheirEntryAndAnswer) {
  start_controller();
  switch_console_on();
  listener_answers("1");
  int enabled = 0;
  EXPECT_EQ(
      own_lines(output_of([&] { EXPECT_EQ(hnc_getEnable(1, &enabled), 0); }), "hnc_getEnable"),
      "hnc_getEnable entered\nhnc_getEnable:Enable 1\n");
  for (const number_row& row : numbers()) {
    listener_answers(row.flag ? "1" : "12 of 3");
    const std::string get = "hnc_get" + row.name;
    const std::string set = "hnc_set" + row.name;
    int value = 0;
    const std::string shown = get + ":" + row.key + (row.flag ? " 1\n" : " 12\n");
    const std::string expected =
        row.flag ? shown
                 : get + " -------------------> Received 12 of 3 12 Response \n" + shown + get +
                       " >>>>>>>>>>>>>>>>>>>>>>>>>>>> Returning 12\n";
    EXPECT_EQ(own_lines(output_of([&] { EXPECT_EQ(row.get(&value), 0); }), get),
              get + " entered\n" + expected);
    EXPECT_EQ(own_lines(output_of([&] { EXPECT_EQ(row.set(1), 0); }), set), set + " entered\n");
  }
  listener_answers("%n an answer");
  for (const text_row& row : texts()) {
    const std::string get = "hnc_get" + row.name;
    char text[132] = {};
    EXPECT_EQ(own_lines(output_of([&] { EXPECT_EQ(row.get(text), 0); }), get),
              get + " entered\n" + get + ":" + row.key + " %n an answer\n");
    const std::string set = "hnc_set" + row.name;
    EXPECT_EQ(own_lines(output_of([&] { EXPECT_EQ(row.set("%n"), 0); }), set), set + " entered\n");
  }
}
