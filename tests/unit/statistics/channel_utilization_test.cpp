#include "statistics/channel_utilization.h"

#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

#include "lying_driver.h"
#include "steer/steer_support.h"
#include "support/gateway.h"
#include "unit_support.h"
#include "wlan/driver_gate.h"

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

TEST(ChannelUtilization, CommandWhoseEndIsUnknownIsReported) {
  drivers_inited = 1;
  write_file(kProfile24, "ChannelUtilizationEnable=0\n");
  // A child process, because no later wait would succeed.
  EXPECT_EXIT(
      {
        fail_system_call(SYS_wait4, ECHILD);
        _exit(wlan_setChannelUtilizationEnable(1, 1) == -1 ? 0 : 1);
      },
      testing::ExitedWithCode(0), "failed to enable channel utilization\n $");
  EXPECT_EQ(profile_value(kProfile24, "ChannelUtilizationEnable"), "1");
}

TEST(ChannelUtilization, CommandThatFailsDoesNotCountAsFailure) {
  drivers_inited = 1;
  run("gwbox fail set@ra0 EINVAL");
  EXPECT_EQ(wlan_setChannelUtilizationEnable(1, 1), 0);
}

// A load record: period, twelve other bytes, busy time.
static std::string load(uint32_t period, uint32_t busy) {
  return bytes_of(period) + std::string(12, '\xEE') + bytes_of(busy);
}

// The query never asks for the last byte, so the busy time has 24 bits.
static constexpr uint16_t kLoad = 0x0693;

struct load_case {
  uint32_t period;
  uint32_t busy;
  int percent;
};

TEST(ChannelUtilization, ShareOfThePeriodInPercent) {
  drivers_inited = 1;
  const load_case cases[] = {
      {1000, 300, 30},        {1000, 1000, 100},  {1000, 0, 0},    {1000, 999, 99},
      {1000, 9, 0},           {3, 1, 33},         {3, 2, 66},      {100, 29, 29},
      {100, 57, 57},          {0, 0, 0},          {0, 5, 0},       {10, 11, 100},
      {1, 0xFFFFFFFF, 100},   {0xFFFFFFFF, 1, 0}, {200, 199, 99},  {0x1000000, 0x800000, 50},
      {1000, 0x0100012C, 30}, {1000, 530, 52},    {1000, 590, 58},
  };
  for (const load_case& c : cases) {
    answer_object_with(kLoad, load(c.period, c.busy));
    int utilization = 99;
    EXPECT_EQ(wlan_getChannelUtilization(1, &utilization), 0);
    EXPECT_EQ(utilization, c.percent) << c.busy << " of " << c.period;
  }
}

TEST(ChannelUtilization, ComesFromTheRadioAndIsTraced) {
  bring_radios_up();
  EXPECT_EQ(wlan_setChannelUtilizationEnable(9, 1), 0);
  switch_console_on();
  int utilization = 99;
  const std::string output =
      output_of([&] { EXPECT_EQ(wlan_getChannelUtilization(9, &utilization), 0); });
  EXPECT_EQ(utilization, 12);
  EXPECT_TRUE(contains(output,
                       "wlan_getChannelUtilization\033[0m  channel utilization = 12. "
                       "BusyTime = 120, Period = 1000\n "))
      << output;
  EXPECT_EQ(member_of(last_of("channel_load"), "interface"), "ra8");
  EXPECT_EQ(member_of(last_of("channel_load"), "sub"), "0x0693");
  EXPECT_EQ(member_of(last_of("channel_load"), "length"), "19");
}

TEST(ChannelUtilization, DriverTellsWhetherItIsOn) {
  bring_radios_up();
  switch_console_on();
  int enable = 99;
  const std::string off =
      output_of([&] { EXPECT_EQ(wlan_getChannelUtilizationEnable(1, &enable), 0); });
  EXPECT_EQ(enable, 0);
  EXPECT_TRUE(contains(off,
                       "wlan_getChannelUtilizationEnable\033[0m  channel utilization "
                       "disabled. \n "))
      << off;
  EXPECT_EQ(wlan_setChannelUtilizationEnable(1, 1), 0);
  const std::string on =
      output_of([&] { EXPECT_EQ(wlan_getChannelUtilizationEnable(1, &enable), 0); });
  EXPECT_EQ(enable, 1);
  EXPECT_TRUE(contains(on, "  channel utilization enabled. \n ")) << on;
}

TEST(ChannelUtilization, OtherFailuresAreReported) {
  bring_radios_up();
  const std::string failed = " get channel utilization failed. \n ";
  int value = 99;
  for (const char* error : {"EIO", "EAGAIN", "EOPNOTSUPP"}) {
    run(std::string("gwbox fail channel_load ") + error + " 2");
    const std::string enable =
        errors_of([&] { EXPECT_EQ(wlan_getChannelUtilizationEnable(1, &value), -1); });
    EXPECT_TRUE(enable.ends_with(rev_error_prefix("wlan_getChannelUtilizationEnable") + failed))
        << enable;
    const std::string load =
        errors_of([&] { EXPECT_EQ(wlan_getChannelUtilization(1, &value), -1); });
    EXPECT_TRUE(load.ends_with(rev_error_prefix("wlan_getChannelUtilization") + failed)) << load;
  }
  // Channel statistics are off, which is a failure only for the value's getter.
  errors_of([&] { EXPECT_EQ(wlan_getChannelUtilization(1, &value), -1); });
  EXPECT_EQ(value, 99);
}

TEST(ChannelUtilization, IsNotAskedBeforeTheDriverIsInited) {
  int value = 99;
  EXPECT_EQ(errors_of([&] { EXPECT_EQ(wlan_getChannelUtilization(1, &value), -1); }),
            rev_error_prefix("wlan_getChannelUtilization") + "dirver isn't inited. \n ");
  EXPECT_EQ(errors_of([&] { EXPECT_EQ(wlan_getChannelUtilizationEnable(1, &value), -1); }),
            rev_error_prefix("wlan_getChannelUtilizationEnable") + "dirver isn't inited. \n ");
  EXPECT_EQ(driver_requests().size(), 0u);
}
