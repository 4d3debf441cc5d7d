#include <gtest/gtest.h>

#include "support/every_procedure.h"
#include "support/files.h"
#include "support/lifecycle.h"
#include "support/snapshot.h"
#include "support/stations.h"

// The output of "wificonf --json" for a call of every procedure, checked against the JSON
// Schema from "wificonf schema".

static std::string failed_procedures(const std::vector<procedure_call>& calls) {
  std::string names;
  for (const procedure_call& call : calls) {
    if (json_member(call.answer, "return_code").starts_with("-")) names += call.name + "\n";
  }
  return names;
}

// Takes longer than other tests: the radios come up, every procedure is called and its
// schema is read.
TEST(Json, EveryAnswerIsAsItsSchemaSays) {
  const std::vector<procedure_call> calls = call_every_procedure();
  ASSERT_EQ(calls.size(), snapshot_procedures()) << kSnapshotGrows;
  std::string answers;
  for (const procedure_call& call : calls)
    answers += call.answer + "\n";
  write_file("/tmp/answers", answers);
  int status = -1;
  const std::string said = run(VALIDATOR " </tmp/answers 2>&1", &status);
  EXPECT_EQ(status, 0) << said;
  EXPECT_EQ(said, std::to_string(calls.size()) + " answers are valid\n");
  // A failure has no value to validate, so only these may fail.
  EXPECT_EQ(failed_procedures(calls),
            "wlan_get_igmp_snooping\n"
            "wlan_get_dot11u_enable\n"
            "wlan_set_dot11u_enable\n"
            "wlan_get_dot11u_attribute\n"
            "wlan_set_dot11u_attribute\n"
            "wlan_get_airtime_enable\n"
            "hnc_get_enable\n")
      << "client/values/argument_meanings.cpp has the examples that they are called with";
}

TEST(Json, FailuresAndTopAreAsTheirSchemasSay) {
  beacon_at_once();
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  const std::string top = run("wificonf --json top --count 2 --every 50ms");
  EXPECT_NE(top.find("\"bytes_sent_per_second\":null"), top.npos) << top;
  const std::string failures =
      run("wificonf --json nonsense 2>/dev/null; wificonf --json --port 9 ping 2>/dev/null;"
          "wificonf --json --port 9 watch wlan_get_current_channel 1 --count 2 --every 10ms "
          "2>/dev/null");
  write_file("/tmp/answers", top + failures);
  const std::string said = run(VALIDATOR " </tmp/answers 2>&1");
  EXPECT_EQ(said, "6 answers are valid\n") << top << failures;
}

TEST(Json, TheValidatorRefusesWhatTheSchemaDoesNotSay) {
  struct {
    const char* answer;
    const char* complaint;
  } const cases[] = {
      {R"({"procedure":"wlan_get_channel","number":16,"return_code":0,"inert":true,"value":"six"})",
       "'six' is not of type 'integer'"},
      {R"({"procedure":"wlan_get_channel","number":16,"return_code":0,"inert":true})",
       "'value' is a required property"},
      {R"({"procedure":"wlan_get_channel","number":17,"return_code":0,"inert":true,"value":6})",
       "16 was expected"},
      {R"({"procedure":"wlan_get_channel","number":16,"return_code":0,"inert":true,"value":6,"more":1})",
       "'more' was unexpected"},
      {R"({"procedure":"wlan_get_channel","number":16,"return_code":0,"value":6})",
       "'inert' is a required property"},
      {R"({"procedure":"wlan_get_bss_hnc_service","number":16777374,"return_code":0,"inert":true,"value":0})",
       "'inert' was unexpected"},
      {R"({"error":{"kind":"usage","message":"no","exit_status":0}})", "less than the minimum"},
      {R"({"error":{"kind":"usage","message":"no"}})", "'exit_status' is a required property"},
      {R"({"time":"now","stations":[{}]})", "'mac_address' is a required property"},
      {"", "not JSON"},
  };
  for (const auto& one : cases) {
    write_file("/tmp/answers", std::string(one.answer) + "\n");
    int status = -1;
    const std::string said = run(VALIDATOR " </tmp/answers 2>&1", &status);
    EXPECT_EQ(status, 1) << one.answer;
    EXPECT_NE(said.find(one.complaint), said.npos) << said;
  }
}
