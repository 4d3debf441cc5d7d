#include "steer/nonassoc.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <climits>
#include <cstring>
#include <ctime>
#include <thread>

#include "lying_driver.h"
#include "steer/steer_support.h"
#include "support/gateway.h"
#include "unit_support.h"

static constexpr char kProber[] = "02:00:5e:20:00:01";
static constexpr uint16_t kReport = 0x06B5;
static const std::string kReportError = rev_error_prefix("wlan_getNonAssocRptTable");

TEST(NonAssocCapable, IsWhatTheDriverSays) {
  int capable = 99;
  EXPECT_EQ(wlan_getNonAssocRptCapable(9, &capable), 0);
  EXPECT_EQ(capable, 1);
  EXPECT_EQ(member_of(last_of("nonassoc_capable"), "interface"), "ra8");
  EXPECT_EQ(member_of(last_of("nonassoc_capable"), "sub"), "0x06B3");
  EXPECT_EQ(member_of(last_of("nonassoc_capable"), "length"), "3");
  run("gwbox set radio ra0 nonassoc=false");
  switch_console_on();
  std::string errors;
  const std::string output = output_of(
      [&] { errors = errors_of([&] { EXPECT_EQ(wlan_getNonAssocRptCapable(1, &capable), 0); }); });
  EXPECT_EQ(capable, 0);
  EXPECT_TRUE(contains(output, "non associated STA report is not capable. \n ")) << output;
  EXPECT_FALSE(contains(errors, "wlan_getNonAssocRptCapable")) << errors;
}

TEST(NonAssocCapable, IsTraced) {
  switch_console_on();
  int capable = 99;
  EXPECT_EQ(output_of([&] { EXPECT_EQ(wlan_getNonAssocRptCapable(1, &capable), 0); }),
            rev_prefix("wlan_getNonAssocRptCapable") + "non associated STA report is capable. \n ");
}

TEST(NonAssocCapable, AnyOtherFailureIsOne) {
  run("gwbox fail nonassoc_capable EAGAIN");
  for (const int index : {1, 0, 17, -5, INT_MIN, INT_MAX}) {
    int capable = 99;
    const std::string errors =
        errors_of([&] { EXPECT_EQ(wlan_getNonAssocRptCapable(index, &capable), -1); });
    EXPECT_TRUE(errors.ends_with(rev_error_prefix("wlan_getNonAssocRptCapable") +
                                 "get non associated STA report capable failed. \n "))
        << errors;
    EXPECT_EQ(capable, 0);
  }
}

TEST(NonAssocEnable, DriverIsSwitchedThenTheProfile) {
  switch_console_on();
  const std::string output = output_of([] { EXPECT_EQ(wlan_setNonAssocRptEnable(9, 1), 0); });
  EXPECT_TRUE(contains(output, "set non associated report enable = 1 success. \n ")) << output;
  const std::string request = last_of("nonassoc_enable");
  EXPECT_EQ(member_of(request, "name"), "object_set");
  EXPECT_EQ(member_of(request, "interface"), "ra8");
  EXPECT_EQ(member_of(request, "sub"), "0x06B4");
  EXPECT_EQ(member_of(request, "length"), "1");
  EXPECT_EQ(member_of(request, "bytes"), "01");
  EXPECT_EQ(profile_value(kProfile5, "NonAssocRptEnable"), "1");
  EXPECT_EQ(profile_value(kProfile24, "NonAssocRptEnable"), "0");
  EXPECT_EQ(wlan_setNonAssocRptEnable(1, 258), 0);
  EXPECT_EQ(member_of(last_of("nonassoc_enable"), "bytes"), "02");
  EXPECT_EQ(profile_value(kProfile24, "NonAssocRptEnable"), "258");
}

TEST(NonAssocEnable, SuccessIsTracedBeforeTheProfileIsWritten) {
  switch_console_on();
  write_file(kLock5, "");
  const int lock = try_exclusive(kLock5);
  ASSERT_GE(lock, 0);
  catch_stream(1);
  int status = 99;
  std::thread setting([&] { status = wlan_setNonAssocRptEnable(9, 1); });
  const bool writing = wait_until([] { return lock_awaited(kLock5); });
  fflush(stdout);
  const std::string traced = read_file("/proc/self/fd/1");
  close(lock);
  setting.join();
  caught_stream(1);
  EXPECT_TRUE(writing);
  EXPECT_TRUE(contains(traced, "set non associated report enable = 1 success. \n ")) << traced;
  EXPECT_EQ(status, 0);
}

