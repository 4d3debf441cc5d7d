// Hostile values for every key that the daemon reads, and calls to all procedures.

#include <gtest/gtest.h>

#include <regex>
#include <sstream>

#include "support/files.h"
#include "support/gateway.h"
#include "support/lifecycle.h"
#include "support/wire.h"
#include "trust/hostile/rows.h"
#include "trust/hostile/watch.h"

static constexpr const char* kProfiles[] = {"/tmp/mt76xx_24.dat", "/tmp/mt76xx_5.dat"};

// The keys of the manual page, which is checked against the code: the bold words in a
// line before an indented one.
static std::vector<std::string> documented_keys() {
  std::istringstream page(read_file(KEYS_PAGE));
  std::vector<std::string> keys;
  std::string term;
  static const std::regex kBold("\\*([A-Z][A-Za-z0-9_]*)\\*");
  for (std::string line; std::getline(page, line);) {
    if (line.starts_with("\t")) {
      for (std::sregex_iterator at(term.begin(), term.end(), kBold), end; at != end; ++at)
        keys.push_back((*at)[1]);
    }
    term = line.starts_with("*") ? line : "";
  }
  return keys;
}

static void plant(const std::vector<std::string>& keys, const std::string& text) {
  for (const std::string& key : keys) {
    for (const char* profile : kProfiles)
      set_profile_value(profile, key, text);
  }
}

// Calls all procedures that do not move radios, those with at most an index first.
static void call_everything(uint32_t index, const std::string& what) {
  for (const bool setters : {false, true}) {
    for (const row& procedure : all_rows()) {
      if (moves_radios(procedure) || (procedure.members.size() > 1) != setters) continue;
      reply_message reply = {};
      ASSERT_TRUE(call(procedure.number, arguments(procedure, index), &reply))
          << procedure.name << " with " << what;
      EXPECT_EQ(reply.accept_status, kAcceptSuccess) << procedure.name << " with " << what;
    }
  }
}

// The bands take turns. Calls may change the lines of the keys that they write.
TEST(Profile, ValuesAreHarmlessToEveryProcedure) {
  start_watched_daemon();
  const std::vector<std::string> keys = documented_keys();
  EXPECT_GE(keys.size(), 50u);
  uint32_t index = 9;
  for (const hostile_text& hostile : profile_texts()) {
    index = 10 - index;
    plant(keys, hostile.text);
    const std::vector<std::string> before = profile_lines();
    call_everything(index, hostile.name);
    expect_lines_kept(before, 2 * static_cast<int>(keys.size()), hostile.name);
    expect_harmless(hostile.name);
  }
}

// The daemon reads a line that is too long as several lines, so the profile's lines are
// not compared.
TEST(Profile, LineThatIsTooLongIsHarmless) {
  start_watched_daemon();
  plant(documented_keys(), std::string(8000, '\''));
  call_everything(1, "long lines");
  expect_harmless("long lines");
}

// Keys that, with hostile texts, do not change the path of the lifecycle.
static const std::vector<std::string> kTextKeys = {"SSID1", "WPAPSK1", "AuthMode", "RADIUS_Server",
                                                   "EncrypType"};

static void run_lifecycle_with(const std::string& country) {
  start_watched_daemon();
  plant(kTextKeys, "'`c`';$(c)|c&%n%s\033[2J\xFF");
  plant({"CountryCode"}, country);
  EXPECT_EQ(call_for_code(kReset, ""), 0);
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  const std::vector<std::string> before = profile_lines();
  queue_and_wait(kRestart, "2.4GHz radio restarted\n");
  EXPECT_EQ(call_for_code(kReset, ""), 0);
  expect_lines_kept(before, 0, country);
  expect_harmless(country);
}

// These two take longer than other tests: radios come up twice.
TEST(Profile, SubstitutionIsHarmlessToTheLifecycle) {
  run_lifecycle_with("$(c)");
}

TEST(Profile, SeparatorIsHarmlessToTheLifecycle) {
  run_lifecycle_with(";c;#");
}
