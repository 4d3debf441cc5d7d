// The companion processes: everyday tools find, signal and end them, and they answer as a
// gateway's software expects.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/socket.h>
#include <time.h>
#include <unistd.h>
#include <cstring>

#include "inside.h"
#include "watch.h"

static bool runs(const std::string& name) {
  return run("pgrep -x " + name).status == 0;
}

static void start(const std::string& command, const std::string& name) {
  ASSERT_EQ(run(command + " </dev/null >/dev/null 2>&1 &").status, 0);
  ASSERT_TRUE(wait_until([&] { return runs(name); })) << command;
}

static int32_t number_at(const std::string& bytes, size_t at) {
  int32_t number = 0;
  EXPECT_LE(at + sizeof number, bytes.size());
  if (at + sizeof number <= bytes.size()) memcpy(&number, bytes.data() + at, sizeof number);
  return number;
}

static const std::string kResult("result", 7);

TEST(Companion, IsFoundAndEndedByItsName) {
  start("wapp -d2 -v2 -f /etc/wapp_ap.conf", "wapp");
  // The shell that runs this has the name in its own command line, so it ends as well.
  static_cast<void>(run("/bin/kill $(pgrep -f wapp | awk '{print $1}')"));
  EXPECT_TRUE(wait_until([] { return !runs("wapp"); }));
  start("/sbin/rtdot1xd", "rtdot1xd");
  EXPECT_EQ(run("pgrep -l rtdot1xd | grep -c rtdot1xd").output, "1\n");
  EXPECT_EQ(run("/usr/bin/killall -9 rtdot1xd").status, 0);
  EXPECT_TRUE(wait_until([] { return !runs("rtdot1xd"); }));
  start("/sbin/rtinicapd", "rtinicapd");
  EXPECT_EQ(run("killall rtinicapd").status, 0);
  EXPECT_TRUE(wait_until([] { return !runs("rtinicapd"); }));
}

TEST(Companion, UnderAnotherNameItSaysWhatItIs) {
  run_result wrong = run("gwbox-companion");
  EXPECT_EQ(wrong.status, 2);
  EXPECT_NE(wrong.output.find("mtk_ctrl"), std::string::npos) << wrong.output;
}

TEST(Bndstrg, MakesItsMarkerWhenItIsTime) {
  tell_companions({{"bndstrg_1", {{"marker_after", 0.3}}}});
  start("bndstrg_1", "bndstrg_1");
  EXPECT_NE(access("/tmp/mtk_bnd_file", F_OK), 0);
  EXPECT_TRUE(wait_until([] { return access("/tmp/mtk_bnd_file", F_OK) == 0; }));
  EXPECT_TRUE(runs("bndstrg_1"));
}

TEST(Bndstrg, NeverWhenToldSo) {
  tell_companions({{"bndstrg_1", {{"marker_after", -1}}}});
  start("bndstrg_1", "bndstrg_1");
  EXPECT_EQ(run("killall bndstrg_1").status, 0);
  EXPECT_TRUE(wait_until([] { return !runs("bndstrg_1"); }));
  EXPECT_NE(access("/tmp/mtk_bnd_file", F_OK), 0);
}

TEST(Dcs, RecordsTextsAndLevels) {
  start("dcs", "dcs");
  int fd = connect_datagram("/var/run/dcsD");
  std::string text(268, '\0'), level(268, '\0'), bare(268, '\0');
  text[0] = 1;
  text[8] = 20;
  text.replace(12, 19, "DCSSerChSampTime=30");
  level[0] = 3;
  level[12] = 5;
  bare.replace(0, 19, "DCSRSSIWeight=1,2,3");
  for (const std::string& message : {text, level, bare})
    ASSERT_EQ(send(fd, message.data(), message.size(), 0), 268);
  auto lines = await_records("/run/gwbox/dcs.jsonl", 3);
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[0]["type"], 1);
  EXPECT_EQ(lines[0]["length"], 20);
  EXPECT_EQ(lines[0]["text"], "DCSSerChSampTime=30");
  EXPECT_EQ(lines[0]["size"], 268);
  EXPECT_EQ(lines[1]["type"], 3);
  EXPECT_EQ(lines[1]["level"], 5);
  EXPECT_EQ(lines[2]["bare_text"], "DCSRSSIWeight=1,2,3");
  EXPECT_TRUE(lines[2]["hex"].get<std::string>().starts_with("444353525353495765"));
  close(fd);
}

