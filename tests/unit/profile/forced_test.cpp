#include <gtest/gtest.h>
#include <unistd.h>

#include <climits>
#include <string>

#include "profile/profile_support.h"
#include "profile/store.h"
#include "unit_support.h"

TEST(ProfileForcedUpdate, RewritesTheLineAndSaysSo) {
  set_up();
  switch_log_on();
  switch_console_on();
  const std::string output = output_of(
      [] { EXPECT_EQ(wifiprofile_updateParam_force(kProfile24, "SSID1", "New", ""), 1u); });
  expect_written(with("SSID1=Home", "SSID1=New"));
  const std::string asked = "_wifiprofile_updateParam_force: param:SSID1[0]=New\n";
  const std::string done = "update param SSID1=New\n success\n";
  EXPECT_EQ(logged(), asked + done);
  const std::string prefix = rpc_prefix("_wifiprofile_updateParam_force");
  EXPECT_EQ(output, prefix + asked + prefix + done);
}

TEST(ProfileForcedUpdate, WritesAlsoWhenTheValueIsInPlace) {
  set_up();
  const std::string errors = errors_of(
      [] { EXPECT_EQ(wifiprofile_updateParam_force(kProfile24, "SSID1", "Home", ""), 1u); });
  EXPECT_EQ(errors, "");
  expect_written(kContent);
}

TEST(ProfileForcedUpdate, AppendsAMissingKeyAndSaysSo) {
  set_up();
  switch_log_on();
  switch_console_on();
  const std::string output = output_of(
      [] { EXPECT_EQ(wifiprofile_updateParam_force(kProfile24, "SSID2", "New", ""), 1u); });
  expect_written(std::string(kContent) + "SSID2=New\n");
  const std::string done = "add new param SSID2=New\n success\n";
  EXPECT_TRUE(logged().ends_with(done)) << logged();
  EXPECT_TRUE(output.ends_with(rpc_prefix("_wifiprofile_updateParam_force") + done)) << output;
}

TEST(ProfileForcedUpdate, AppendsBehindALastLineWithoutLineEnd) {
  set_up("A=1\nLast=value");
  EXPECT_EQ(wifiprofile_updateParam_force(kProfile24, "B", "2", ""), 1u);
  expect_written("A=1\nLast=value\nB=2\n");
}

TEST(ProfileForcedUpdate, AppendsToAnEmptyProfile) {
  set_up("");
  EXPECT_EQ(wifiprofile_updateParam_force(kProfile24, "B", "2", ""), 1u);
  expect_written("B=2\n");
}

TEST(ProfileForcedUpdate, KeyOnTwoLinesFails) {
  const std::string content = std::string(kContent) + "SSID1=Again\n";
  set_up(content);
  EXPECT_EQ(wifiprofile_updateParam_force(kProfile24, "SSID1", "New", ""), 0u);
  expect_untouched(content);
}

TEST(ProfileForcedUpdate, ActsOnItsFirstKeyOnlyButCountsAll) {
  set_up();
  EXPECT_EQ(wifiprofile_updateParam_force(kProfile24, "SSID1", "New", "Empty", "x", ""), 0u);
  expect_untouched();
}

TEST(ProfileForcedUpdate, EmptyListIsNoChange) {
  set_up();
  EXPECT_EQ(errors_of([] { EXPECT_EQ(wifiprofile_updateParam_force(kProfile24, ""), 2u); }), "");
  expect_untouched();
}

TEST(ProfileForcedUpdate, MissingProfileIsReportedAndNotCreated) {
  set_up();
  unlink(kProfile24);
  const std::string errors = errors_of(
      [] { EXPECT_EQ(wifiprofile_updateParam_force(kProfile24, "SSID1", "New", ""), 0u); });
  EXPECT_EQ(errors,
            "_wifiprofile_updateParam_force 1 open /tmp/mt76xx_24.dat error"
            "open file: No such file or directory\n");
  EXPECT_FALSE(exists(kProfile24));
}

TEST(ProfileForcedUpdate, IndexedFormReplacesAField) {
  set_up();
  EXPECT_EQ(wifiprofile_updateParam_with_index_force(kProfile24, "AuthMode", 1, "WPA", ""), 1u);
  expect_written(with("WPA2PSK;OPEN;OPEN", "WPA2PSK;WPA;OPEN"));
  EXPECT_EQ(wifiprofile_updateParam_with_index_force(kProfile24, "AuthMode", 1, "WPA", ""), 1u);
}

TEST(ProfileForcedUpdate, IndexedFormAppendsTheFieldAsTheWholeValue) {
  set_up();
  EXPECT_EQ(wifiprofile_updateParam_with_index_force(kProfile24, "NewList", 3, "x", ""), 1u);
  expect_written(std::string(kContent) + "NewList=x\n");
}

TEST(ProfileForcedUpdate, NegativeIndexReturnsTwoWithoutOpeningAnyFile) {
  set_up();
  const std::string errors = errors_of([] {
    EXPECT_EQ(wifiprofile_updateParam_with_index_force(kProfile24, "AuthMode", -7, "x", ""), 2u);
  });
  EXPECT_EQ(errors, rpc_error_prefix("_wifiprofile_updateParam_force") +
                        "Index -7 is error, it should be 0 or positive\n");
  expect_untouched();
  EXPECT_FALSE(exists(kLock24));
}

TEST(ProfileForcedUpdate, IndexedListThatOutgrowsTheStoreIsRefused) {
  set_up();
  const std::string errors = errors_of([] {
    EXPECT_EQ(wifiprofile_updateParam_with_index_force(kProfile24, "AuthMode", INT_MAX, "x", ""),
              0u);
  });
  EXPECT_EQ(errors, rpc_error_prefix("_wifiprofile_updateParam_force") +
                        "AuthMode refused: value too long\n");
  expect_untouched();
}
