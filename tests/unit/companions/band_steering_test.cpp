#include <gtest/gtest.h>
#include <unistd.h>

#include <ctime>
#include <string>
#include <thread>
#include <utility>

#include "companions/processes.h"
#include "lifecycle/lifecycle_support.h"
#include "support/gateway.h"
#include "unit_support.h"

static constexpr char kMarker[] = "/tmp/mtk_bnd_file";

static bool sleeps_are_counted;
static int looks_until_marker;
static int seconds_slept;
static void (*during_wait)();

// Replaces the daemon's wait for the marker: no time passes, and the marker appears after
// a given number of checks.
extern "C" unsigned sleep(unsigned seconds) {
  if (!sleeps_are_counted) {
    const timespec whole = {static_cast<time_t>(seconds), 0};
    nanosleep(&whole, nullptr);
    return 0;
  }
  seconds_slept += static_cast<int>(seconds);
  if (seconds_slept + 1 == looks_until_marker) write_file(kMarker, "");
  if (during_wait != nullptr) during_wait();
  return 0;
}

static std::string start_with_marker_at(int look) {
  make_bands_alike();
  note_commands();
  unlink(kMarker);
  sleeps_are_counted = true;
  looks_until_marker = look;
  seconds_slept = 0;
  if (look == 1) write_file(kMarker, "");
  return output_of([] { bndstrgStart(1); });
}

// Whether a stop finds it running. A stop also ends it.
static bool stops() {
  switch_log_on();
  bndstrgStart(0);
  return contains(logged(), "Stop band steering\n");
}

static std::string waits(int count) {
  std::string text;
  for (int i = 0; i < count; ++i)
    text += "Need to wait for 1 second";
  return text;
}

TEST(BandSteering, MarkerIsLookedForASecondApart) {
  for (const int look : {1, 2, 8, 10}) {
    EXPECT_EQ(start_with_marker_at(look),
              waits(look - 1) + "bnd is started and count is " + std::to_string(look) + "\n");
    EXPECT_EQ(seconds_slept, look - 1);
    EXPECT_TRUE(stops()) << look;
  }
}

TEST(BandSteering, MarkerAtTheNinthLookCountsAsNotStarted) {
  EXPECT_EQ(start_with_marker_at(9), waits(8) + "bnd is started and count is 9\n");
  EXPECT_FALSE(stops());
}

TEST(BandSteering, DaemonWithoutAMarkerCountsAsStartedAfterTenLooks) {
  EXPECT_EQ(start_with_marker_at(0), waits(10));
  EXPECT_EQ(seconds_slept, 10);
  EXPECT_TRUE(stops());
}

TEST(BandSteering, DaemonIsStartedOnceAndKilledWithItsMarkerOnce) {
  start_with_marker_at(1);
  bndstrgStart(1);
  EXPECT_EQ(commands(), "bndstrg_1&\n");
  bndstrgStart(0);
  bndstrgStart(0);
  EXPECT_EQ(commands(),
            "/bin/kill $(pgrep -f bndstrg_1 | awk '{print $1}')\n/bin/rm /tmp/mtk_bnd_file\n");
}

TEST(BandSteering, Mt7615RunsTheScriptAndTheDriversStatistics) {
  pretend_mt7615();
  start_with_marker_at(0);
  EXPECT_EQ(seconds_slept, 0);
  EXPECT_EQ(commands(),
            "/sbin/EasyMesh_openwrt.sh\niwpriv ra8 set ApEnableRadioChStats=1\n"
            "iwpriv ra0 set ApEnableRadioChStats=1\n");
  bndstrgStart(0);
  EXPECT_EQ(commands(),
            "/bin/kill $(pgrep -f bs20 | awk '{print $1}')\n"
            "iwpriv ra8 set ApEnableRadioChStats=0\niwpriv ra0 set ApEnableRadioChStats=0\n");
}

TEST(BandSteering, StatisticsStayOnWhenTheyAreSwitchedOnForThemselves) {
  pretend_mt7615();
  set_profile_value(kProfile24, "RSG_Enable", "1");
  start_with_marker_at(0);
  commands();
  bndstrgStart(0);
  EXPECT_EQ(commands(), "/bin/kill $(pgrep -f bs20 | awk '{print $1}')\n");
}

TEST(BandSteering, StopEndsTheAgentToo) {
  pretend_mt7615();
  start_with_marker_at(0);
  wappStart(1);
  commands();
  bndstrgStart(0);
  EXPECT_TRUE(contains(commands(), "/bin/kill $(pgrep -f wapp | awk '{print $1}')\n"));
}

