// `gwbox fail list`, and what `gwbox fail clear` does to a delayed call.
#include <gtest/gtest.h>
#include <time.h>
#include <cerrno>

#include <thread>

#include "inside.h"
#include "trap/faults.h"
#include "watch.h"

using nlohmann::json;

static json list_now() {
  run_result listed = run("gwbox fail list --json");
  EXPECT_EQ(listed.status, 0) << listed.output;
  json list = json::parse(listed.output, nullptr, false);
  EXPECT_TRUE(list.is_object());
  return list["failures"];
}

TEST(FaultList, SaysWhatIsSetHowOftenItHasHitAndWhatIsLeft) {
  EXPECT_EQ(run("gwbox fail list").output, "no failures are set\n");
  EXPECT_EQ(list_now(), json::array());
  ASSERT_EQ(run("gwbox fail set@ra0 EIO 3 && gwbox fail survey delay=20").status, 0);
  EXPECT_EQ(set_text("ra0", "A=1"), EIO);
  EXPECT_EQ(set_text("ra1", "A=1"), 0);
  EXPECT_EQ(set_text("ra0", "A=1"), EIO);
  EXPECT_EQ(run("gwbox fail list").output,
            "WHAT     HOW       HITS  LEFT  WAITING\n"
            "set@ra0  EIO          2     1        0\n"
            "survey   delay=20     0     1        0\n");
  json first = {{"what", "set@ra0"}, {"how", "EIO"}, {"hits", 2}, {"left", 1}, {"waiting", 0}};
  EXPECT_EQ(list_now()[0], first);
}

TEST(FaultList, KeepsWhatIsUsedUpUntilItIsSetAgainOrCleared) {
  ASSERT_EQ(run("gwbox fail set EIO").status, 0);
  EXPECT_EQ(set_text("ra0", "A=1"), EIO);
  EXPECT_EQ(set_text("ra0", "A=1"), 0);
  EXPECT_EQ(list_now()[0]["hits"], 1);
  EXPECT_EQ(list_now()[0]["left"], 0);
  ASSERT_EQ(run("gwbox fail set EIO 2").status, 0);
  ASSERT_EQ(list_now().size(), 1u);
  EXPECT_EQ(list_now()[0]["hits"], 0);
  ASSERT_EQ(run("gwbox fail clear").status, 0);
  EXPECT_EQ(list_now(), json::array());
}

TEST(FaultList, ForgetsTheOldestOfMany) {
  std::vector<fault_rule> rules;
  fault_rule rule, taken;
  std::string wrong;
  for (int i = 0; i < 300; ++i) {
    ASSERT_TRUE(fault_parse("set", "delay=" + std::to_string(i), 1, rule, wrong)) << wrong;
    fault_add(rules, rule);
    if (i == 0) continue;
    ASSERT_TRUE(fault_take(rules, rule.request, false, 0, "ra0", taken));
  }
  EXPECT_EQ(rules.size(), 101u);
  EXPECT_EQ(rules.back().how, "delay=299");
  EXPECT_EQ(rules.back().left, 1) << "the others were taken first";
}

TEST(FaultList, WhatACallerGaveDrivesNoTerminal) {
  ASSERT_EQ(run("gwbox fail 'vlan@\x1b[31m' EIO").status, 0);
  std::string shown = run("gwbox fail list").output;
  EXPECT_EQ(shown.find('\x1b'), std::string::npos);
  EXPECT_NE(shown.find("vlan@\\x1b[31m"), std::string::npos) << shown;
}

TEST(FaultList, ClearEndsARunningDelayAtOnce) {
  ASSERT_EQ(run("gwbox fail set delay=600000").status, 0);
  std::thread slow([] { EXPECT_EQ(set_text("ra0", "Slow=1"), 0); });
  bool held = wait_until([] { return list_now()[0]["waiting"] == 1; });
  EXPECT_TRUE(held);
  EXPECT_TRUE(journal_entries().empty());
  ASSERT_EQ(run("gwbox fail clear").status, 0);
  // Clear must end the delay and write the line before it returns; otherwise join() would
  // wait for ten minutes.
  auto entries = journal_entries();
  ASSERT_EQ(entries.size(), 1u);
  slow.join();
  EXPECT_EQ(entries[0]["text"], "Slow=1");
  EXPECT_LT(entries[0]["delay_ms"], 60000);
}

TEST(FaultList, WrongWordsAreUsageErrors) {
  for (const char* words : {"list x", "clear --json", "set EIO --json", "set", "set EIO 1 2"})
    EXPECT_EQ(run(std::string("gwbox fail ") + words).status, 2) << words;
}
