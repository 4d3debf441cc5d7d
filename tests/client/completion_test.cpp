#include "commands/completion.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <string>

#include "wire/lookup.h"

static std::string names_with(const char* beginning) {
  std::string all;
  for (const procedure_row& procedure : table_procedures()) {
    const std::string name = lookup_display_name(procedure);
    if (name.starts_with(beginning)) all += (all.empty() ? "" : " ") + name;
  }
  return all + "\n";
}

// What the shell's script offers for the last word. The script cannot start any program, so it
// must know the words itself.
static std::string offered_by(const std::string& shell, const std::string& around,
                              const std::string& words) {
  const std::string path = testing::TempDir() + "completion." + std::to_string(getpid());
  FILE* file = fopen(path.c_str(), "w");
  EXPECT_NE(file, nullptr);
  fprintf(file, "PATH=/nowhere\ncompdef() { :; }\n%swords=(%s)\nCURRENT=${#words[@]}\n%s",
          completion_script(shell, command_all()).c_str(), words.c_str(), around.c_str());
  fclose(file);
  FILE* pipe = popen((shell + " " + path + " 2>&1").c_str(), "r");
  char text[65536] = {};
  const size_t length = fread(text, 1, sizeof text - 1, pipe);
  EXPECT_EQ(pclose(pipe), 0);
  unlink(path.c_str());
  return std::string(text, length);
}

static std::string offered(const std::string& words) {
  return offered_by("bash",
                    "COMP_WORDS=(\"${words[@]}\"); COMP_CWORD=$((CURRENT - 1))\n"
                    "_wificonf; echo ${COMPREPLY[@]}\n",
                    words);
}

// Everything passed to zsh, which picks the matches itself.
static std::string offered_by_zsh(const std::string& words) {
  return offered_by("zsh",
                    "compadd() { while [ $1 != -- ]; do shift; done; shift; echo $@ }\n"
                    "_wificonf\n",
                    words);
}

TEST(Completion, ProceduresCommandsAndOptions) {
  EXPECT_EQ(offered("wificonf wlan_set_ssi"), names_with("wlan_set_ssi"));
  EXPECT_EQ(offered("wificonf --json desc"), "describe\n");
  EXPECT_EQ(offered("wificonf --host 1.2.3.4 --ra"), "--raw\n");
  EXPECT_EQ(offered("wificonf describe wlan_get_btm_a"), "wlan_get_btm_associated_device\n");
  EXPECT_EQ(offered("wificonf watch wlan_get_btm_a"), "wlan_get_btm_associated_device\n");
  EXPECT_EQ(offered("wificonf completion z"), "zsh\n");
  EXPECT_EQ(offered("wificonf --timeout=3 dump \"\""), "--redact\n");
  EXPECT_EQ(offered("wificonf --timeout = 3 dump \"\""), "--redact\n") << "as bash splits it";
  EXPECT_EQ(offered("wificonf --host \"\""), "\n");
  EXPECT_EQ(offered("wificonf dump --redact \"\""), "\n");
  EXPECT_EQ(offered("wificonf watch pin"), "\n") << "no command can be watched";
  EXPECT_EQ(offered("wificonf ping \"\""), "--wait\n");
  EXPECT_EQ(offered("wificonf ping --wait \"\""), "\n");
}

TEST(Completion, NamesAsTheClientTakesThem) {
  EXPECT_EQ(offered("wificonf --host=1.2.3.4 wlan-get-ss"), names_with("wlan_get_ss"));
  EXPECT_EQ(offered("wificonf --host = 1.2.3.4 WLAN_SET_SSID_"), names_with("wlan_set_ssid_"));
  EXPECT_EQ(offered("wificonf describe wlan-get-btm-a"), names_with("wlan_get_btm_a"));
  EXPECT_EQ(offered("wificonf --js"), "--json\n");
  EXPECT_EQ(offered("wificonf wlan_set_wpa_encryption_modes 3 tkip"), "\n") << "values are exact";
}

