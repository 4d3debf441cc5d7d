#include "wlan/survey.h"

#include <gtest/gtest.h>
#include <sys/syscall.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <string>

#include "lying_driver.h"
#include "unit_support.h"

static void start_radios() {
  run("ip link set ra0 up; ip link set ra8 up");
}

static int state_of(int bss) {
  int state = 99;
  EXPECT_EQ(wlan_ApSiteSurveyStatus(bss, &state), 0);
  return state;
}

// How often the driver was asked for a survey.
static int queries() {
  int count = 0;
  for (const std::string& request : driver_requests()) {
    count += contains(request, "\"object\":\"survey\"");
  }
  return count;
}

static int fetch(int bss, survey_record* record) {
  unsigned length = 0;
  memset(record, 0xEE, sizeof *record);
  const int status = wlan_getApScanResult(bss, record, &length);
  EXPECT_EQ(length, 6764u);
  return status;
}

static bool is_zero(const survey_record& record) {
  const survey_record zero = {};
  return memcmp(&record, &zero, sizeof record) == 0;
}

TEST(Survey, NothingIsAskedBeforeTheFirst) {
  start_radios();
  EXPECT_EQ(state_of(1), 0);
  EXPECT_EQ(state_of(9), 0);
  EXPECT_EQ(queries(), 0);
}

TEST(Survey, RunsFromItsStartToItsEnd) {
  start_radios();
  run("gwbox set radio ra0 survey_seconds=0.3");
  EXPECT_EQ(wlan_ApSiteSurvey(1), 0);
  const std::string start = driver_requests().back();
  EXPECT_TRUE(contains(start, "\"interface\":\"ra0\"")) << start;
  EXPECT_TRUE(contains(start, "\"text\":\"SiteSurvey=1\"")) << start;
  EXPECT_EQ(errors_of([] { EXPECT_EQ(state_of(1), 1); }),
            rpc_error_prefix("rtpriv_get_ioctl_2") + "ioctl failed (cmd=0x8BE1, sub_cmd=0x69B) \n");
  const std::string query = driver_requests().back();
  EXPECT_TRUE(contains(query, "\"length\":13163,")) << query;
  errors_of([] { EXPECT_TRUE(wait_until([] { return state_of(1) == 3; })); });
  // A finished survey stays finished, without a query.
  const int before = queries();
  EXPECT_EQ(state_of(1), 3);
  EXPECT_EQ(state_of(9), 3);
  EXPECT_EQ(queries(), before);
  EXPECT_EQ(wlan_ApSiteSurvey(9), 0);
  errors_of([] { EXPECT_EQ(state_of(9), 1); });
}

TEST(Survey, RefusedStartFailsWithoutAQuery) {
  start_radios();
  run("gwbox fail set EIO");
  errors_of([] { EXPECT_EQ(wlan_ApSiteSurvey(1), 0); });
  EXPECT_EQ(state_of(1), 2);
  errors_of([] {
    for (const int bss : {0, 17, -5, INT_MIN, INT_MAX}) {
      EXPECT_EQ(wlan_ApSiteSurvey(bss), 0) << bss;
      EXPECT_EQ(state_of(bss), 2) << bss;
    }
  });
  EXPECT_EQ(queries(), 0);
  // A later survey may succeed.
  EXPECT_EQ(wlan_ApSiteSurvey(1), 0);
  errors_of([] { EXPECT_EQ(state_of(1), 1); });
}

TEST(Survey, QueryThatFailsEndsIt) {
  start_radios();
  EXPECT_EQ(wlan_ApSiteSurvey(1), 0);
  run("gwbox fail survey EAGAIN 2; gwbox fail survey EIO");
  errors_of([] {
    EXPECT_EQ(state_of(1), 1);
    EXPECT_EQ(state_of(1), 1);
    EXPECT_EQ(state_of(1), 2);
    EXPECT_EQ(state_of(1), 2);
  });
  EXPECT_EQ(queries(), 3);
}

TEST(Survey, BothRadiosShareItsState) {
  start_radios();
  EXPECT_EQ(wlan_ApSiteSurvey(1), 0);
  // The other radio has no survey to wait for, and its answer ends the first one's.
  EXPECT_EQ(state_of(9), 3);
  EXPECT_EQ(state_of(1), 3);
}