TEST(Dcs, LeavesNoSocketBehindAndTakesOverOneLeftByKill) {
  start("dcs", "dcs");
  close(connect_datagram("/var/run/dcsD"));
  ASSERT_EQ(run("killall -9 dcs").status, 0);
  ASSERT_TRUE(wait_until([] { return !runs("dcs"); }));
  start("dcs", "dcs");
  close(connect_datagram("/var/run/dcsD"));
  ASSERT_EQ(run("killall dcs").status, 0);
  ASSERT_TRUE(wait_until([] { return !runs("dcs"); }));
  EXPECT_NE(access("/var/run/dcsD", F_OK), 0);
}

static std::string events_request(uint32_t radio) {
  uint32_t words[] = {1, 0, 0, radio};
  return std::string(reinterpret_cast<const char*>(words), sizeof words);
}

TEST(MtkCtrl, AnswersWithTheEventsOfTheRadio) {
  tell_companions({{"mtk_ctrl",
                    {{"events",
                      {{{"type", 2}, {"code", -7}, {"mac", "02:0c:43:aa:bb:cc"}, {"age", 100}},
                       {{"type", 3}, {"code", 1}, {"radio", 8}}}}}}});
  start("mtk_ctrl", "mtk_ctrl");
  int fd = connect_datagram("/var/run/mtk_ctrl_path");
  std::string reply = ask(fd, events_request(0));
  ASSERT_EQ(reply.size(), 404u);
  EXPECT_EQ(number_at(reply, 0), 0);
  EXPECT_EQ(reply[396], 1);
  EXPECT_EQ(reply[12], 2);
  EXPECT_EQ(reply[13], -7);
  EXPECT_EQ(reply.substr(14, 6), "\x02\x0c\x43\xaa\xbb\xcc");
  EXPECT_NEAR(number_at(reply, 20), time(nullptr) - 100, 2);
  EXPECT_EQ(ask(fd, events_request(8))[396], 2);
  EXPECT_EQ(records("/run/gwbox/mtk_ctrl.jsonl")[1]["radio"], 8);
  close(fd);
}

TEST(MtkCtrl, ChangesCountFromTheNextRequestOn) {
  start("mtk_ctrl", "mtk_ctrl");
  int fd = connect_datagram("/var/run/mtk_ctrl_path");
  EXPECT_EQ(ask(fd, events_request(0))[396], 0);
  std::vector<nlohmann::json> events(40, {{"type", 1}});
  tell_companions({{"mtk_ctrl", {{"events", events}, {"status", 4}}}});
  std::string reply = ask(fd, events_request(0));
  EXPECT_EQ(number_at(reply, 0), 4);
  EXPECT_EQ(reply[396], 40);
  EXPECT_EQ(reply[12 + 31 * 12], 1);
  tell_companions({{"mtk_ctrl", {{"behaviour", "short"}}}});
  EXPECT_EQ(ask(fd, events_request(0)).size(), 40u);
  tell_companions({{"mtk_ctrl", {{"behaviour", "silent"}}}});
  EXPECT_EQ(ask(fd, events_request(0), 0.1), "");
  close(fd);
}

static int start_radstat(int n) {
  std::string number = std::to_string(n), link = "/var/run/radstat" + number;
  EXPECT_EQ(run("ln -s -T /bin/radstat " + link).status, 0);
  start(link + " -i ra" + number + " -r 5 -m 2 -R 0", "radstat" + number);
  return connect_datagram("/var/run/radstat/ra" + number);
}

TEST(Radstat, EachRadioHasAProcessOfItsOwnName) {
  close(start_radstat(0));
  await_records("/run/gwbox/radstat.jsonl", 1);
  close(start_radstat(8));
  auto lines = await_records("/run/gwbox/radstat.jsonl", 2);
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[1]["name"], "radstat8");
  EXPECT_EQ(lines[1]["interface"], "ra8");
  EXPECT_EQ(lines[1]["r"], "5");
  EXPECT_EQ(lines[1]["m"], "2");
  EXPECT_EQ(run("killall radstat0").status, 0);
  EXPECT_TRUE(wait_until([] { return !runs("radstat0"); }));
  EXPECT_TRUE(runs("radstat8"));
}

