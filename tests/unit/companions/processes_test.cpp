#include "companions/processes.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "lifecycle/lifecycle_support.h"
#include "support/gateway.h"
#include "sys/board.h"
#include "unit_support.h"

static void switch_dcs_on() {
  set_profile_value(kProfile24, "MSODCSOn", "1");
  set_profile_value(kProfile24, "USERDCSOn", "1");
  set_profile_value(kProfile24, "RadioOn", "1");
  set_profile_value(kProfile24, "Channel", "0");
}

TEST(Dcs, StartsAndStopsOnce) {
  switch_dcs_on();
  note_commands();
  dcsStart(0);
  EXPECT_EQ(commands(), "");
  dcsStart(1);
  dcsStart(7);
  EXPECT_EQ(commands(), "dcs&\n");
  dcsStart(0);
  dcsStart(0);
  EXPECT_EQ(commands(), "/bin/kill $(pgrep -f dcs | awk '{print $1}')\n");
}

TEST(Dcs, NeedsItsSwitchesTheRadioAndAnAutomaticChannel) {
  struct {
    const char* key;
    const char* value;
  } const refused[] = {{"MSODCSOn", "0"}, {"USERDCSOn", "0"}, {"RadioOn", "0"},
                       {"Channel", "6"},  {"Channel", "11"},  {"Channel", "36"}};
  note_commands();
  for (const auto& item : refused) {
    switch_dcs_on();
    set_profile_value(kProfile24, item.key, item.value);
    dcsStart(1);
    EXPECT_EQ(commands(), "") << item.key << item.value;
  }
}

TEST(Dcs, FirstCharacterOfTheChannelDecides) {
  note_commands();
  for (const char* channel : {"0", "", "06"}) {
    switch_dcs_on();
    set_profile_value(kProfile24, "Channel", channel);
    dcsStart(1);
    EXPECT_EQ(commands(), "dcs&\n") << channel;
    dcsStart(0);
    commands();
  }
}

TEST(MtkCtrl, OneRadioIsEnough) {
  note_commands();
  for (const auto& [radio24, radio5] : {std::pair{"1", "0"}, std::pair{"0", "1"}}) {
    set_profile_value(kProfile24, "RadioOn", radio24);
    set_profile_value(kProfile5, "RadioOn", radio5);
    MtkCtrlStart(1);
    MtkCtrlStart(1);
    EXPECT_EQ(commands(), "mtk_ctrl&\n");
    MtkCtrlStart(0);
    MtkCtrlStart(0);
    EXPECT_EQ(commands(), "/bin/kill $(pgrep -f mtk_ctrl | awk '{print $1}')\n");
  }
  set_profile_value(kProfile5, "RadioOn", "0");
  MtkCtrlStart(1);
  EXPECT_EQ(commands(), "");
}

TEST(Wapp, RunsOnMt7615BoardsOnly) {
  note_commands();
  wappStart(1);
  wappStart(0);
  EXPECT_EQ(commands(), "");
}

TEST(Wapp, StartsAndStopsOnce) {
  pretend_mt7615();
  note_commands();
  wappStart(0);
  wappStart(1);
  wappStart(1);
  EXPECT_EQ(commands(), "wapp -d2 -v2 -f /etc/wapp_ap.conf &\n");
  wappStart(0);
  wappStart(0);
  EXPECT_EQ(commands(), "/bin/kill $(pgrep -f wapp | awk '{print $1}')\n");
}

TEST(Companions, StartsAndStopsAreLoggedAndTheCommandsOfTwo) {
  pretend_mt7615();
  EXPECT_EQ(hasMTK7615(), 1);
  switch_dcs_on();
  note_commands();
  switch_log_on();
  for (void (*control)(int) : {dcsStart, MtkCtrlStart, wappStart}) {
    control(1);
    control(0);
  }
  EXPECT_EQ(logged(),
            "Sart dcs\ncfg_executecmd: cmd:dcs&\n"
            "Stop dcs\ncfg_executecmd: cmd:/bin/kill $(pgrep -f dcs | awk '{print $1}')\n"
            "Sart mtk_ctrl\ncfg_executecmd: cmd:mtk_ctrl&\n"
            "Stop mtk_ctrl\n"
            "cfg_executecmd: cmd:/bin/kill $(pgrep -f mtk_ctrl | awk '{print $1}')\n"
            "Sart wapp\nStop wapp\n");
}

