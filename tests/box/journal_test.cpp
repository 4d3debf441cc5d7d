// The journal's lines, and how `gwbox log` shows them.
#include "base/journal.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <cerrno>
#include <cstdio>

#include "inside.h"

using nlohmann::json;

static journal_entry text_entry(const std::string& text) {
  journal_entry entry = {};
  entry.comm = "tool";
  entry.interface = "ra0";
  entry.request = 0x8BE2;
  entry.name = "set";
  entry.has_text = true;
  entry.text = text;
  return entry;
}

TEST(Journal, QuotesControlBytesAndBackslashesSurvive) {
  for (std::string text : {"SSID=a\"b\\c", "SSID=\x01\x1f\n\t\x7f", "SSID=caf\u00e9 \U0001F4F6"}) {
    std::string line = journal_line(text_entry(text), 1, 0, 0);
    EXPECT_EQ(line.find('\n'), line.size() - 1);
    json parsed = json::parse(line, nullptr, false);
    ASSERT_TRUE(parsed.is_object()) << line;
    EXPECT_EQ(parsed["text"], text);
    EXPECT_FALSE(parsed.contains("text_hex"));
  }
}

TEST(Journal, BytesThatAreNotUtf8AreKeptInHexadecimal) {
  for (std::string text : {"\xff", "\xc0\xaf", "\xe0\x80\x80", "\xed\xa0\x80", "\xf4\x90\x80\x80",
                           "\xe2\x82", "\x80", "\xf5\x80\x80\x80"}) {
    json parsed = json::parse(journal_line(text_entry("A=" + text), 1, 0, 0), nullptr, false);
    ASSERT_TRUE(parsed.is_object());
    ASSERT_TRUE(parsed.contains("text_hex"));
    std::string digits = parsed["text_hex"];
    EXPECT_EQ(digits.size(), 2 * (2 + text.size()));
    EXPECT_TRUE(digits.starts_with("413d"));
  }
}

TEST(Journal, TimesAreSecondsWithSixDecimals) {
  std::string line = journal_line(text_entry("A=1"), 7, 12000034, 24000068);
  EXPECT_TRUE(line.starts_with("{\"seq\":7,\"time\":12.000034,")) << line;
}

TEST(Journal, ObjectsAreKeptAsTheyWereLaidOut) {
  unsigned char enable[3] = {2, 0, 0xFF};
  request_frame frame = make_frame("ra8", enable, sizeof enable, 0x894A);
  EXPECT_EQ(request(0x8BE1, frame), 0);
  uint32_t operating_class = 0;
  frame = make_frame("ra8", &operating_class, sizeof operating_class, 0x06B2);
  EXPECT_EQ(request(0x8BE1, frame), 0);
  auto entries = journal_entries();
  ASSERT_EQ(entries.size(), 2u);
  EXPECT_EQ(entries[0]["bytes"], "0200ff");
  EXPECT_FALSE(entries[1].contains("bytes"));
}

TEST(Journal, ATextThatIsNotUtf8DoesNotBreakTheFile) {
  EXPECT_EQ(set_text("ra0", "SSID=\xff\xfe"), 0);
  EXPECT_EQ(set_text("ra0", "SSID=after"), 0);
  auto entries = journal_entries();
  ASSERT_EQ(entries.size(), 2u);
  EXPECT_EQ(entries[0]["text_hex"], "535349443dfffe");
  EXPECT_LE(entries[0]["time"], entries[1]["time"]);
}

TEST(Journal, NamesTheCallerAsItIsCalledAtThatMoment) {
  EXPECT_EQ(set_text("ra0", "A=1"), 0);
  prctl(PR_SET_NAME, "renamed");
  EXPECT_EQ(set_text("ra0", "A=2"), 0);
  EXPECT_EQ(run("iwpriv ra0 set A=3").status, 0);
  EXPECT_EQ(set_text("ra0", "A=4"), 0);
  auto entries = journal_entries();
  ASSERT_EQ(entries.size(), 5u);
  EXPECT_EQ(entries[0]["comm"], "box_tests");
  EXPECT_EQ(entries[1]["comm"], "renamed");
  EXPECT_EQ(entries[3]["comm"], "iwpriv");
  EXPECT_EQ(entries[4]["comm"], "renamed");
  EXPECT_EQ(entries[0]["pid"], getpid());
  EXPECT_NE(entries[3]["pid"], getpid());
  EXPECT_EQ(entries[4]["pid"], getpid());
}

TEST(Log, OneReadableLinePerRequest) {
  EXPECT_EQ(set_text("ra3", "SSID=Attic \x1b[31m"), 0);
  EXPECT_EQ(set_text("ra99", "A=1"), ENODEV);
  run_result log = run("gwbox log");
  EXPECT_EQ(log.status, 0);
  EXPECT_NE(log.output.find(" ra3 set SSID=Attic ?[31m -> ok  (box_tests["), std::string::npos)
      << log.output;
  EXPECT_NE(log.output.find(" ra99 set -> ENODEV  (box_tests["), std::string::npos) << log.output;
}

TEST(Log, JsonIsTheJournalAsItIs) {
  EXPECT_EQ(set_text("ra0", "A=1"), 0);
  EXPECT_EQ(run("gwbox log --json").output, run("cat /run/gwbox/journal.jsonl").output);
}

TEST(Log, FollowShowsRequestsAsTheyCome) {
  EXPECT_EQ(set_text("ra0", "Before=1"), 0);
  FILE* follow = popen("echo $$; exec gwbox log --follow --json", "r");
  ASSERT_NE(follow, nullptr);
  char line[1024];
  ASSERT_NE(fgets(line, sizeof line, follow), nullptr);
  pid_t pid = atoi(line);
  ASSERT_NE(fgets(line, sizeof line, follow), nullptr);
  EXPECT_NE(std::string(line).find("Before=1"), std::string::npos);
  EXPECT_EQ(set_text("ra0", "After=1"), 0);
  ASSERT_NE(fgets(line, sizeof line, follow), nullptr);
  EXPECT_NE(std::string(line).find("After=1"), std::string::npos);
  kill(pid, SIGTERM);
  pclose(follow);
}

TEST(Journal, ChangesPlacesAtItsLimit) {
  journal j;
  ASSERT_TRUE(journal_open(j, -1, 0));
  journal_entry entry = text_entry(std::string(1 << 20, 'x'));
  for (int i = 0; i < 65; ++i)
    journal_append(j, entry, 0);
  std::string older = run(std::string("tail -c 200 ") + kJournalOlderPath).output;
  EXPECT_NE(older.find("\"result\":0}"), std::string::npos);
  EXPECT_EQ(run(std::string("test $(stat -c %s ") + kJournalOlderPath + ") -le 67108864").status,
            0);
  EXPECT_EQ(run(std::string("head -c 9 ") + kJournalPath).output, "{\"seq\":64");
  EXPECT_EQ(j.sequence, 65u);
}
