// The whole program against a fake daemon: its output and exit status.
#include "commands/run.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "commands/command.h"
#include "fake_daemon.h"
#include "run_support.h"
#include "wire/lookup.h"

TEST(Run, ResultsAsText) {
  const struct {
    std::vector<std::string> words;
    byte_string result;
    const char* out;
  } cases[] = {
      {{"wlan_set_ssid", "3", "Living room"}, words({0}), "ok\n"},
      {{"wlan_set_ssid", "3", "x"}, words({2}), "ok (code 2: no change)\n"},
      {{"wlan_set_ssid", "3", "x"}, words({7}), "ok (code 7)\n"},
      {{"wlan_del_entry", "3"}, words({0, 0, 0}), "ok\n"},
      {{"wlan_get_channel", "1"}, words({0, 4, 6, 0, 0, 0, 0}), "6\n"},
      {{"wlan_get_channel", "1"}, words({0, 4, kMinus1, 0, 0, 0, 0}), "-1\n"},
      {{"wlan-get-ssid", "3"}, data_record(0, std::string("abc", 4)), "abc\n"},
      {{"WLAN_GET_SSID", "3"}, data_record(0, "\x1b[2J\xff"), "\\x1b[2J\\xff\n"},
      {{"wlan_get_channel_statistics", "1"},
       words({0, 3, 40, 2, kMinus1, 0}),
       "channel_busy 40 %\nap_activity  2 %\nbusy_time    -\n"},
      {{"wlan_get_retransmission_metric", "1"}, words({0, 4, kMinus1, 0, 0, 0, 0}), "-\n"},
      {{"wlan_get_current_channel", "1"}, words({0, 4, 0, 0, 0, 0, 0}), "-\n"},
      {{"wlan_get_hnc_steer_sta_mac_address", "3"},
       data_record(0, std::string("00:11:22:33:44:55", 18)),
       "mac_address 00:11:22:33:44:55\n"},
      {{"--raw", "wlan_get_channel", "1"},
       words({0, 4, 6, 0, 0, 0, 0}),
       "0000  00 00 00 00 00 00 00 04  00 00 00 06 00 00 00 00  ................\n"
       "0010  00 00 00 00 00 00 00 00  00 00 00 00              ............\n"},
      {{"20"}, words({1}), "0000  00 00 00 01                                       ....\n"},
      {{"0"}, {}, "ok (empty result)\n"},
  };
  for (const auto& c : cases) {
    run_outcome outcome = run_against(0, c.result, c.words);
    EXPECT_EQ(outcome.out, c.out);
    const procedure_row* called = lookup_procedure(c.words[c.words[0] == "--raw" ? 1 : 0]);
    const bool noted = called != nullptr && called->inert;
    EXPECT_EQ(outcome.status, noted ? kExitInert : kExitDone) << outcome.err;
    EXPECT_EQ(outcome.err.find("deliberately does nothing") != std::string::npos, noted);
    EXPECT_EQ(outcome.err.empty(), !noted) << outcome.err;
    EXPECT_EQ(outcome.calls.size(), 1u);
  }
}

TEST(Run, ResultsAsJson) {
  const struct {
    std::vector<std::string> words;
    byte_string result;
    const char* out;
  } cases[] = {
      {{"wlan_set_ssid", "3", "x"},
       words({0}),
       R"({"procedure":"wlan_set_ssid","number":22,"return_code":0})"},
      {{"wlan_get_channel", "1"},
       words({0, 4, kMinus1, 0, 0, 0, 0}),
       R"({"procedure":"wlan_get_channel","number":16,"return_code":0,"inert":true,"value":-1})"},
      {{"wlan_get_ssid", "3"},
       data_record(1, std::string("a\"\\\x1b\xc3\xa9\0", 7)),
       R"({"procedure":"wlan_get_ssid","number":21,"return_code":1,"inert":true,"value":"a\"\\\u001b\u00e9"})"},
      {{"wlan_get_ssid", "3"},
       data_record(0, "\\\xff"),
       R"({"procedure":"wlan_get_ssid","number":21,"return_code":0,"inert":true,"value":"\\\\\\xff","value_escaped":true})"},
      {{"wlan_get_channel_statistics", "1"},
       words({0, 4, 1, 2, kMinus1, 9, 0}),
       R"({"procedure":"wlan_get_channel_statistics","number":238,"return_code":0,"value":{"channel_busy":1,"ap_activity":2,"busy_time":null}})"},
      {{"wlan_get_hnc_steer_sta_mac_address", "3"},
       data_record(1, "\xff" + std::string(17, '\0')),
       R"({"procedure":"wlan_get_hnc_steer_sta_mac_address","number":265,"return_code":1,)"
       R"("value":{"mac_address":"\\xff","mac_address_escaped":true}})"},
      {{"--raw", "wlan_get_channel", "1"},
       words({0}),
       R"({"procedure":"wlan_get_channel","number":16,"result":"00000000"})"},
      {{"20"}, words({1}), R"({"procedure":null,"number":20,"result":"00000001"})"},
      {{"21"}, {}, R"({"procedure":"wlan_get_ssid","number":21,"result":""})"},
  };
  for (const auto& c : cases) {
    std::vector<std::string> with_json = c.words;
    with_json.insert(with_json.begin(), {"--inert-ok", "--json"});
    run_outcome outcome = run_against(0, c.result, with_json);
    EXPECT_EQ(outcome.status, kExitDone) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, std::string(c.out) + "\n");
    EXPECT_TRUE(nlohmann::json::accept(outcome.out));
  }
}

