#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <random>
#include <thread>

#include "support/daemon.h"
#include "support/files.h"
#include "support/gateway.h"
#include "support/lifecycle.h"
#include "support/wire.h"

// Run once per board, in a gateway that has no driver loaded yet. The window in
// which requests meet is a real second; where a test does not look at waits,
// the commands' own "sleep" is cut short.

TEST(Cycle, NewSsidIsOnAirAfterARestartAndNothingIsLeftAfterAReset) {
  // Four requests, a second's window each, and twice the board's load.
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  EXPECT_EQ(interfaces(), all_interfaces());
  queue_and_wait(kInit, kInitialized);
  EXPECT_EQ(beaconed_ssid("ra0"), profile_value("/tmp/mt76xx_24.dat", "SSID1"));
  ASSERT_EQ(call_for_code(22, xdr_word(1) + xdr_text("On air")), 0);
  EXPECT_NE(beaconed_ssid("ra0"), "On air");
  queue_and_wait(kRestartAll, kRestarted);
  EXPECT_EQ(beaconed_ssid("ra0"), "On air");
  EXPECT_EQ(call_for_code(kReset, ""), 0);
  EXPECT_EQ(interfaces(), "");
  queue_and_wait(kLoad, kLoaded);
  EXPECT_EQ(interfaces(), all_interfaces());
}

TEST(Transcript, LoadInitRestartAndResetRunTheirCommandsAndRequestsInOrder) {
  // Every step traced, on top of the windows.
  write_file("/nvram/hnc_enable", "");
  start_traced_daemon();
  for (const lifecycle_step& step : lifecycle_steps()) {
    run_step(step);
    EXPECT_EQ(transcript_of_step(), committed_transcript(step.name))
        << "the new transcript is in " << save_transcript(step.name);
  }
}

TEST(Transcript, SameWithVlansSteeringDcsAndAuthenticators) {
  // Every step traced, on top of the windows.
  switch_everything_on();
  start_traced_daemon();
  for (lifecycle_step step : lifecycle_steps()) {
    step.name = "everything." + step.name;
    run_step(step);
    EXPECT_EQ(transcript_of_step(), committed_transcript(step.name))
        << "the new transcript is in " << save_transcript(step.name);
  }
}

TEST(Queue, ResetInTheWindowOfAnInitLeavesEverythingDown) {
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  // The init's window ends at some moment of these resets.
  EXPECT_EQ(call_for_code(kInit, ""), 0);
  int refused = 0;
  int resets = 0;
  while (count_traces("name: wlan_init") < 2) {
    const int32_t code = call_for_code(kReset, "");
    resets += code == 0;
    refused += code == -1;
  }
  EXPECT_GT(resets + refused, 0);
  EXPECT_EQ(call_for_code(kReset, ""), 0);
  EXPECT_EQ(interfaces(), "");
  queue_and_wait(kRestart, "Driver(s) have not been initialized\n");
}

TEST(Queue, RestartsOfOneSecondRunOnceForAllTheirRadios) {
  start_lifecycle_daemon();
  EXPECT_EQ(call_for_code(kRestart, xdr_word(3)), 0);
  EXPECT_EQ(call_for_code(kRestart, xdr_word(12)), 0);
  ASSERT_TRUE(wait_for_trace("Restarting radio with mask: 11\n"));
  queue_and_wait(kLoad, kLoaded);
  EXPECT_EQ(count_traces("Restarting radio with mask"), 1);
}

TEST(Queue, RestartDisplacesTheInitBehindALoad) {
  start_lifecycle_daemon();
  EXPECT_EQ(call_for_code(kLoad, xdr_word(0)), 0);
  EXPECT_EQ(call_for_code(kInit, ""), 0);
  EXPECT_EQ(call_for_code(kRestart, xdr_word(1)), 0);
  ASSERT_TRUE(wait_for_trace("Restarting radio with mask: 01\n"));
  EXPECT_EQ(count_traces("wlan loaded."), 1);
  EXPECT_EQ(count_traces("Initializing WLAN"), 0);
}

