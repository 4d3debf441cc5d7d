#include "sys/wext.h"

#include <gtest/gtest.h>
#include <sys/syscall.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <string>

#include "lying_driver.h"
#include "unit_support.h"

// The last request that reached the driver.
static std::string last_request() {
  const auto requests = driver_requests();
  return requests.empty() ? "(none)" : requests.back();
}

static std::string member(const std::string& name, const std::string& text) {
  return "\"" + name + "\":\"" + text + "\"";
}

static std::string member(const std::string& name, int number) {
  return "\"" + name + "\":" + std::to_string(number) + ",";
}

static void expect_request(const std::string& interface, const std::string& request,
                           const std::string& sub, int length) {
  const std::string line = last_request();
  EXPECT_TRUE(contains(line, member("interface", interface))) << line;
  EXPECT_TRUE(contains(line, member("request", request))) << line;
  EXPECT_TRUE(sub.empty() || contains(line, member("sub", sub))) << line;
  EXPECT_TRUE(contains(line, member("length", length))) << line;
}

static constexpr unsigned kOperatingClass = 0x06B2;
static constexpr unsigned kWpsStatus = 0x0751;
static constexpr unsigned kUnknown = 0x7001;

TEST(Wext, QueryFillsTheBufferOfTheInterface) {
  uint32_t value = 0;
  EXPECT_EQ(rtpriv_get_ioctl(1, kRtprivObject, kOperatingClass, &value, sizeof value), 1);
  EXPECT_EQ(value, 81u);
  expect_request("ra0", "0x8BE1", "0x06B2", 3);
  EXPECT_EQ(rtpriv_get_ioctl(9, kRtprivObject, kOperatingClass, &value, sizeof value), 1);
  EXPECT_EQ(value, 115u);
  expect_request("ra8", "0x8BE1", "0x06B2", 3);
}

TEST(Wext, EveryBssHasItsInterface) {
  for (int bss = 1; bss <= 16; ++bss) {
    uint32_t value = 0;
    EXPECT_EQ(rtpriv_get_ioctl(bss, kRtprivObject, kOperatingClass, &value, sizeof value), 1);
    expect_request("ra" + std::to_string(bss - 1), "0x8BE1", "0x06B2", 3);
  }
}

TEST(Wext, BufferOf56BytesIsAnnouncedWith55) {
  char buffer[56];
  memset(buffer, '#', sizeof buffer);
  EXPECT_EQ(rtpriv_get_ioctl(1, kRtprivObject, kOperatingClass, buffer, sizeof buffer), 1);
  expect_request("ra0", "0x8BE1", "0x06B2", 55);
  EXPECT_EQ(memcmp(buffer, "\x51\0\0\0###", 7), 0);
  errors_of(
      [&] { EXPECT_EQ(rtpriv_get_ioctl(1, kRtprivObject, kUnknown, buffer, sizeof buffer), 0); });
  expect_request("ra0", "0x8BE1", "0x7001", 55);
}

TEST(Wext, FailingQueryIsReported) {
  switch_log_on();
  char buffer[56];
  const std::string errors = errors_of([&] {
    EXPECT_EQ(rtpriv_get_ioctl(1, kRtprivObject, kUnknown, buffer, sizeof buffer), 0);
    EXPECT_EQ(errno, EOPNOTSUPP);
  });
  const std::string message = "ioctl failed (cmd=0x8BE1, sub_cmd=0x7001)\n";
  EXPECT_EQ(errors, rpc_error_prefix("rtpriv_get_ioctl") + message);
  EXPECT_EQ(logged(), message);
}

TEST(Wext, MissingInterfaceFails) {
  char value[] = "#######";
  for (const int bss : {0, 17, -5, INT_MIN, INT_MAX}) {
    const std::string errors = errors_of(
        [&] { EXPECT_EQ(rtpriv_get_ioctl(bss, kRtprivObject, kOperatingClass, value, 4), 0); });
    EXPECT_TRUE(contains(errors, "ioctl failed (cmd=0x8BE1, sub_cmd=0x6B2)\n")) << bss;
    EXPECT_EQ(std::string(value, 7), std::string(3, '\0') + "####") << "what was announced";
  }
}

