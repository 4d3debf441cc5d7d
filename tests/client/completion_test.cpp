#include "completion.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <string>

namespace {

// What bash offers for the last of the words.
std::string offered(const std::string& words) {
  const std::string path = testing::TempDir() + "completion." + std::to_string(getpid());
  FILE* file = fopen(path.c_str(), "w");
  EXPECT_NE(file, nullptr);
  fputs(completion_script("bash").c_str(), file);
  fclose(file);
  const std::string command =
      "bash -c 'source " + path + "; COMP_WORDS=(" + words +
      "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _wificonf; echo ${COMPREPLY[@]}'";
  FILE* pipe = popen(command.c_str(), "r");
  char text[65536] = {};
  const size_t length = fread(text, 1, sizeof text - 1, pipe);
  EXPECT_EQ(pclose(pipe), 0);
  unlink(path.c_str());
  return std::string(text, length);
}

TEST(Completion, ProceduresCommandsAndOptions) {
  EXPECT_EQ(offered("wificonf wlan_set_ssi"),
            "wlan_set_ssid wlan_set_ssid_advertisement_enabled\n");
  EXPECT_EQ(offered("wificonf --json desc"), "describe\n");
  EXPECT_EQ(offered("wificonf --host 1.2.3.4 --ra"), "--raw\n");
  EXPECT_EQ(offered("wificonf describe wlan_get_btm_a"), "wlan_get_btm_associated_device\n");
  EXPECT_EQ(offered("wificonf watch wlan_get_btm_a"), "wlan_get_btm_associated_device\n");
  EXPECT_EQ(offered("wificonf completion z"), "zsh\n");
}

TEST(Completion, ArgumentsThatAreEnumerations) {
  EXPECT_EQ(offered("wificonf wlan_set_wpa_encryption_modes 3 TKIP"),
            "TKIPEncryption TKIPandAESEncryption\n");
  EXPECT_EQ(offered("wificonf wlan_set_enable 1"), "1 10 11 12 13 14 15 16\n");
  EXPECT_EQ(offered("wificonf wlan_set_enable 3 \"\""), "on off\n");
  EXPECT_EQ(offered("wificonf watch wlan_get_stats 9 \"\""), "0 1\n");
  EXPECT_EQ(offered("wificonf wlan_set_ssid 3 \"\""), "\n") << "any text";
  EXPECT_EQ(offered("wificonf wlan_init \"\""), "\n");
}

TEST(Completion, OtherShellsHaveNone) {
  EXPECT_EQ(completion_script("zsh").substr(0, 17), "#compdef wificonf");
  EXPECT_EQ(completion_script("fish"), "");
}

}  // namespace
