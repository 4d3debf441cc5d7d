// The box's time: paused, advanced, at another speed; and what follows it.
#include "base/clock.h"

#include <gtest/gtest.h>
#include <unistd.h>
#include <cstring>

#include "inside.h"
#include "model.h"
#include "watch.h"

using nlohmann::json;

TEST(Clock, KeepsWhatHasPassedWhenItsSpeedChanges) {
  box_clock clock = {1000, 0, 2, false};
  EXPECT_EQ(clock_box_us(clock, 1500), 1000);
  clock_set_speed(clock, 10, 1000, 1500);
  EXPECT_EQ(clock_box_us(clock, 1500), 1000);
  EXPECT_EQ(clock_box_us(clock, 1600), 2000);
  // The new speed counts from a box time 50 us ago.
  clock_set_speed(clock, 1, 1500, 1600);
  EXPECT_EQ(clock_box_us(clock, 1600), 1550);
}

TEST(Clock, StandsWhilePausedOrAtSpeedZero) {
  box_clock clock = {0, 0, 3, false};
  clock_pause(clock, true, 100);
  EXPECT_EQ(clock_box_us(clock, 5000), 300);
  clock_set_speed(clock, 5, 300, 6000);
  EXPECT_EQ(clock_box_us(clock, 7000), 300) << "another speed does not resume it";
  clock_pause(clock, false, 7000);
  EXPECT_EQ(clock_box_us(clock, 7010), 350);
  clock_set_speed(clock, 0, 350, 7010);
  EXPECT_EQ(clock_box_us(clock, 9000), 350);
  clock_set_speed(clock, 1, 350, 9000);
  EXPECT_EQ(clock_box_us(clock, 9001), 351);
}

TEST(Clock, AsALine) {
  box_clock clock = {123456789012, 98765, 0.1, true}, again = {};
  ASSERT_TRUE(clock_parse(clock_text(clock), again));
  EXPECT_EQ(again.start_us, clock.start_us);
  EXPECT_EQ(again.box_us, clock.box_us);
  EXPECT_EQ(again.speed, clock.speed);
  EXPECT_TRUE(again.paused);
  EXPECT_FALSE(clock_parse("", again));
}

// The model's clock began at machine time 0, so 1 s and 20 s are long past.
TEST(Clock, AnEventThatChangesTheSpeedCountsFromItsOwnTime) {
  driver_state state;
  start_model(state, R"({"speed": 1000, "events": [
    {"at": 1, "set": "speed 2"}, {"at": 20, "set": "speed 3"}]})");
  driver_advance(state, 30 * kSecond);
  EXPECT_EQ(state.now_us, 1 * kSecond) << "what came later is at another time now";
  EXPECT_EQ(clock_box_us(state.clock, 1000), 1 * kSecond);
  EXPECT_EQ(clock_box_us(state.clock, 1000 + kSecond), 3 * kSecond);
  driver_advance(state, 30 * kSecond);
  EXPECT_EQ(state.now_us, 20 * kSecond);
  EXPECT_EQ(state.clock.speed, 3);
}

static double time_now() {
  return status_now()["time"];
}

static void expect_done(const std::string& command) {
  run_result result = run(command);
  EXPECT_EQ(result.status, 0) << command << ": " << result.output;
}

static uint32_t counter_now() {
  uint32_t counters[14] = {};
  request_frame frame = make_frame("ra0", counters, sizeof counters, 0x067D);
  EXPECT_EQ(request(0x8BE1, frame), 0);
  return counters[5];
}

TEST(Clock, APausedBoxStandsUntilItIsResumedOrMovedOn) {
  expect_done("gwbox pause");
  double paused = time_now();
  EXPECT_EQ(status_now()["paused"], true);
  EXPECT_NE(run("gwbox status").output.find("at speed 1, paused\n"), std::string::npos);
  expect_done("gwbox pause");
  expect_done("gwbox advance 0.25");
  EXPECT_DOUBLE_EQ(time_now(), paused + 0.25);
  expect_done("gwbox set speed 1000");
  EXPECT_DOUBLE_EQ(time_now(), paused + 0.25);
  expect_done("gwbox resume");
  EXPECT_EQ(status_now()["paused"], false);
  EXPECT_TRUE(wait_until([&] { return time_now() > paused + 10; }));
}

TEST(Clock, SpeedZeroCannotBeResumed) {
  expect_done("gwbox set speed 0");
  double stopped = time_now();
  run_result refused = run("gwbox resume");
  EXPECT_EQ(refused.status, 2);
  EXPECT_NE(refused.output.find("gwbox set speed 1"), std::string::npos) << refused.output;
  EXPECT_EQ(time_now(), stopped);
  EXPECT_EQ(status_now()["speed"], 0);
}

TEST(Clock, WrongNumbersAreUsageErrors) {
  for (const char* words : {"advance", "advance -1", "advance x", "advance nan", "advance 1e10",
                            "advance 1 2", "set speed", "set speed -1", "set speed x",
                            "set speed 100001", "set speed 1 2", "pause 1", "resume now"}) {
    run_result wrong = run(std::string("gwbox ") + words);
    EXPECT_EQ(wrong.status, 2) << words << wrong.output;
    EXPECT_NE(wrong.output, "") << words;
  }
}

