#include "base/text.h"

#include <gtest/gtest.h>

#include <set>

TEST(Text, EscapeKeepsTheTerminalWhole) {
  const struct {
    std::string bytes, shown;
  } cases[] = {
      {"", ""},
      {"Living room", "Living room"},
      {"Caf\xc3\xa9 \xe2\x82\xac \xf0\x9f\x93\xb6", "Caf\xc3\xa9 \xe2\x82\xac \xf0\x9f\x93\xb6"},
      {"\x1b[31mred", "\\x1b[31mred"},
      {"a\nb\tc\r\x7f", "a\\x0ab\\x09c\\x0d\\x7f"},
      {"back\\slash", "back\\\\slash"},
      {"\\x41", "\\\\x41"},
      {"\xff\xfe", "\\xff\\xfe"},
      {"\xc2\x9b", "\\xc2\\x9b"},                    // C1: starts a control sequence
      {"\xe2\x80\xae!", "\\xe2\\x80\\xae!"},         // right-to-left override
      {"\xc0\xaf", "\\xc0\\xaf"},                    // overlong
      {"\xe0\x80\x80", "\\xe0\\x80\\x80"},           // overlong
      {"\xed\xa0\x80", "\\xed\\xa0\\x80"},           // surrogate
      {"\xf4\x90\x80\x80", "\\xf4\\x90\\x80\\x80"},  // above U+10FFFF
      {"\xe2\x82", "\\xe2\\x82"},                    // cut off
      {"\xe2\x82"
       "A",
       "\\xe2\\x82"
       "A"},
      {std::string("\0", 1), "\\x00"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(text_escape(c.bytes), c.shown);
}

// Each text of one or two bytes has a different escaped form.
TEST(Text, EscapeIsUnambiguous) {
  std::set<std::string> shown;
  for (int a = 0; a < 256; ++a) {
    shown.insert(text_escape(std::string(1, static_cast<char>(a))));
    for (int b = 0; b < 256; ++b)
      shown.insert(text_escape(std::string{static_cast<char>(a), static_cast<char>(b)}));
  }
  EXPECT_EQ(shown.size(), 256u + 65536u);
  for (const std::string& text : shown)
    EXPECT_TRUE(text_is_utf8(text));
}

TEST(Text, JsonKeepsValidTextAndMarksTheRest) {
  bool escaped = true;
  EXPECT_EQ(text_for_json("a\\b\x1b \xc3\xa9", &escaped), "a\\b\x1b \xc3\xa9");
  EXPECT_FALSE(escaped);
  EXPECT_EQ(text_for_json("a\\b\xff\xc3\xa9", &escaped), "a\\\\b\\xff\xc3\xa9");
  EXPECT_TRUE(escaped);
}

TEST(Text, QuoteCutsLongTexts) {
  EXPECT_EQ(text_quote("x\n"), "'x\\x0a'");
  EXPECT_EQ(text_quote(std::string(300, 'x')), "'" + std::string(40, 'x') + "...' (300 bytes)");
}

TEST(Text, Dumps) {
  EXPECT_EQ(text_dump_bytes(""), "");
  EXPECT_EQ(text_dump_bytes("ABCDEFGHIJKLMNOPQ\x1b"),
            "0000  41 42 43 44 45 46 47 48  49 4a 4b 4c 4d 4e 4f 50  ABCDEFGHIJKLMNOP\n"
            "0010  51 1b                                             Q.\n");
  EXPECT_EQ(text_hex("\x01\xfe"), "01fe");
}

TEST(Text, DumpsFoldLinesThatAreEqual) {
  const std::string zeros = "00 00 00 00 00 00 00 00  00 00 00 00 00 00 00 00  ................\n";
  const std::string ones = "31 31 31 31 31 31 31 31  31 31 31 31 31 31 31 31  1111111111111111\n";
  const auto of = [](size_t count, char c) { return std::string(count, c); };
  EXPECT_EQ(text_dump_bytes(of(32, '\0')), "0000  " + zeros + "0010  " + zeros)
      << "nothing between";
  EXPECT_EQ(text_dump_bytes(of(48, '\0')), "0000  " + zeros + "*\n0020  " + zeros);
  EXPECT_EQ(text_dump_bytes(of(80, '\0')), "0000  " + zeros + "*\n0040  " + zeros);
  EXPECT_EQ(text_dump_bytes(of(48, '\0') + of(64, '1') + of(17, '\0')),
            "0000  " + zeros + "*\n0030  " + ones + "*\n0070  " + zeros +
                "0080  00                                                .\n");
}

TEST(Text, Wrap) {
  EXPECT_EQ(text_wrap("aa bb cc", 0, 5, 2), "aa bb cc");
  EXPECT_EQ(text_wrap("aa bb cc", 7, 2, 2), "aa bb\n  cc");
  EXPECT_EQ(text_wrap("aaaaaaaaaa b", 4, 0, 1), "aaaaaaaaaa\n b");
  EXPECT_EQ(text_wrap("", 10, 0, 0), "");
}