TEST(Queue, IndexOfNoRadioIsReportedAndQueuesNothing) {
  start_lifecycle_daemon();
  for (const uint32_t index : {0u, 17u, 254u, 256u, 0xFFFFFFFFu, 0x80000000u}) {
    EXPECT_EQ(call_for_code(kRestart, xdr_word(index)), 0) << index;
  }
  EXPECT_EQ(count_errors("**ERROR** wlan_restart Invalid radio index\n"), 6) << daemon_errors();
  EXPECT_EQ(count_traces("queue'd"), 0);
}

TEST(Queue, RestartIsAcceptedRightAfterTheStart) {
  start_lifecycle_daemon();
  EXPECT_EQ(call_for_code(kRestart, xdr_word(1)), 0);
  // Accepted, though the sequence then finds no module.
  EXPECT_TRUE(wait_for_trace("WLAN driver(s) are not loaded\n"));
  EXPECT_EQ(count_traces("Driver(s) have not been initialized"), 0);
}

TEST(Queue, AfterAResetInitAndRestartAreRefusedUntilTheirTime) {
  start_lifecycle_daemon();
  EXPECT_EQ(call_for_code(kReset, ""), 0);
  EXPECT_EQ(call_for_code(kInit, ""), 0);
  EXPECT_TRUE(wait_for_trace("WLAN driver(s) has not been loaded\n"));
  EXPECT_EQ(call_for_code(kRestart, xdr_word(1)), 0);
  EXPECT_TRUE(wait_for_trace("Driver(s) have not been initialized\n"));
}

TEST(Queue, RequestWaitsOutItsSecond) {
  start_lifecycle_daemon();
  const auto start = std::chrono::steady_clock::now();
  queue_and_wait(kRestart, "not loaded");
  const std::chrono::duration<double> waited = std::chrono::steady_clock::now() - start;
  EXPECT_GE(waited.count(), 0.99);
  EXPECT_LT(waited.count(), 2.5);
}

TEST(Queue, IdleDaemonNeverWakesUp) {
  const pid_t child = start_lifecycle_daemon();
  queue_and_wait(kRestart, "not loaded");
  ASSERT_TRUE(wait_for_trace("de-queue'd"));
  const std::string before = context_switches(child);
  // Nothing to wait for: this is the absence of an event.
  std::this_thread::sleep_for(std::chrono::milliseconds(1500));
  EXPECT_EQ(context_switches(child), before);
}

// One client's random requests; its own share of resets.
static void send_random_requests(unsigned seed) {
  static constexpr uint32_t kRequests[] = {kLoad,    kLoad,       kInit,    kInit, kRestart,
                                           kRestart, kRestartAll, kRestart, kInit, kReset};
  std::mt19937 random(seed);
  for (int i = 0; i < 100; ++i) {
    const uint32_t procedure = kRequests[random() % std::size(kRequests)];
    const bool indexed = procedure == kLoad || procedure == kRestart;
    reply_message reply = {};
    const std::string call_bytes =
        call_message(procedure, indexed ? xdr_word(1 + random() % 16) : "", seed * 1000 + i);
    EXPECT_TRUE(exchange(call_bytes, seed * 1000 + i, &reply, 20)) << i;
    EXPECT_EQ(reply.accept_status, kAcceptSuccess) << i;
  }
}

TEST(Queue, TwoHundredRandomRequestsOfTwoClientsLeaveEverythingInAgreement) {
  // Some twenty resets, each with its commands, and the requests behind them.
  const pid_t child = start_lifecycle_daemon();
  std::thread other(send_random_requests, 1);
  send_random_requests(2);
  other.join();
  // Whatever waits in front of it is done when this one is.
  queue_and_wait(kLoad, kLoaded);
  EXPECT_EQ(interfaces(), all_interfaces());
  queue_and_wait(kInit, kInitialized);
  EXPECT_EQ(beaconed_ssid("ra0"), profile_value("/tmp/mt76xx_24.dat", "SSID1"));
  EXPECT_EQ(call_for_code(kReset, ""), 0);
  EXPECT_EQ(interfaces(), "");
  queue_and_wait(kInit, "WLAN driver(s) has not been loaded\n");
  EXPECT_EQ(kill(child, 0), 0);
}

