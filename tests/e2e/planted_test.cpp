#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <regex>

#include "support/daemon.h"
#include "support/files.h"
#include "support/lifecycle.h"

// A redacted dump has no text from the gateway. Here the scenario has "planted" in
// everything that stations, neighbours and the controller report, and the profiles have
// it in every value.

// Spares the keys that enable BSSs, because there would be no stations otherwise.
static std::string planted(const std::string& profile) {
  static const std::regex kValue("((?:^|\n)(?!BssEnabled=|BSSHNCService=)[A-Za-z0-9_]+=)[^\n]*");
  static constexpr char kSteering[] =
      "HNCSteerSTAMac=planted\nHNCActionFrameType=planted\nHNCActionFrameMac=planted\n"
      "HNCActionFramePayload=planted\nNonAssocReqMac=planted\n";
  return std::regex_replace(profile, kValue, "$1planted") + "\n" + kSteering;
}

static void start_planted() {
  write_file("/nvram/hnc_enable", "");
  run("hnc-listener </dev/null >/dev/null 2>&1 &");
  EXPECT_TRUE(wait_until([] { return !run("ss -Huln sport = 4567").empty(); }));
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  for (const char* profile : {"/tmp/mt76xx_24.dat", "/tmp/mt76xx_5.dat"})
    write_file(profile, planted(read_file(profile)));
}

static size_t count(const std::string& text, const std::string& what) {
  size_t found = 0;
  for (size_t at = text.find(what); at != text.npos; at = text.find(what, at + 1))
    ++found;
  return found;
}

TEST(Dump, RedactedHasNothingOfAnyTextOfTheGateway) {
  start_planted();
  const std::string plain = run("wificonf dump");
  const std::string redacted = run("wificonf dump --redact");
  const auto shown = nlohmann::json::parse(redacted, nullptr, false);
  ASSERT_TRUE(shown.is_object()) << redacted;
  // What the controller reports and, from the profiles, at least what steering reads.
  for (const char* text : {"planted-mac", "planted-name", "planted-manufacturer", "planted-model",
                           "planted-number", "planted-serial", "planted-version", "planted-ip",
                           "planted-uplink", "planted-error", "planted-description", "planted-url",
                           "planted-file", "planted-user", "planted-password", "\"planted\""})
    EXPECT_GT(count(plain, text), 0u) << text;
  EXPECT_GT(count(plain, "\"planted"), 60u);
  EXPECT_EQ(count(redacted, "planted"), 0u) << redacted;
  EXPECT_EQ(shown["left_out"], 0) << "there is no value of which nothing is said";
  EXPECT_EQ(shown["bss"]["1"]["wlan_get_btm_associated_device"]["value"]["stations"].size(), 1u);
  EXPECT_EQ(shown["row"]["1"]["hnc_get_hne_table_entry"]["value"]["serial_number"], "(redacted)");
}
