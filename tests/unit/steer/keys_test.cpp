#include "steer/keys.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <climits>
#include <cstring>

#include "steer/steer_support.h"
#include "support/gateway.h"
#include "unit_support.h"

struct text_setter {
  const char* name;
  const char* key;
  int (*set)(int index, const char* text);
  size_t longest;
};

static constexpr text_setter kTextSetters[] = {
    {"wlan_setHncSteerStaMac", "HNCSteerSTAMac", wlan_setHncSteerStaMac, 256},
    {"wlan_setHncActionFrameType", "HNCActionFrameType", wlan_setHncActionFrameType, 256},
    {"wlan_setHncActionFrameMac", "HNCActionFrameMac", wlan_setHncActionFrameMac, 256},
    {"wlan_setHncActionFramePayload", "HNCActionFramePayload", wlan_setHncActionFramePayload, 1025},
};

struct number_setter {
  const char* name;
  const char* key;
  int (*set)(int index, unsigned value);
};

static constexpr number_setter kNumberSetters[] = {
    {"wlan_setHncSteerBlackListAction", "HNCSteerBlackListAction", wlan_setHncSteerBlackListAction},
    {"wlan_setHncSteerBlackListTimer", "HNCSteerBlackListTimer", wlan_setHncSteerBlackListTimer},
};

struct text_getter {
  const char* name;
  const char* key;
  int (*get)(int index, char* text);  // the buffer must be large enough for any of them
  size_t longest;
  int missing;
  const char* message;
};

static constexpr char kGet[] = "failed to get wifi profile, ret:0\n ";
static constexpr char kUpdate[] = "failed to update wifi profile, ret:0\n ";

// Each getter takes a buffer of its own size.
template <size_t Size, int (*Get)(int, char (&)[Size])>
static int read_text(int index, char* text) {
  return Get(index, *reinterpret_cast<char(*)[Size]>(text));
}

static constexpr text_getter kTextGetters[] = {
    {"wlan_getHncSteerStaMac", "HNCSteerSTAMac", read_text<19, wlan_getHncSteerStaMac>, 18, 0,
     kGet},
    {"wlan_getHncActionFrameType", "HNCActionFrameType", read_text<257, wlan_getHncActionFrameType>,
     256, -1, kGet},
    {"wlan_getHncActionFrameMac", "HNCActionFrameMac", read_text<19, wlan_getHncActionFrameMac>, 18,
     -1, kUpdate},
    {"wlan_getHncActionFramePayload", "HNCActionFramePayload",
     read_text<1026, wlan_getHncActionFramePayload>, 1025, 0, kGet},
    {"wlan_getNonAssocRequestMac", "NonAssocReqMac", read_text<19, wlan_getNonAssocRequestMac>, 18,
     -1, kUpdate},
};

struct number_getter {
  const char* name;
  const char* key;
  int (*get)(int index, int* value);
  const char* message;
};

static constexpr number_getter kNumberGetters[] = {
    {"wlan_getHncSteerStaType", "HNCSteerSTAType", wlan_getHncSteerStaType, kUpdate},
    {"wlan_getHncSteerBlackListAction", "HNCSteerBlackListAction", wlan_getHncSteerBlackListAction,
     kGet},
    {"wlan_getHncSteerBlackListTimer", "HNCSteerBlackListTimer", wlan_getHncSteerBlackListTimer,
     kGet},
};

TEST(SteerKeys, SettersWriteTheKeyOfTheProfileThatTheIndexSelects) {
  const int below[] = {1, 8, 0, -5, INT_MIN};
  const int above[] = {9, 16, 17, INT_MAX};
  for (const text_setter& row : kTextSetters) {
    for (const int index : below) {
      const std::string text = "b" + std::to_string(index);
      EXPECT_EQ(row.set(index, text.c_str()), 0);
      EXPECT_EQ(profile_value(kProfile24, row.key), text) << row.name;
    }
    for (const int index : above) {
      const std::string text = "a" + std::to_string(index);
      EXPECT_EQ(row.set(index, text.c_str()), 0);
      EXPECT_EQ(profile_value(kProfile5, row.key), text) << row.name;
    }
    EXPECT_EQ(profile_value(kProfile24, row.key), "b-2147483648");
  }
}

TEST(SteerKeys, SetterAddsTheKeyAndSetsItWhereItIsInPlace) {
  write_file(kProfile24, "Other=1\n");
  std::string expected = "Other=1\n";
  for (const text_setter& row : kTextSetters) {
    EXPECT_EQ(errors_of([&] { EXPECT_EQ(row.set(1, "text"), 0); }), "");
    EXPECT_EQ(errors_of([&] { EXPECT_EQ(row.set(1, "text"), 0); }), "") << row.name;
    expected += std::string(row.key) + "=text\n";
  }
  for (const number_setter& row : kNumberSetters) {
    EXPECT_EQ(row.set(1, 17), 0);
    expected += std::string(row.key) + "=17\n";
  }
  EXPECT_EQ(read_file(kProfile24), expected);
}

