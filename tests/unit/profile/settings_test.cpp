#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <string>

#include "profile/profile_support.h"
#include "profile/values.h"
#include "unit_support.h"

static unsigned update(update_form form, std::initializer_list<profile_setting> settings) {
  return profile_update(kProfile24, form, {settings.begin(), settings.size()});
}

TEST(ProfileSettings, ValuesAreSetAtOnce) {
  set_up();
  EXPECT_EQ(update(update_form::kValues, {{"SSID1", 0, "New"}, {"Empty", 0, "a;b"}}), 1u);
  expect_written(
      "#The word of \"Default\" must not be removed\n"
      "Default\nSSID1=New\nAuthMode=WPA2PSK;OPEN;OPEN\nSSID10=Other\nEmpty=a;b\n");
}

TEST(ProfileSettings, FieldsAreSetAtOnce) {
  set_up();
  EXPECT_EQ(update(update_form::kFields, {{"AuthMode", 1, "WPA"}, {"Empty", 1, "x"}}), 1u);
  expect_written(
      "#The word of \"Default\" must not be removed\n"
      "Default\nSSID1=Home\nAuthMode=WPA2PSK;WPA;OPEN\nSSID10=Other\nEmpty=;x\n");
}

TEST(ProfileSettings, ForcedOnesAreAddedAndTakeOneSetting) {
  set_up();
  EXPECT_EQ(update(update_form::kForcedValues, {{"Added", 0, "1"}}), 1u);
  EXPECT_EQ(update(update_form::kForcedFields, {{"AuthMode", 0, "WPA"}}), 1u);
  const std::string written = with("WPA2PSK;", "WPA;") + "Added=1\n";
  expect_written(written);
  EXPECT_EQ(update(update_form::kForcedValues, {{"SSID1", 0, "x"}, {"Empty", 0, "x"}}), 0u);
  expect_written(written);
}

TEST(ProfileSettings, NoneChangesNothing) {
  set_up();
  for (const update_form form : {update_form::kValues, update_form::kFields,
                                 update_form::kForcedValues, update_form::kForcedFields})
    errors_of([&] { EXPECT_EQ(update(form, {}), 2u); });
  expect_untouched();
}

// The texts are parts of a longer one, so nothing after them may be read.
TEST(ProfileSettings, TextsNeedNoEndMark) {
  set_up();
  const std::string_view line = "SSID1=New\n";
  EXPECT_EQ(update(update_form::kValues, {{line.substr(0, 5), 0, line.substr(6, 3)}}), 1u);
  expect_written(with("SSID1=Home", "SSID1=New"));
}

TEST(ProfileSettings, NegativeIndexAmongThemRefusesAll) {
  set_up();
  const std::string errors = errors_of([] {
    EXPECT_EQ(update(update_form::kFields, {{"AuthMode", 0, "x"}, {"Empty", INT_MIN, "x"}}), 2u);
  });
  EXPECT_EQ(errors,
            rpc_error_prefix(kUpdate) + "Index -2147483648 is error, it should be 0 or positive\n");
  expect_untouched();
}

TEST(ProfileSettings, ListOfArgumentsMayBeLong) {
  std::string before = "Default\n";
  std::string after = before;
  for (char key = 'a'; key <= 'r'; ++key) {
    before += std::string(1, key) + "=0\n";
    after += std::string(1, key) + "=1\n";
  }
  set_up(before);
  EXPECT_EQ(
      wifiprofile_updateParam(kProfile24, "a", "1", "b", "1", "c", "1", "d", "1", "e", "1", "f",
                              "1", "g", "1", "h", "1", "i", "1", "j", "1", "k", "1", "l", "1", "m",
                              "1", "n", "1", "o", "1", "p", "1", "q", "1", "r", "1", ""),
      1u);
  expect_written(after);
}

TEST(ProfileSettings, ContentThatMemoryDoesNotHoldIsReported) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "the sanitizer's allocator ends the program instead of failing";
#endif
  std::string content = kContent;
  while (content.size() < size_t{16} << 20)
    content += "Padding=" + std::string(1000, 'x') + "\n";
  set_up(content);
  // Room for the old content, but not also for the new.
  const long pages = atol(read_file("/proc/self/statm").c_str());
  const rlim_t used = static_cast<rlim_t>(pages * sysconf(_SC_PAGESIZE));
  const rlimit limit = {used + content.size() * 3 / 2, RLIM_INFINITY};
  const rlimit none = {RLIM_INFINITY, RLIM_INFINITY};
  const std::string errors = errors_of([&] {
    ASSERT_EQ(setrlimit(RLIMIT_AS, &limit), 0);
    EXPECT_EQ(write_value(1, "SSID1", "New"), 0u);
    ASSERT_EQ(setrlimit(RLIMIT_AS, &none), 0);
  });
  EXPECT_EQ(errors, rpc_error_prefix(kUpdate) + "out of memory, /tmp/mt76xx_24.dat is unchanged\n");
  expect_untouched(content);
}

TEST(ProfileValues, FailureIsReportedInTheCallersName) {
  EXPECT_EQ(errors_of([] { EXPECT_EQ(update_status("caller", kProfileFailed, kBlankEnd), -1); }),
            rev_error_prefix("caller") + "failed to update wifi profile, ret:0\n ");
  EXPECT_EQ(errors_of([] {
              EXPECT_EQ(update_status("caller", kProfileWritten, ""), 0);
              EXPECT_EQ(update_status("caller", kProfileUnchanged, ""), 0);
            }),
            "");
}

TEST(ProfileValues, NumbersAreDecimal) {
  EXPECT_STREQ(decimal(0).text, "0");
  EXPECT_STREQ(decimal(INT_MAX).text, "2147483647");
  EXPECT_STREQ(decimal(INT_MIN).text, "-2147483648");
}