TEST(SurveyResult, FollowsTheDriverWhateverTheState) {
  start_radios();
  survey_record record;
  run("gwbox fail survey EAGAIN 1; gwbox fail survey EIO");
  errors_of([&] {
    EXPECT_EQ(fetch(1, &record), 3);
    EXPECT_TRUE(is_zero(record));
    EXPECT_EQ(fetch(1, &record), -1);
    EXPECT_TRUE(is_zero(record));
  });
  EXPECT_EQ(state_of(1), 2);
  EXPECT_EQ(fetch(1, &record), 0);
  EXPECT_EQ(state_of(1), 3);
  EXPECT_EQ(queries(), 3);
  run("gwbox fail survey EAGAIN 2");
  errors_of([&] {
    EXPECT_EQ(fetch(1, &record), 3);
    EXPECT_EQ(state_of(1), 1);
  });
  EXPECT_EQ(queries(), 5);
}

TEST(SurveyResult, IndexWithoutAnInterfaceFails) {
  start_radios();
  survey_record record;
  errors_of([&] {
    for (const int bss : {0, 17, -5, INT_MIN, INT_MAX}) {
      EXPECT_EQ(fetch(bss, &record), -1) << bss;
      EXPECT_TRUE(is_zero(record)) << bss;
    }
  });
}

// The driver's whole answer: entry n consists of bytes n + 1, and the tail of 0xAA.
static std::string answer_of(uint32_t count) {
  std::string bytes(reinterpret_cast<const char*>(&count), sizeof count);
  for (int entry = 0; entry < 128; ++entry)
    bytes += std::string(100, static_cast<char>(entry + 1));
  return bytes + std::string(360, '\xAA');
}

TEST(SurveyResult, EntriesAndTailArePassedThrough) {
  survey_record record;
  const struct {
    uint32_t driver;
    uint32_t caller;
  } rows[] = {{0, 0},   {1, 1},    {63, 63},         {64, 64},
              {65, 64}, {128, 64}, {0xFFFFFFFF, 64}, {0x80000000, 64}};
  for (const auto& row : rows) {
    answer_object_with(0x069B, answer_of(row.driver));
    EXPECT_EQ(fetch(1, &record), 0);
    EXPECT_EQ(record.count, row.caller) << row.driver;
    const std::string image(reinterpret_cast<const char*>(&record), sizeof record);
    for (int entry = 0; entry < 64; ++entry) {
      ASSERT_EQ(image.substr(4 + entry * 100, 100), std::string(100, static_cast<char>(entry + 1)));
    }
    // The query announces one byte less than the buffer has, so the last stays 0.
    EXPECT_EQ(image.substr(6404), std::string(359, '\xAA') + '\0');
  }
}

TEST(SurveyResult, PartialAndShortAnswersAreShownAsFarAsTheyGo) {
  survey_record record;
  answer_object_with(0x069B, answer_of(7).substr(0, 704), EAGAIN);
  errors_of([&] { EXPECT_EQ(fetch(1, &record), 3); });
  EXPECT_EQ(record.count, 7u);
  EXPECT_EQ(record.entries[6][99], 7);
  EXPECT_EQ(record.entries[7][0], 0);
  answer_object_with(0x069B, answer_of(7), EIO);
  errors_of([&] { EXPECT_EQ(fetch(1, &record), -1); });
  EXPECT_TRUE(is_zero(record)) << "what a failed query wrote";
  answer_object_with(0x069B, std::string("\x05\x00", 2));
  EXPECT_EQ(fetch(1, &record), 0);
  EXPECT_EQ(record.count, 5u);
  EXPECT_EQ(record.entries[0][0], 0);
  answer_object_with(0x069B, "");
  EXPECT_EQ(fetch(1, &record), 0);
  EXPECT_TRUE(is_zero(record));
}

TEST(ChannelSelection, NeedsAnMt7615) {
  const std::string message =
      rev_error_prefix("wlan_apAutoChannelSelect") + "only MT7615 support manual trigger ACS. \n";
  for (const int bss : {1, 9, 0, INT_MIN}) {
    EXPECT_EQ(errors_of([&] { EXPECT_EQ(wlan_apAutoChannelSelect(bss), 0); }), message);
  }
  EXPECT_EQ(driver_requests().size(), 0u);
}