TEST(Run, AFailureCodeIsStatus1AndNoValue) {
  run_outcome setter = run_against(0, words({kMinus1}), {"wlan_set_ssid", "3", "x"});
  run_outcome getter =
      run_against(0, words({kMinus1, 4, 6, 0, 0, 0, 0}), {"wlan_get_channel", "1"});
  for (const run_outcome& outcome : {setter, getter}) {
    EXPECT_EQ(outcome.status, kExitFailureCode);
    EXPECT_EQ(outcome.out, "");
    EXPECT_TRUE(one_line(outcome.err)) << outcome.err;
    EXPECT_NE(outcome.err.find("code -1"), std::string::npos) << outcome.err;
  }
  run_outcome json =
      run_against(0, words({0xfffffffb, 4, 6, 0, 0, 0, 0}), {"--json", "wlan_get_channel", "1"});
  EXPECT_EQ(json.status, kExitFailureCode);
  EXPECT_EQ(
      json.out,
      "{\"procedure\":\"wlan_get_channel\",\"number\":16,\"return_code\":-5,\"inert\":true}\n");
}

TEST(Run, APositiveCodeOfAGetterLeavesTheValueAlone) {
  run_outcome outcome =
      run_against(0, words({1, 4, 6, 0, 0, 0, 0}), {"wlan_get_current_channel", "1"});
  EXPECT_EQ(outcome.status, kExitDone);
  EXPECT_EQ(outcome.out, "6\n");
  EXPECT_EQ(outcome.err, "wificonf: wlan_get_current_channel: ok (code 1: written or found)\n");
}

TEST(Run, RpcErrorsAreStatus3) {
  const struct {
    uint32_t state;
    byte_string result;
    const char* shown;
  } cases[] = {
      {1, {}, "unavailable"},
      {2, words({3, 4}), "versions 3 to 4"},
      {3, {}, "procedure unavailable"},
      {4, {}, "garbage arguments"},
      {5, {}, "system error"},
      {6, {}, "malformed"},
      {0, {}, "malformed"},
      {0, words({0, 0xffffffff, 0}), "malformed"},
  };
  for (const auto& c : cases) {
    run_outcome outcome = run_against(c.state, c.result, {"wlan_get_channel", "1"});
    EXPECT_EQ(outcome.status, kExitNoAnswer);
    EXPECT_EQ(outcome.out, "");
    EXPECT_TRUE(one_line(outcome.err)) << outcome.err;
    EXPECT_NE(outcome.err.find(c.shown), std::string::npos) << outcome.err;
  }
}

TEST(Run, NoAnswerIsStatus3) {
  run_outcome refused =
      run_words({"--host", "127.0.0.1", "--port", std::to_string(fake_closed_port()), "ping"});
  EXPECT_EQ(refused.status, kExitNoAnswer);
  EXPECT_TRUE(one_line(refused.err)) << refused.err;
  EXPECT_NE(refused.err.find("nothing listens"), std::string::npos) << refused.err;

  fake_daemon silent;
  fake_daemon_start(silent, [](const byte_string&) { return std::vector<fake_datagram>{}; });
  run_outcome timeout = run_words({"--host", "127.0.0.1", "--port", std::to_string(silent.port),
                                   "--timeout", "0.2", "wlan_set_ssid", "3", "x"});
  fake_daemon_stop(silent);
  EXPECT_EQ(timeout.status, kExitNoAnswer);
  EXPECT_TRUE(one_line(timeout.err)) << timeout.err;
  EXPECT_NE(timeout.err.find("no answer from 127.0.0.1"), std::string::npos) << timeout.err;
  EXPECT_EQ(silent.calls.size(), 1u) << "sent once";
}

