#include "profile/text.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>

#include "profile/store.h"

static std::string replaced(const char* list, const char* field, int index) {
  char out[kProfileValueBuffer] = {};
  EXPECT_EQ(_replace_param_value_with_index(list, field, index, out), out);
  return out;
}

TEST(ProfileText, FieldBehindTheEndIsPaddedWithEmptyFields) {
  EXPECT_EQ(replaced("a;b", "x", 3), "a;b;;x");
  EXPECT_EQ(replaced("a;b", "x", 2), "a;b;x");
  EXPECT_EQ(replaced("", "x", 2), ";;x");
  EXPECT_EQ(replaced("a;", "x", 3), "a;;;x");
}

TEST(ProfileText, FieldInTheListIsReplaced) {
  EXPECT_EQ(replaced("a;b", "x", 0), "x;b");
  EXPECT_EQ(replaced("a;b", "x", 1), "a;x");
  EXPECT_EQ(replaced("a;b;c", "longer", 1), "a;longer;c");
  EXPECT_EQ(replaced("long;longer;c", "", 1), "long;;c");
  EXPECT_EQ(replaced("", "x", 0), "x");
  EXPECT_EQ(replaced(";", "x", 1), ";x");
}

TEST(ProfileText, OldContentOfTheOutputIsGone) {
  char out[kProfileValueBuffer];
  memset(out, '#', sizeof out);
  _replace_param_value_with_index("a;b", "x", 0, out);
  EXPECT_STREQ(out, "x;b");
}

TEST(ProfileText, ListThatWouldNotFitLeavesTheOutputEmpty) {
  const std::string longest(kProfileValueBuffer - 1, 'v');
  EXPECT_EQ(replaced("a", longest.c_str(), 0), longest);
  EXPECT_EQ(replaced("a", (longest + "v").c_str(), 0), "");
  EXPECT_EQ(replaced("a;", longest.c_str(), 0), "");
  EXPECT_EQ(replaced("a", "x", kProfileValueBuffer), "");
  EXPECT_EQ(replaced("a", "x", INT_MAX), "");
}

TEST(ProfileText, NegativeIndexDoesNotWriteBeyondTheOutput) {
  // Callers refuse a negative index earlier, but the function itself must stay within its
  // bounds for any list.
  EXPECT_EXIT(
      {
        const std::string list = replaced("a;b", "a field of some length", -5);
        _exit(list.size() < static_cast<size_t>(kProfileValueBuffer) ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

TEST(ProfileText, LinesKeepTheirLineEndAndComeInPieces) {
  const std::string text = "one\n\n" + std::string(kProfileLineMax, 'x') + "y\nlast";
  std::string_view rest = text;
  EXPECT_EQ(next_line(&rest), "one\n");
  EXPECT_EQ(next_line(&rest), "\n");
  EXPECT_EQ(next_line(&rest), std::string(kProfileLineMax, 'x'));
  EXPECT_EQ(next_line(&rest), "y\n");
  EXPECT_EQ(next_line(&rest), "last");
  EXPECT_EQ(next_line(&rest), "");
  EXPECT_TRUE(rest.empty());
}

TEST(ProfileText, SettingIsSplitAtItsFirstEqualsSign) {
  setting found = {};
  ASSERT_TRUE(parse_setting("Key=a=b\n", &found));
  EXPECT_EQ(found.key, "Key");
  EXPECT_EQ(found.value, "a=b");
  ASSERT_TRUE(parse_setting("=x\n", &found));
  EXPECT_EQ(found.key, "");
  EXPECT_FALSE(parse_setting("no setting\n", &found));
}

TEST(ProfileText, LineSetsTheKeyBeforeItsFirstEqualsSign) {
  EXPECT_TRUE(sets_key("SSID1=a=b\n", "SSID1"));
  EXPECT_TRUE(sets_key("SSID1=", "SSID1"));
  EXPECT_TRUE(sets_key("=x\n", ""));
  EXPECT_FALSE(sets_key("SSID10=a\n", "SSID1"));
  EXPECT_FALSE(sets_key("SSID1=a\n", "SSID10"));
  EXPECT_FALSE(sets_key(" SSID1=a\n", "SSID1"));
  EXPECT_FALSE(sets_key("SSID1", "SSID1"));
  EXPECT_FALSE(sets_key("SSID1\n", "SSID1"));
  EXPECT_FALSE(sets_key("", ""));
}

TEST(ProfileText, BufferGrowsAndKeepsItsContent) {
  text_buffer text = {};
  std::string expected;
  for (int i = 0; i < 1000; ++i) {
    const std::string part = std::to_string(i) + ",";
    text_append(&text, part);
    expected += part;
  }
  EXPECT_EQ(std::string(text.data, text.length), expected);
  EXPECT_FALSE(text.failed);
  text_release(&text);
  EXPECT_EQ(text.data, nullptr);
  EXPECT_EQ(text.length, 0u);
}

TEST(ProfileText, BufferThatCannotGrowFailsForGood) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "the sanitizer's allocator ends the program instead of failing";
#endif
  text_buffer text = {};
  text_append(&text, "kept");
  text_reserve(&text, SIZE_MAX / 2);
  EXPECT_TRUE(text.failed);
  text_append(&text, "lost");
  EXPECT_EQ(std::string(text.data, text.length), "kept");
  text_release(&text);
}
