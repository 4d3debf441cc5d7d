#include "show/columns.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

static constexpr text_column kColumns[] = {{"SSID", false}, {"MODE", false}};

static std::string table(const std::string& ssid, size_t width = 0) {
  return columns_text(kColumns, {{ssid, "b"}, {"home", "n"}}, true, width);
}

TEST(Columns, AlignsWhatIsNotAscii) {
  EXPECT_EQ(table("Café"),
            "SSID MODE\n"
            "Café b\n"
            "home n\n");
  EXPECT_EQ(table("日本"),
            "SSID MODE\n"
            "日本 b\n"
            "home n\n");
  EXPECT_EQ(table("caf\u0301e"),  // an accent has no column of its own
            "SSID MODE\n"
            "caf\u0301e b\n"
            "home n\n");
}

// Columns are dropped only on a terminal; elsewhere there is room for all.
TEST(Columns, TheLeastImportantGoFirst) {
  constexpr text_column kRanked[] = {
      {"A", true, "", 1}, {"NAME", false}, {"LONGEST", true, "B", 3}, {"C", true, "", 2}};
  const auto ranked = [&](size_t width) {
    return columns_text(kRanked, {{"1", "name", "2", "3"}}, true, width);
  };
  EXPECT_EQ(ranked(0), "A NAME LONGEST B C\n1 name         2 3\n");
  EXPECT_EQ(ranked(16).find("A NAME LONGEST C\n"), 0u) << ranked(16);
  EXPECT_EQ(ranked(15).find("A NAME C\n"), 0u) << ranked(15);
  EXPECT_EQ(ranked(8).find("A NAME C\n"), 0u) << ranked(8);
  EXPECT_EQ(ranked(7).find("A NAME\n"), 0u) << ranked(7);
  EXPECT_EQ(ranked(5).find("NAME\n"), 0u) << ranked(5);
}

TEST(Columns, CutsBetweenCharacters) {
  EXPECT_EQ(table("Café Größenwahn", 12),
            "SSID    MODE\n"
            "Café Gr b\n"
            "home    n\n");
}

// Prints with the machine's locales hidden. Call it in a child process, which it ends.
static void print_without_locales(int to) {
  constexpr const char* kLocales = "/usr/lib/locale";
  const bool hidden = unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 &&
                      mount("none", kLocales, "tmpfs", 0, nullptr) == 0;
  const std::string text = hidden ? table("Café") : strerror(errno);
  _exit(write(to, text.data(), text.size()) < 0 ? 1 : 0);
}

TEST(Columns, MeasuresAsciiOnlyWithoutALocale) {
#ifdef __SANITIZE_THREAD__
  GTEST_SKIP() << "the sanitizer's own thread keeps this program from hiding the locales";
#endif
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) print_without_locales(ends[1]);
  close(ends[1]);
  char text[200] = "";
  EXPECT_GT(read(ends[0], text, sizeof text - 1), 0);
  close(ends[0]);
  int status = 0;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  EXPECT_STREQ(text,
               "SSID        MODE\n"
               "Caf\\xc3\\xa9 b\n"
               "home        n\n");
}