TEST(ChannelSelection, IsTriggeredOnAnMt7615) {
  mount_tmpfs("/proc/bus/pci", "size=64k");
  write_file("/proc/bus/pci/devices", "0100\t14c37615\t4\tdriver\n");
  EXPECT_EQ(errors_of([] { EXPECT_EQ(wlan_apAutoChannelSelect(9), 0); }), "");
  const std::string request = driver_requests().back();
  EXPECT_TRUE(contains(request, "\"interface\":\"ra8\"")) << request;
  EXPECT_TRUE(contains(request, "\"text\":\"AutoChannelSel=3\"")) << request;
  const size_t before = driver_requests().size();
  for (const int bss : {0, -5, INT_MIN, INT_MAX}) {
    errors_of([&] { EXPECT_EQ(wlan_apAutoChannelSelect(bss), 0) << bss; });
  }
  for (size_t i = before; i < driver_requests().size(); ++i) {
    EXPECT_FALSE(contains(driver_requests()[i], "AutoChannelSel")) << driver_requests()[i];
  }
}

TEST(ChannelSelection, WhatTheCommandPrintsIsNotShown) {
  mount_tmpfs("/proc/bus/pci", "size=64k");
  write_file("/proc/bus/pci/devices", "0100\t14c37615\t4\tdriver\n");
  write_file("/usr/local/bin/iwpriv", "#!/bin/sh\necho printed; echo run >>/tmp/commands\n");
  run("chmod +x /usr/local/bin/iwpriv");
  setenv("PATH", "/usr/local/bin:/usr/bin:/bin", 1);
  EXPECT_EQ(output_of([] { EXPECT_EQ(wlan_apAutoChannelSelect(1), 0); }), "");
  EXPECT_EQ(read_file("/tmp/commands"), "run\n");
}

TEST(CurrentChannel, IsTheOneOfTheInterface) {
  start_radios();
  run("gwbox set radio ra8 channel=44");
  int channel = 0;
  EXPECT_EQ(wlan_getCurrentChannel(9, &channel), 0);
  EXPECT_EQ(channel, 44);
  const std::string request = driver_requests().back();
  EXPECT_TRUE(contains(request, "\"interface\":\"ra8\"")) << request;
  EXPECT_TRUE(contains(request, "\"request\":\"0x8B05\"")) << request;
  EXPECT_EQ(wlan_getCurrentChannel(1, &channel), 0);
  EXPECT_EQ(channel, 6);
}

TEST(CurrentChannel, MantissaIsMultipliedByTenExponentTimes) {
  const struct {
    int mantissa;
    int16_t exponent;
    int channel;
  } rows[] = {
      {11, 0, 11},
      {3, 2, 300},
      {2412, 3, 2412000},
      {-4, 1, -40},
      {0, 5, 0},
      {0, INT16_MAX, 0},
      {36, -1, 36},
      {36, INT16_MIN, 36},
      {INT_MAX, 0, INT_MAX},
      {INT_MIN, 0, INT_MIN},
      {1, 9, 1000000000},
      {-2, 9, -2000000000},
      // A result that does not fit counts as no channel.
      {2412, 6, 0},
      {2, 10, 0},
      {-2, 10, 0},
      {2, INT16_MAX, 0},
      {1500000000, 1, 0},
      {INT_MAX, 1, 0},
      {1, INT16_MAX, 0},
      {-1, INT16_MAX, 0},
  };
  for (const auto& row : rows) {
    answer_frequency_with(row.mantissa, row.exponent);
    int channel = 77;
    EXPECT_EQ(wlan_getCurrentChannel(1, &channel), 0);
    EXPECT_EQ(channel, row.channel) << row.mantissa << "e" << row.exponent;
  }
}

TEST(CurrentChannel, RefusalFailsAndLeavesTheValue) {
  start_radios();
  const int before = open_descriptors();
  run("gwbox fail get_frequency EIO");
  int channel = 77;
  for (const int bss : {1, 0, 17, -5, INT_MIN, INT_MAX}) {
    EXPECT_EQ(
        errors_of([&] { EXPECT_EQ(wlan_getCurrentChannel(bss, &channel), -1) << bss; }),
        rev_error_prefix("wlan_getCurrentChannel") + "wlan_getCurrentChannel ioctl failed \n");
  }
  EXPECT_EQ(channel, 77);
  EXPECT_EQ(open_descriptors(), before);
}

TEST(CurrentChannel, NoSocketIsReportedAndAnswersZero) {
  fail_system_call(SYS_socket, EMFILE);
  int channel = 77;
  EXPECT_EQ(errors_of([&] { EXPECT_EQ(wlan_getCurrentChannel(1, &channel), 0); }),
            rev_error_prefix("wlan_getCurrentChannel") + "socket failed\n");
  EXPECT_EQ(channel, 77);
}
