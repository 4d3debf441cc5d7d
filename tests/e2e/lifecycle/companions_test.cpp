#include <gtest/gtest.h>
#include <signal.h>

#include "support/daemon.h"
#include "support/files.h"
#include "support/gateway.h"
#include "support/lifecycle.h"
#include "support/wire.h"

TEST(Companions, ControllerLearnsOfRestarts) {
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  ASSERT_TRUE(wait_until([] { return hnc_signals() == "USR1 "; })) << hnc_signals();
  EXPECT_EQ(call_for_code(kRestart, xdr_word(1)), 0);
  EXPECT_TRUE(wait_until([] { return hnc_signals() == "USR1 USR2 USR1 "; })) << hnc_signals();
}

TEST(Companions, MtkCtrlRunsOnceWhileARadioIsOn) {
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  EXPECT_TRUE(wait_until([] { return run("pgrep -xc mtk_ctrl") == "1\n"; }));
  queue_and_wait(kInit, kInitialized);
  EXPECT_EQ(run("pgrep -xc mtk_ctrl"), "1\n");
  // A process with the companion's name in its arguments ends too.
  run("sh -c 'sleep 1000; exit' mtk_ctrl </dev/null >/dev/null 2>&1 &");
  ASSERT_TRUE(wait_until([] { return run("pgrep -fc 'sleep 1000; exi[t]'") == "1\n"; }));
  EXPECT_EQ(call_for_code(kReset, ""), 0);
  EXPECT_TRUE(wait_until([] { return run("pgrep -xc mtk_ctrl") == "0\n"; }));
  EXPECT_TRUE(wait_until([] { return run("pgrep -fc 'sleep 1000; exi[t]'") == "0\n"; }));
}

TEST(Companions, OfAChildThatDiedAreNotStartedASecondTime) {
  // Takes longer than other tests: two loads and two inits, each a second later.
  set_profile_value("/tmp/mt76xx_24.dat", "RADIUS_Server",
                    "10.0.0.1;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0");
  set_profile_value("/tmp/mt76xx_24.dat", "MSODCSOn", "1");
  set_profile_value("/tmp/mt76xx_24.dat", "USERDCSOn", "1");
  set_profile_value("/tmp/mt76xx_24.dat", "Channel", "0");
  if (board() != "mt7603") make_bands_alike();
  const std::string steering = board() == "mt7603"   ? ""
                               : board() == "mt7615" ? "bs20\n"
                                                     : "bndstrg_1\n";
  const std::string once = steering + "dcs\nmtk_ctrl\nrtdot1xd\n";
  const auto companions = [] {
    return run("ps -e -o comm= | grep -xE 'bs20|bndstrg_1|dcs|mtk_ctrl|rtdot1xd' | sort");
  };
  const pid_t child = start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  ASSERT_TRUE(wait_until([&] { return companions() == once; })) << companions();
  kill(child, SIGKILL);
  ASSERT_TRUE(wait_until([&] { return kill(child, 0) != 0 && daemon_answers(); }));
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  EXPECT_EQ(companions(), once);
  EXPECT_EQ(call_for_code(kReset, ""), 0);
  EXPECT_TRUE(wait_until([&] { return companions().empty(); })) << companions();
}

TEST(Companions, DcsNeedsItsSwitchesAndAnAutomaticChannel) {
  set_profile_value("/tmp/mt76xx_24.dat", "MSODCSOn", "1");
  set_profile_value("/tmp/mt76xx_24.dat", "USERDCSOn", "1");
  set_profile_value("/tmp/mt76xx_24.dat", "Channel", "6");
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  EXPECT_EQ(count_traces("Sart dcs\n"), 0);
  set_profile_value("/tmp/mt76xx_24.dat", "Channel", "0");
  queue_and_wait(kInit, kInitialized);
  EXPECT_EQ(count_traces("Sart dcs\n"), 1);
  EXPECT_TRUE(wait_until([] { return run("pgrep -xc dcs") == "1\n"; }));
}

TEST(Companions, DifferentBandsSwitchBandSteeringOff) {
  if (board() == "mt7603") GTEST_SKIP() << "has one radio";
  make_bands_alike();
  set_profile_value("/tmp/mt76xx_5.dat", "SSID1", "another");
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  EXPECT_EQ(count_traces("unable to enable BandSteering because 2.4G and 5G SSID is different\n"),
            1);
  EXPECT_EQ(profile_value("/tmp/mt76xx_24.dat", "BandSteering"), "0");
  EXPECT_EQ(profile_value("/tmp/mt76xx_5.dat", "BandSteering"), "0");
}

TEST(Companions, BandSteeringStartsAndStopsWithItsDaemon) {
  if (board() == "mt7603") GTEST_SKIP() << "has one radio";
  make_bands_alike();
  const std::string daemon = board() == "mt7615" ? "bs20" : "bndstrg_1";
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  EXPECT_EQ(count_traces("Sart band steering\n"), 1);
  EXPECT_TRUE(wait_until([&] { return run("pgrep -xc " + daemon) == "1\n"; }));
  EXPECT_EQ(call_for_code(kReset, ""), 0);
  EXPECT_EQ(count_traces("Stop band steering\n"), 1);
  EXPECT_TRUE(wait_until([&] { return run("pgrep -xc " + daemon) == "0\n"; }));
}

TEST(Companions, AuthenticatorFollowsTheRadiusServers) {
  start_lifecycle_daemon();
  set_profile_value("/tmp/mt76xx_24.dat", "RADIUS_Server",
                    "0.0.0.0;10.0.0.1;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0");
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  EXPECT_TRUE(wait_until([] { return run("pgrep -xc rtdot1xd") == "1\n"; }));
  const std::string none = "0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0";
  set_profile_value("/tmp/mt76xx_24.dat", "RADIUS_Server", none);
  if (board() != "mt7603") set_profile_value("/tmp/mt76xx_5.dat", "RADIUS_Server", none);
  queue_and_wait(kInit, kInitialized);
  EXPECT_TRUE(wait_until([] { return run("pgrep -xc rtdot1xd") == "0\n"; }));
}

TEST(Companions, DoNotKeepTheServicesPort) {
  const std::string child = std::to_string(start_lifecycle_daemon());
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  ASSERT_TRUE(wait_until([] { return run("pgrep -xc mtk_ctrl") == "1\n"; }));
  EXPECT_EQ(run("ls -l /proc/$(pgrep -x mtk_ctrl)/fd | grep -E 'lock|dbg_rpc'"), "");
  // Only the child and its supervisor.
  EXPECT_EQ(run("ss -ulpnH sport = 60001 | grep -o 'pid=[0-9]*' | sort"),
            run("printf 'pid=%d\n' " + child + " $(ps -o ppid= -p " + child + ") | sort"));
}
