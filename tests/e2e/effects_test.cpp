#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/daemon.h"
#include "support/files.h"
#include "support/gateway.h"
#include "support/wire.h"

// What the box's journal tells about what the daemon does. The drivers are not loaded at the start,
// and the controller's processes run.

using json = nlohmann::json;

static void quiet() {
  ASSERT_EQ(run("gwbox wait --timeout 10 quiet 2>&1"), "");
}

static void call_and_wait(const std::string& words) {
  ASSERT_EQ(run("wificonf " + words + " 2>&1"), "ok\n") << words;
  quiet();
}

static void bring_up() {
  start_daemon();
  call_and_wait("wlan_load 0");
  call_and_wait("wlan_init");
}

static int last_sequence() {
  const std::string line = run("tail -n 1 /run/gwbox/journal.jsonl");
  return line.empty() ? 0 : json::parse(line, nullptr, false).value("seq", 0);
}

// The journal's lines after that one that have all these members.
static std::vector<json> lines_after(int sequence, const json& members) {
  std::vector<json> found;
  std::ifstream journal("/run/gwbox/journal.jsonl");
  for (std::string text; std::getline(journal, text);) {
    const json line = json::parse(text, nullptr, false);
    if (line.value("seq", 0) <= sequence) continue;
    const auto& wanted = members.items();
    if (std::all_of(wanted.begin(), wanted.end(), [&](const auto& member) {
          return line.contains(member.key()) && line[member.key()] == member.value();
        })) {
      found.push_back(line);
    }
  }
  return found;
}

static size_t count_after(int sequence, const json& members) {
  return lines_after(sequence, members).size();
}

TEST(Effects, StoredSettingIsToldWithItsCallAndBothValues) {
  start_daemon();
  const int before = last_sequence();
  ASSERT_EQ(run("wificonf wlan_set_ssid 1 attic"), "ok\n");
  quiet();
  const auto lines = lines_after(before, {{"effect", "key"}});
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0]["file"], kProfile24);
  EXPECT_EQ(lines[0]["key"], "SSID1");
  EXPECT_EQ(lines[0]["before"], "HomeGateway");
  EXPECT_EQ(lines[0]["after"], "attic");
  EXPECT_EQ(lines[0]["comm"], "wificonfd");
  EXPECT_EQ(lines[0]["call"], "wlan_set_ssid");
  EXPECT_TRUE(lines[0].contains("xid"));
  EXPECT_FALSE(lines[0].contains("secret"));
  EXPECT_FALSE(lines[0].contains("queued"));
  EXPECT_EQ(count_after(before, {{"effect", "file"}, {"path", "/tmp/mt76xx_24.dat.hnc"}}), 1u);
}

TEST(Effects, FieldOfAListAndASecretAreMarked) {
  start_daemon();
  const int before = last_sequence();
  ASSERT_EQ(run("wificonf wlan_set_key_passphrase 1 1 'not for you' 2>&1"), "ok\n");
  ASSERT_EQ(run("wificonf wlan_set_ssid_advertisement_enabled 2 0 2>&1"), "ok\n");
  quiet();
  const auto secrets = lines_after(before, {{"secret", true}});
  ASSERT_EQ(secrets.size(), 1u);
  EXPECT_EQ(secrets[0]["key"], "WPAPSK1");
  const auto fields = lines_after(before, {{"key", "HideSSID"}});
  ASSERT_EQ(fields.size(), 1u);
  EXPECT_EQ(fields[0]["field"], "1");
  EXPECT_EQ(fields[0]["before"], "0");
  EXPECT_EQ(fields[0]["after"], "1");
}

TEST(Effects, SettingThatIsNotStoredIsNotTold) {
  start_daemon();
  const int before = last_sequence();
  EXPECT_NE(run("wificonf --force wlan_set_ssid 99 attic 2>&1"), "ok\n");
  ASSERT_EQ(run("wificonf wlan_set_ssid 1 HomeGateway"), "ok\n") << "as it is";
  quiet();
  EXPECT_EQ(count_after(before, {{"effect", "key"}}), 0u);
}