TEST(SteerKeys, LongTextsAreCutToWhatIsReadOrFits) {
  for (const text_setter& row : kTextSetters) {
    EXPECT_EQ(row.set(1, std::string(row.longest, 'x').c_str()), 0);
    EXPECT_EQ(profile_value(kProfile24, row.key).size(), row.longest) << row.name;
    EXPECT_EQ(row.set(1, std::string(8000, 'y').c_str()), 0);
    EXPECT_EQ(profile_value(kProfile24, row.key), std::string(row.longest, 'y')) << row.name;
  }
}

TEST(SteerKeys, NumbersAreWrittenSigned) {
  for (const number_setter& row : kNumberSetters) {
    EXPECT_EQ(row.set(9, 2147483647U), 0);
    EXPECT_EQ(profile_value(kProfile5, row.key), "2147483647");
    EXPECT_EQ(row.set(9, 0xFFFFFFFFU), 0);
    EXPECT_EQ(profile_value(kProfile5, row.key), "-1") << row.name;
  }
}

TEST(SteerKeys, TextWithALineEndAddsNoLine) {
  const std::string before = read_file(kProfile24);
  for (const text_setter& row : kTextSetters) {
    const std::string errors = errors_of([&] { EXPECT_EQ(row.set(1, "a\nSSID1=b"), -1); });
    EXPECT_TRUE(errors.ends_with(rev_error_prefix(row.name) + kUpdate)) << errors;
    EXPECT_EQ(row.set(1, "%s%n $(x);'\""), 0);
    EXPECT_EQ(profile_value(kProfile24, row.key), "%s%n $(x);'\"");
    EXPECT_EQ(row.set(1, ""), 0);
  }
  EXPECT_EQ(read_file(kProfile24), before);
}

TEST(SteerKeys, SettersReportAProfileThatCannotBeWritten) {
  unlink(kProfile5);
  for (const text_setter& row : kTextSetters) {
    const std::string errors = errors_of([&] { EXPECT_EQ(row.set(9, "x"), -1); });
    EXPECT_TRUE(errors.ends_with(rev_error_prefix(row.name) + kUpdate)) << errors;
  }
  for (const number_setter& row : kNumberSetters) {
    const std::string errors = errors_of([&] { EXPECT_EQ(row.set(9, 1), -1); });
    EXPECT_TRUE(errors.ends_with(rev_error_prefix(row.name) + kUpdate)) << errors;
  }
}

TEST(SteerKeys, TextGettersAnswerOneAndTheText) {
  char text[1100];
  for (const text_getter& row : kTextGetters) {
    for (const size_t length : {size_t{0}, size_t{1}, row.longest}) {
      set_profile_value(kProfile24, row.key, std::string(length, 'x'));
      set_profile_value(kProfile5, row.key, std::string(length, 'y'));
      memset(text, '#', sizeof text);
      EXPECT_EQ(row.get(8, text), 1) << row.name;
      EXPECT_EQ(std::string(text, length + 2), std::string(length, 'x') + '\0' + '#') << row.name;
      EXPECT_EQ(row.get(9, text), 1);
      EXPECT_EQ(text, std::string(length, 'y'));
    }
  }
}

TEST(SteerKeys, TextGettersDoNotFindWhatIsMissingOrTooLong) {
  for (const text_getter& row : kTextGetters) {
    char text[1100] = "before";
    set_profile_value(kProfile24, row.key, std::string(row.longest + 1, 'x'));
    const std::string errors = errors_of([&] { EXPECT_EQ(row.get(1, text), row.missing); });
    EXPECT_TRUE(errors.ends_with(rev_error_prefix(row.name) + row.message)) << errors;
    remove_key(kProfile24, row.key);
    EXPECT_EQ(errors_of([&] { EXPECT_EQ(row.get(1, text), row.missing); }),
              rev_error_prefix(row.name) + row.message);
    EXPECT_STREQ(text, "before");
  }
}

TEST(SteerKeys, NumberGettersAnswerOneAndTheNumber) {
  for (const number_getter& row : kNumberGetters) {
    int value = 99;
    set_profile_value(kProfile24, row.key, "-12x");
    EXPECT_EQ(row.get(1, &value), 1) << row.name;
    EXPECT_EQ(value, -12);
    set_profile_value(kProfile5, row.key, std::string(255, '0') + "7");
    EXPECT_EQ(row.get(9, &value), 1) << row.name;
    EXPECT_EQ(value, 7);
    set_profile_value(kProfile5, row.key, "");
    EXPECT_EQ(row.get(INT_MAX, &value), 1);
    EXPECT_EQ(value, 0);
  }
}

TEST(SteerKeys, NumberGettersReportAMissingKey) {
  for (const number_getter& row : kNumberGetters) {
    int value = 99;
    remove_key(kProfile24, row.key);
    EXPECT_EQ(errors_of([&] { EXPECT_EQ(row.get(1, &value), -1); }),
              rev_error_prefix(row.name) + row.message);
    set_profile_value(kProfile5, row.key, std::string(256, '0') + "7");
    const std::string errors = errors_of([&] { EXPECT_EQ(row.get(9, &value), -1); });
    EXPECT_TRUE(errors.ends_with(rev_error_prefix(row.name) + row.message)) << errors;
    EXPECT_EQ(value, 99);
  }
}
