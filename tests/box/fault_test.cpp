// `gwbox fail` as seen by programs that do not know about it.
#include <gtest/gtest.h>
#include <time.h>
#include <cerrno>

#include <thread>

#include "inside.h"

static int64_t now_ms() {
  timespec now = {};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now.tv_sec * 1000LL + now.tv_nsec / 1000000;
}

TEST(Fault, MakesTheNextIwprivSetFailOnce) {
  ASSERT_EQ(run("gwbox fail 0x8BE2 EIO").status, 0);
  run_result failed = run("iwpriv ra0 set LEDEnable=1");
  EXPECT_NE(failed.status, 0);
  EXPECT_NE(failed.output.find("Input/output error"), std::string::npos) << failed.output;
  auto entry = journal_entries().back();
  EXPECT_EQ(entry["error"], "EIO");
  EXPECT_EQ(entry["result"], -EIO);
  EXPECT_EQ(entry["injected"], true);
  EXPECT_EQ(entry["text"], "LEDEnable=1");
  EXPECT_EQ(run("iwpriv ra0 set LEDEnable=1").status, 0);
  EXPECT_FALSE(journal_entries().back().contains("injected"));
}

TEST(Fault, AsOftenAsAsked) {
  ASSERT_EQ(run("gwbox fail 0x8BE2 EAGAIN 3").status, 0);
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(set_text("ra0", "A=1"), EAGAIN);
  EXPECT_EQ(set_text("ra0", "A=1"), 0);
}

TEST(Fault, OnlyOnTheInterfaceNamed) {
  ASSERT_EQ(run("gwbox fail 0x8BE2@ra8 EFAULT").status, 0);
  EXPECT_EQ(set_text("ra0", "A=1"), 0);
  EXPECT_EQ(set_text("ra8", "A=1"), EFAULT);
  EXPECT_EQ(set_text("ra8", "A=1"), 0);
}

TEST(Fault, OnlyTheSubCommandNamed) {
  ASSERT_EQ(run("gwbox fail 0x8BE1:0x06B2 EBUSY").status, 0);
  uint32_t value = 0;
  request_frame wps = make_frame("ra0", &value, sizeof value, 0x0751);
  EXPECT_EQ(request(0x8BE1, wps), 0);
  request_frame operating_class = make_frame("ra0", &value, sizeof value, 0x06B2);
  EXPECT_EQ(request(0x8BE1, operating_class), EBUSY);
  EXPECT_EQ(value, 0u);
  EXPECT_EQ(request(0x8BE1, operating_class), 0);
}

TEST(Fault, RequestsCanFailThatTheDriverWouldRefuseAnyway) {
  ASSERT_EQ(run("gwbox fail 0x8BE1:0x069B@ra8 EAGAIN").status, 0);
  char buffer[64];
  request_frame survey = make_frame("ra8", buffer, sizeof buffer, 0x069B);
  EXPECT_EQ(request(0x8BE1, survey), EAGAIN);
  EXPECT_EQ(request(0x8BE1, survey), ENETDOWN);
}

TEST(Fault, DelayHoldsOneCallerAndNobodyElse) {
  ASSERT_EQ(run("gwbox fail 0x8BE2@ra0 delay=300").status, 0);
  int64_t start = now_ms(), slow_end = 0;
  std::thread slow([&] {
    EXPECT_EQ(set_text("ra0", "Slow=1"), 0);
    slow_end = now_ms();
  });
  for (int i = 0; i < 10; ++i)
    EXPECT_EQ(set_text("ra1", "Fast=1"), 0);
  int64_t fast_end = now_ms();
  slow.join();
  EXPECT_LT(fast_end - start, 250);
  EXPECT_GE(slow_end - start, 299);
  auto entry = journal_entries().back();
  EXPECT_EQ(entry["text"], "Slow=1");
  EXPECT_EQ(entry["delay_ms"], 300);
  EXPECT_EQ(entry["injected"], true);
  EXPECT_EQ(entry["result"], 0);
}

TEST(Fault, ClearEndsThemAll) {
  ASSERT_EQ(run("gwbox fail 0x8BE2 EIO 100").status, 0);
  ASSERT_EQ(run("gwbox fail 0x8BE2@ra0 EPERM 100").status, 0);
  ASSERT_EQ(run("gwbox fail clear").status, 0);
  EXPECT_EQ(set_text("ra0", "A=1"), 0);
}

TEST(Fault, WrongWordsAreUsageErrors) {
  for (const char* words :
       {"0x8BE2 ENOSUCH", "0x8BE2", "nonsense EIO", "0x8BE1:x EIO", "0x8BE2@ EIO", "0x8BE2 delay=x",
        "0x8BE2 delay=-1", "0x8BE2 EIO 0", "0x8BE2 EIO many", "clear EIO", "0x8BE1:0x8000 EIO",
        "set@ra99 EIO", "set@eth0 EIO", "init_module@ra0 EIO"}) {
    run_result wrong = run(std::string("gwbox fail ") + words);
    EXPECT_EQ(wrong.status, 2) << words;
    EXPECT_NE(wrong.output, "") << words;
  }
  EXPECT_EQ(set_text("ra0", "A=1"), 0);
}
