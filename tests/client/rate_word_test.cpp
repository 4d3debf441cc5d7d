#include "values/rate_word.h"

#include <gtest/gtest.h>

static uint16_t packed(unsigned mode, unsigned bandwidth, bool short_guard, unsigned code) {
  return static_cast<uint16_t>(mode << 13 | (short_guard ? 0x200 : 0) | bandwidth << 7 | code);
}

TEST(RateWord, RatesAreThoseOfTheStandard) {
  const struct {
    unsigned mode, bandwidth;
    bool short_guard;
    unsigned code;
    const char* megabits;
  } cases[] = {
      {0, 0, false, 0, "1.0"},      {0, 0, false, 2, "5.5"},      {0, 0, false, 3, "11.0"},
      {1, 0, false, 0, "6.0"},      {1, 0, false, 7, "54.0"},     {1, 0, false, 11, "6.0"},
      {1, 0, false, 15, "9.0"},     {1, 0, false, 10, "12.0"},    {1, 0, false, 14, "18.0"},
      {1, 0, false, 9, "24.0"},     {1, 0, false, 13, "36.0"},    {1, 0, false, 8, "48.0"},
      {1, 0, false, 12, "54.0"},    {2, 0, false, 0, "6.5"},      {2, 0, true, 7, "72.2"},
      {2, 1, true, 15, "300.0"},    {3, 0, true, 15, "144.4"},    {4, 0, false, 8, "78.0"},
      {4, 2, false, 0x09, "390.0"}, {4, 2, true, 0x19, "866.7"},  {4, 2, false, 0x17, "585.0"},
      {4, 3, true, 0x39, "3466.7"}, {5, 1, false, 0x08, "162.0"}, {4, 0, false, 0x0f, "-"},
  };
  for (const auto& c : cases) {
    const rate_word rate = rate_word_decode(packed(c.mode, c.bandwidth, c.short_guard, c.code));
    EXPECT_EQ(rate_word_megabits(rate), c.megabits) << c.mode << " " << c.code;
  }
}

TEST(RateWord, PartsOfAWord) {
  const rate_word rate = rate_word_decode(packed(4, 2, true, 0x19));
  EXPECT_STREQ(rate.phy, "VHT");
  EXPECT_EQ(rate.mhz, 80u);
  EXPECT_EQ(rate.streams, 2u);
  EXPECT_EQ(rate.mcs, 9u);
  EXPECT_TRUE(rate.short_guard);
}

TEST(RateWord, EveryWordDecodes) {
  for (unsigned value = 0; value <= 0xffff; ++value)
    EXPECT_LE(rate_word_decode(static_cast<uint16_t>(value)).kilobits, 6933333u) << value;
}
