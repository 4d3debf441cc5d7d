#include "wire/lookup.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "base/text.h"
#include "commands/command.h"
#include "support/snapshot.h"
#include "wire/search.h"

static std::vector<const char*> command_names() {
  std::vector<const char*> names;
  for (const command_row* command : command_all())
    names.push_back(command->name);
  return names;
}

TEST(Lookup, EveryNameInEverySpelling) {
  ASSERT_EQ(table_procedures().size(), snapshot_procedures()) << kSnapshotGrows;
  for (const procedure_row& procedure : table_procedures()) {
    std::string lower = text_lower(procedure.name);
    std::string dashed = lower;
    for (char& c : dashed)
      if (c == '_') c = '-';
    EXPECT_EQ(lookup_name(procedure.name), &procedure);
    EXPECT_EQ(lookup_name(lower), &procedure);
    EXPECT_EQ(lookup_name(dashed), &procedure);
    EXPECT_EQ(lookup_number(procedure.number), &procedure);
    EXPECT_EQ(lookup_procedure(lookup_display_number(procedure.number)), &procedure);
    EXPECT_EQ(lookup_display_name(procedure), lower);
  }
}

TEST(Lookup, NoAbbreviations) {
  for (const char* name : {"", "wlan_get_ssid_adv", "wlan_get_ssi", "wlan_get_ssid ", "ssid"})
    EXPECT_EQ(lookup_name(name), nullptr) << name;
  EXPECT_EQ(lookup_number(20), nullptr);
  EXPECT_EQ(lookup_number(0), nullptr);
}

TEST(Lookup, Numbers) {
  const struct {
    const char* text;
    bool valid;
    uint32_t number;
  } cases[] = {
      {"0", true, 0},           {"20", true, 20},          {"010", true, 10},
      {"0x10", true, 16},       {"0XfF", true, 255},       {"4294967295", true, 4294967295u},
      {"4294967296", false, 0}, {"0x100000000", false, 0}, {"99999999999999999999", false, 0},
      {"", false, 0},           {"0x", false, 0},          {"12a", false, 0},
      {" 1", false, 0},         {"1 ", false, 0},          {"+1", false, 0},
      {"-1", false, 0},         {"x1", false, 0},          {"0x-1", false, 0},
  };
  for (const auto& c : cases) {
    uint32_t number = 0;
    EXPECT_EQ(lookup_parse_number(c.text, &number), c.valid) << c.text;
    EXPECT_EQ(number, c.number) << c.text;
  }
  EXPECT_EQ(lookup_display_number(4095), "4095");
  EXPECT_EQ(lookup_display_number(0x1000), "0x00001000");
  EXPECT_EQ(lookup_display_number(0x010000A8), "0x010000A8");
}

TEST(Lookup, NearMisses) {
  const struct {
    const char* wrong;
    const char* meant;
  } cases[] = {
      {"wlan_get_sid", "wlan_get_ssid"},
      {"wlan-gte-ssid", "wlan_get_ssid"},
      {"get_ssid", "wlan_get_ssid"},
      {"WLAN_SET_SSIDD", "wlan_set_ssid"},
      {"pnig", "ping"},
      {"descibe", "describe"},
      {"hnc_get_enabel", "hnc_get_enable"},
  };
  for (const auto& c : cases) {
    std::vector<std::string> near = lookup_near(c.wrong, command_names());
    EXPECT_EQ(std::ranges::count(near, c.meant), 1) << c.wrong;
    EXPECT_LE(near.size(), 3u);
  }
  EXPECT_EQ(lookup_near("wlan_get_ssid_adv", command_names())[0],
            "wlan_get_ssid_advertisement_enabled");
  EXPECT_TRUE(lookup_near("reboot_everything_now", command_names()).empty());
  EXPECT_TRUE(lookup_near("", command_names()).empty());
  EXPECT_TRUE(lookup_near("ping").empty()) << "a command is no procedure";
}

TEST(Lookup, WhatDoesSomethingIsSuggestedFirst) {
  EXPECT_EQ(lookup_near("wlan_get_sid", command_names()),
            (std::vector<std::string>{"wlan_set_ssid", "wlan_get_ssid", "wlan_get_bssid"}));
  // The three suggestions from four equally close names must not all be inert.
  EXPECT_EQ(lookup_near("hnc_get_enabel", command_names())[0], "hnc_get_enable");
}

TEST(Lookup, Patterns) {
  const procedure_row& set_ssid = *lookup_name("wlan_set_ssid");
  for (const char* pattern :
       {"", "ssid", "SSID", "set-ssid", "network name", "Network", "wlan_*", "*ssid",
        "wlan?set?ssid", "*profile*", "*", "set*ssid", "wlan_set_ss?", "ssid*", "?"})
    EXPECT_TRUE(search_matches(set_ssid, pattern)) << pattern;
  for (const char* pattern : {"ssids", "ssid*set", "wlan_set_ssi??x", "*xx", "hnc_*"})
    EXPECT_FALSE(search_matches(set_ssid, pattern)) << pattern;
}