TEST(Effects, WhoeverWritesAProfileIsNamed) {
  const int before = last_sequence();
  EXPECT_EQ(run("sed -i 's/^SSID1=.*/SSID1=cellar/' /tmp/mt76xx_24.dat"), "");
  EXPECT_EQ(run("echo NewKey=1 >> /tmp/mt76xx_24.dat"), "");
  EXPECT_EQ(run("gwbox wait journal effect=key key=NewKey | wc -l"), "1\n");
  const auto replaced = lines_after(before, {{"key", "SSID1"}});
  ASSERT_EQ(replaced.size(), 1u);
  EXPECT_EQ(replaced[0]["comm"], "sed");
  EXPECT_FALSE(replaced[0].contains("call"));
  const auto added = lines_after(before, {{"key", "NewKey"}});
  ASSERT_EQ(added.size(), 1u);
  EXPECT_FALSE(added[0].contains("before"));
  EXPECT_EQ(added[0]["after"], "1");
}

TEST(Effects, DriverRequestNamesItsCall) {
  bring_up();
  const int before = last_sequence();
  ASSERT_EQ(run("wificonf wlan_set_led_enable 1 2>&1"), "ok\n");
  quiet();
  const auto requests = lines_after(before, {{"name", "set"}});
  ASSERT_EQ(requests.size(), 2u);
  for (const json& request : requests)
    EXPECT_EQ(request["call"], "wlan_set_led_enable");
}

TEST(Effects, RequestOfACommandNamesTheCallThatRanTheCommand) {
  bring_up();
  const int before = last_sequence();
  ASSERT_EQ(run("wificonf wlan_set_channel_utilization_enable 1 1 2>&1"), "ok\n");
  quiet();
  const auto requests = lines_after(before, {{"name", "set"}});
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0]["comm"], "iwpriv");
  EXPECT_EQ(requests[0]["call"], "wlan_set_channel_utilization_enable");
  const auto commands = lines_after(before, {{"effect", "command"}});
  ASSERT_EQ(commands.size(), 1u);
  EXPECT_EQ(commands[0]["line"], "iwpriv ra0 set ApEnableRadioChStats=1");
  EXPECT_EQ(commands[0]["status"], 0);
  EXPECT_EQ(commands[0]["comm"], "wificonfd");
  EXPECT_EQ(commands[0]["call"], "wlan_set_channel_utilization_enable");
}

// Takes longer than other tests: three requests, each a second later.
TEST(Effects, RestartTellsWhatItDoesToItsRadioAloneAndNamesItsCall) {
  bring_up();
  const int before = last_sequence();
  call_and_wait("wlan_restart 1");
  for (const char* what : {"down", "up"}) {
    for (const char* interface : {"ra0", "ra1"}) {
      const auto lines =
          lines_after(before, {{"effect", "interface"}, {"what", what}, {"interface", interface}});
      ASSERT_EQ(lines.size(), 1u) << interface << " " << what;
      EXPECT_EQ(lines[0]["call"], "wlan_restart");
      EXPECT_EQ(lines[0]["queued"], true);
    }
    EXPECT_EQ(count_after(before, {{"effect", "interface"}, {"interface", "ra8"}}), 0u);
  }
  EXPECT_EQ(count_after(before, {{"effect", "file"}, {"path", "/tmp/wifi_restart"}}), 1u);
  const auto stopped = lines_after(before, {{"effect", "beacon"}, {"what", "stops"}});
  ASSERT_EQ(stopped.size(), 2u) << "ra0 and ra1";
  EXPECT_EQ(stopped[0]["call"], "wlan_restart");
  const auto begun = lines_after(before, {{"effect", "beacon"}, {"what", "begins"}});
  ASSERT_EQ(begun.size(), 2u);
  EXPECT_EQ(begun[0]["ssid"], "HomeGateway");
  EXPECT_EQ(begun[0]["call"], "wlan_restart");
  const auto station = lines_after(before, {{"effect", "station"}});
  ASSERT_FALSE(station.empty());
  EXPECT_EQ(station[0]["why"], "off air");
  EXPECT_EQ(station[0]["mac"], "02:00:5e:00:00:01");
  EXPECT_EQ(station[0]["call"], "wlan_restart");
  const auto ended = lines_after(before, {{"effect", "process"}, {"what", "ended"}});
  ASSERT_EQ(ended.size(), 1u);
  EXPECT_EQ(ended[0]["companion"], "mtk_ctrl");
  const auto signals = lines_after(before, {{"effect", "process"}, {"companion", "HncInit"}});
  ASSERT_EQ(signals.size(), 2u);
  EXPECT_EQ(signals[0]["signal"], "USR2");
  EXPECT_EQ(signals[1]["signal"], "USR1");
  EXPECT_EQ(signals[1]["call"], "wlan_restart");
}

