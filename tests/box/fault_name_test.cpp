// `gwbox fail` by name, short answers, and the objects in the journal.
#include <gtest/gtest.h>
#include <cerrno>
#include <cstring>

#include "inside.h"
#include "trap/faults.h"

TEST(FaultName, ObjectsRequestsAndSystemCalls) {
  fault_rule rule;
  std::string wrong;
  ASSERT_TRUE(fault_parse("survey@ra8", "EAGAIN", 2, rule, wrong));
  EXPECT_EQ(rule.request, 0x8BE1u);
  EXPECT_TRUE(rule.has_sub);
  EXPECT_EQ(rule.sub, 0x069B);
  EXPECT_EQ(rule.interface, "ra8");
  ASSERT_TRUE(fault_parse("stations", "delay=5", 1, rule, wrong));
  EXPECT_EQ(rule.request, 0x8BEFu);
  EXPECT_FALSE(rule.has_sub);
  ASSERT_TRUE(fault_parse("init_module", "ENOMEM", 1, rule, wrong));
  EXPECT_EQ(rule.request, kFaultInitModule);
  ASSERT_TRUE(fault_parse("vlan", "EPERM", 1, rule, wrong));
  EXPECT_EQ(rule.request, 0x8983u);
  ASSERT_TRUE(fault_parse("counters", "short=8", 1, rule, wrong));
  EXPECT_TRUE(rule.is_short);
  EXPECT_EQ(rule.short_bytes, 8);
  EXPECT_FALSE(fault_parse("counters", "short=", 1, rule, wrong));
  ASSERT_TRUE(fault_parse("stations", "count=4294967295", 1, rule, wrong));
  EXPECT_TRUE(rule.has_count);
  EXPECT_EQ(rule.count, 4294967295u);
  EXPECT_FALSE(fault_parse("stations", "count=4294967296", 1, rule, wrong));
  EXPECT_FALSE(fault_parse("stations", "count=-1", 1, rule, wrong));
  EXPECT_FALSE(fault_parse("weather", "EIO", 1, rule, wrong));
  EXPECT_NE(wrong.find("survey"), std::string::npos);
}

TEST(FaultName, ANamedRequestFailsAsOftenAsAsked) {
  ASSERT_EQ(run("ip link set ra0 up").status, 0);
  ASSERT_EQ(run("gwbox fail stations@ra0 EIO 2").status, 0);
  char table[5124];
  request_frame frame = make_frame("ra0", table, sizeof table, 0);
  EXPECT_EQ(request(0x8BEF, frame), EIO);
  EXPECT_EQ(request(0x8BEF, frame), EIO);
  EXPECT_EQ(request(0x8BEF, frame), 0);
}

TEST(FaultName, AShortAnswerLeavesTheRestOfTheBufferAlone) {
  ASSERT_EQ(run("ip link set ra0 up").status, 0);
  ASSERT_EQ(run("gwbox set bss 1 counters=[1,2,3,4,5,6,7,8,9,10,11,12,13,14]").status, 0);
  ASSERT_EQ(run("gwbox fail counters short=8").status, 0);
  unsigned char counters[56];
  memset(counters, 0xEE, sizeof counters);
  request_frame frame = make_frame("ra0", counters, sizeof counters, 0x067D);
  EXPECT_EQ(request(0x8BE1, frame), 0);
  EXPECT_EQ(frame.length, 8);
  EXPECT_GE(counters[4], 2);  // grows every second
  EXPECT_LT(counters[4], 0xEE);
  EXPECT_EQ(counters[8], 0xEE);
  EXPECT_EQ(journal_entries().back()["injected"], true);
}

TEST(FaultName, ATableLiesAboutItsCount) {
  ASSERT_EQ(run("ip link set ra0 up").status, 0);
  ASSERT_EQ(run("gwbox fail stations count=2147483649").status, 0);
  unsigned char table[5124] = {};
  request_frame frame = make_frame("ra0", table, sizeof table, 0);
  EXPECT_EQ(request(0x8BEF, frame), 0);
  EXPECT_EQ(frame.length, 5124);
  EXPECT_EQ(memcmp(table, "\x01\x00\x00\x80\x00\x02\x00\x5e", 8), 0);
  EXPECT_EQ(request(0x8BEF, frame), 0);
  EXPECT_EQ(table[3], 0);
}

TEST(FaultName, ModuleCallsFail) {
  ASSERT_EQ(run("gwbox fail delete_module EBUSY").status, 0);
  EXPECT_NE(run("rmmod mt7603e_ap").status, 0);
  auto entry = journal_entries().back();
  EXPECT_EQ(entry["name"], "delete_module");
  EXPECT_EQ(entry["error"], "EBUSY");
  EXPECT_EQ(run("ip link show ra0").status, 0);
}

TEST(LogDecoded, ObjectsHaveNamesAndFields) {
  ASSERT_EQ(run("ip link set ra0 up").status, 0);
  unsigned char steer[20] = {0x02, 0x00, 0x5e, 0x00, 0x00, 0x01, 0, 0, 0, 0, 0, 0, 2, 0, 0, 0, 60};
  request_frame frame = make_frame("ra0", steer, sizeof steer, 0x86B1);
  ASSERT_EQ(request(0x8BE1, frame), 0);
  auto entry = journal_entries().back();
  EXPECT_EQ(entry["object"], "steer");
  EXPECT_EQ(entry["mac"], "02:00:5e:00:00:01");
  EXPECT_EQ(entry["kind"], "blacklist");
  EXPECT_EQ(entry["action"], "2");
  EXPECT_EQ(entry["seconds"], "60");
  EXPECT_NE(
      run("gwbox log")
          .output.find(" ra0 object_set steer [20] mac=02:00:5e:00:00:01 kind=blacklist action=2 "
                       "seconds=60 -> ok  ("),
      std::string::npos)
      << run("gwbox log").output;
}