TEST(NonAssocEnable, MissingKeyIsAdded) {
  write_file(kProfile24, "Other=1\n");
  EXPECT_EQ(errors_of([] { EXPECT_EQ(wlan_setNonAssocRptEnable(1, 1), 0); }), "");
  EXPECT_EQ(read_file(kProfile24), "Other=1\nNonAssocRptEnable=1\n");
}

TEST(NonAssocEnable, RefusalLeavesTheProfile) {
  const std::string before = read_file(kProfile24);
  run("gwbox fail nonassoc_enable EIO");
  for (const int index : {1, 0, -5, INT_MIN}) {
    const std::string errors =
        errors_of([&] { EXPECT_EQ(wlan_setNonAssocRptEnable(index, 1), -1); });
    EXPECT_TRUE(errors.ends_with(rev_error_prefix("wlan_setNonAssocRptEnable") +
                                 "set non associated report enable failed. \n "))
        << errors;
  }
  EXPECT_EQ(read_file(kProfile24), before);
  unlink(kProfile24);
  const std::string errors = errors_of([] { EXPECT_EQ(wlan_setNonAssocRptEnable(1, 1), 0); });
  EXPECT_FALSE(contains(errors, "wlan_setNonAssocRptEnable")) << errors;
}

TEST(NonAssocEnable, GetterAnswersWhetherTheKeyIsThere) {
  int enable = 99;
  set_profile_value(kProfile24, "NonAssocRptEnable", "3x");
  EXPECT_EQ(wlan_getNonAssocRptEnable(1, &enable), 1);
  EXPECT_EQ(enable, 3);
  remove_key(kProfile5, "NonAssocRptEnable");
  switch_console_on();
  const std::string output = output_of([&] {
    EXPECT_EQ(errors_of([&] { EXPECT_EQ(wlan_getNonAssocRptEnable(9, &enable), 0); }), "");
  });
  EXPECT_EQ(enable, 0);
  EXPECT_TRUE(contains(output,
                       "wlan_getNonAssocRptEnable\033[0m non associated report "
                       "enabled: 0\n "))
      << output;
  EXPECT_EQ(driver_requests().size(), 0u);
}

TEST(NonAssocEnable, LongValueIsReadUpTo256Characters) {
  int enable = 99;
  set_profile_value(kProfile24, "NonAssocRptEnable", std::string(255, '0') + "7");
  EXPECT_EQ(wlan_getNonAssocRptEnable(1, &enable), 1);
  EXPECT_EQ(enable, 7);
  set_profile_value(kProfile24, "NonAssocRptEnable", std::string(256, '0') + "7");
  errors_of([&] { EXPECT_EQ(wlan_getNonAssocRptEnable(1, &enable), 0); });
  EXPECT_EQ(enable, 0);
}

TEST(NonAssocRequestMac, BufferEndsWithTheFirstCharacterOfTheText) {
  watch_queries_of(kReport);
  const std::pair<const char*, std::string> cases[] = {
      {kProber, std::string("\x02\x00\x5e\x20\x00\x01"
                            "0",
                            7)},
      {"f2:00:5e:20:00:01", std::string("\xf2\x00\x5e\x20\x00\x01"
                                        "f",
                                        7)},
      {"", std::string(7, '\0')},
  };
  for (const auto& [text, buffer] : cases) {
    EXPECT_EQ(wlan_setNonAssocRequestMac(1, text), 0);
    EXPECT_EQ(watched_buffer(), buffer) << text;
  }
}

TEST(NonAssocRequestMac, IsWrittenAndNamedToTheDriver) {
  switch_console_on();
  const std::string output =
      output_of([] { EXPECT_EQ(wlan_setNonAssocRequestMac(9, kProber), 0); });
  EXPECT_TRUE(contains(output, "set non associated req mac success. \n ")) << output;
  EXPECT_EQ(profile_value(kProfile5, "NonAssocReqMac"), kProber);
  const std::string request = last_of("nonassoc_report");
  EXPECT_EQ(member_of(request, "name"), "query");
  EXPECT_EQ(member_of(request, "interface"), "ra8");
  EXPECT_EQ(member_of(request, "sub"), "0x06B5");
  // The query announces all but the last of its seven bytes.
  EXPECT_EQ(member_of(request, "length"), "6");
  EXPECT_EQ(member_of(request, "bytes"), "02005e200001");
}