TEST(Radstat, IsNamedByTheStatusAndKeepsTheSocketOfItsSuccessor) {
  close(start_radstat(8));
  EXPECT_EQ(run("gwbox status --json | jq -c '[.companions[].name]'").output, "[\"radstat8\"]\n");
  std::string pid = run("pgrep -x radstat8").output;
  ASSERT_EQ(run("/var/run/radstat8 -i ra8 -r 1 -m 1 -R 0 >/dev/null 2>&1 &").status, 0);
  await_records("/run/gwbox/radstat.jsonl", 2);
  ASSERT_EQ(run("kill " + pid).status, 0);
  ASSERT_TRUE(wait_until([] { return run("pgrep -xc radstat8").output == "1\n"; }));
  int fd = connect_datagram("/var/run/radstat/ra8");
  EXPECT_EQ(ask(fd, kResult).size(), 192u);
  close(fd);
}

TEST(Radstat, NumbersMoveWithTime) {
  int fd = start_radstat(0);
  std::string first = ask(fd, kResult);
  ASSERT_EQ(first.size(), 192u);
  EXPECT_GT(number_at(first, 32), 0);
  EXPECT_LT(number_at(first, 24), -50);
  EXPECT_TRUE(wait_until([&] { return number_at(ask(fd, kResult), 32) > number_at(first, 32); }));
  EXPECT_EQ(ask(fd, "other", 0.05), "");
  close(fd);
}

TEST(Radstat, SaysWhatItIsTold) {
  int fd = start_radstat(8);
  tell_companions({{"radstat",
                    {{"ra8",
                      {{"cst", 41},
                       {"ap_act", 13},
                       {"busy", 32},
                       {"nf_max", -84},
                       {"nf_min", -95},
                       {"nf_med", -91},
                       {"nf_avg", -90},
                       {"retry", 3},
                       {"tx", -5},
                       {"rx", 2000},
                       {"rssi", {-71, -72}}}}}}});
  std::string reply = ask(fd, kResult);
  ASSERT_EQ(reply.size(), 192u);
  const int32_t expected[] = {41, 13, 32, -84, -95, -91, -90, 3, -5, 2000, -71, -72, 0};
  for (size_t i = 0; i < sizeof expected / sizeof *expected; ++i)
    EXPECT_EQ(number_at(reply, 4 * i), expected[i]) << i;
  close(fd);
}

TEST(Radstat, Misbehaves) {
  int fd = start_radstat(0);
  auto behave = [](const char* how) {
    tell_companions({{"radstat", {{"ra0", {{"behaviour", how}}}}}});
  };
  behave("zeros");
  EXPECT_EQ(ask(fd, kResult), std::string(192, '\0'));
  behave("short");
  EXPECT_EQ(ask(fd, kResult).size(), 40u);
  behave("silent");
  EXPECT_EQ(ask(fd, kResult, 0.1), "");
  behave("late");
  EXPECT_EQ(ask(fd, kResult, 0.1), "");
  EXPECT_EQ(run("killall radstat0").status, 0);
  EXPECT_TRUE(wait_until([] { return !runs("radstat0"); })) << "a late one ends all the same";
  close(fd);
}

TEST(HncInit, RecordsBothSignals) {
  start("HncInit", "HncInit");
  // Until HncInit blocks the signals, they would end it.
  ASSERT_TRUE(wait_until([] {
    return run("grep SigBlk /proc/$(pgrep -x HncInit)/status").output.find("a03") !=
           std::string::npos;
  }));
  ASSERT_EQ(run("killall -USR2 HncInit").status, 0);
  await_records("/run/gwbox/hncinit.jsonl", 1);
  ASSERT_EQ(run("killall -USR1 HncInit").status, 0);
  auto lines = await_records("/run/gwbox/hncinit.jsonl", 2);
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0]["signal"], "USR2");
  EXPECT_EQ(lines[0]["wifi"], "down");
  EXPECT_EQ(lines[1]["signal"], "USR1");
  EXPECT_LE(lines[0]["time"], lines[1]["time"]);
}