TEST(Wext, WhatAFailedQueryWroteIsNoAnswer) {
  char buffer[64];
  for (const int error : {EIO, EAGAIN}) {
    answer_object_with(kOperatingClass, std::string(60, 'x'), error);
    memset(buffer, '#', sizeof buffer);
    errors_of([&] {
      EXPECT_EQ(rtpriv_get_ioctl(1, kRtprivObject, kOperatingClass, buffer, sizeof buffer), 0);
      EXPECT_EQ(errno, error);
    });
    EXPECT_EQ(std::string(buffer, sizeof buffer), std::string(63, '\0') + "#");
  }
}

TEST(Wext, SecondQueryFormKeepsWhatTheDriverHasSoFarAndNothingElse) {
  char buffer[64];
  answer_object_with(kOperatingClass, "so far", EAGAIN);
  memset(buffer, 0, sizeof buffer);
  errors_of([&] {
    EXPECT_EQ(rtpriv_get_ioctl_2(1, kRtprivObject, kOperatingClass, buffer, sizeof buffer), 3);
  });
  EXPECT_STREQ(buffer, "so far");
  answer_object_with(kOperatingClass, "failed", EIO);
  errors_of([&] {
    EXPECT_EQ(rtpriv_get_ioctl_2(1, kRtprivObject, kOperatingClass, buffer, sizeof buffer), 0);
    EXPECT_EQ(errno, EIO);
  });
  EXPECT_EQ(std::string(buffer, sizeof buffer), std::string(64, '\0'));
}

TEST(Wext, SecondQueryFormAnnouncesTheSameAndSucceedsTheSame) {
  uint32_t value = 0;
  EXPECT_EQ(rtpriv_get_ioctl_2(9, kRtprivObject, kOperatingClass, &value, sizeof value), 1);
  EXPECT_EQ(value, 115u);
  expect_request("ra8", "0x8BE1", "0x06B2", 3);
}

TEST(Wext, SecondQueryFormSaysTryAgainAndReportsIt) {
  switch_log_on();
  ASSERT_EQ(system("gwbox fail 0x8BE1 EAGAIN"), 0);
  char buffer[64];
  const std::string errors = errors_of(
      [&] { EXPECT_EQ(rtpriv_get_ioctl_2(1, kRtprivObject, 0x069B, buffer, sizeof buffer), 3); });
  const std::string message = "ioctl failed (cmd=0x8BE1, sub_cmd=0x69B) \n";
  EXPECT_EQ(errors, rpc_error_prefix("rtpriv_get_ioctl_2") + message);
  EXPECT_EQ(logged(), message);
}

TEST(Wext, FirstQueryFormKnowsNoTryAgain) {
  ASSERT_EQ(system("gwbox fail 0x8BE1 EAGAIN"), 0);
  char buffer[64];
  errors_of(
      [&] { EXPECT_EQ(rtpriv_get_ioctl(1, kRtprivObject, 0x069B, buffer, sizeof buffer), 0); });
}

TEST(Wext, SecondQueryFormFailsForAnyOtherReason) {
  char buffer[64];
  const std::string errors = errors_of([&] {
    errno = EAGAIN;  // left over from an earlier call
    EXPECT_EQ(rtpriv_get_ioctl_2(1, kRtprivObject, kUnknown, buffer, sizeof buffer), 0);
  });
  EXPECT_EQ(errors, rpc_error_prefix("rtpriv_get_ioctl_2") +
                        "ioctl failed (cmd=0x8BE1, sub_cmd=0x7001) \n");
}

TEST(Wext, StructQueryZeroesTheBufferAndReturnsTheLength) {
  unsigned char buffer[kRtprivStructSize + 4];
  memset(buffer, 0xEE, sizeof buffer);
  unsigned length = 0;
  EXPECT_EQ(rtpriv_get_int_struct_ioctl(1, kRtprivObject, kOperatingClass, buffer, &length), 1);
  expect_request("ra0", "0x8BE1", "0x06B2", 4095);
  EXPECT_EQ(length, 4u);
  EXPECT_EQ(buffer[0], 81);
  for (unsigned i = 1; i < kRtprivStructSize; ++i) {
    ASSERT_EQ(buffer[i], 0) << i;
  }
  EXPECT_EQ(buffer[kRtprivStructSize], 0xEE);
}