// Takes longer than other tests: two requests, each a second later.
TEST(Effects, SecondRequestOfTheQueueNamesTheSecondCall) {
  start_daemon();
  ASSERT_EQ(run("wificonf wlan_load 0"), "ok\n");
  ASSERT_EQ(run("wificonf wlan_init"), "ok\n");
  quiet();
  const auto modules = lines_after(0, {{"name", "init_module"}});
  ASSERT_FALSE(modules.empty());
  for (const json& module : modules)
    EXPECT_EQ(module["call"], "wlan_load");
  const auto interfaces = lines_after(0, {{"effect", "interface"}, {"interface", "ra0"}});
  ASSERT_EQ(interfaces.size(), 1u);
  EXPECT_EQ(interfaces[0]["call"], "wlan_init");
}

TEST(Effects, MessageToTheControllerIsToldWithItsFields) {
  write_file("/nvram/hnc_enable", "");
  start_daemon();
  const int before = last_sequence();
  ASSERT_EQ(run("wificonf hnc_set_acmenable 1 1 2>&1"), "ok\n");
  ASSERT_NE(run("gwbox wait --timeout 5 journal effect=datagram to=hnc"), "");
  const auto lines = lines_after(before, {{"effect", "datagram"}});
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0]["type"], "set");
  EXPECT_EQ(lines[0]["value"], "1");
  EXPECT_EQ(lines[0]["call"], "hnc_set_acmenable");
}

TEST(Wait, QuietIsNotWhileTheQueueHoldsARequest) {
  start_daemon();
  ASSERT_EQ(run("wificonf wlan_load 0"), "ok\n");
  const std::string missing = run("gwbox wait --timeout 0 quiet 2>&1; echo $?");
  EXPECT_NE(missing.find("the daemon is at work"), std::string::npos) << missing;
  EXPECT_TRUE(missing.ends_with("\n1\n")) << missing;
  quiet();
  EXPECT_EQ(interfaces(), all_interfaces());
}

TEST(Wait, QuietIsNotWhileACallIsWorkedOn) {
  start_daemon();
  ASSERT_EQ(run("gwbox fail set delay=1000 2>&1"), "");
  const std::string command =
      "wificonf wlan_set_led_enable 1 & gwbox wait journal name=set >/dev/null & "
      "until gwbox wait --timeout 0 quiet 2>&1 | grep holds; do :; done; wait";
  EXPECT_NE(run(command).find("a failure that was set holds back a request"), std::string::npos);
  quiet();
}

TEST(Wait, WrongConditionsAreRefused) {
  for (const char* words :
       {"quiet now", "on", "on eth0", "off ra16", "station", "station 02:00", "gone you", "nothing",
        "journal", "journal effect", "journal =x", "--timeout -1 quiet", "--timeout x quiet"}) {
    const std::string answer = run("gwbox wait " + std::string(words) + " 2>&1; echo $?");
    EXPECT_TRUE(answer.ends_with("\n2\n")) << words << ": " << answer;
  }
}
