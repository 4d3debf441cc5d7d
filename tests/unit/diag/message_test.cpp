#include "diag/message.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdint>
#include <cstdlib>
#include <string>

// Some cases use formats that no message of the daemon has.
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"

static std::string message(const char* format, ...) {
  char* text = nullptr;
  size_t length = 0;
  FILE* stream = open_memstream(&text, &length);
  va_list values;
  va_start(values, format);
  write_message(stream, format, values);
  va_end(values);
  fclose(stream);
  const std::string whole(text, length);
  free(text);
  return whole;
}

TEST(Message, FormatStandsAsItIs) {
  EXPECT_EQ(message("plain\n \t\033[0m end\n"), "plain\n \t\033[0m end\n");
  EXPECT_EQ(message("100%% of it\n"), "100% of it\n");
  EXPECT_EQ(message(""), "");
}

TEST(Message, NumbersAreThoseOfPrintf) {
  EXPECT_EQ(message("%d %i %u", -1, INT32_MIN, UINT32_MAX), "-1 -2147483648 4294967295");
  EXPECT_EQ(message("0x%04X %02x %hu", 0xAB, 7, 65535), "0x00AB 07 65535");
  EXPECT_EQ(message("%ld %lu", -3L, 4UL), "-3 4");
  EXPECT_EQ(message("%lld %zu", INT64_MIN, size_t{12}), "-9223372036854775808 12");
  EXPECT_EQ(message("%-5d|%+d|%5d|", 1, 2, 3), "1    |+2|    3|");
  EXPECT_EQ(message("%p", reinterpret_cast<void*>(0xAB)), "0xab");
}

TEST(Message, ValuesAreTakenInTheirOrder) {
  EXPECT_EQ(message("%s %d %.*s %lld %s\n", "a", 1, 2, "bcd", 5LL, "e"), "a 1 bc 5 e\n");
}

TEST(Message, PrecisionBoundsATextWithoutATerminator) {
  const char text[4] = {'a', 'b', 'c', 'd'};
  EXPECT_EQ(message("<%.4s> <%.*s> <%.0s>", text, 3, text, text), "<abcd> <abc> <>");
  EXPECT_EQ(message("<%.*s>", -1, "whole"), "<whole>");
}

TEST(Message, NullTextIsNamed) {
  const char* nothing = nullptr;
  EXPECT_EQ(message("<%s>", nothing), "<(null)>");
}

TEST(Message, ControlCharactersOfATextAreWrittenInHexadecimal) {
  EXPECT_EQ(message("[%s]\n", "a\033[2Jb\r\n[RPC] c\a\x7f"),
            "[a\\x1b[2Jb\\x0d\\x0a[RPC] c\\x07\\x7f]\n");
  EXPECT_EQ(message("%s", "\x01\x1f"), "\\x01\\x1f");
}

TEST(Message, BlanksTabsAndBackslashesOfATextStay) {
  EXPECT_EQ(message("%s", " a\tb\\x1b~"), " a\tb\\x1b~");
}

TEST(Message, FormatCharactersOfATextAreText) {
  EXPECT_EQ(message("[%s]", "%n%s%d%%%"), "[%n%s%d%%%]");
}

TEST(Message, CharactersOfUtf8Stay) {
  for (const char* text : {"Caf\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x93\xB6", "\xC2\xA0",
                           "\xED\x9F\xBF", "\xEE\x80\x80", "\xF4\x8F\xBF\xBF"})
    EXPECT_EQ(message("%s", text), text);
}

TEST(Message, BytesThatAreNoUtf8AreWrittenInHexadecimal) {
  EXPECT_EQ(message("%s", "a\xFF\xFE"), "a\\xff\\xfe");
  EXPECT_EQ(message("%s", "\xC3"), "\\xc3");
  EXPECT_EQ(message("%s", "\xC3x"), "\\xc3x");
  EXPECT_EQ(message("%s", "\xE2\x82"), "\\xe2\\x82");
  EXPECT_EQ(message("%.2s", "\xE2\x82\xAC"), "\\xe2\\x82");
  EXPECT_EQ(message("%s", "\x80"), "\\x80");
  // Overlong forms of "/", a surrogate, and a character beyond the last.
  EXPECT_EQ(message("%s", "\xC0\xAF"), "\\xc0\\xaf");
  EXPECT_EQ(message("%s", "\xE0\x80\xAF"), "\\xe0\\x80\\xaf");
  EXPECT_EQ(message("%s", "\xED\xA0\x80"), "\\xed\\xa0\\x80");
  EXPECT_EQ(message("%s", "\xF4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80");
}

// A terminal may take U+009B for the beginning of a sequence, like ESC "[".
TEST(Message, ControlCharactersBeyondAsciiAreWrittenInHexadecimal) {
  EXPECT_EQ(message("%s",
                    "\xC2\x9B"
                    "2J"),
            "\\xc2\\x9b2J");
  EXPECT_EQ(message("%s", "\xC2\x80\xC2\x9F"), "\\xc2\\x80\\xc2\\x9f");
}

TEST(Message, LongTextComesWhole) {
  for (const size_t length : {kMessagePiece - 1, kMessagePiece, kMessagePiece + 1, size_t{8000}}) {
    const std::string text(length, 'x');
    EXPECT_EQ(message("<%s>\n", text.c_str()), "<" + text + ">\n");
  }
  std::string shown;
  for (int i = 0; i < 2000; ++i)
    shown += "\\x1b";
  EXPECT_EQ(message("%s", std::string(2000, '\033').c_str()), shown);
}

TEST(Message, ConversionThatIsNoneIsTextAndTakesNoValue) {
  int count = 7;
  EXPECT_EQ(message("%n%d", 1), "%n1");
  EXPECT_EQ(message("%q %", &count), "%q %");
  EXPECT_EQ(message("%000000000000000000d", 1), "%000000000000000000d");
  EXPECT_EQ(count, 7);
}