TEST(NonAssocRequestMac, TextIsTakenAsFarAsItGoes) {
  const std::pair<std::string, std::string> cases[] = {
      {"", "000000000000"},
      {"02:zz", "020000000000"},
      {"%n%s", "000000000000"},
      {std::string(300, 'f'), "ff0000000000"},
  };
  for (const auto& [text, bytes] : cases) {
    EXPECT_EQ(wlan_setNonAssocRequestMac(1, text.c_str()), 0) << text;
    EXPECT_EQ(profile_value(kProfile24, "NonAssocReqMac"), text.substr(0, 256));
    EXPECT_EQ(member_of(last_of("nonassoc_report"), "bytes"), bytes) << text;
  }
}

TEST(NonAssocRequestMac, FailuresAreReported) {
  const std::string prefix = rev_error_prefix("wlan_setNonAssocRequestMac");
  run("gwbox fail nonassoc_report EAGAIN");
  EXPECT_TRUE(errors_of([] {
                EXPECT_EQ(wlan_setNonAssocRequestMac(1, kProber), -1);
              }).ends_with(prefix + "set non associated req mac failed. \n "));
  EXPECT_EQ(profile_value(kProfile24, "NonAssocReqMac"), kProber);
  const size_t before = driver_requests().size();
  EXPECT_TRUE(errors_of([] {
                EXPECT_EQ(wlan_setNonAssocRequestMac(1, "a\nb"), -1);
              }).ends_with(prefix + "failed to update wifi profile, ret:0\n "));
  EXPECT_EQ(driver_requests().size(), before);
}

struct probe {
  int8_t rssi;
  int32_t date[6];
};

static std::string probe_bytes(const probe& p) {
  std::string bytes(1, static_cast<char>(p.rssi));
  bytes += std::string(3, '\xEE');
  for (const int32_t number : p.date)
    bytes += bytes_of(static_cast<uint32_t>(number));
  return bytes;
}

// Four probes with RSSI values from `rssi` upwards, at noon on 1 to 4 January 2024.
static std::string station(const std::string& mac, int count, int newest, int8_t rssi) {
  std::string bytes = mac + static_cast<char>(count) + static_cast<char>(newest);
  for (int i = 0; i < 4; ++i) {
    bytes += probe_bytes({static_cast<int8_t>(rssi + i), {2024, 1, i + 1, 12, 0, 0}});
  }
  return bytes;
}

static std::string report(int count, const std::string& stations) {
  std::string bytes = stations;
  bytes.resize(1920, '\0');
  return bytes + static_cast<char>(count) + std::string(3, '\xEE');
}

static const std::string kProberMac("\x02\x00\x5e\x20\x00\x01", 6);
static const std::string kOtherMac("\x02\x00\x5e\x20\x00\x02", 6);

static nonassoc_answer untouched() {
  nonassoc_answer answer;
  memset(&answer, 0x55, sizeof answer);
  return answer;
}

static bool is_untouched(const nonassoc_answer& answer) {
  const nonassoc_answer before = untouched();
  return memcmp(&answer, &before, sizeof answer) == 0;
}

static void use_utc() {
  setenv("TZ", "UTC0", 1);
  set_profile_value(kProfile24, "NonAssocReqMac", kProber);
}

TEST(NonAssocReport, NewestProbeOfTheStationIsTold) {
  use_utc();
  answer_object_with(kReport,
                     report(2, station(kOtherMac, 4, 1, -90) + station(kProberMac, 4, 2, -70)));
  nonassoc_answer answer = {};
  EXPECT_EQ(errors_of([&] { EXPECT_EQ(wlan_getNonAssocRptTable(1, &answer), 0); }), "");
  // Valid, RSSI -69, 2024-01-02 12:00:00, the text, and zeros.
  std::string expected = bytes_of(1) + bytes_of(0xFFFFFFBB) + bytes_of(1704196800) + kProber;
  expected.resize(900, '\0');
  EXPECT_EQ(std::string(reinterpret_cast<char*>(&answer), sizeof answer), expected);
}

TEST(NonAssocReport, EveryPositionOfTheRing) {
  use_utc();
  for (int newest = 1; newest <= 4; ++newest) {
    answer_object_with(kReport, report(1, station(kProberMac, 4, newest, -70)));
    nonassoc_answer answer = {};
    EXPECT_EQ(wlan_getNonAssocRptTable(1, &answer), 0);
    EXPECT_EQ(answer.valid, 1);
    EXPECT_EQ(answer.probes[0].rssi, -71 + newest);
    EXPECT_EQ(answer.probes[0].time, 1704110400 + 86400 * (newest - 1));
  }
}