TEST(Clock, CountersAndStationsFollowAtOnce) {
  expect_done("gwbox pause && ip link set ra0 up");
  expect_done("gwbox set bss 1 per_second=[0,0,0,0,0,10,0,0,0,0,0,0,0,0]");
  double soon = time_now() + 50;
  expect_done("gwbox set station 02:00:5e:00:00:77 bss=1 appears=" + std::to_string(soon));
  uint32_t before = counter_now();
  EXPECT_EQ(run("gwbox status | grep -c '00:77 ra0'").output, "0\n");
  expect_done("gwbox advance 100");
  EXPECT_EQ(counter_now(), before + 1000);
  EXPECT_EQ(run("gwbox status | grep -c '00:77 ra0 .* 50 s'").output, "1\n");
}

TEST(Clock, BlacklistsFollowAtOnce) {
  expect_done("gwbox pause && ip link set ra0 up");
  std::string record(
      "\x02\0\x5e\0\0\1\0\0"
      "\0\0\0\0"
      "\2\0\0\0"
      "\36\0\0\0",
      20);
  request_frame frame =
      make_frame("ra0", record.data(), static_cast<uint16_t>(record.size()), 0x86B1);
  ASSERT_EQ(request(0x8BE1, frame), 0);
  ASSERT_EQ(status_now()["blacklist"].size(), 1u);
  EXPECT_EQ(status_now()["blacklist"][0]["seconds_left"], 30);
  expect_done("gwbox advance 10");
  EXPECT_EQ(status_now()["blacklist"][0]["seconds_left"], 20);
  EXPECT_EQ(run("gwbox status | grep -c '00:01 ra0'").output, "0\n");
  expect_done("gwbox advance 20");
  EXPECT_EQ(status_now()["blacklist"], json::array());
  EXPECT_EQ(run("gwbox status | grep -c '00:01 ra0'").output, "1\n");
}

TEST(Clock, WpsSessionsFollowAtOnce) {
  expect_done("gwbox pause && ip link set ra0 up");
  ASSERT_EQ(set_text("ra0", "WscConfMode=7"), 0);
  ASSERT_EQ(set_text("ra0", "WscMode=2"), 0);
  ASSERT_EQ(set_text("ra0", "WscGetConf=1"), 0);
  EXPECT_EQ(status_now()["radios"]["ra0"]["wps"]["running"], true);
  expect_done("gwbox advance 7.9");
  EXPECT_EQ(status_now()["radios"]["ra0"]["wps"]["running"], true);
  expect_done("gwbox advance 0.1");
  EXPECT_EQ(status_now()["radios"]["ra0"]["wps"]["running"], false);
  EXPECT_EQ(status_now()["radios"]["ra0"]["wps"]["status"], 34);
}

TEST(Clock, CompanionsFollow) {
  expect_done("gwbox pause");
  expect_done("gwbox set companion bndstrg_1.marker_after 1000");
  ASSERT_EQ(run("bndstrg_1 </dev/null >/dev/null 2>&1 &").status, 0);
  ASSERT_TRUE(wait_until([] { return run("pgrep -x bndstrg_1").status == 0; }));
  expect_done("gwbox set companion radstat.ra0.tx 7 && gwbox set companion radstat.ra0.tx_rate 10");
  ASSERT_EQ(run("ln -sT /bin/radstat /var/run/radstat0; /var/run/radstat0 -i ra0 -r 5 -m 2 -R 0 "
                "</dev/null >/dev/null 2>&1 &")
                .status,
            0);
  int fd = connect_datagram("/var/run/radstat/ra0");
  auto sent = [&] {
    std::string reply = ask(fd, std::string("result", 7));
    int32_t packets = -1;
    if (reply.size() == 192) memcpy(&packets, reply.data() + 32, sizeof packets);
    return packets;
  };
  int32_t before = sent();
  EXPECT_EQ(before, 7 + static_cast<int32_t>(time_now() * 10));
  EXPECT_NE(access("/tmp/mtk_bnd_file", F_OK), 0);
  expect_done("gwbox advance 1000");
  EXPECT_EQ(sent(), before + 10000);
  EXPECT_TRUE(wait_until([] { return access("/tmp/mtk_bnd_file", F_OK) == 0; }));
  close(fd);
}

TEST(Clock, TheJournalsTimesAreThoseOfTheRealClock) {
  ASSERT_EQ(set_text("ra0", "A=1"), 0);
  expect_done("gwbox advance 5000 && gwbox pause");
  ASSERT_EQ(set_text("ra0", "A=2"), 0);
  auto entries = journal_entries();
  ASSERT_EQ(entries.size(), 2u);
  EXPECT_LT(entries[0]["time"], entries[1]["time"]);
  EXPECT_LT(entries[1]["time"], 1000);
}
