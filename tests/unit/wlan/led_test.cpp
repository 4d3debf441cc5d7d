#include "wlan/led.h"

#include <gtest/gtest.h>

#include <string>

#include "unit_support.h"

static const std::string kFailed24 = "wlan_setLedEnable WIFI24 ioctl failed \n";
static const std::string kFailed50 = "wlan_setLedEnable WIFI50 ioctl failed \n";

static void expect_request(const std::string& line, const std::string& interface,
                           const std::string& text) {
  EXPECT_TRUE(contains(line, "\"interface\":\"" + interface + "\"")) << line;
  EXPECT_TRUE(contains(line, "\"request\":\"0x8BE2\"")) << line;
  EXPECT_TRUE(contains(line, "\"text\":\"" + text + "\"")) << line;
  EXPECT_TRUE(contains(line, "\"length\":12,")) << line;
}

TEST(Led, BothRadiosAreSwitchedInOrder) {
  const std::string errors = errors_of([] { EXPECT_EQ(wlan_setLedEnable(1), 0); });
  EXPECT_EQ(errors, "");
  const auto requests = driver_requests();
  ASSERT_EQ(requests.size(), 2u);
  expect_request(requests[0], "ra0", "LEDEnable=1");
  expect_request(requests[1], "ra8", "LEDEnable=1");
}

TEST(Led, AnythingButZeroIsOn) {
  EXPECT_EQ(wlan_setLedEnable(-7), 0);
  EXPECT_EQ(wlan_setLedEnable(0), 0);
  const auto requests = driver_requests();
  ASSERT_EQ(requests.size(), 4u);
  expect_request(requests[1], "ra8", "LEDEnable=1");
  expect_request(requests[2], "ra0", "LEDEnable=0");
  expect_request(requests[3], "ra8", "LEDEnable=0");
}

TEST(Led, SecondRadioIsTriedWhenTheFirstIsMissing) {
  ASSERT_EQ(system("ip link del ra0"), 0);
  const std::string errors = errors_of([] { EXPECT_EQ(wlan_setLedEnable(1), -1); });
  EXPECT_EQ(errors, rpc_error_prefix("rtpriv_set_ioctl") +
                        "ioctl failed (cmd=0x8BE2, sub_cmd=0x0)\n" +
                        rev_error_prefix("wlan_setLedEnable") + kFailed24);
  const auto requests = driver_requests();
  ASSERT_FALSE(requests.empty());
  expect_request(requests.back(), "ra8", "LEDEnable=1");
}

TEST(Led, MissingSecondRadioFailsToo) {
  ASSERT_EQ(system("ip link del ra8"), 0);
  const std::string errors = errors_of([] { EXPECT_EQ(wlan_setLedEnable(0), -1); });
  EXPECT_EQ(errors, rpc_error_prefix("rtpriv_set_ioctl") +
                        "ioctl failed (cmd=0x8BE2, sub_cmd=0x0)\n" +
                        rev_error_prefix("wlan_setLedEnable") + kFailed50);
  expect_request(driver_requests().front(), "ra0", "LEDEnable=0");
}

TEST(Led, BothMissingAreBothReported) {
  ASSERT_EQ(system("ip link del ra0; ip link del ra8"), 0);
  const std::string errors = errors_of([] { EXPECT_EQ(wlan_setLedEnable(1), -1); });
  EXPECT_TRUE(contains(errors, kFailed24)) << errors;
  EXPECT_TRUE(contains(errors, kFailed50)) << errors;
}

TEST(Led, FailureOfTheDriverIsAFailure) {
  ASSERT_EQ(system("gwbox fail 0x8BE2 EIO"), 0);
  const std::string errors = errors_of([] { EXPECT_EQ(wlan_setLedEnable(1), -1); });
  EXPECT_TRUE(contains(errors, kFailed24)) << errors;
  EXPECT_FALSE(contains(errors, kFailed50)) << errors;
}

TEST(Led, OneRadioReturnsTheResultOfItsRequest) {
  EXPECT_EQ(Set_LedEnableByIndex(1, 3), 1);
  expect_request(driver_requests().back(), "ra2", "LEDEnable=1");
  errors_of([] { EXPECT_EQ(Set_LedEnableByIndex(1, 17), 0); });
}
