#include "steer/channel_utilization.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "lifecycle/state.h"
#include "support/gateway.h"
#include "unit_support.h"

static bool driver_was_told(const std::string& interface, const std::string& text) {
  for (const std::string& request : driver_requests()) {
    if (contains(request, "\"" + interface + "\"") && contains(request, text)) return true;
  }
  return false;
}

TEST(ChannelUtilization, SwitchIsNotedAndSentToTheRadio) {
  drivers_inited = 1;
  EXPECT_EQ(wlan_setChannelUtilizationEnable(9, 1), 0);
  EXPECT_EQ(profile_value(kProfile5, "ChannelUtilizationEnable"), "1");
  EXPECT_TRUE(driver_was_told("ra8", "ApEnableRadioChStats=1"));
  EXPECT_EQ(wlan_setChannelUtilizationEnable(1, 0), 0);
  EXPECT_EQ(profile_value(kProfile24, "ChannelUtilizationEnable"), "0");
  EXPECT_EQ(profile_value(kProfile5, "ChannelUtilizationEnable"), "1");
  EXPECT_TRUE(driver_was_told("ra0", "ApEnableRadioChStats=0"));
}

TEST(ChannelUtilization, IsRefusedWhileTheDriverIsNotInited) {
  write_file(kProfile24, "ChannelUtilizationEnable=5\n");
  EXPECT_EQ(errors_of([] { EXPECT_EQ(wlan_setChannelUtilizationEnable(1, 1), -1); }),
            rev_error_prefix("wlan_setChannelUtilizationEnable") + "dirver isn't inited. \n ");
  EXPECT_EQ(read_file(kProfile24), "ChannelUtilizationEnable=5\n");
  EXPECT_FALSE(driver_was_told("ra0", "ApEnableRadioChStats"));
}

TEST(ChannelUtilization, ProfileThatCannotBeWrittenStopsIt) {
  drivers_inited = 1;
  unlink(kProfile24);
  const std::string errors =
      errors_of([] { EXPECT_EQ(wlan_setChannelUtilizationEnable(1, 1), -1); });
  EXPECT_TRUE(errors.ends_with(rev_error_prefix("wlan_setChannelUtilizationEnable") +
                               "failed to update wifi profile, ret:0\n "))
      << errors;
  EXPECT_FALSE(driver_was_told("ra0", "ApEnableRadioChStats"));
}

TEST(ChannelUtilization, CommandThatFailsDoesNotCountAsFailure) {
  drivers_inited = 1;
  run("gwbox fail set@ra0 EINVAL");
  EXPECT_EQ(wlan_setChannelUtilizationEnable(1, 1), 0);
}