TEST(Run, WrongUsageSendsNothing) {
  const struct {
    std::vector<std::string> words;
    const char* shown;
  } cases[] = {
      {{"wlan_get_sid", "3"}, "did you mean wlan_set_ssid, wlan_get_ssid (does nothing)"},
      {{"nonsense"}, "'wificonf list'"},
      {{"wlan_get_ssid"}, "usage: wificonf wlan_get_ssid BSS\n"},
      {{"wlan_get_ssid", "x"}, "usage: wificonf wlan_get_ssid BSS\n"},
      {{"--force", "wlan_set_ssid", "3", std::string(9000, 'x')}, "too long"},
      {{"wlan_set_ssid", "17", "x"},
       "1 to 8 (2.4 GHz) or 9 to 16 (5 GHz), not '17'; 'wificonf --force wlan_set_ssid ...'"},
      {{"wlan_set_wpa_encryption_modes", "1", "AES"}, "did you mean AESEncryption? 'wificonf --"},
      {{"wlan_set_wpa_authentication_modes", "1", "WPA3"}, "did you mean WPA2?"},
      {{"wlan_set_ssid", "1", std::string(39, 'x')}, "1 to 32 bytes, not"},
      {{"wlan_set_hnc_steer_sta_mac_address", "1", "junk"}, "a MAC address such as"},
      {{"watch", "wlan_get_stats", "17", "0"}, "'wificonf --force"},
      {{"21", "3"}, "wificonf wlan_get_ssid BSS"},
      {{"20", "3"}, "takes no arguments"},
      {{"12ab"}, "no procedure number"},
      {{"ping", "3"}, "takes no arguments"},
      {{"ping", "--wait"}, "--wait SECONDS"},
      {{"ping", "--wait", "soon"}, "--wait SECONDS"},
      {{"ping", "--wait", "0"}, "--wait SECONDS"},
      {{"ping", "--wait", "1", "2"}, "--wait SECONDS"},
      {{"list", "a", "b"}, "one PATTERN"},
      {{"list", "no such thing"}, "no name or summary of a procedure has 'no such thing'"},
      {{"list", "22"}, "has '22'; 'wificonf describe 22' tells of that number"},
      {{"list", "--topics", "x"}, "one PATTERN"},
      {{"list", "--topic"}, "one PATTERN"},
      {{"list", "--topic", "wps", "--json"}, "one PATTERN"},
      {{"describe"}, "one PROCEDURE"},
      {{"describe", "wlan_set_sid"}, "did you mean wlan_set_ssid"},
      {{"describe", "20"}, "no procedure '20'"},
      {{"--bogus", "ping"}, "--bogus"},
      {{}, "no procedure given"},
  };
  for (const auto& c : cases) {
    run_outcome outcome = run_against(0, words({0}), c.words);
    EXPECT_EQ(outcome.status, kExitUsage) << outcome.out;
    EXPECT_EQ(outcome.out, "");
    EXPECT_NE(outcome.err.find(c.shown), std::string::npos) << outcome.err;
    EXPECT_EQ(outcome.calls.size(), 0u);
  }
}

// The record that top reads, for stations with these last address bytes.
static byte_string station_list(std::initializer_list<char> addresses) {
  std::string record(2436, '\0');
  record[0] = static_cast<char>(addresses.size());
  size_t at = 4;
  for (const char last : addresses) {
    record[at] = static_cast<char>(-last);
    record.replace(at + 1, 3, "\xff\xff\xff");
    record.replace(at + 40, 17, std::string("02:00:00:00:00:0") + last);
    at += 76;
  }
  return data_record(0, record);
}

