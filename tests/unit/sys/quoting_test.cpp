
#include "sys/quoting.h"

#include <gtest/gtest.h>

#include <string>

#include "support/files.h"

static std::string quoted(const char* text) {
  return shell_word_of<64>(text).text;
}

TEST(ShellWord, OrdinaryTextsStayAsTheyAre) {
  for (const char* text : {"US", "02:0c:43:00:00:01", "a.b_c-D9", ""}) {
    EXPECT_EQ(quoted(text), text);
  }
}

TEST(ShellWord, AnythingElseIsOneWordForTheShell) {
  const char* texts[] = {"a b",  "`>/x`", "$(id)", ";id", "a'b", "'",     "\"", "*",
                         "a\nb", "~",     "#",     "&",   "\\",  "$HOME", "a|b"};
  for (const char* text : texts) {
    const std::string command = "printf %s " + quoted(text);
    EXPECT_EQ(run(command), text) << command;
  }
}

TEST(ShellWord, LongTextIsCutInsideTheQuotes) {
  const std::string spaces(100, ' ');
  const std::string word = shell_word_of<16>(spaces.c_str()).text;
  EXPECT_EQ(word, "'" + std::string(13, ' ') + "'");
  EXPECT_EQ(std::string(shell_word_of<16>(std::string(100, 'a').c_str()).text),
            std::string(15, 'a'));
  EXPECT_EQ(std::string(shell_word_of<8>("''''").text), "''\\'''");
}
