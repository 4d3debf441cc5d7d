// "wificonf watch" in a pipe. terminal_test.cpp tests it on a terminal.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "base/moment.h"
#include "fake_daemon.h"
#include "run_support.h"

TEST(Watch, RepeatsGettersOnly) {
  for (const char* setter : {"wlan_reset", "wlan_init", "wlan_check_rpc_alive"}) {
    run_outcome refused = run_against(0, words({0}), {"watch", "--count", "1", setter});
    EXPECT_EQ(refused.status, kExitUsage);
    EXPECT_EQ(refused.calls.size(), 0u);
  }
  run_outcome forced = run_against(
      0, words({0}), {"watch", "--every", "10ms", "--count", "2", "--force", "wlan_reset"});
  EXPECT_EQ(forced.status, kExitDone) << forced.err;
  EXPECT_EQ(forced.calls.size(), 2u);
  EXPECT_EQ(
      run_against(0, words({0}), {"watch", "--force", "--count", "1", "wlan_reset"}).calls.size(),
      1u);
}

TEST(Watch, JsonHasItsTime) {
  run_outcome outcome = run_against(0, words({0, 4, 6, 0, 0, 0, 0}),
                                    {"--json", "watch", "wlan_get_channel", "1", "--count", "1"});
  auto object = nlohmann::json::parse(outcome.out, nullptr, false);
  ASSERT_TRUE(object.is_object()) << outcome.out;
  EXPECT_EQ(object["time"].get<std::string>().size(), 24u);
  EXPECT_EQ(object["value"], 6);
}

static std::string unstamped(const std::string& text) {
  std::string out;
  for (size_t at = 0; at < text.size();) {
    const size_t end = text.find('\n', at) + 1;
    EXPECT_EQ(text.substr(at + 10, 1), "T") << text;
    EXPECT_EQ(text.substr(at + 19, 1), ".") << text;
    out += text.substr(at + 25, end - at - 25);
    at = end;
  }
  return out;
}

TEST(Watch, InAPipePrintsTimedLines) {
  run_outcome outcome =
      run_against(0, words({0, 4, 6, 0, 0, 0, 0}),
                  {"watch", "wlan_get_channel", "1", "--every", "10ms", "--count", "3"});
  EXPECT_EQ(outcome.status, kExitDone);
  EXPECT_EQ(unstamped(outcome.out), "6\n6\n6\n");
  EXPECT_EQ(outcome.calls.size(), 3u);
}

// The output for a daemon whose 64-bit counter of bytes sent, in the first words, takes these
// values in turn.
static std::string watched(std::vector<uint32_t> sent, const char* every) {
  fake_daemon daemon;
  size_t at = 0;
  fake_daemon_start(daemon, [&](const byte_string& call) {
    byte_string reply = fake_reply(call, 0, {});
    const byte_string result = words({0, 8, sent[at], 7, 0, 0, 0, 0, 0, 0, 0});
    reply.insert(reply.end(), result.begin(), result.end());
    ++at;
    return std::vector<fake_datagram>{{reply}};
  });
  run_outcome outcome = run_words({"--host", "127.0.0.1", "--port", std::to_string(daemon.port),
                                   "watch", "wlan_get_radio_bytes_sent", "1", "--every", every,
                                   "--count", std::to_string(sent.size())});
  fake_daemon_stop(daemon);
  return unstamped(outcome.out);
}

TEST(Watch, CountersHaveTheirRates) {
  const std::string lines = watched({0, 1000000, 500000}, "100ms");
  double rate = 0;
  int length = 0;
  EXPECT_EQ(sscanf(lines.c_str(),
                   "bytes_sent=30064771072\nbytes_sent=30065771072 bytes_sent/s=%lf\n"
                   "bytes_sent=30065271072\n%n",
                   &rate, &length),
            1)
      << lines;
  EXPECT_EQ(static_cast<size_t>(length), lines.size()) << "none of the first, and none back";
  // A busy machine lowers the rate.
  EXPECT_GT(rate, 1e5);
  EXPECT_LT(rate, 1.2e7);
}

TEST(Watch, DoesNotMakeUpForWhatWasLate) {
  fake_daemon daemon;
  std::vector<double> called;
  fake_daemon_start(daemon, [&](const byte_string& call) {
    called.push_back(moment_now());
    if (called.size() == 1) moment_sleep_until(moment_now() + 0.5);
    byte_string reply = fake_reply(call, 0, {0, 4, 6, 0, 0, 0, 0});
    return std::vector<fake_datagram>{{reply}};
  });
  run_words({"--host", "127.0.0.1", "--port", std::to_string(daemon.port), "watch",
             "wlan_get_channel", "1", "--every", "100ms", "--count", "4"});
  fake_daemon_stop(daemon);
  ASSERT_EQ(called.size(), 4u);
  // Normally 0.2 s, but almost 0 if watch made up for the late call. A busy machine may delay a
  // call.
  EXPECT_GE(called[3] - called[1], 0.1);
}

TEST(Watch, GoesOnAfterAFailure) {
  run_outcome outcome =
      run_against(3, {}, {"watch", "wlan_get_channel", "1", "--every", "10ms", "--count", "2"});
  EXPECT_EQ(outcome.calls.size(), 2u);
  EXPECT_NE(outcome.err.find("procedure unavailable"), std::string::npos);
}
