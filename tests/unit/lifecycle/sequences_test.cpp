#include <gtest/gtest.h>
#include <unistd.h>

#include <thread>

#include "lifecycle/init.h"
#include "lifecycle/interfaces.h"
#include "lifecycle/lifecycle_support.h"
#include "lifecycle/reset.h"
#include "lifecycle/restart.h"
#include "lifecycle/state.h"
#include "support/gateway.h"
#include "unit_support.h"
#include "wlan/driver_gate.h"

TEST(Sequences, WithoutModulesAllSaySoAndDoNothing) {
  note_commands();
  switch_log_on();
  drivers_inited = 1;
  EXPECT_EQ(wifi_init(), 1);
  EXPECT_EQ(wifi_restart(9), 1);
  EXPECT_EQ(wifi_reset(), 1);
  EXPECT_EQ(logged(),
            "WLAN driver(s) are not loaded\nWLAN driver(s) are not loaded\n"
            "WLAN driver(s) are not loaded\n");
  EXPECT_EQ(commands(), "");
  EXPECT_EQ(drivers_inited, 1);
}

static void start_with_controller() {
  lifecycle.modules_loaded = true;
  // As after an earlier init.
  drivers_inited = 1;
  write_file("/nvram/hnc_enable", "");
  note_commands("0\n");
}

TEST(Sequences, ChannelUtilizationFollowsTheControllersMarker) {
  start_with_controller();
  EXPECT_EQ(wifi_init(), 1);
  EXPECT_TRUE(contains(commands(),
                       "mtk_ctrl&\niwpriv ra0 set ApEnableRadioChStats=1\n"
                       "iwpriv ra8 set ApEnableRadioChStats=1\nkillall -USR1 HncInit\n"));
  EXPECT_EQ(wifi_restart(9), 1);
  EXPECT_TRUE(contains(commands(),
                       "mtk_ctrl&\niwpriv ra8 set ApEnableRadioChStats=1\n"
                       "touch /tmp/wifi_restart\nkillall -USR1 HncInit\n"));
  EXPECT_EQ(wifi_restart(1), 1);
  EXPECT_TRUE(contains(commands(), "mtk_ctrl&\niwpriv ra0 set ApEnableRadioChStats=1\nkillall"))
      << "the marker is there";
  EXPECT_EQ(profile_value(kProfile24, "ChannelUtilizationEnable"), "1");
  EXPECT_EQ(profile_value(kProfile5, "ChannelUtilizationEnable"), "1");
  EXPECT_EQ(wifi_reset(), 1);
  EXPECT_TRUE(
      commands().starts_with("iwpriv ra-1 set ApEnableRadioChStats=0\nkillall -USR2 HncInit\n"));
  EXPECT_EQ(profile_value(kProfile24, "ChannelUtilizationEnable"), "0");
  EXPECT_EQ(profile_value(kProfile5, "ChannelUtilizationEnable"), "1");
}

TEST(Sequences, RestartMakesItsMarkerWhereALinkLeadsElsewhere) {
  static constexpr char kMarker[] = "/tmp/wifi_restart";
  start_with_controller();
  ASSERT_EQ(symlink("/tmp/not there", kMarker), 0);
  EXPECT_EQ(errors_of([] { EXPECT_EQ(wifi_restart(1), 1); }),
            rpc_error_prefix("remove_planted") +
                "/tmp/wifi_restart is removed: it is no plain file with one name\n");
  EXPECT_TRUE(exists(kMarker));
  EXPECT_FALSE(exists("/tmp/not there"));
}

// The message goes to standard error and to the log.
static void expect_no_controller(const char* name, int (*sequence)()) {
  lifecycle.modules_loaded = true;
  unlink("/tmp/auto_debug/dbg_rpc.log");
  const std::string text = std::string(name) + " HNC Process is not running \n";
  EXPECT_EQ(errors_of([=] { sequence(); }), rpc_error_prefix(name) + text);
  EXPECT_EQ(count_of("\n" + logged(), "\n" + text), 1) << logged();
}

TEST(Sequences, MissingControllerIsReportedByEachAndStopsNone) {
  note_commands("0\n");
  switch_log_on();
  expect_no_controller("wifi_init", wifi_init);
  expect_no_controller("wifi_restart", [] { return wifi_restart(9); });
  expect_no_controller("wifi_reset", wifi_reset);
  EXPECT_FALSE(contains(commands(), "ApEnableRadioChStats"));
}

TEST(Sequences, SayWhatTheyDo) {
  pretend_mt7615();
  note_commands("0\n");
  lifecycle.modules_loaded = true;
  switch_console_on();
  const std::string output = output_of([] {
    wifi_init();
    wifi_restart(1);
    wifi_reset();
  });
  EXPECT_TRUE(in_order(output, {"[RPC] wifi_init\033[0m Initializing WLAN\n",
                                "[RPC] wifi_restart\033[0m Restarting WLAN\n",
                                "[RPC] wifi_reset\033[0m Reseting WLAN\n",
                                "[RPC] wifi_reset\033[0m removing kernel module mt7615_ap.ko\n"}))
      << output;
}

TEST(Sequences, DriverIsNotQueriedWhileARestartCyclesTheInterfaces) {
  start_with_controller();
  hold_command("pgrep -l rtdot1xd");
  std::thread restart([] { wifi_restart(1); });
  const bool stopped = wait_for_held_command();
  // With its interfaces down, the restart next reads whether the radio is on.
  const int lock = try_exclusive(kLock24);
  release_command();
  const bool cycles = wait_until([] { return lock_awaited(kLock24); });
  const int inited = drivers_inited;
  close(lock);
  restart.join();
  EXPECT_TRUE(stopped && lock >= 0 && cycles);
  EXPECT_EQ(inited, 0);
  EXPECT_EQ(drivers_inited, 1);
}

TEST(Interfaces, ValueOfTheLastStepIsReturned) {
  struct {
    const char* radio;
    const char* bsses;
    int value;
    const char* up;
  } const profiles[] = {
      {"1", "1;0;0;0;0;0;0;1", 1, "ra0\nra7\n"}, {"1", "1;1;0;0;0;0;0;0", 0, "ra0\nra1\n"},
      {"1", "0;2;0;0;0;0;0;2", 2, ""},           {"0", "1;1;1;1;1;1;1;1", 0, ""},
      {"2", "1;1;1;1;1;1;1;1", 2, ""},
  };
  for (const auto& item : profiles) {
    for (const int radio : {1, 9}) {
      const char* profile = radio == 1 ? kProfile24 : kProfile5;
      set_profile_value(profile, "RadioOn", item.radio);
      set_profile_value(profile, "BssEnabled", item.bsses);
    }
    wifi_interfacesDown(1);
    wifi_interfacesDown(9);
    EXPECT_EQ(wifi_interfacesUp(1), item.value) << item.radio << item.bsses;
    EXPECT_EQ(interfaces_up("ra.*"), item.up);
    EXPECT_EQ(wifi_interfacesUp(9), item.value) << item.radio << item.bsses;
  }
}
