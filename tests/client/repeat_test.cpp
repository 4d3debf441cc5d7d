#include "commands/repeat.h"

#include <gtest/gtest.h>

TEST(Settings, TimesOfOneHundredthOfASecondToADay) {
  double seconds = 0;
  EXPECT_TRUE(repeat_parse_time("1s", &seconds) && seconds == 1);
  EXPECT_TRUE(repeat_parse_time("500ms", &seconds) && seconds == 0.5);
  EXPECT_TRUE(repeat_parse_time("2.5", &seconds) && seconds == 2.5);
  EXPECT_TRUE(repeat_parse_time("10ms", &seconds) && seconds == 0.01);
  EXPECT_TRUE(repeat_parse_time("5m", &seconds) && seconds == 300);
  EXPECT_TRUE(repeat_parse_time("24h", &seconds) && seconds == 86400);
  EXPECT_TRUE(repeat_parse_time("0.01", &seconds) && repeat_parse_time("86400", &seconds));
  for (const char* text : {"", "s", "25h", "1d", "1 s", "0", "-1", "9ms", "86401", "nan", "inf"})
    EXPECT_FALSE(repeat_parse_time(text, &seconds)) << text;
}

TEST(Settings, AreTakenOffTheEnd) {
  std::vector<std::string> words = {"wlan_get_stats", "1", "0", "--every", "2s", "--count", "3"};
  repeat_settings settings;
  std::string error;
  ASSERT_TRUE(repeat_take(words, settings, error));
  EXPECT_EQ(words, (std::vector<std::string>{"wlan_get_stats", "1", "0"}));
  EXPECT_EQ(settings.every, 2);
  EXPECT_EQ(settings.count, 3u);
}

TEST(Settings, AreTakenOffTheFrontToo) {
  std::vector<std::string> words = {"--count", "2", "wlan_get_stats", "1", "--every", "1m"};
  repeat_settings settings;
  std::string error;
  ASSERT_TRUE(repeat_take(words, settings, error));
  EXPECT_EQ(words, (std::vector<std::string>{"wlan_get_stats", "1"}));
  EXPECT_EQ(settings.every, 60);
  EXPECT_EQ(settings.count, 2u);
}

TEST(Settings, WrongOnesAreNamed) {
  const std::vector<std::string> mistakes[] = {
      {"--every", "soon"}, {"--count", "0"}, {"--count", "-1"}, {"--count", "x"}};
  for (const auto& wrong : mistakes) {
    std::vector<std::string> words = wrong;
    repeat_settings settings;
    std::string error;
    EXPECT_FALSE(repeat_take(words, settings, error));
    EXPECT_NE(error.find("'" + wrong[1] + "'"), std::string::npos) << error;
  }
}