TEST(Reset, IsRefusedWhileAnInitRuns) {
  // Steering's marker never comes: the init waits for it for ten seconds.
  make_bands_alike();
  const pid_t child = start_lifecycle_daemon();
  if (board() != "mt7603+mt7612") GTEST_SKIP() << "only here an init waits";
  set_companion("bndstrg_1.marker_after", "1000");
  queue_and_wait(kLoad, kLoaded);
  EXPECT_EQ(call_for_code(kInit, ""), 0);
  ASSERT_TRUE(wait_for_trace("Sart band steering\n"));
  EXPECT_EQ(call_for_code(kReset, ""), -1);
  EXPECT_NE(daemon_errors().find("wlan_reset wlan_reset init process is running !!!\n"),
            std::string::npos)
      << daemon_errors();
  EXPECT_EQ(interfaces(), all_interfaces());
  EXPECT_EQ(kill(child, 0), 0);
}

TEST(Faults, SequencesRunToTheirEndWithoutProfilesModulesPciListOrPgrep) {
  start_lifecycle_daemon({"PATH=/nonexistent"});
  run("mount -t tmpfs tmpfs /proc/bus/pci");
  ASSERT_FALSE(exists("/proc/bus/pci/devices"));
  run("rm -f /tmp/mt76xx_24.dat /tmp/mt76xx_5.dat; rm -rf /lib/modules/wifi/*.ko");
  queue_and_wait(kLoad, kLoaded);
  EXPECT_NE(daemon_errors().find("AP driver\n"), std::string::npos) << daemon_errors();
  queue_and_wait(kInit, kInitialized);
  queue_and_wait(kRestartAll, kRestarted);
  EXPECT_EQ(call_for_code(kReset, ""), 0);
  EXPECT_TRUE(daemon_answers());
}

TEST(Faults, ModuleThatTheKernelRefusesIsReported) {
  start_lifecycle_daemon();
  run("gwbox fail init_module ENOMEM 2");
  queue_and_wait(kLoad, kLoaded);
  EXPECT_NE(daemon_errors().find("Failed to load the "), std::string::npos) << daemon_errors();
  EXPECT_TRUE(daemon_answers());
}

TEST(Faults, SecondLoadIsReportedAndTheDriverStays) {
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  EXPECT_EQ(daemon_errors().find("Failed to load"), std::string::npos) << daemon_errors();
  queue_and_wait(kLoad, kLoaded);
  EXPECT_NE(daemon_errors().find("Failed to load the "), std::string::npos);
  EXPECT_EQ(interfaces(), all_interfaces());
}

TEST(Load, FullNvramDoesNotStopIt) {
  start_lifecycle_daemon();
  run("mount -t tmpfs -o size=4k tmpfs /nvram; head -c 8192 /dev/zero > /nvram/fill 2>/dev/null");
  queue_and_wait(kLoad, kLoaded);
  EXPECT_EQ(interfaces(), all_interfaces());
}

TEST(Load, FactoryModeTakesTheModulesFromNvramWhenTheyAreThere) {
  start_lifecycle_daemon();
  write_file("/tmp/factoryModeEnabled", "");
  queue_and_wait(kLoad, kLoaded);
  EXPECT_EQ(daemon_output().find("Loading wlan drivers from"), std::string::npos);
  EXPECT_EQ(call_for_code(kReset, ""), 0);
  run("cp /lib/modules/wifi/* /nvram/");
  queue_and_wait(kLoad, kLoaded);
  EXPECT_NE(daemon_output().find("\033[1;32mLoading wlan drivers from NVRAM\033[0m\n"),
            std::string::npos);
  EXPECT_EQ(interfaces(), all_interfaces());
}

