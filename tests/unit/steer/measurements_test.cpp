#include "steer/measurements.h"

#include <gtest/gtest.h>
#include <sys/syscall.h>

#include <climits>

#include "lying_driver.h"
#include "steer/steer_support.h"
#include "support/gateway.h"
#include "unit_support.h"
#include "wlan/driver_gate.h"

TEST(OperatingClass, IsTheDriversThirtyTwoBitValue) {
  bring_radios_up();
  int value = 99;
  EXPECT_EQ(wlan_getOperatingClass(1, &value), 0);
  EXPECT_EQ(value, 81);
  EXPECT_EQ(wlan_getOperatingClass(9, &value), 0);
  EXPECT_EQ(value, 115);
  EXPECT_EQ(member_of(last_of("operating_class"), "interface"), "ra8");
  EXPECT_EQ(member_of(last_of("operating_class"), "sub"), "0x06B2");
  EXPECT_EQ(member_of(last_of("operating_class"), "length"), "3");
  switch_console_on();
  answer_object_with(0x06B2, "\x01\x02\x03\x04");
  const std::string output = output_of([&] { EXPECT_EQ(wlan_getOperatingClass(1, &value), 0); });
  // The query never asks for the last byte.
  EXPECT_EQ(value, 0x030201);
  EXPECT_TRUE(contains(output, "wlan_getOperatingClass\033[0m  opt class = 197121. \n ")) << output;
}

TEST(OperatingClass, FailureIsReported) {
  int value = 99;
  EXPECT_EQ(errors_of([&] { EXPECT_EQ(wlan_getOperatingClass(1, &value), -1); }),
            rev_error_prefix("wlan_getOperatingClass") + "dirver isn't inited. \n ");
  EXPECT_EQ(driver_requests().size(), 0u);
  drivers_inited = 1;
  run("gwbox fail operating_class EAGAIN");
  for (const int index : {1, 0, 17, -5, INT_MIN, INT_MAX}) {
    const std::string errors =
        errors_of([&] { EXPECT_EQ(wlan_getOperatingClass(index, &value), -1); });
    EXPECT_TRUE(
        errors.ends_with(rev_error_prefix("wlan_getOperatingClass") + " get opt class failed. \n "))
        << errors;
  }
  EXPECT_EQ(value, 99);
}

struct mode_case {
  int index;
  const char* mode;  // null: the key is missing
  int ht;
  int vht;
};

TEST(WirelessMode, TellsHtAndVhtByBand) {
  const mode_case cases[] = {
      {1, "6", 1, 0},     {1, "7", 1, 0},     {1, "9", 1, 0},       {8, "9", 1, 0},
      {1, "8", 0, 0},     {1, "11", 0, 0},    {1, "14", 0, 0},      {1, "15", 0, 0},
      {1, "0", 0, 0},     {1, "", 0, 0},      {1, "junk", 0, 0},    {1, "9x", 1, 0},
      {9, "8", 1, 0},     {9, "11", 1, 0},    {9, "14", 1, 1},      {9, "15", 1, 1},
      {16, "14", 1, 1},   {9, "6", 0, 0},     {9, "7", 0, 0},       {9, "9", 0, 0},
      {9, "-14", 0, 0},   {0, "9", 1, 0},     {INT_MIN, "9", 1, 0}, {INT_MAX, "15", 1, 1},
      {1, nullptr, 0, 0}, {9, nullptr, 0, 0},
  };
  for (const mode_case& c : cases) {
    const std::string profile = c.index < 9 ? kProfile24 : kProfile5;
    if (c.mode != nullptr) set_profile_value(profile, "WirelessMode", c.mode);
    if (c.mode == nullptr) remove_key(profile, "WirelessMode");
    int ht = 99;
    int vht = 99;
    EXPECT_EQ(wlan_getHtSupport(c.index, &ht), 0);
    EXPECT_EQ(wlan_getVHtSupport(c.index, &vht), 0);
    EXPECT_EQ(ht, c.ht) << c.index << " " << c.mode;
    EXPECT_EQ(vht, c.vht) << c.index << " " << c.mode;
  }
}

TEST(WirelessMode, IsTraced) {
  switch_console_on();
  set_profile_value(kProfile5, "WirelessMode", "14");
  int value = 0;
  const std::string output = output_of([&] {
    wlan_getHtSupport(9, &value);
    wlan_getVHtSupport(9, &value);
  });
  EXPECT_TRUE(contains(output, "wlan_getHtSupport\033[0m HT support:1\n ")) << output;
  EXPECT_TRUE(contains(output, "wlan_getVHtSupport\033[0m VHT support:1\n ")) << output;
}

TEST(RadioMaxBitRate, IsInWholeMegabits) {
  bring_radios_up();
  // Two HT40 streams have 300 Mbit/s, two VHT80 streams 866.7.
  int value = 99;
  switch_console_on();
  const std::string output = output_of([&] { EXPECT_EQ(wlan_getRadioMaxBitRate(1, &value), 0); });
  EXPECT_EQ(value, 300);
  EXPECT_TRUE(contains(output, "wlan_getRadioMaxBitRate\033[0m  Bit Rate = 300. index = 1\n "))
      << output;
  EXPECT_EQ(wlan_getRadioMaxBitRate(9, &value), 0);
  EXPECT_EQ(value, 866);
  EXPECT_EQ(member_of(driver_requests().back(), "request"), "0x8B21");
  EXPECT_EQ(member_of(driver_requests().back(), "interface"), "ra8");
}

TEST(RadioMaxBitRate, FailureIsReportedWithTheIndex) {
  int value = 99;
  const std::string prefix = rev_error_prefix("wlan_getRadioMaxBitRate");
  for (const int index : {1, 0, 17, -5, INT_MIN, INT_MAX}) {
    EXPECT_EQ(errors_of([&] { EXPECT_EQ(wlan_getRadioMaxBitRate(index, &value), -1); }),
              prefix + "ioctl failed (cmd=0x8B21), index = " + std::to_string(index) + " \n");
  }
  const int before = open_descriptors();
  errors_of([&] { EXPECT_EQ(wlan_getRadioMaxBitRate(1, &value), -1); });
  EXPECT_EQ(open_descriptors(), before);
  fail_system_call(SYS_socket, EMFILE);
  EXPECT_EQ(errors_of([&] { EXPECT_EQ(wlan_getRadioMaxBitRate(1, &value), -1); }),
            prefix + "socket failed\n");
  EXPECT_EQ(value, 99);
}
