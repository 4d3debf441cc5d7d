#include "commands/argument_files.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

#include "run_support.h"
#include "wire/lookup.h"
#include "wire/rpc.h"

static std::string new_file(const std::string& content) {
  char path[] = "/tmp/argument.XXXXXX";
  const int fd = mkstemp(path);
  EXPECT_GE(fd, 0);
  EXPECT_EQ(write(fd, content.data(), content.size()), static_cast<ssize_t>(content.size()));
  close(fd);
  return path;
}

// The text that replaces a word, or the error.
static std::string text_of(const std::string& word, const char* procedure = "wlan_set_ssid") {
  std::vector<std::string> given = {"1", word};
  std::string error;
  return argument_files_read(*lookup_name(procedure), given, error) ? given[1] : error;
}

static std::string text_of_file(const std::string& content) {
  const std::string path = new_file(content);
  const std::string text = text_of("@" + path);
  unlink(path.c_str());
  return text;
}

TEST(ArgumentText, AFileHoldsIt) {
  EXPECT_EQ(text_of_file("correct horse"), "correct horse");
  EXPECT_EQ(text_of_file("correct horse\n"), "correct horse");
  EXPECT_EQ(text_of_file("correct horse\r\n"), "correct horse");
  EXPECT_EQ(text_of_file("two\n\n"), "two\n") << "one line end only";
  EXPECT_EQ(text_of_file("a\r"), "a\r") << "that is no line end";
  EXPECT_EQ(text_of_file("@x"), "@x") << "not looked at again";
  EXPECT_EQ(text_of_file(""), "");
}

TEST(ArgumentText, AnAtSignIsWrittenTwice) {
  EXPECT_EQ(text_of("@@home"), "@home");
  EXPECT_EQ(text_of("@@@"), "@@");
  EXPECT_EQ(text_of("home@"), "home@");
}

TEST(ArgumentText, OnlyTextsAreLookedAt) {
  EXPECT_EQ(text_of("@/does/not/exist", "wlan_set_channel"), "@/does/not/exist");
}

TEST(ArgumentText, WhatCannotBeReadIsNamed) {
  const std::string missing = text_of("@/does/not/exist");
  EXPECT_NE(missing.find("argument 'ssid': cannot read '/does/not/exist': No such file"),
            std::string::npos)
      << missing;
  EXPECT_NE(missing.find("'@@...'"), std::string::npos) << missing;
  EXPECT_NE(text_of("@/tmp").find("Is a directory"), std::string::npos) << text_of("@/tmp");
  EXPECT_NE(text_of("@/dev/zero").find("longer than 8800 bytes"), std::string::npos);
  EXPECT_NE(text_of("@").find("cannot read ''"), std::string::npos) << text_of("@");
  EXPECT_EQ(text_of_file(std::string(kCallBytesMax, 'x')).size(), kCallBytesMax);
  const std::string nul = text_of_file(std::string("sec\0ret", 7));
  EXPECT_NE(nul.find("has a NUL byte"), std::string::npos) << nul;
}

// Returns the exit status of a child with this standard input.
static int status_with_input(const std::string& input, const std::vector<std::string>& words) {
  const std::string path = new_file(input);
  const pid_t child = fork();
  if (child == 0) {
    if (freopen(path.c_str(), "r", stdin) == nullptr) _exit(99);
    std::vector<std::string> given = words;
    std::string error;
    const bool taken =
        argument_files_read(*lookup_name("wlan_set_mac_address_control_add"), given, error);
    if (!taken) _exit(error.find("one argument only") != std::string::npos ? 1 : 98);
    _exit(given[1] == "from input" ? 0 : 97);
  }
  int status = 0;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  unlink(path.c_str());
  return WEXITSTATUS(status);
}

TEST(ArgumentText, StandardInputHoldsItOnce) {
  EXPECT_EQ(status_with_input("from input\n", {"1", "@-", "x"}), 0);
  EXPECT_EQ(status_with_input("from input\n", {"1", "@-", "@-"}), 1);
}

// The text is sent in the call but is in no message.
TEST(ArgumentText, IsSentAndNotShown) {
  const std::string path = new_file("correct horse\n");
  run_outcome sent = run_against(0, words({0}), {"wlan_set_key_passphrase", "1", "1", "@" + path});
  EXPECT_EQ(sent.status, kExitDone) << sent.err;
  ASSERT_EQ(sent.calls.size(), 1u);
  const std::string call(sent.calls[0].begin(), sent.calls[0].end());
  EXPECT_TRUE(call.ends_with(std::string("\0\0\0\rcorrect horse\0\0\0", 20))) << call;
  run_outcome refused = run_words({"wlan_set_key_passphrase", "first", "1", "@" + path});
  EXPECT_EQ(refused.status, kExitUsage);
  EXPECT_EQ(refused.err.find("horse"), std::string::npos) << refused.err;
  unlink(path.c_str());
}