TEST(Run, TopAsksAndSortsAsTold) {
  const run_outcome two = run_against(0, station_list({'2', '1'}), {"top", "--bss", "3,16,3"});
  EXPECT_EQ(two.status, kExitDone) << two.err;
  ASSERT_EQ(two.calls.size(), 2u);
  EXPECT_EQ(two.calls[0][43], 3);
  EXPECT_EQ(two.calls[1][43], 16);
  const auto order = [](const char* key) {
    const run_outcome outcome = run_against(0, station_list({'3', '1', '2'}),
                                            {"--json", "top", "--bss", "1", "--sort", key});
    const auto object = nlohmann::json::parse(outcome.out, nullptr, false);
    EXPECT_TRUE(object.is_object()) << outcome.out << outcome.err;
    std::string addresses;
    for (const auto& station : object["stations"])
      addresses += station["mac_address"].get<std::string>().back();
    EXPECT_EQ(object["stations"][0]["bytes_sent_per_second"], nullptr);
    EXPECT_EQ(object["stations"][0]["bss"], 1);
    return addresses;
  };
  EXPECT_EQ(order("station"), "123");
  EXPECT_EQ(order("rssi"), "123") << "-49, -50 and -51 dBm";
  EXPECT_EQ(order("busy"), "123") << "where nothing goes, by address";
  for (const char* wrong : {"0", "17", "1,", "x", ""})
    EXPECT_EQ(run_words({"top", "--bss", wrong}).status, kExitUsage) << wrong;
  EXPECT_NE(run_words({"top", "--sort", "size"}).err.find("--sort takes busy, bss, "),
            std::string::npos);
}

TEST(Run, ForceSendsWhatMakesNoSense) {
  run_outcome forced = run_against(
      0, words({0}), {"--force", "wlan_set_wpa_encryption_modes", "17", std::string(70, 'x')});
  EXPECT_EQ(forced.calls.size(), 1u) << forced.err;
  run_outcome type = run_against(0, words({0}), {"--force", "wlan_set_ssid", "three", "x"});
  EXPECT_EQ(type.status, kExitUsage) << "has no form on the wire";
  EXPECT_EQ(type.calls.size(), 0u);
}

// A mistyped secret is almost the real one, so nobody else may see it.
TEST(Run, ARefusedSecretIsNotShown) {
  const std::vector<std::string> calls[] = {{"wlan_set_key_passphrase", "1", "1", "geh1m"},
                                            {"wlan_set_wps_pinstart", "1", "geh1m"},
                                            {"wlan_set_wep_key", "1", "1", "geh1m"}};
  for (const auto& call : calls) {
    run_outcome outcome = run_against(0, words({0}), call);
    EXPECT_EQ(outcome.status, kExitUsage);
    EXPECT_EQ(outcome.err.find("geh1m"), std::string::npos) << outcome.err;
    const bool any_text = call[0] == "wlan_set_key_passphrase";
    const char* why = any_text ? "not 5 bytes" : "not a text whose byte 1 is not a ";
    EXPECT_NE(outcome.err.find(why), std::string::npos) << outcome.err;
  }
}

TEST(Run, WhatDoesNothingHasAStatusOfItsOwn) {
  const byte_string answer = words({0, 4, 6, 0, 0, 0, 0});
  for (std::vector<std::string> call : {std::vector<std::string>{"wlan_get_channel", "1"},
                                        {"--json", "wlan_get_channel", "1"},
                                        {"--raw", "wlan_get_channel", "1"}}) {
    run_outcome outcome = run_against(0, answer, call);
    EXPECT_EQ(outcome.status, kExitInert) << call[0];
    EXPECT_NE(outcome.out, "") << call[0];
    call.insert(call.begin(), "--inert-ok");
    run_outcome accepted = run_against(0, answer, call);
    EXPECT_EQ(accepted.status, kExitDone) << call[1];
    EXPECT_EQ(accepted.err, "") << call[1];
  }
  EXPECT_EQ(run_against(0, words({kMinus1}), {"--inert-ok", "wlan_set_channel", "9", "36"}).status,
            kExitFailureCode);
  EXPECT_EQ(run_against(0, {}, {"4"}).status, kExitInert) << "by number";
  run_outcome alive = run_against(0, words({0}), {"wlan_check_rpc_alive"});
  EXPECT_EQ(alive.status, kExitDone) << "to answer is all that it is for";
  EXPECT_EQ(alive.out + alive.err, "ok\n");
}