TEST(BandSteering, NeedsItsSwitchBothRadiosAndBothFirstBsses) {
  struct {
    const char* profile;
    const char* key;
    const char* off;
    const char* on;
  } const switches[] = {{kProfile24, "BandSteering", "0", "1"},
                        {kProfile24, "RadioOn", "0", "1"},
                        {kProfile5, "RadioOn", "0", "1"},
                        {kProfile24, "BssEnabled", "0;1", "1;1"},
                        {kProfile5, "BssEnabled", "0;1", "1;1"}};
  make_bands_alike();
  note_commands();
  switch_log_on();
  int refused = 0;
  for (const auto& item : switches) {
    set_profile_value(item.profile, item.key, item.off);
    bndstrgStart(1);
    EXPECT_EQ(count_of(logged(),
                       "can't enable band steering as radio/home user ssid isn't "
                       "enabled\n"),
              ++refused)
        << item.key;
    set_profile_value(item.profile, item.key, item.on);
  }
  EXPECT_EQ(commands(), "");
  // The switch in the 5 GHz profile does not count.
  set_profile_value(kProfile5, "BandSteering", "0");
  write_file(kMarker, "");
  bndstrgStart(1);
  EXPECT_EQ(commands(), "bndstrg_1&\n");
}

// Makes 5 GHz settings differ and returns the first message.
static std::string refusal(std::initializer_list<std::pair<const char*, const char*>> values) {
  make_bands_alike();
  for (const auto& [key, value] : values)
    set_profile_value(kProfile5, key, value);
  switch_log_on();
  unlink("/tmp/auto_debug/dbg_rpc.log");
  EXPECT_EQ(isAbleToEnableBandSteering(), 0);
  EXPECT_EQ(profile_value(kProfile24, "BandSteering"), "0");
  EXPECT_EQ(profile_value(kProfile5, "BandSteering"), "0");
  const std::string log = logged();
  return log.substr(0, log.find('\n') + 1);
}

TEST(BandSteering, FirstDifferenceOfTheBandsIsNamedAndSwitchesItOff) {
  const std::string unable = "unable to enable BandSteering because 2.4G and 5G ";
  const std::pair<const char*, const char*> ssid = {"SSID1", "Other"};
  const std::pair<const char*, const char*> mode = {"AuthMode", "OPEN;WPA2PSK"};
  const std::pair<const char*, const char*> key = {"WPAPSK1", "other words"};
  EXPECT_EQ(refusal({key, mode, ssid}), unable + "SSID is different\n");
  EXPECT_EQ(refusal({key, mode}), unable + "authentication mode is different\n");
  EXPECT_EQ(refusal({key}), unable + "wpa key is different\n");
  make_bands_alike();
  EXPECT_EQ(isAbleToEnableBandSteering(), 1);
  EXPECT_EQ(profile_value(kProfile24, "BandSteering"), "1");
}

// Whether a difference in the last character of two values is noticed.
static bool difference_is_seen(const char* key, const std::string& value, const char* rest) {
  make_bands_alike();
  set_profile_value(kProfile24, key, value + "a" + rest);
  set_profile_value(kProfile5, key, value + "b" + rest);
  int able = -1;
  errors_of([&] { able = isAbleToEnableBandSteering(); });
  return able == 0;
}

TEST(BandSteering, ValuesAreComparedUpToTheirLimits) {
  EXPECT_TRUE(difference_is_seen("SSID1", std::string(31, 's'), ""));
  EXPECT_FALSE(difference_is_seen("SSID1", std::string(32, 's'), "")) << "both count as empty";
  EXPECT_TRUE(difference_is_seen("AuthMode", std::string(19, 'm'), ";OPEN"));
  EXPECT_FALSE(difference_is_seen("AuthMode", std::string(20, 'm'), ";OPEN")) << "both are cut";
  EXPECT_TRUE(difference_is_seen("WPAPSK1", std::string(64, 'k'), ""));
  EXPECT_FALSE(difference_is_seen("WPAPSK1", std::string(65, 'k'), "")) << "both count as empty";
}

TEST(BandSteering, StartIsLoggedWithItsCommandAndTheStopWithout) {
  start_with_marker_at(1);
  switch_log_on();
  bndstrgStart(0);
  bndstrgStart(1);
  EXPECT_EQ(logged(), "Stop band steering\nSart band steering\ncfg_executecmd: cmd:bndstrg_1&\n");
}

TEST(BandSteering, SecondStartDuringTheWaitStartsNothingAndDoesNotWait) {
  during_wait = [] { std::thread([] { bndstrgStart(1); }).join(); };
  EXPECT_EQ(start_with_marker_at(3), waits(2) + "bnd is started and count is 3\n");
  during_wait = nullptr;
  EXPECT_EQ(commands(), "bndstrg_1&\n");
}

TEST(BandSteering, StopDuringTheWaitEndsItAtOnceAndForGood) {
  during_wait = [] { std::thread([] { bndstrgStart(0); }).join(); };
  start_with_marker_at(3);
  during_wait = nullptr;
  EXPECT_EQ(commands(),
            "bndstrg_1&\n/bin/kill $(pgrep -f bndstrg_1 | awk '{print $1}')\n"
            "/bin/rm /tmp/mtk_bnd_file\n");
  EXPECT_FALSE(stops());
}

TEST(BandSteering, BandsThatDifferStopItWhenItRuns) {
  start_with_marker_at(1);
  commands();
  set_profile_value(kProfile5, "SSID1", "Other");
  bndstrgStart(1);
  EXPECT_TRUE(contains(commands(), "/bin/kill $(pgrep -f bndstrg_1"));
  EXPECT_EQ(profile_value(kProfile24, "BandSteering"), "0");
  EXPECT_FALSE(stops());
}
