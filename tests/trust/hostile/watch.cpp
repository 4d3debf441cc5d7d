#include "trust/hostile/watch.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <sstream>

#include "support/daemon.h"
#include "support/files.h"
#include "support/gateway.h"
#include "support/lifecycle.h"

static constexpr char kLog[] = "/tmp/auto_debug/dbg_rpc.log";
static constexpr char kOlderLog[] = "/tmp/auto_debug/dbg_rpc.log.bak";

static pid_t child;

static std::string repeated(const std::string& part, size_t length) {
  std::string text;
  while (text.size() + part.size() <= length)
    text += part;
  return text;
}

// The daemon's path has a command "c"; a redirection would make "/tmp/c".
static std::vector<hostile_text> one_line_texts() {
  return {
      {"backquotes", "`c`"},
      {"substitution", "$(c)"},
      {"redirection", "$(>/tmp/c)"},
      {"separator", ";c;"},
      {"pipe", "|c|"},
      {"background", "&c&"},
      {"single quotes", "';c;'"},
      {"double quotes", "\";c;\""},
      {"all quotes", "'\"`c`\"'\";c;\"'`c`"},
      {"half a quote", "'"},
      {"backslash", "\\';c;\\"},
      {"option", "-h *~ ../../tmp/c"},
      {"key", "=FORGED=1"},
      {"formats", "%n%s%s%n%x%99999d%*c%"},
      {"terminal", "\033[2J\033]0;t\a\b\x7f\x01"},
      {"control characters of Latin-1",
       "\xC2\x9B"
       "2J\x9B"},
      {"no UTF-8", "\xFF\xFE\xC3(\xED\xA0\x80\xC0\xAF"},
      {"nothing", ""},
  };
}

std::vector<hostile_text> wire_texts() {
  std::vector<hostile_text> texts = one_line_texts();
  const hostile_text more[] = {
      {"lines", "x\nFORGED=1\nFORGED"},
      {"lines of commands", "\nc\n"},
      {"DOS lines", "x\r\nFORGED=1\r\n"},
      {"long", std::string(8000, 'A')},
      {"long commands", repeated("';c;", 8000)},
      {"long formats", repeated("%n%s", 8000)},
      {"long lines", repeated("FORGED=1\n", 8000)},
      {"long list", std::string(8000, ';')},
  };
  texts.insert(texts.end(), std::begin(more), std::end(more));
  return texts;
}

std::vector<hostile_text> profile_texts() {
  std::vector<hostile_text> texts = one_line_texts();
  texts.push_back({"long", std::string(1690, 'A')});
  texts.push_back({"long commands", repeated("';c;", 1690)});
  texts.push_back({"long list", std::string(1690, ';')});
  return texts;
}

void switch_all_on() {
  switch_everything_on();
  for (const char* profile : {"/tmp/mt76xx_24.dat", "/tmp/mt76xx_5.dat"}) {
    if (!exists(profile)) continue;
    set_profile_value(profile, "WscEnable", "1;1;1;1;1;1;1;1");
    set_profile_value(profile, "WscConfMethods", "238c;238c;238c;238c;238c;238c;238c;238c");
    set_profile_value(profile, "BSSHNCService", "7;7;7;7;7;7;7;7");
  }
}

void start_watched_daemon() {
  switch_all_on();
  write_file("/nvram/hnc_enable", "");
  mkdir("/tmp/auto_debug", 0755);
  write_file("/tmp/auto_debug/rpc_dbg_en", "");
  mkdir("/tmp/fast", 0755);
  write_file("/tmp/fast/c", "#!/bin/sh\necho \"$@\" >>/tmp/canary\n");
  chmod("/tmp/fast/c", 0755);
  child = start_lifecycle_daemon({"LD_LIBRARY_PATH=" + host_library_directory()});
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
}

// Removes the colour sequences with which the daemon's own messages begin.
static std::string without_prefixes(std::string text) {
  for (const char* sequence :
       {"\033[1;32;40m", "\033[1;31;40m", "\033[40m", "\033[31;40m", "\033[0m", "\033[1;32m"}) {
    for (size_t at = text.find(sequence); at != text.npos; at = text.find(sequence, at))
      text.erase(at, strlen(sequence));
  }
  return text;
}

// An ASCII control character, a Latin-1 one by itself or in UTF-8, or a byte that never
// occurs in UTF-8.
static bool is_control(unsigned char before, unsigned char byte) {
  if (byte < ' ') return byte != '\n' && byte != '\t';
  if (byte >= 0x80 && byte < 0xA0) return before < 0x80 || before == 0xC2;
  return byte == 0x7F || byte == 0xC0 || byte == 0xC1 || byte > 0xF4;
}

static size_t first_control(const std::string& text) {
  unsigned char before = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (is_control(before, byte)) return i;
    before = byte;
  }
  return text.npos;
}

static void expect_readable(const std::string& path, const std::string& what) {
  const std::string text = without_prefixes(read_file(path));
  const size_t control = first_control(text);
  EXPECT_EQ(control, text.npos) << what << ": control character in " << path << ": "
                                << text.substr(control - std::min<size_t>(control, 60), 80);
  const size_t forged = ("\n" + text).find("\nFORGED");
  EXPECT_EQ(forged, text.npos) << what << ": forged line in " << path;
  if (!exists(path)) return;
  EXPECT_EQ(truncate(path.c_str(), 0), 0);
}

void expect_harmless(const std::string& what) {
  EXPECT_FALSE(exists("/tmp/canary")) << what << ": a command was run";
  EXPECT_FALSE(exists("/tmp/c")) << what << ": a redirection was done";
  EXPECT_EQ(kill(child, 0), 0) << what << ": the service ended\n" << daemon_errors();
  for (const char* path : {"/tmp/daemon.out", "/tmp/daemon.err", kLog, kOlderLog})
    expect_readable(path, what);
}

static std::vector<std::string> lines_of(const std::string& path) {
  std::vector<std::string> lines;
  std::istringstream stream(read_file(path));
  for (std::string line; std::getline(stream, line);)
    lines.push_back(line);
  return lines;
}

std::vector<std::string> profile_lines() {
  std::vector<std::string> lines = lines_of("/tmp/mt76xx_24.dat");
  const std::vector<std::string> more = lines_of("/tmp/mt76xx_5.dat");
  lines.insert(lines.end(), more.begin(), more.end());
  return lines;
}

void expect_lines_kept(const std::vector<std::string>& before, int changes,
                       const std::string& what) {
  const std::vector<std::string> after = profile_lines();
  ASSERT_EQ(after.size(), before.size()) << what << ": lines of the profiles";
  int changed = 0;
  for (size_t i = 0; i < after.size(); ++i) {
    if (after[i] == before[i]) continue;
    ++changed;
    const size_t key = before[i].find('=');
    ASSERT_NE(key, before[i].npos) << what;
    EXPECT_EQ(after[i].substr(0, key + 1), before[i].substr(0, key + 1)) << what;
  }
  EXPECT_LE(changed, changes) << what << ": changed lines of the profiles";
}