TEST(Run, Ping) {
  run_outcome text = run_against(0, {}, {"ping"});
  EXPECT_EQ(text.status, kExitDone) << text.err;
  EXPECT_TRUE(text.out.starts_with("127.0.0.1 port ")) << text.out;
  EXPECT_TRUE(text.out.ends_with(" ms\n")) << text.out;
  ASSERT_EQ(text.calls.size(), 1u);
  EXPECT_EQ(text.calls[0].size(), 40u);
  run_outcome json = run_against(0, {}, {"--json", "ping"});
  auto object = nlohmann::json::parse(json.out, nullptr, false);
  ASSERT_TRUE(object.is_object()) << json.out;
  const double milliseconds = object["round_trip_ms"].get<double>();
  EXPECT_GT(milliseconds, 0);
  EXPECT_NEAR(milliseconds * 1000, std::round(milliseconds * 1000), 1e-6) << "microseconds";
}

// The first three calls are lost, as with a daemon that starts slowly.
TEST(Run, PingWaitsUntilTheDaemonAnswers) {
  fake_daemon starting;
  int lost = 0;
  fake_daemon_start(starting, [&](const byte_string& call) {
    if (lost++ < 3) return std::vector<fake_datagram>{};
    return std::vector<fake_datagram>{{fake_reply(call, 0, {})}};
  });
  run_outcome answered = run_words({"--host", "127.0.0.1", "--port", std::to_string(starting.port),
                                    "--timeout", "0.05", "ping", "--wait", "30"});
  fake_daemon_stop(starting);
  EXPECT_EQ(answered.status, kExitDone) << answered.err;
  EXPECT_EQ(answered.err, "");
  EXPECT_TRUE(answered.out.ends_with(" ms\n")) << answered.out;
  EXPECT_GE(starting.calls.size(), 4u);

  run_outcome never = run_words({"--host", "127.0.0.1", "--port",
                                 std::to_string(fake_closed_port()), "ping", "--wait", "0.1"});
  EXPECT_EQ(never.status, kExitNoAnswer);
  EXPECT_TRUE(one_line(never.err)) << never.err;
  EXPECT_NE(never.err.find("nothing listens"), std::string::npos) << never.err;
}

TEST(Run, HelpVersionListAndDescribe) {
  EXPECT_TRUE(run_words({"--help"}).out.starts_with("usage: wificonf"));
  EXPECT_TRUE(run_words({"--version"}).out.starts_with("wificonf "));
  EXPECT_TRUE(run_words({"describe", "0x010000a8"}).out.starts_with("0x010000A8  wlan_check_rpc"));
  run_outcome list = run_words({"list", "wlan_set_ssid"});
  EXPECT_EQ(list.status, kExitDone);
  EXPECT_TRUE(list.out.starts_with("22  wlan_set_ssid  ")) << list.out;
}

TEST(Run, EveryCommandIsOne) {
  for (const command_row* row : command_all()) {
    const std::string command = row->name;
    const std::string err = run_words({command, "no", "such", "words"}).err;
    EXPECT_EQ(err.find("no procedure '" + command + "'"), std::string::npos) << err;
  }
  EXPECT_EQ(command_all().size(), 8u);
}

// The message printed when the output is full, with a buffer of this size.
static std::string said_when_full(const std::vector<std::string>& words, size_t buffer) {
  FILE* full = fopen("/dev/full", "we");
  EXPECT_NE(full, nullptr);
  setvbuf(full, nullptr, _IOFBF, buffer);
  char text[200] = {};
  FILE* err = fmemopen(text, sizeof text, "w");
  EXPECT_EQ(run(words, full, err), kExitNoAnswer);
  fclose(full);
  fclose(err);
  return text;
}

TEST(Run, OutputThatCannotBeWrittenIsAnError) {
  const std::string said = "wificonf: cannot write the output: No space left on device";
  // The write fails at the end or, with the small buffer, earlier: the reason must be kept.
  for (const size_t buffer : {1 << 20, 64}) {
    EXPECT_EQ(said_when_full({"list"}, buffer), said + "\n") << buffer;
    EXPECT_EQ(said_when_full({"describe", "wlan_set_ssid"}, buffer), said + "\n") << buffer;
    fake_daemon daemon;
    fake_daemon_start(daemon, [](const byte_string& call) {
      return std::vector<fake_datagram>{{fake_reply(call, 0, {0})}};
    });
    const std::string port = std::to_string(daemon.port);
    EXPECT_EQ(
        said_when_full({"--host", "127.0.0.1", "--port", port, "wlan_set_ssid", "3", "x"}, buffer),
        said + "; the call was made all the same\n");
    fake_daemon_stop(daemon);
    EXPECT_EQ(daemon.calls.size(), 1u);
  }
}