TEST(NonAssocReport, PositionOutsideTheRingIsReportedAndPassedOver) {
  use_utc();
  const std::pair<int, int> cases[] = {{0, 255}, {5, 4}, {255, 254}};
  for (const auto& [newest, told] : cases) {
    const std::string bad = station(kProberMac, 4, newest, -70);
    const std::string message = kReportError + " error cyc_idx " + std::to_string(told) + "\n ";
    answer_object_with(kReport, report(1, bad));
    nonassoc_answer answer = untouched();
    EXPECT_EQ(errors_of([&] { EXPECT_EQ(wlan_getNonAssocRptTable(1, &answer), 0); }), message);
    EXPECT_TRUE(is_untouched(answer));
    answer_object_with(kReport, report(2, bad + station(kProberMac, 4, 1, -50)));
    EXPECT_EQ(errors_of([&] { EXPECT_EQ(wlan_getNonAssocRptTable(1, &answer), 0); }), message);
    EXPECT_EQ(answer.probes[0].rssi, -50);
  }
}

TEST(NonAssocReport, FirstMatchCountsAndOnlyEntriesInUse) {
  use_utc();
  const std::string one = station(kProberMac, 4, 1, -50);
  answer_object_with(kReport, report(2, one + station(kProberMac, 4, 1, -60)));
  nonassoc_answer answer = {};
  EXPECT_EQ(wlan_getNonAssocRptTable(1, &answer), 0);
  EXPECT_EQ(answer.probes[0].rssi, -50);
  answer = untouched();
  answer_object_with(kReport, report(0, one));
  EXPECT_EQ(wlan_getNonAssocRptTable(1, &answer), 0);
  EXPECT_TRUE(is_untouched(answer));
  answer_object_with(kReport, report(1, station(kOtherMac, 4, 1, -50) + one));
  EXPECT_EQ(wlan_getNonAssocRptTable(1, &answer), 0);
  EXPECT_TRUE(is_untouched(answer));
}

TEST(NonAssocReport, CountThatLiesReadsNothingBeyondTheReport) {
  use_utc();
  std::string others;
  for (int i = 0; i < 15; ++i)
    others += station(kOtherMac, 255, 1, -50);
  switch_console_on();
  nonassoc_answer answer = untouched();
  answer_object_with(kReport, report(255, others + station(kOtherMac, 255, 1, -50)));
  const std::string output = output_of([&] { EXPECT_EQ(wlan_getNonAssocRptTable(1, &answer), 0); });
  EXPECT_TRUE(is_untouched(answer));
  EXPECT_EQ(count_of(output, "].MacAddr:"), 16);
  answer_object_with(kReport, report(255, others + station(kProberMac, 255, 4, -50)));
  EXPECT_EQ(wlan_getNonAssocRptTable(1, &answer), 0);
  EXPECT_EQ(answer.probes[0].rssi, -47);
}

TEST(NonAssocReport, DumpShowsAsManyProbesAsTheRecordHolds) {
  use_utc();
  switch_console_on();
  const std::pair<int, int> cases[] = {{0, 0}, {1, 1}, {3, 3}, {4, 4}, {5, 4}, {255, 4}};
  for (const auto& [count, shown] : cases) {
    answer_object_with(kReport, report(1, station(kProberMac, count, 4, -70)));
    nonassoc_answer answer = {};
    const std::string output =
        output_of([&] { EXPECT_EQ(wlan_getNonAssocRptTable(1, &answer), 0); });
    EXPECT_EQ(count_of(output, "dump probeDate: index = "), shown) << output;
    EXPECT_EQ(answer.probes[0].rssi, -67) << "the newest, whatever the count";
  }
}

struct date_case {
  int32_t date[6];
  int32_t time;
};

TEST(NonAssocReport, DateIsTheTimeThatMktimeGives) {
  use_utc();
  const date_case cases[] = {
      {{1970, 1, 1, 0, 0, 1}, 1},
      {{2024, 2, 29, 23, 59, 59}, 1709251199},
      {{2024, 13, 1, 0, 0, 0}, 1735689600},  // January of the next year
      {{2024, 1, 0, 0, 0, 0}, 1703980800},   // 31 December 2023
      {{2024, 1, 1, 0, 0, -1}, 1704067199},
      {{INT32_MAX, INT32_MAX, 1, 0, 0, 0}, -1},  // does not fit
      {{INT32_MIN, INT32_MIN, INT32_MIN, INT32_MIN, INT32_MIN, INT32_MIN}, -1},
  };
  for (const date_case& c : cases) {
    probe p = {-1, {}};
    memcpy(p.date, c.date, sizeof p.date);
    answer_object_with(kReport, report(1, kProberMac + "\x01\x01" + probe_bytes(p)));
    nonassoc_answer answer = {};
    EXPECT_EQ(wlan_getNonAssocRptTable(1, &answer), 0);
    EXPECT_EQ(answer.probes[0].time, c.time) << c.date[0] << "-" << c.date[1];
  }
}

