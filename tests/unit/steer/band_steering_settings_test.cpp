#include "steer/band_steering_settings.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <thread>

#include "lifecycle/lifecycle_support.h"
#include "support/gateway.h"
#include "unit_support.h"

// Puts an iwpriv first in the PATH that records its arguments and whether band steering's
// marker exists.
static void note_iwpriv() {
  mkdir("/tmp/noting", 0755);
  write_file("/tmp/noting/iwpriv",
             "#!/bin/sh\n"
             "echo \"$@\" $([ -e /tmp/mtk_bnd_file ] && echo running) >> /tmp/noted\n");
  chmod("/tmp/noting/iwpriv", 0755);
  setenv("PATH", (std::string("/tmp/noting:") + getenv("PATH")).c_str(), 1);
}

static void set_quietly(int enable, int status) {
  output_of([&] { errors_of([&] { EXPECT_EQ(wlan_setBandSteerEnable(enable), status); }); });
}

TEST(BandSteeringSettings, DriverIsSwitchedOnBeforeTheDaemonStartsAndOffAfterItStopped) {
  // A start looks for the marker at once and again after a second.
  make_bands_alike();
  for (const char* profile : {kProfile24, kProfile5})
    set_profile_value(profile, "BandSteering", "0");
  note_iwpriv();
  set_quietly(1, 0);
  EXPECT_EQ(read_file("/tmp/noted"), "ra0 set BndStrgEnable=1\nra8 set BndStrgEnable=1\n");
  EXPECT_EQ(run("pgrep -xc bndstrg_1"), "1\n");
  EXPECT_TRUE(exists("/tmp/mtk_bnd_file"));
  EXPECT_EQ(profile_value(kProfile24, "BandSteering"), "1");
  EXPECT_EQ(profile_value(kProfile5, "BandSteering"), "1");
  unlink("/tmp/noted");
  set_quietly(0, 0);
  EXPECT_EQ(read_file("/tmp/noted"), "ra0 set BndStrgEnable=0\nra8 set BndStrgEnable=0\n");
  EXPECT_TRUE(wait_until([] { return run("pgrep -xc bndstrg_1") == "0\n"; }));
  EXPECT_EQ(profile_value(kProfile24, "BandSteering"), "0");
  EXPECT_EQ(profile_value(kProfile5, "BandSteering"), "0");
}

// The switch's values in both profiles.
static std::string noted_switches() {
  return profile_value(kProfile24, "BandSteering") + profile_value(kProfile5, "BandSteering");
}

// Sets the switch and checks that the profiles have it when the command runs.
static void expect_noted_before(int enable, const std::string& command) {
  hold_command(command);
  std::thread setter([&] { EXPECT_EQ(wlan_setBandSteerEnable(enable), 0); });
  EXPECT_TRUE(wait_for_held_command()) << command;
  EXPECT_EQ(noted_switches(), enable == 1 ? "11" : "00") << command;
  release_command();
  setter.join();
}

TEST(BandSteeringSettings, ProfilesAreWrittenBeforeDriverAndDaemon) {
  make_bands_alike();
  write_file("/tmp/mtk_bnd_file", "");
  for (const char* profile : {kProfile24, kProfile5})
    set_profile_value(profile, "BandSteering", "0");
  note_commands();
  output_of([] { expect_noted_before(1, "ra0 set BndStrgEnable=1"); });
  EXPECT_EQ(commands(),
            "iwpriv ra0 set BndStrgEnable=1\niwpriv ra8 set BndStrgEnable=1\nbndstrg_1&\n");
  output_of([] { expect_noted_before(0, "/bin/kill"); });
  EXPECT_TRUE(in_order(commands(), {"/bin/kill $(pgrep -f bndstrg_1", "ra0 set BndStrgEnable=0",
                                    "ra8 set BndStrgEnable=0"}));
}