TEST(Wext, FailingStructQueryZeroesTheBufferAndLeavesTheLength) {
  unsigned char buffer[kRtprivStructSize];
  memset(buffer, 0xEE, sizeof buffer);
  unsigned length = 77;
  const std::string errors = errors_of([&] {
    EXPECT_EQ(rtpriv_get_int_struct_ioctl(1, kRtprivObject, kUnknown, buffer, &length), 0);
  });
  EXPECT_EQ(errors, rpc_error_prefix("rtpriv_get_int_struct_ioctl") +
                        "ioctl failed (cmd=0x8BE1, sub_cmd=0x7001)\n");
  EXPECT_EQ(length, 77u);
  EXPECT_EQ(buffer[0], 0);
  EXPECT_EQ(buffer[kRtprivStructSize - 1], 0);
}

TEST(Wext, IntegerQueryAnnouncesFourBytes) {
  int32_t value = -1;
  EXPECT_EQ(rtpriv_get_int_ioctl(1, kRtprivObject, kWpsStatus, &value), 1);
  EXPECT_EQ(value, 0);
  expect_request("ra0", "0x8BE1", "0x0751", 4);
  EXPECT_EQ(rtpriv_get_int_ioctl(9, kRtprivObject, kOperatingClass, &value), 1);
  EXPECT_EQ(value, 115);
}

TEST(Wext, FailingIntegerQueryLeavesTheValue) {
  int32_t value = 77;
  const std::string errors =
      errors_of([&] { EXPECT_EQ(rtpriv_get_int_ioctl(1, kRtprivObject, kUnknown, &value), 0); });
  EXPECT_EQ(value, 77);
  EXPECT_EQ(errors, rpc_error_prefix("rtpriv_get_int_ioctl") +
                        "ioctl failed (cmd=0x8BE1, sub_cmd=0x7001)\n");
}

TEST(Wext, TextIsSentWithItsTerminatorWhenThereIsNoSubCommand) {
  EXPECT_EQ(rtpriv_set_ioctl(1, kRtprivText, 0, "LEDEnable=1"), 1);
  expect_request("ra0", "0x8BE2", "", 12);
  EXPECT_TRUE(contains(last_request(), member("text", "LEDEnable=1"))) << last_request();
}

TEST(Wext, TextIsSentWithoutItsTerminatorWhenThereIsASubCommand) {
  EXPECT_EQ(rtpriv_set_ioctl(9, kRtprivText, 0x1234, "LEDEnable=1"), 1);
  expect_request("ra8", "0x8BE2", "", 11);
  EXPECT_TRUE(contains(last_request(), member("text", "LEDEnable=1"))) << last_request();
}

TEST(Wext, SubCommandOfATextGoesIntoTheFlags) {
  errors_of([] { EXPECT_EQ(rtpriv_set_ioctl(1, kRtprivObject, 0x0123, "x"), 0); });
  expect_request("ra0", "0x8BE1", "0x0123", 1);
}

TEST(Wext, EmptyTextIssuesTheRequestWithoutData) {
  const size_t before = driver_requests().size();
  std::string errors = errors_of([] { EXPECT_EQ(rtpriv_set_ioctl(1, kRtprivText, 0, ""), 0); });
  EXPECT_EQ(driver_requests().size(), before + 1);
  expect_request("ra0", "0x8BE2", "", 0);
  EXPECT_EQ(errors,
            rpc_error_prefix("rtpriv_set_ioctl") + "ioctl failed (cmd=0x8BE2, sub_cmd=0x0)\n");
  // The flags stay zero too, so the driver is asked for sub-command 0.
  errors_of([] { EXPECT_EQ(rtpriv_set_ioctl(1, kRtprivObject, kOperatingClass, ""), 0); });
  expect_request("ra0", "0x8BE1", "0x0000", 0);
}

