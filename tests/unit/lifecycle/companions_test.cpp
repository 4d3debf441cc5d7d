#include "lifecycle/companions.h"

#include <gtest/gtest.h>

#include "lifecycle/lifecycle_support.h"
#include "support/gateway.h"
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
  } const kRefused[] = {{"MSODCSOn", "0"}, {"USERDCSOn", "0"}, {"RadioOn", "0"},
                        {"Channel", "6"},  {"Channel", "11"},  {"Channel", "36"}};
  note_commands();
  for (const auto& item : kRefused) {
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

TEST(Companions, StartsAndStopsAreLogged) {
  pretend_mt7615();
  switch_dcs_on();
  note_commands();
  switch_log_on();
  for (void (*control)(int) : {dcsStart, MtkCtrlStart, wappStart}) {
    control(1);
    control(0);
  }
  const std::string log = logged();
  for (const char* text : {"Sart dcs\n", "Stop dcs\n", "Sart mtk_ctrl\n", "Stop mtk_ctrl\n",
                           "Sart wapp\n", "Stop wapp\n"}) {
    EXPECT_EQ(count_of("\n" + log, std::string("\n") + text), 1) << text << log;
  }
}