TEST(Completion, EveryProcedureAndCommand) {
  EXPECT_NE(names_with("wlan_get_ssid"), "\n");
  EXPECT_EQ(offered("wificonf describe \"\""), names_with(""));
  for (const command_row* command : command_all())
    EXPECT_EQ(offered("wificonf " + std::string(command->name)), std::string(command->name) + "\n");
}

TEST(Completion, TopicsOfAList) {
  EXPECT_EQ(offered("wificonf list \"\""), "--active --topic --topics\n");
  EXPECT_EQ(offered("wificonf list --topic home"),
            "home-network-controller home-network-extenders\n");
  EXPECT_EQ(offered("wificonf list --topic wps \"\""), "\n");
  EXPECT_EQ(offered("wificonf list --active \"\""), "--topic\n");
  EXPECT_EQ(offered("wificonf list --active --topic site"), "site-survey\n");
}

TEST(Completion, WhatWatchAndTopTake) {
  EXPECT_EQ(offered("wificonf watch wlan_get_channel 1 \"\""), "--every --count\n");
  EXPECT_EQ(offered("wificonf watch hnc_get_rrm_enable \"\""), "--every --count\n");
  EXPECT_EQ(offered("wificonf watch wlan_get_channel 1 --every \"\""), "\n");
  EXPECT_EQ(offered("wificonf top --c"), "--count\n");
  EXPECT_EQ(offered("wificonf top --every 5 --c"), "--count\n");
  EXPECT_EQ(offered("wificonf watch --"), "--every --count --force\n");
  EXPECT_EQ(offered("wificonf watch --every 5s --"), "--every --count --force\n");
  EXPECT_EQ(offered("wificonf watch --force --every 5s wlan_set_ssi"), names_with("wlan_set_ssi"));
  EXPECT_EQ(offered("wificonf watch --count \"\""), "\n");
}

TEST(Completion, ArgumentsThatAreEnumerations) {
  EXPECT_EQ(offered("wificonf wlan_set_wpa_encryption_modes 3 TKIP"),
            "TKIPEncryption TKIPandAESEncryption\n");
  EXPECT_EQ(offered("wificonf wlan_set_enable 1"), "1 10 11 12 13 14 15 16\n");
  EXPECT_EQ(offered("wificonf wlan_set_enable 3 \"\""), "on off\n");
  EXPECT_EQ(offered("wificonf watch wlan_get_stats 9 \"\""), "0 1 --every --count\n");
  EXPECT_EQ(offered("wificonf wlan_set_ssid 3 \"\""), "\n") << "any text";
  EXPECT_EQ(offered("wificonf wlan_init \"\""), "\n");
}

// The order that bash is told to use; by default it sorts alphabetically.
static std::string order_of(const std::string& words) {
  return offered_by("bash",
                    "compopt() { echo $@; }\n"
                    "COMP_WORDS=(\"${words[@]}\"); COMP_CWORD=$((CURRENT - 1))\n_wificonf\n",
                    words);
}

TEST(Completion, NumbersStayInTheirOrder) {
  EXPECT_EQ(order_of("wificonf wlan_set_enable \"\""), "-o nosort\n");
  EXPECT_EQ(order_of("wificonf wlan_set_en"), "") << "names by their letters";
  const std::string zsh = offered_by("zsh", "compadd() { echo $@[1,3] }\n_wificonf\n",
                                     "wificonf wlan_set_led_enable ''");
  EXPECT_EQ(zsh, "-V values --\n");
}

TEST(Completion, ZshOffersTheSame) {
  EXPECT_EQ(offered_by_zsh("wificonf wlan_set_hnc_steer_sta_type 3 ''"), "0 1 3\n");
  EXPECT_EQ(offered_by_zsh("wificonf --host 1.2.3.4 wlan_set_enable 3 ''"), "on off\n");
  EXPECT_EQ(offered_by_zsh("wificonf list ''"), "--active --topic --topics\n");
  EXPECT_EQ(offered_by_zsh("wificonf --host=1.2.3.4 ping ''"), "--wait\n");
}

TEST(Completion, OtherShellsHaveNone) {
  EXPECT_EQ(completion_script("zsh", command_all()).substr(0, 17), "#compdef wificonf");
  EXPECT_EQ(completion_script("fish", command_all()), "");
}