TEST(Load, EepromImagesAreCopiedOnceWithTheirNotice) {
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  const std::string images = run("ls /nvram");
  EXPECT_EQ(images, board() == "mt7615" ? "MT7615_EEPROM_2G.bin\nMT7615_EEPROM_5G.bin\n"
                                        : "MT7603_EEPROM.bin\nMT7612_EEPROM.bin\n");
  EXPECT_EQ(count_traces("Loading default "), board() == "mt7615" ? 3 : 2);
  write_file("/nvram/" + images.substr(0, images.find('\n')), "changed");
  queue_and_wait(kLoad, kLoaded);
  EXPECT_EQ(read_file("/nvram/" + images.substr(0, images.find('\n'))), "changed");
  EXPECT_EQ(count_traces("Loading default "), board() == "mt7615" ? 3 : 2);
}

TEST(Load, CountryOfTheProfileRunsNoCommand) {
  set_profile_value("/tmp/mt76xx_24.dat", "CountryCode", "`>/x`");
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  EXPECT_FALSE(exists("/x"));
  if (board() == "mt7615") return;
  EXPECT_NE(run("ls -la /tmp").find("`>"), std::string::npos) << "the country reached the commands";
}

TEST(Init, SwitchedOffRadioStaysDown) {
  set_profile_value("/tmp/mt76xx_24.dat", "RadioOn", "0");
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  EXPECT_EQ(interfaces_up("ra[0-7]"), "");
  EXPECT_EQ(interfaces_up("ra(8|9|1[0-5])").empty(), board() == "mt7603");
}

TEST(Init, SwitchedOffFiveGigahertzRadioStopsNeitherAffinitiesNorCompanions) {
  if (board() == "mt7603") GTEST_SKIP() << "has one radio";
  set_profile_value("/tmp/mt76xx_5.dat", "RadioOn", "0");
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  EXPECT_EQ(interfaces_up("ra(8|9|1[0-5])"), "");
  EXPECT_TRUE(wait_until([] { return run("pgrep -xc mtk_ctrl") == "1\n"; }));
  EXPECT_TRUE(wait_until([] {
    return run("grep -c smp_affinity /run/gwbox/journal.jsonl") != "0\n";
  })) << run("gwbox log");
}

TEST(Init, OnlyEnabledBssesComeUp) {
  set_profile_value("/tmp/mt76xx_24.dat", "BssEnabled", "0;1;0;1;0;0;0;0");
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  EXPECT_EQ(interfaces_up("ra[0-7]"), "ra1\nra3\n");
}

TEST(Init, BssesOfOneVlanShareABridgeAndResetLeavesBr0) {
  set_profile_value("/tmp/mt76xx_24.dat", "VLAN_ID", "10;0;10;20;1;4096;0;0");
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  EXPECT_EQ(bridge_members("br0"), "eth0.10\nra0\nra2\n");
  EXPECT_EQ(bridge_members("br1"), "eth0.20\nra3\n");
  EXPECT_FALSE(exists("/sys/class/net/br2"));
  EXPECT_EQ(call_for_code(kReset, ""), 0);
  EXPECT_TRUE(exists("/sys/class/net/br0"));
  EXPECT_FALSE(exists("/sys/class/net/br1"));
  EXPECT_FALSE(exists("/sys/class/net/eth0.10"));
}

TEST(Init, UdmaLeavesVlansAlone) {
  set_profile_value("/tmp/mt76xx_24.dat", "VLAN_ID", "10;0;10;20;1;4096;0;0");
  set_profile_value("/tmp/mt76xx_24.dat", "UdmaEnable", "1");
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  EXPECT_FALSE(exists("/sys/class/net/br0"));
}