TEST(Wext, TextBeyondTheLengthFieldIsRefused) {
  const size_t before = driver_requests().size();
  const std::string longest(65534, 'x');
  errors_of([&] { EXPECT_EQ(rtpriv_set_ioctl(1, kRtprivText, 0, longest.c_str()), 0); });
  EXPECT_EQ(driver_requests().size(), before + 1);
  expect_request("ra0", "0x8BE2", "", 65535);
  const std::string too_long(65535, 'x');
  const std::string errors = errors_of([&] {
    EXPECT_EQ(rtpriv_set_ioctl(1, kRtprivText, 0, too_long.c_str()), 0);
    EXPECT_EQ(errno, E2BIG);
  });
  EXPECT_EQ(errors,
            rpc_error_prefix("rtpriv_set_ioctl") + "ioctl failed (cmd=0x8BE2, sub_cmd=0x0)\n");
  EXPECT_EQ(driver_requests().size(), before + 1);
}

TEST(Wext, ObjectIsSetWithTheSetBitAndTheLengthAsGiven) {
  char buffer[20] = {};
  const std::string errors = errors_of(
      [&] { EXPECT_EQ(rtpriv_set_ioctl_2(9, kRtprivObject, kUnknown, buffer, sizeof buffer), 0); });
  expect_request("ra8", "0x8BE1", "0x7001", 20);
  EXPECT_TRUE(contains(last_request(), member("name", "object_set"))) << last_request();
  EXPECT_EQ(errors,
            rpc_error_prefix("rtpriv_set_ioctl_2") + "ioctl failed (cmd=0x8BE1, sub_cmd=0x7001)\n");
}

TEST(Wext, ObjectSetThatTheDriverTakesSucceeds) {
  // A text request accepts any flags, so it serves as an object that can be set.
  char text[] = "BtmEnable=1";
  EXPECT_EQ(rtpriv_set_ioctl_2(1, kRtprivText, 0x094A, text, sizeof text), 1);
  expect_request("ra0", "0x8BE2", "", 12);
}

TEST(Wext, NoSocketIsReported) {
  switch_log_on();
  fail_system_call(SYS_socket, EMFILE);
  char buffer[8];
  const std::string errors = errors_of([&] {
    EXPECT_EQ(rtpriv_get_ioctl(1, kRtprivObject, kOperatingClass, buffer, 4), 0);
    EXPECT_EQ(rtpriv_get_ioctl_2(1, kRtprivObject, kOperatingClass, buffer, 4), 0);
    EXPECT_EQ(rtpriv_set_ioctl(1, kRtprivText, 0, "a=b"), 0);
  });
  EXPECT_EQ(errors, rpc_error_prefix("rtpriv_get_ioctl") + "socket failed\n" +
                        rpc_error_prefix("rtpriv_get_ioctl_2") + "socket failed\n" +
                        rpc_error_prefix("rtpriv_set_ioctl") + "socket failed\n");
  EXPECT_EQ(logged(), "socket failed\nsocket failed\nsocket failed\n");
}

TEST(Wext, NoCallLeavesASocketOpen) {
  const int before = open_descriptors();
  char buffer[kRtprivStructSize];
  int32_t value = 0;
  unsigned length = 0;
  errors_of([&] {
    for (const unsigned sub : {kOperatingClass, kUnknown}) {
      static_cast<void>(rtpriv_get_ioctl(1, kRtprivObject, sub, buffer, 56));
      static_cast<void>(rtpriv_get_ioctl_2(1, kRtprivObject, sub, buffer, 56));
      static_cast<void>(rtpriv_get_int_ioctl(1, kRtprivObject, sub, &value));
      static_cast<void>(rtpriv_get_int_struct_ioctl(1, kRtprivObject, sub, buffer, &length));
      static_cast<void>(rtpriv_set_ioctl(1, kRtprivText, 0, "a=b"));
      static_cast<void>(rtpriv_set_ioctl_2(1, kRtprivObject, sub, buffer, 4));
    }
  });
  EXPECT_EQ(open_descriptors(), before);
}