TEST(Run, HelpBehindACommandOrAProcedureIsOfThat) {
  EXPECT_TRUE(run_words({"watch", "--help"}).out.starts_with("usage: wificonf [OPTION...] watch"));
  EXPECT_EQ(run_words({"wlan_set_ssid", "--help"}).out,
            run_words({"describe", "wlan_set_ssid"}).out);
  EXPECT_EQ(run_words({"wlan_set_sid", "-h"}).status, kExitUsage);
}

TEST(Run, OptionsThatACommandDoesNotHaveAreRefused) {
  const struct {
    std::vector<std::string> words;
    const char* said;
  } cases[] = {
      {{"--raw", "dump"}, "dump has no --raw"},
      {{"--raw", "watch", "0"}, "watch has no --raw"},
      {{"--raw", "top"}, "top has no --raw"},
      {{"--raw", "ping"}, "ping has no --raw"},
      {{"--json", "completion", "zsh"}, "completion has no --json"},
  };
  for (const auto& c : cases) {
    run_outcome outcome = run_words(c.words);
    EXPECT_EQ(outcome.status, kExitUsage);
    EXPECT_NE(outcome.err.find(c.said), std::string::npos) << outcome.err;
  }
}

TEST(Run, WhatIsNotReadyHasAStatusOfItsOwnAndNoValue) {
  run_outcome outcome =
      run_against(0, words({3, 3, 0, 0, 0, 0}), {"wlan_get_channel_statistics", "1"});
  EXPECT_EQ(outcome.status, kExitNotReady);
  EXPECT_EQ(outcome.out, "");
  EXPECT_NE(outcome.err.find("try again"), std::string::npos) << outcome.err;
}

TEST(Run, CommandInTheWrongPlaceIsNamed) {
  EXPECT_NE(run_words({"describe", "ping"}).err.find("a command: 'wificonf ping --help'"),
            std::string::npos);
}

TEST(Run, ZeroIsAFailureOfSettersThatAnswerAsTheUpdateDoes) {
  run_outcome failed =
      run_against(0, words({0}), {"--force", "wlan_set_wpa_encryption_modes", "17", "None"});
  EXPECT_EQ(failed.status, kExitFailureCode);
  EXPECT_NE(failed.err.find("failure, code 0"), std::string::npos) << failed.err;
  run_outcome written = run_against(0, words({1}), {"wlan_set_bss_hnc_service", "3", "7"});
  EXPECT_EQ(written.status, kExitDone);
  EXPECT_EQ(written.out, "ok (code 1: written or found)\n");
  EXPECT_EQ(run_against(0, words({0}), {"wlan_set_ssid", "3", "x"}).status, kExitDone);
}

TEST(Run, CommandsExplainTheirUsage) {
  const struct {
    std::vector<std::string> words;
    const char* error;
  } cases[] = {
      {{"watch"}, "watch takes [--every TIME] [--count N] [--force] PROCEDURE ARGUMENT..."},
      {{"watch", "wlan_get_channel"}, "usage: wificonf wlan_get_channel RADIO"},
      {{"watch", "nothing_like_it"}, "no procedure 'nothing_like_it'"},
      {{"watch", "wlan_get_channel", "1", "--every", "x"}, "--every takes a time"},
      {{"top", "x"}, "top takes [--every TIME] [--count N] [--sort KEY] [--bss LIST] only"},
      {{"dump", "x"}, "dump takes --redact only"},
      {{"completion"}, "completion takes bash or zsh"},
      {{"schema"}, "schema takes [--arguments] PROCEDURE, error or top"},
      {{"schema", "--arguments"}, "schema takes [--arguments] PROCEDURE, error or top"},
      {{"schema", "wlan_set_sssid"}, "did you mean wlan_set_ssid"},
  };
  for (const auto& c : cases) {
    run_outcome outcome = run_words(c.words);
    EXPECT_EQ(outcome.status, kExitUsage) << c.error;
    EXPECT_NE(outcome.err.find(c.error), std::string::npos) << outcome.err;
    EXPECT_TRUE(one_line(outcome.err)) << outcome.err;
  }
}

TEST(Run, TopAndDumpSayWhyThereIsNoAnswer) {
  for (const char* command : {"top", "dump"}) {
    run_outcome outcome = run_against(1, {}, {command});
    EXPECT_EQ(outcome.status, kExitNoAnswer);
    EXPECT_TRUE(one_line(outcome.err)) << outcome.err;
    EXPECT_EQ(outcome.calls.size(), 1u) << "one is enough";
  }
}