TEST(NonAssocReport, DateIsOneOfTheBoxsTimeZone) {
  use_utc();
  // One hour east of UTC, two in summer.
  setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
  const date_case cases[] = {{{2024, 1, 15, 12, 0, 0}, 1705316400},
                             {{2024, 7, 15, 12, 0, 0}, 1721037600}};
  for (const date_case& c : cases) {
    probe p = {-1, {}};
    memcpy(p.date, c.date, sizeof p.date);
    answer_object_with(kReport, report(1, kProberMac + "\x01\x01" + probe_bytes(p)));
    nonassoc_answer answer = {};
    EXPECT_EQ(wlan_getNonAssocRptTable(1, &answer), 0);
    EXPECT_EQ(answer.probes[0].time, c.time);
  }
}

TEST(NonAssocReport, AddressIsTheTextOfTheProfile) {
  const std::pair<const char*, std::string> cases[] = {
      {"2:0:5e:20:0:1", "2:0:5e:20:0:1"},
      {"02:00:5E:20:00:01x", "02:00:5E:20:00:01"},
  };
  for (const auto& [text, told] : cases) {
    set_profile_value(kProfile24, "NonAssocReqMac", text);
    answer_object_with(kReport, report(1, station(kProberMac, 4, 1, -50)));
    nonassoc_answer answer = untouched();
    EXPECT_EQ(wlan_getNonAssocRptTable(1, &answer), 0);
    std::string padded = told;
    padded.resize(17, '\0');
    EXPECT_EQ(std::string(answer.probes[0].mac, 17), padded);
    EXPECT_EQ(answer.probes[0].unused[0], 0x55);
  }
}

TEST(NonAssocReport, FailuresAreReported) {
  EXPECT_EQ(errors_of([] { EXPECT_EQ(wlan_getNonAssocRptTable(1, nullptr), -1); }),
            kReportError + "input null pointer\n ");
  EXPECT_EQ(driver_requests().size(), 0u);
  nonassoc_answer answer = untouched();
  run("gwbox fail nonassoc_report EAGAIN");
  for (const int index : {1, 0, 17, -5, INT_MIN, INT_MAX}) {
    EXPECT_TRUE(errors_of([&] {
                  EXPECT_EQ(wlan_getNonAssocRptTable(index, &answer), -1);
                }).ends_with(kReportError + "get non assco report table, ioctl failed. \n "));
  }
  set_profile_value(kProfile24, "NonAssocReqMac", "02:00:5e:20:00:01xy");
  EXPECT_TRUE(errors_of([&] {
                EXPECT_EQ(wlan_getNonAssocRptTable(1, &answer), -1);
              }).ends_with(kReportError + "failed to get NonAssocReqMac from wifi profile. \n "));
  remove_key(kProfile24, "NonAssocReqMac");
  EXPECT_EQ(errors_of([&] { EXPECT_EQ(wlan_getNonAssocRptTable(1, &answer), -1); }),
            kReportError + "failed to get NonAssocReqMac from wifi profile. \n ");
  EXPECT_TRUE(is_untouched(answer));
}

TEST(NonAssocReport, ComesFromTheDriverAndIsTraced) {
  use_utc();
  EXPECT_EQ(wlan_setNonAssocRptEnable(1, 1), 0);
  switch_console_on();
  nonassoc_answer answer = {};
  const std::string output = output_of([&] { EXPECT_EQ(wlan_getNonAssocRptTable(1, &answer), 0); });
  EXPECT_EQ(member_of(last_of("nonassoc_report"), "length"), "1923");
  EXPECT_EQ(answer.probes[0].rssi, -66);
  EXPECT_EQ(answer.probes[0].time, 1772389805);
  for (const char* text :
       {"table.reportSize = 1\n", "table.reportData[0].MacAddr: 02:00:5e:20:00:01 \n ",
        "data count = 2, CyclicIndex = 2\n",
        "dump probeDate: index = 0, rssi = -70, tm.tm_year=2026, tm.tm_mon=3, tm.tm_mday=1, "
        "tm.tm_hour=18, tm.tm_min=30, tm.tm_sec=0\n",
        "dump probeDate: index = 1, rssi = -66, tm.tm_year=2026, tm.tm_mon=3, tm.tm_mday=1, "
        "tm.tm_hour=18, tm.tm_min=30, tm.tm_sec=5\n",
        "rssi = -66, mac = 02:00:5e:20:00:01\n"}) {
    EXPECT_TRUE(contains(output, std::string("wlan_getNonAssocRptTable\033[0m ") + text))
        << text << output;
  }
}