// Gives the keys values that are too long, so that the store reports each read. Each
// value begins with its key and band.
static void make_unreadable(std::initializer_list<const char*> keys) {
  for (const char* key : keys) {
    for (const char* profile : {kProfile24, kProfile5}) {
      const std::string band = profile == kProfile24 ? "24" : "5";
      set_profile_value(profile, key, key + band + std::string(300, '-'));
    }
  }
}

// The keys that the store reported, in order.
static std::string read_keys() {
  std::string keys;
  const std::string log = logged();
  const std::string start = "malloc failed. value:";
  for (size_t at = log.find(start); at != log.npos; at = log.find(start, at + 1)) {
    const size_t begin = at + start.size();
    keys += log.substr(begin, log.find('-', begin) - begin) + " ";
  }
  unlink("/tmp/auto_debug/dbg_rpc.log");
  return keys;
}

TEST(Companions, KeysAreAllReadInTheirOrderWhateverTheMode) {
  make_unreadable(
      {"MSODCSOn", "USERDCSOn", "RadioOn", "Channel", "BandSteering", "RSG_Enable", "BssEnabled"});
  note_commands();
  switch_log_on();
  errors_of([] {
    for (const int mode : {0, 1}) {
      dcsStart(mode);
      EXPECT_EQ(read_keys(), "MSODCSOn24 USERDCSOn24 RadioOn24 Channel24 ") << mode;
      MtkCtrlStart(mode);
      EXPECT_EQ(read_keys(), "RadioOn24 RadioOn5 ") << mode;
      bndstrgStart(mode);
      EXPECT_TRUE(read_keys().starts_with(
          "BandSteering24 RadioOn24 RSG_Enable24 RadioOn5 BssEnabled24 BssEnabled5 "))
          << mode;
    }
  });
  EXPECT_EQ(commands(), "");
}

// A service child that died has left companions running.

TEST(LeftCompanion, IsNotStartedBesideItself) {
  switch_dcs_on();
  pretend_mt7615();
  note_commands();
  switch_console_on();
  const pid_t processes[] = {start_process_named("dcs"), start_process_named("mtk_ctrl"),
                             start_process_named("wapp")};
  const std::string output = output_of([] {
    for (void (*control)(int) : {dcsStart, MtkCtrlStart, wappStart})
      control(1);
  });
  EXPECT_EQ(commands(), "");
  EXPECT_TRUE(contains(output, rpc_prefix("dcsStart") + "dcs runs already\n")) << output;
  EXPECT_TRUE(contains(output, rpc_prefix("MtkCtrlStart") + "mtk_ctrl runs already\n")) << output;
  EXPECT_TRUE(contains(output, rpc_prefix("wappStart") + "wapp runs already\n")) << output;
  EXPECT_FALSE(contains(output, "Sart")) << output;
  dcsStart(0);
  EXPECT_EQ(commands(), "/bin/kill $(pgrep -f dcs | awk '{print $1}')\n") << "counts as started";
  for (const pid_t process : processes)
    end_process(process);
}

TEST(LeftCompanion, IsAskedForOnceOnly) {
  switch_dcs_on();
  note_commands();
  dcsStart(1);
  dcsStart(0);
  const pid_t ending = start_process_named("dcs");
  commands();
  dcsStart(1);
  EXPECT_EQ(commands(), "dcs&\n") << "the one that was stopped may still be ending";
  end_process(ending);
}

TEST(LeftCompanion, BandSteeringIsNotStartedBesideItselfNorItsMarkerWaitedFor) {
  make_bands_alike();
  note_commands();
  const pid_t left = start_process_named("bndstrg_1");
  EXPECT_EQ(output_of([] { bndstrgStart(1); }), "");
  EXPECT_EQ(commands(), "");
  bndstrgStart(0);
  EXPECT_TRUE(contains(commands(), "/bin/kill $(pgrep -f bndstrg_1"));
  end_process(left);
}

TEST(Companions, TwoThreadsStartOneProcess) {
  switch_dcs_on();
  note_commands();
  hold_command("dcs&");
  std::thread worker([] { dcsStart(1); });
  const bool starting = wait_for_held_command();
  std::atomic<pid_t> thread = 0;
  std::thread setting([&] {
    thread = gettid();
    dcsStart(1);
    dcsStart(0);
  });
  const bool waits = wait_until([&] { return thread != 0; }) && wait_until_blocked(thread);
  const std::string meanwhile = commands();
  release_command();
  worker.join();
  setting.join();
  EXPECT_TRUE(starting && waits);
  EXPECT_EQ(meanwhile, "dcs&\n");
  EXPECT_EQ(commands(), "/bin/kill $(pgrep -f dcs | awk '{print $1}')\n")
      << "no stop overtakes the start";
}
