#include "values/notes.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <set>

#include "show/describe.h"
#include "show/json.h"
#include "wire/lookup.h"

static std::string description(const char* name) {
  return describe_procedure(*lookup_name(name));
}

TEST(Notes, EveryNameIsAProcedureThatDoesSomething) {
  std::set<std::string> seen;
  for (const procedure_note& note : notes_all()) {
    const procedure_row* procedure = lookup_name(note.procedure);
    ASSERT_NE(procedure, nullptr) << note.procedure;
    EXPECT_FALSE(procedure->inert) << note.procedure << " does nothing";
    EXPECT_TRUE(seen.insert(procedure->name).second) << note.procedure << " is there twice";
    EXPECT_STRNE(note.text, "") << note.procedure;
  }
}

TEST(Notes, WhatComesFirstIsAnotherProcedureThatDoesSomething) {
  for (const procedure_row& procedure : table_procedures()) {
    for (const std::string& name : notes_needs(procedure)) {
      EXPECT_FALSE(procedure.inert) << procedure.name << " does nothing, whatever comes first";
      const procedure_row* needed = lookup_name(name);
      const std::string what = std::string(procedure.name) + " has in its .needs " + name;
      ASSERT_NE(needed, nullptr) << what << ", which is no procedure";
      EXPECT_FALSE(needed->inert) << what << ", which does nothing";
      EXPECT_NE(needed, &procedure) << what;
    }
  }
}

TEST(Notes, EveryCallOfTheControllerNeedsItToRun) {
  for (const procedure_row& procedure : table_procedures()) {
    const std::string name = procedure.name;
    if (!name.starts_with("HNC_") || procedure.inert || name == "HNC_SET_ENABLE") continue;
    EXPECT_EQ(notes_needs(procedure), std::vector<std::string>{"hnc_set_enable"})
        << name << ": write .needs = \"HNC_SET_ENABLE\" at the end of its row";
  }
}

TEST(Notes, DescribeTellsWhatComesFirst) {
  EXPECT_NE(description("wlan_get_channel_noise_floor")
                .find("\n\nFirst\n  wlan_set_rad_stat_enable\n\nNote\n  Of the same radio."),
            std::string::npos);
  const std::string steer = description("wlan_set_hnc_steer_sta_type");
  for (const char* part : {"wlan_set_hnc_action_frame_mac_address", "Type 1 (BTM request)"})
    EXPECT_NE(steer.find(part), std::string::npos) << steer;
  for (const char* name : {"wlan_load", "wlan_init", "wlan_restart", "wlan_restart_all"})
    EXPECT_NE(description(name).find("holds two"), std::string::npos) << name;
  EXPECT_EQ(description("wlan_set_ssid").find("\nFirst\n"), std::string::npos);
}

TEST(Notes, JsonTellsTheSame) {
  const auto noise =
      nlohmann::json::parse(json_describe(*lookup_name("wlan_get_channel_noise_floor")));
  EXPECT_EQ(noise["needs"], nlohmann::json({"wlan_set_rad_stat_enable"}));
  EXPECT_TRUE(noise["note"].get<std::string>().starts_with("Of the same radio."));
  const auto ssid = nlohmann::json::parse(json_describe(*lookup_name("wlan_set_ssid")));
  EXPECT_EQ(ssid["needs"], nlohmann::json::array());
  EXPECT_FALSE(ssid.contains("note"));
}
