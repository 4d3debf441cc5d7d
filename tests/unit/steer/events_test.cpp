#include "steer/events.h"

#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <climits>

#include "datagram_daemon.h"
#include "unit_support.h"

static const std::string kEventDaemon = "/var/run/mtk_ctrl_path";
static const std::string kReported = rev_error_prefix("wlan_getSteerEventReport");

// An event in the daemon's reply.
static std::string event(int type, int code, const std::string& mac, int64_t time) {
  std::string bytes;
  bytes += static_cast<char>(type);
  bytes += static_cast<char>(code);
  return bytes + mac + little_endian({time});
}

// The daemon's reply of 404 bytes.
static std::string reply_of(int64_t status, const std::vector<std::string>& events, int count) {
  std::string reply = little_endian({status, 0x5A5A5A5A, 0x5A5A5A5A});
  for (const std::string& one : events)
    reply += one;
  reply.resize(396, '\0');
  reply += static_cast<char>(count);
  reply.resize(404, '\x5A');
  return reply;
}

// An event in the report: 36 bytes.
static std::string reported(int64_t type, const std::string& mac, int64_t time, std::string code) {
  code.resize(8, '\0');
  return little_endian({type}) + mac + std::string(3, '\0') + little_endian({time}) + code;
}

static std::string report_of(const std::vector<std::string>& events, int64_t count) {
  std::string report;
  for (const std::string& one : events)
    report += one;
  report.resize(1152, '\0');
  return report + little_endian({count});
}

namespace {

struct outcome {
  int status;
  std::string report;
  std::string errors;
};

}  // namespace

// Asks for a radio's report. The buffer is filled with zeros and followed by dots.
static outcome ask(int radio) {
  outcome result = {99, std::string(1156, '\0') + "....", ""};
  result.errors = errors_of([&] {
    result.status = wlan_getSteerEventReport(
        radio, reinterpret_cast<steer_event_report*>(result.report.data()));
  });
  EXPECT_EQ(result.report.substr(1156), "....");
  result.report.resize(1156);
  return result;
}

static outcome ask_daemon(const std::string& reply) {
  datagram_daemon daemon;
  start_datagram_daemon(kEventDaemon, {reply}, &daemon);
  const outcome result = ask(1);
  EXPECT_EQ(end_datagram_daemon(&daemon).size(), 1u);
  EXPECT_FALSE(exists("/tmp/rad_ctrl_" + std::to_string(getpid())));
  return result;
}

TEST(SteerEvents, RequestNamesTheRadio) {
  // Command 1, eight zero bytes, and the index minus one.
  const std::pair<int, int64_t> cases[] = {
      {1, 0}, {9, 8}, {0, -1}, {17, 16}, {INT_MAX, 0x7FFFFFFE}, {INT_MIN, 0x7FFFFFFF}};
  for (const auto& [index, number] : cases) {
    datagram_daemon daemon;
    start_datagram_daemon(kEventDaemon, {reply_of(0, {}, 0)}, &daemon);
    EXPECT_EQ(ask(index).status, 0);
    EXPECT_EQ(end_datagram_daemon(&daemon),
              std::vector<std::string>{little_endian({1, 0, 0, number})})
        << index;
  }
}

TEST(SteerEvents, EventsAreConverted) {
  const outcome result =
      ask_daemon(reply_of(0,
                          {event(2, -7, "\x02\x0c\x43\xaa\xbb\xcc", 0x65000001),
                           event(255, -128, std::string(6, '\xff'), 0xFFFFFFFF),
                           event(0, 127, std::string(6, '\0'), 0), event(9, 9, "beyond", 9)},
                          3));
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.report, report_of({reported(2, "02:0c:43:aa:bb:cc", 0x65000001, "-7"),
                                      reported(255, "ff:ff:ff:ff:ff:ff", 0xFFFFFFFF, "-128"),
                                      reported(0, "00:00:00:00:00:00", 0, "127")},
                                     3));
  EXPECT_EQ(result.errors, kReported + "rcv reply_len = 404, event_data->count = 3\n");
}

TEST(SteerEvents, NoEventsAreAnEmptyReportWithItsLine) {
  const outcome result = ask_daemon(reply_of(0, {}, 0));
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.report, std::string(1156, '\0'));
  EXPECT_EQ(result.errors, kReported + "rcv reply_len = 404, event_data->count = 0\n");
}

TEST(SteerEvents, CountAboveTheRoomIsKeptWithThirtyTwoEvents) {
  const std::string mac("\x02\0\0\0\0\x01", 6);
  for (const int count : {32, 33, 40, 255}) {
    const outcome result =
        ask_daemon(reply_of(1, std::vector<std::string>(32, event(1, 0, mac, 5)), count));
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(
        result.report,
        report_of(std::vector<std::string>(32, reported(1, "02:00:00:00:00:01", 5, "0")), count));
  }
}

