#include <gtest/gtest.h>

#include "support/daemon.h"
#include "support/files.h"
#include "support/transcript.h"

// Checks that the sessions in docs/debugging.md are what a user sees today.

// The text of all "console" blocks.
static std::string sessions_of(const std::string& document) {
  static const std::string kStart = "```console\n";
  std::string text;
  for (size_t at = document.find(kStart); at != document.npos; at = document.find(kStart, at)) {
    at += kStart.size();
    text += document.substr(at, document.find("```", at) - at);
  }
  return text;
}

TEST(Debugging, TheDocumentShowsWhatTheDaemonPrints) {
  const std::string document = read_file(DEBUGGING_DOCUMENT);
  const size_t started = document.find("## Marker files");
  ASSERT_NE(started, document.npos);
  const std::string not_started = sessions_of(document.substr(0, started));
  const std::string in_use = sessions_of(document.substr(started));
  ASSERT_NE(in_use.find("$ wificonf wlan_set_ssid 1 \"On air\"\nok\n"), in_use.npos);
  start_daemon();
  EXPECT_EQ(masked(replay(in_use, false)), masked(in_use));
  // This comes last because it ends the portmapper.
  EXPECT_EQ(replay(not_started, false), not_started);
}
