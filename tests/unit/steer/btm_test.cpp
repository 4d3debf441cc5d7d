#include "steer/btm.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <climits>

#include "lying_driver.h"
#include "steer/steer_support.h"
#include "support/gateway.h"
#include "unit_support.h"
#include "wlan/driver_gate.h"

TEST(BtmCapable, IsWhatTheDriverSays) {
  drivers_inited = 1;
  int capable = 99;
  EXPECT_EQ(wlan_getBtmCapable(9, &capable), 0);
  EXPECT_EQ(capable, 1);
  EXPECT_EQ(member_of(last_of("btm"), "interface"), "ra8");
  EXPECT_EQ(member_of(last_of("btm"), "sub"), "0x494A");
  EXPECT_EQ(member_of(last_of("btm"), "length"), "1");
}

TEST(BtmCapable, DriverWithoutItIsNoFailure) {
  drivers_inited = 1;
  run("gwbox set radio ra0 btm=false");
  switch_console_on();
  int capable = 99;
  std::string errors;
  const std::string output = output_of(
      [&] { errors = errors_of([&] { EXPECT_EQ(wlan_getBtmCapable(1, &capable), 0); }); });
  EXPECT_EQ(capable, 0);
  EXPECT_FALSE(contains(errors, "wlan_getBtmCapable")) << errors;
  EXPECT_TRUE(contains(output, "wlan_getBtmCapable\033[0m BTM is not capable. \n ")) << output;
}

TEST(BtmCapable, AnyOtherFailureIsOne) {
  drivers_inited = 1;
  const std::string failed = rev_error_prefix("wlan_getBtmCapable") + "get BTM capable failed. \n ";
  for (const char* error : {"EIO", "EAGAIN", "EFAULT"}) {
    run(std::string("gwbox fail btm ") + error);
    int capable = 99;
    const std::string errors = errors_of([&] { EXPECT_EQ(wlan_getBtmCapable(1, &capable), -1); });
    EXPECT_TRUE(errors.ends_with(failed)) << errors;
    EXPECT_EQ(capable, 0);
  }
  for (const int index : {0, 17, -5, INT_MIN, INT_MAX}) {
    int capable = 99;
    const std::string errors =
        errors_of([&] { EXPECT_EQ(wlan_getBtmCapable(index, &capable), -1); });
    EXPECT_TRUE(errors.ends_with(failed)) << errors;
    EXPECT_EQ(capable, 0);
  }
}

TEST(BtmEnable, DriverAndProfileAreSet) {
  drivers_inited = 1;
  set_profile_value(kProfile5, "WNMEnable", "7");
  EXPECT_EQ(errors_of([] { EXPECT_EQ(wlan_setBtmEnable(9, 1), 0); }), "");
  EXPECT_EQ(profile_value(kProfile5, "WNMEnable"), "1");
  EXPECT_EQ(profile_value(kProfile24, "WNMEnable"), "0");
  const std::string request = last_of("btm_enable");
  EXPECT_EQ(member_of(request, "name"), "object_set");
  EXPECT_EQ(member_of(request, "interface"), "ra8");
  EXPECT_EQ(member_of(request, "sub"), "0x094A");
  EXPECT_EQ(member_of(request, "length"), "3");
  EXPECT_EQ(member_of(request, "bytes"), "020001");
  int enabled = 99;
  EXPECT_EQ(wlan_getBtmEnable(9, &enabled), 0);
  EXPECT_EQ(enabled, 1);
  EXPECT_EQ(wlan_getBtmEnable(1, &enabled), 0);
  EXPECT_EQ(enabled, 0);
}

TEST(BtmEnable, OnlyTheNumberOneIsOn) {
  const std::pair<std::string, int> cases[] = {
      {std::string(1, '\0'), 0}, {"\x01", 1}, {"\x02", 0}, {"\xff", 0}};
  for (const auto& [bytes, enabled] : cases) {
    answer_object_with(0x494A, bytes);
    int value = 99;
    EXPECT_EQ(wlan_getBtmEnable(1, &value), 0);
    EXPECT_EQ(value, enabled) << static_cast<unsigned>(static_cast<uint8_t>(bytes[0]));
  }
}

TEST(BtmEnable, SwitchIsTracedAndTheMissingKeyAdded) {
  drivers_inited = 1;
  write_file(kProfile24, "Other=1\n");
  switch_console_on();
  const std::string output = output_of([] { EXPECT_EQ(wlan_setBtmEnable(1, 258), 0); });
  EXPECT_TRUE(
      output.ends_with(rev_prefix("wlan_setBtmEnable") + "set BTM enable = 258 success. \n "))
      << output;
  EXPECT_EQ(read_file(kProfile24), "Other=1\nWNMEnable=258\n");
}

TEST(BtmEnable, ValueGoesOutAsOneByte) {
  drivers_inited = 1;
  const std::pair<int, const char*> cases[] = {
      {0, "020000"}, {255, "0200ff"}, {258, "020002"}, {-1, "0200ff"}, {INT_MIN, "020000"}};
  for (const auto& [value, bytes] : cases) {
    EXPECT_EQ(wlan_setBtmEnable(1, value), 0);
    EXPECT_EQ(profile_value(kProfile24, "WNMEnable"), std::to_string(value));
    EXPECT_EQ(member_of(last_of("btm_enable"), "bytes"), bytes);
  }
}

TEST(BtmEnable, RefusalLeavesTheNote) {
  drivers_inited = 1;
  run("gwbox fail btm_enable EIO");
  const std::string errors = errors_of([] { EXPECT_EQ(wlan_setBtmEnable(1, 1), -1); });
  EXPECT_TRUE(
      errors.ends_with(rev_error_prefix("wlan_setBtmEnable") + "set BTM enable failed. \n "))
      << errors;
  EXPECT_EQ(profile_value(kProfile24, "WNMEnable"), "1");
}

TEST(BtmEnable, ProfileThatCannotBeWrittenDoesNotStopTheDriver) {
  drivers_inited = 1;
  unlink(kProfile24);
  const std::string errors = errors_of([] { EXPECT_EQ(wlan_setBtmEnable(1, 1), 0); });
  EXPECT_FALSE(contains(errors, "wlan_setBtmEnable")) << errors;
  EXPECT_EQ(requests_of("btm_enable").size(), 1u);
}

TEST(BtmEnable, FailingQueryIsReported) {
  run("gwbox fail btm EOPNOTSUPP");
  int enabled = 99;
  const std::string errors = errors_of([&] { EXPECT_EQ(wlan_getBtmEnable(1, &enabled), -1); });
  EXPECT_TRUE(
      errors.ends_with(rev_error_prefix("wlan_getBtmEnable") + "get BTM enable failed. \n "))
      << errors;
  EXPECT_EQ(enabled, 99);
}

TEST(Btm, IsNotAskedBeforeTheDriverIsInited) {
  int value = 99;
  EXPECT_EQ(errors_of([&] { EXPECT_EQ(wlan_getBtmCapable(1, &value), -1); }),
            rev_error_prefix("wlan_getBtmCapable") + "dirver isn't inited. \n ");
  EXPECT_EQ(errors_of([&] { EXPECT_EQ(wlan_setBtmEnable(1, 1), -1); }),
            rev_error_prefix("wlan_setBtmEnable") + "dirver isn't inited. \n ");
  EXPECT_EQ(driver_requests().size(), 0u);
  EXPECT_EQ(profile_value(kProfile24, "WNMEnable"), "0");
  EXPECT_EQ(wlan_getBtmEnable(1, &value), 0);
}
