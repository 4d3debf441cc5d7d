// Failures as JSON.
#include "commands/run.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "commands/command.h"
#include "fake_daemon.h"
#include "run_support.h"
#include "wire/lookup.h"

// The error, if it is the whole output; otherwise null.
static nlohmann::json error_of(const run_outcome& outcome) {
  const auto object = nlohmann::json::parse(outcome.out, nullptr, false);
  EXPECT_TRUE(object.is_object() && object.size() == 1) << outcome.out;
  EXPECT_TRUE(one_line(outcome.out) && one_line(outcome.err)) << outcome.out << outcome.err;
  const auto error = object.value("error", nlohmann::json());
  EXPECT_EQ(error.value("exit_status", 0), outcome.status) << outcome.out;
  EXPECT_EQ("wificonf: " + error.value("message", "") + "\n", outcome.err);
  return error;
}

TEST(Run, EveryFailureIsJsonWithTheOption) {
  const struct {
    uint32_t state;
    byte_string result;
    std::vector<std::string> words;
    exit_status status;
    const char* kind;
  } cases[] = {
      {0, {}, {"--json", "wlan_get_sid", "3"}, kExitUsage, "usage"},
      {0, {}, {"--json", "wlan_get_ssid"}, kExitUsage, "usage"},
      {0,
       {},
       {"--json", "--force", "wlan_set_ssid", "3", std::string(9000, 'x')},
       kExitUsage,
       "usage"},
      {0, {}, {"--json", "wlan_set_ssid", "17", "x"}, kExitUsage, "usage"},
      {0, {}, {"--json", "--bogus", "ping"}, kExitUsage, "usage"},
      {0, {}, {"--bogus", "--json", "ping"}, kExitUsage, "usage"},
      {0, {}, {"--port", "none", "--json", "ping"}, kExitUsage, "usage"},
      {0, {}, {"--json"}, kExitUsage, "usage"},
      {0, {}, {"--json", "12ab"}, kExitUsage, "usage"},
      {0, {}, {"--json", "list", "no such thing"}, kExitUsage, "usage"},
      {0, {}, {"--json", "completion", "zsh"}, kExitUsage, "usage"},
      {0, {}, {"--json", "top", "now"}, kExitUsage, "usage"},
      {0, {}, {"--json", "watch", "wlan_reset"}, kExitUsage, "usage"},
      {1, {}, {"--json", "ping"}, kExitNoAnswer, "program_unavailable"},
      {2, words({3, 4}), {"--json", "ping"}, kExitNoAnswer, "version_mismatch"},
      {3, {}, {"--json", "20"}, kExitNoAnswer, "procedure_unavailable"},
      {4, {}, {"--json", "wlan_get_channel", "1"}, kExitNoAnswer, "garbage_arguments"},
      {5, {}, {"--json", "--raw", "wlan_get_channel", "1"}, kExitNoAnswer, "system_error"},
      {6, {}, {"--json", "wlan_get_channel", "1"}, kExitNoAnswer, "malformed_reply"},
      {0, {}, {"--json", "wlan_get_channel", "1"}, kExitNoAnswer, "malformed_reply"},
      {0, words({0}), {"--json", "ping"}, kExitNoAnswer, "malformed_reply"},
      {1, {}, {"--json", "dump"}, kExitNoAnswer, "program_unavailable"},
      {1, {}, {"--json", "top"}, kExitNoAnswer, "program_unavailable"},
  };
  for (const auto& c : cases) {
    const run_outcome outcome = run_against(c.state, c.result, c.words);
    EXPECT_EQ(outcome.status, c.status) << outcome.err;
    EXPECT_EQ(error_of(outcome).value("kind", ""), c.kind) << outcome.out;
  }
}

TEST(Run, AnErrorOfTheNetworkIsJsonToo) {
  const std::string closed = std::to_string(fake_closed_port());
  EXPECT_EQ(
      error_of(run_words({"--json", "--host", "127.0.0.1", "--port", closed, "ping"}))["kind"],
      "refused");
  EXPECT_EQ(error_of(run_words({"--json", "--host", "host.invalid", "ping"}))["kind"],
            "unknown_host");
  fake_daemon silent;
  fake_daemon_start(silent, [](const byte_string&) { return std::vector<fake_datagram>{}; });
  const run_outcome timeout = run_words({"--json", "--host", "127.0.0.1", "--port",
                                         std::to_string(silent.port), "--timeout", "0.05", "ping"});
  fake_daemon_stop(silent);
  EXPECT_EQ(error_of(timeout)["kind"], "timeout");
}