TEST(BandSteeringSettings, FirstProfileIsWrittenFirst) {
  note_commands();
  for (const char* profile : {kProfile24, kProfile5})
    set_profile_value(profile, "BandSteering", "1");
  write_file(kLock5, "");
  const int held = try_exclusive(kLock5);
  ASSERT_GE(held, 0);
  std::thread setter([] { EXPECT_EQ(wlan_setBandSteerEnable(0), 0); });
  EXPECT_TRUE(wait_until([] { return lock_awaited(kLock5); }));
  EXPECT_EQ(noted_switches(), "01");
  close(held);
  setter.join();
  EXPECT_EQ(noted_switches(), "00");
}

TEST(BandSteeringSettings, OtherValuesAreRefusedAndChangeNothing) {
  const std::string before24 = read_file(kProfile24);
  const std::string before5 = read_file(kProfile5);
  note_iwpriv();
  for (const int value : {2, -1, 256, INT_MIN, INT_MAX}) {
    EXPECT_EQ(wlan_setBandSteerEnable(value), -1) << value;
  }
  EXPECT_EQ(read_file(kProfile24), before24);
  EXPECT_EQ(read_file(kProfile5), before5);
  EXPECT_FALSE(exists("/tmp/noted"));
  EXPECT_FALSE(exists(kMirror24));
}

TEST(BandSteeringSettings, MissingKeyIsAppendedAndFailuresAreIgnored) {
  note_iwpriv();
  for (const char* profile : {kProfile24, kProfile5})
    write_file(profile, "Other=1\n");
  set_quietly(0, 0);
  for (const char* profile : {kProfile24, kProfile5})
    EXPECT_EQ(read_file(profile), "Other=1\nBandSteering=0\n");
  write_file(kProfile24, "Other=1\n");
  unlink(kProfile5);
  set_quietly(0, 0);
  EXPECT_EQ(read_file(kProfile24), "Other=1\nBandSteering=0\n");
  EXPECT_FALSE(exists(kProfile5));
  write_file("/tmp/noting/iwpriv", "#!/bin/sh\nexit 1\n");
  set_quietly(0, 0);
}

TEST(BandSteeringSettings, OnlyTheFirstProfileIsRead) {
  struct {
    const char* profile24;
    int value;
  } const cases[] = {{"BandSteering=0\n", 0},   {"BandSteering=1\n", 1}, {"BandSteering=12x\n", 12},
                     {"BandSteering=-3\n", -3}, {"BandSteering=\n", 0},  {"Other=1\n", 0},
                     {"BandSteering=yes\n", 0}};
  write_file(kProfile5, "BandSteering=5\n");
  for (const auto& row : cases) {
    write_file(kProfile24, row.profile24);
    int value = 99;
    EXPECT_EQ(wlan_getBandSteerEnable(&value), 0);
    EXPECT_EQ(value, row.value) << row.profile24;
  }
  unlink(kProfile24);
  int value = 99;
  errors_of([&] { EXPECT_EQ(wlan_getBandSteerEnable(&value), 0); });
  EXPECT_EQ(value, 0);
}

TEST(BandSteeringSettings, LongValueIsReadUpTo255Characters) {
  write_file(kProfile24, "BandSteering=" + std::string(254, '0') + "7\n");
  int value = 99;
  EXPECT_EQ(wlan_getBandSteerEnable(&value), 0);
  EXPECT_EQ(value, 7);
  write_file(kProfile24, "BandSteering=" + std::string(255, '0') + "7\n");
  EXPECT_EQ(wlan_getBandSteerEnable(&value), 0);
  EXPECT_EQ(value, 0);
}

TEST(BandSteeringSettings, ReadingIsTraced) {
  switch_console_on();
  write_file(kProfile24, "BandSteering=1\n");
  EXPECT_EQ(output_of([] {
              int value = 0;
              EXPECT_EQ(wlan_getBandSteerEnable(&value), 0);
            }),
            rev_prefix("wlan_getBandSteerEnable") + "band steer enabled: 1\n ");
}