TEST(Init, ChannelUtilizationIsRefusedOnTheFirstInitWithTheController) {
  write_file("/nvram/hnc_enable", "");
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  EXPECT_EQ(count_errors("wlan_setChannelUtilizationEnable dirver isn't inited. \n "), 2)
      << daemon_errors();
}

TEST(Init, WithoutTheControllersMarkerThatIsReported) {
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  EXPECT_EQ(count_errors("wifi_init wifi_init HNC Process is not running \n"), 1)
      << daemon_errors();
}

TEST(Restart, CyclesOnlyTheInterfacesOfItsRadio) {
  if (board() == "mt7603") GTEST_SKIP() << "has one radio";
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  run("ip link set ra7 up; ip link set ra14 up");
  EXPECT_EQ(call_for_code(kRestart, xdr_word(9)), 0);
  ASSERT_TRUE(wait_for_trace("5GHz radio restarted\n"));
  EXPECT_NE(interfaces_up("ra7"), "");
  EXPECT_EQ(interfaces_up("ra14"), "") << "not enabled, so not raised again";
  EXPECT_TRUE(wait_until([] { return exists("/tmp/wifi_restart"); }));
}

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
  EXPECT_EQ(call_for_code(kReset, ""), 0);
  EXPECT_TRUE(wait_until([] { return run("pgrep -xc mtk_ctrl") == "0\n"; }));
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
  const pid_t child = start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  ASSERT_TRUE(wait_until([] { return run("pgrep -xc mtk_ctrl") == "1\n"; }));
  EXPECT_EQ(run("ls -l /proc/$(pgrep -x mtk_ctrl)/fd | grep -E 'lock|dbg_rpc'"), "");
  EXPECT_EQ(run("ss -ulpnH sport = 60001 | grep -o 'pid=[0-9]*'"),
            "pid=" + std::to_string(child) + "\n");
}

TEST(SetEnable, WritesTheFieldAndAnswersZero) {
  start_lifecycle_daemon();
  EXPECT_EQ(call_for_code(10, xdr_word(4) + xdr_word(0)), 0);
  EXPECT_EQ(run("grep ^BssEnabled= /tmp/mt76xx_24.dat | cut -d= -f2 | cut -d';' -f4"), "0\n");
  EXPECT_EQ(call_for_code(10, xdr_word(17) + xdr_word(1)), 0);
  EXPECT_EQ(count_errors("wlan_setEnable Index 17 should be range from 1 to 16\n"), 1)
      << daemon_errors();
}

TEST(Calibration, RunsReportsAndUndoes) {
  // The self-test sleeps twice for two seconds; cut short here.
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  EXPECT_EQ(prek_status(), 3);
  if (board() != "mt7615") return;
  EXPECT_EQ(call_for_code(kUndoPrek, xdr_word(1)), -1);
  EXPECT_EQ(call_for_code(kSetPrek, xdr_word(1) + xdr_word(1)), 0);
  EXPECT_EQ(run("ls /nvram/backup_EEPROM_CALDATA"), "MT7615_EEPROM_2G.bin\nMT7615_EEPROM_5G.bin\n");
  EXPECT_EQ(prek_status(), 2);
  run("mv /nvram/MT7615_CALDATA2.bin /tmp/");
  EXPECT_EQ(prek_status(), -1) << "calibrated, but a result is missing";
  run("mv /tmp/MT7615_CALDATA2.bin /nvram/");
  EXPECT_EQ(call_for_code(kUndoPrek, xdr_word(1)), 0);
  EXPECT_FALSE(exists("/nvram/backup_EEPROM_CALDATA"));
  EXPECT_FALSE(exists("/nvram/MT7615_CALDATA1.bin"));
  write_file("/nvram/MT7615_CALDATA1.bin", "1");
  write_file("/nvram/MT7615_CALDATA2.bin", "2");
  EXPECT_EQ(prek_status(), 0);
  EXPECT_EQ(call_for_code(kSetPrek, xdr_word(1) + xdr_word(1)), -1) << "results without a backup";
}