TEST(SteerEvents, StatusFourFailsWhateverTheCountAndOthersDoNot) {
  const outcome refused = ask_daemon(reply_of(4, {event(1, 1, "aaaaaa", 1)}, 1));
  EXPECT_EQ(refused.status, -1);
  EXPECT_EQ(refused.report, std::string(1156, '\0'));
  EXPECT_EQ(refused.errors, kReported + "get event failed.\n");
  for (const int64_t status : {1LL, 3LL, 5LL, 0x0104LL, 0xFFFFFFFFLL}) {
    EXPECT_EQ(ask_daemon(reply_of(status, {}, 0)).status, 0) << status;
  }
}

TEST(SteerEvents, ShortLongAndEmptyRepliesAreReadNoFurtherThanTheyGo) {
  const std::string whole = reply_of(0, std::vector<std::string>(32, event(1, 1, "aaaaaa", 1)), 32);
  struct {
    std::string reply;
    std::string line;
    std::string report;
  } const cases[] = {
      {"", "rcv reply_len = 0, event_data->count = 0\n", std::string(1156, '\0')},
      {whole.substr(0, 40), "rcv reply_len = 40, event_data->count = 0\n", std::string(1156, '\0')},
      {whole.substr(0, 396), "rcv reply_len = 396, event_data->count = 0\n",
       std::string(1156, '\0')},
      {whole + std::string(4000, '\x7F'), "rcv reply_len = 404, event_data->count = 32\n",
       report_of(std::vector<std::string>(32, reported(1, "61:61:61:61:61:61", 1, "1")), 32)},
  };
  for (const auto& row : cases) {
    const outcome result = ask_daemon(row.reply);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, kReported + row.line);
    EXPECT_EQ(result.report, row.report);
  }
}

TEST(SteerEvents, WithoutADaemonOrItsReplyItFails) {
  const int before = open_descriptors();
  const outcome nobody = ask(1);
  EXPECT_EQ(nobody.status, -1);
  EXPECT_EQ(nobody.errors, kReported + "Could not connect\n");
  const int silent = listen_on(kEventDaemon);
  outcome result = {};
  const double waited = seconds_of([&] { result = ask(9); });
  EXPECT_EQ(result.status, -1);
  EXPECT_EQ(result.report, std::string(1156, '\0'));
  EXPECT_EQ(result.errors, kReported + "request message failed.\n");
  EXPECT_LT(waited, 3.0);
  close(silent);
  EXPECT_EQ(open_descriptors(), before);
}

TEST(SteerEvents, RequestThatCannotBeSentFailsWithoutWaitingForAnAnswer) {
  const int before = open_descriptors();
  const int stuck = start_stuck_daemon(kEventDaemon);
  outcome result = {};
  const double waited = seconds_of([&] { result = ask(1); });
  EXPECT_GE(waited, 1.99) << "room was not waited for";
  EXPECT_LT(waited, 3.0) << "an answer was waited for";
  EXPECT_EQ(result.status, -1);
  EXPECT_EQ(result.report, std::string(1156, '\0'));
  EXPECT_EQ(result.errors, kReported + "request message failed.\n");
  close(stuck);
  const int vanished = listen_on(kEventDaemon);
  fail_system_call(SYS_sendto, ECONNREFUSED);
  EXPECT_LT(seconds_of([&] { result = ask(1); }), 1.0) << "an answer was waited for";
  EXPECT_EQ(result.status, -1);
  EXPECT_EQ(result.errors, kReported + "request message failed.\n");
  close(vanished);
  EXPECT_EQ(open_descriptors(), before);
}

TEST(SteerEvents, EntriesAreTracedWithTheirTimeInUtc) {
  switch_console_on();
  setenv("TZ", "JST-9", 1);
  datagram_daemon daemon;
  // 2001-09-09 01:46:40, and one second after 2038-01-19 03:14:07.
  start_datagram_daemon(kEventDaemon,
                        {reply_of(0,
                                  {event(3, -1, "\x02\x0c\x43\xaa\xbb\xcc", 1000000000),
                                   event(4, 5, "aaaaaa", 0x80000000)},
                                  2)},
                        &daemon);
  const std::string begin = rev_prefix("wlan_getSteerEventReport");
  EXPECT_EQ(output_of([] { EXPECT_EQ(ask(1).status, 0); }),
            begin + "event report entry 0, STA 02:0c:43:aa:bb:cc, event_type = 3, code = -1\n" +
                begin +
                "tm.tm_year=2001, tm.tm_mon=9, tm.tm_mday=9, tm.tm_hour=1, tm.tm_min=46, "
                "tm.tm_sec=40, calendar time=1000000000\n" +
                begin + "event report entry 1, STA 61:61:61:61:61:61, event_type = 4, code = 5\n" +
                begin +
                "tm.tm_year=2038, tm.tm_mon=1, tm.tm_mday=19, tm.tm_hour=3, tm.tm_min=14, "
                "tm.tm_sec=8, calendar time=-2147483648\n");
  end_datagram_daemon(&daemon);
}
