#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/daemon.h"
#include "support/files.h"

// wificonf accepts exactly the words that the daemon knows for a setting: any other word
// clears the setting.

// Writes the setting of BSS 2 and returns its field from the profile.
static std::string written(const std::string& procedure, const std::string& word,
                           const std::string& key) {
  int status = -1;
  const std::string said = run("wificonf --force " + procedure + " 2 '" + word + "' 2>&1", &status);
  EXPECT_EQ(status, 0) << said;
  return run("sed -n 's/^" + key + "=[^;]*;\\([^;]*\\).*/\\1/p' /tmp/mt76xx_24.dat");
}

TEST(Constraint, TheDaemonKnowsEveryWordOfAChoiceAndNoOther) {
  const struct {
    const char* procedure;
    const char* key;
    size_t words;
  } settings[] = {
      {"wlan_set_basic_encryption_modes", "EncrypType", 1},
      {"wlan_set_basic_authentication_modes", "AuthMode", 1},
      {"wlan_set_wpa_encryption_modes", "EncrypType", 4},
      {"wlan_set_wpa_authentication_modes", "AuthMode", 6},
  };
  start_daemon();
  for (const auto& setting : settings) {
    const std::string name = setting.procedure;
    const auto schema = nlohmann::json::parse(run("wificonf schema --arguments " + name));
    const auto words = schema["properties"][name.substr(strlen("wlan_set_"))]["enum"];
    EXPECT_EQ(words.size(), setting.words) << name;
    for (const std::string word : words) {
      EXPECT_NE(written(name, word, setting.key), "\n") << name << " " << word;
      EXPECT_EQ(written(name, word + "x", setting.key), "\n") << name << " " << word << "x";
    }
  }
}
