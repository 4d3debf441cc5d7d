#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "profile/profile_support.h"
#include "profile/store.h"
#include "unit_support.h"

// `shown` is the key as it appears in messages.
static void expect_refused(const char* key, const char* value, const char* reason,
                           const char* shown) {
  set_up();
  switch_log_on();
  unlink("/tmp/auto_debug/dbg_rpc.log");
  const std::string message = std::string(shown) + " refused: " + reason + "\n";
  std::string errors =
      errors_of([&] { EXPECT_EQ(wifiprofile_updateParam(kProfile24, key, value, ""), 0u); });
  EXPECT_EQ(errors, rpc_error_prefix(kUpdate) + message);
  EXPECT_TRUE(logged().ends_with(message)) << logged();
  errors =
      errors_of([&] { EXPECT_EQ(wifiprofile_updateParam_force(kProfile24, key, value, ""), 0u); });
  EXPECT_EQ(errors, rpc_error_prefix("_wifiprofile_updateParam_force") + message);
  expect_untouched();
  EXPECT_FALSE(exists(kLock24));
}

static void expect_refused(const char* key, const char* value, const char* reason) {
  expect_refused(key, value, reason, key);
}

TEST(ProfileRefusal, LineEndsInAValue) {
  expect_refused("SSID1", "a\nSSID2=b", "line end in the value");
  expect_refused("SSID1", "a\r", "line end in the value");
}

TEST(ProfileRefusal, LineEndsOrAnEqualsSignInAKey) {
  expect_refused("SS\nID1", "a", "line end or '=' in the key", "SS\\x0aID1");
  expect_refused("SSID1\r", "a", "line end or '=' in the key", "SSID1\\x0d");
  expect_refused("SSID1=a", "b", "line end or '=' in the key");
}

TEST(ProfileRefusal, KeyOfMoreThan31Characters) {
  expect_refused("abcdefghijklmnopqrstuvwxyz123456", "a", "key too long");
}

TEST(ProfileRefusal, KeyOf31CharactersIsTaken) {
  const char* key = "abcdefghijklmnopqrstuvwxyz12345";
  set_up(std::string(key) + "=old\n");
  EXPECT_EQ(wifiprofile_updateParam(kProfile24, key, "new", ""), 1u);
  expect_written(std::string(key) + "=new\n");
}

TEST(ProfileRefusal, ValueThatDoesNotFitTheStore) {
  expect_refused("SSID1", std::string(kProfileValueBuffer, 'v').c_str(), "value too long");
}

TEST(ProfileRefusal, LongestValueIsTaken) {
  const std::string value(kProfileValueBuffer - 1, 'v');
  set_up();
  EXPECT_EQ(wifiprofile_updateParam(kProfile24, "SSID1", value.c_str(), ""), 1u);
  expect_written(with("SSID1=Home", "SSID1=" + value));
  std::string buffer(2048, '#');
  EXPECT_EQ(wifiprofile_getParam(kProfile24, "SSID1", buffer.data(), 2047), 1);
  EXPECT_EQ(std::string(buffer.c_str()), value);
}

// The longest key with the longest list; one more character would not fit.
TEST(ProfileRefusal, LongestLineIsWrittenByTheIndexedFormToo) {
  const std::string key(31, 'k');
  const std::string field(kProfileValueBuffer - 3, 'v');
  set_up(key + "=a;b\n");
  EXPECT_EQ(wifiprofile_updateParam_with_index(kProfile24, key.c_str(), 1, field.c_str(), ""), 1u);
  expect_written(key + "=a;" + field + "\n");
  set_up(key + "=a;b\n");
  errors_of([&] {
    EXPECT_EQ(
        wifiprofile_updateParam_with_index(kProfile24, key.c_str(), 1, (field + "v").c_str(), ""),
        0u);
  });
  expect_untouched(key + "=a;b\n");
}

TEST(ProfileRefusal, SeparatorInAField) {
  set_up();
  const std::string errors = errors_of([] {
    EXPECT_EQ(wifiprofile_updateParam_with_index(kProfile24, "AuthMode", 0, "a;b", ""), 0u);
    EXPECT_EQ(wifiprofile_updateParam_with_index_force(kProfile24, "AuthMode", 0, "a;b", ""), 0u);
  });
  EXPECT_EQ(errors, rpc_error_prefix(kUpdate) + "AuthMode refused: ';' in a field\n" +
                        rpc_error_prefix("_wifiprofile_updateParam_force") +
                        "AuthMode refused: ';' in a field\n");
  expect_untouched();
  EXPECT_FALSE(exists(kLock24));
}

TEST(ProfileRefusal, OneBadValueOfTwoWritesNeither) {
  set_up();
  errors_of([] {
    EXPECT_EQ(wifiprofile_updateParam(kProfile24, "SSID1", "good", "SSID10", "b\nad", ""), 0u);
  });
  expect_untouched();
}
