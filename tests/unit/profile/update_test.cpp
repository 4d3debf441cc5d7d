#include <gtest/gtest.h>
#include <unistd.h>

#include <climits>
#include <string>

#include "profile/profile_support.h"
#include "profile/store.h"
#include "unit_support.h"

TEST(ProfileUpdate, WritesTheValueAndTheMirror) {
  set_up();
  const std::string errors = errors_of(
      [] { EXPECT_EQ(wifiprofile_updateParam(kProfile24, "SSID1", "Living room", ""), 1u); });
  EXPECT_EQ(errors, "");
  expect_written(with("SSID1=Home", "SSID1=Living room"));
  EXPECT_FALSE(exists(kMirror5));
  EXPECT_FALSE(exists(kLock5));
}

TEST(ProfileUpdate, ValueMayBeEmptyOrHoldEqualsSignsAndSeparators) {
  set_up();
  EXPECT_EQ(wifiprofile_updateParam(kProfile24, "SSID1", "", ""), 1u);
  expect_written(with("SSID1=Home", "SSID1="));
  EXPECT_EQ(wifiprofile_updateParam(kProfile24, "SSID1", "a=b;c", ""), 1u);
  expect_written(with("SSID1=Home", "SSID1=a=b;c"));
}

TEST(ProfileUpdate, SeveralKeysAreWrittenAtOnce) {
  set_up();
  EXPECT_EQ(wifiprofile_updateParam(kProfile24, "Empty", "full", "SSID1", "New", ""), 1u);
  std::string expected = with("SSID1=Home", "SSID1=New");
  expected.replace(expected.find("Empty="), 6, "Empty=full");
  expect_written(expected);
}

TEST(ProfileUpdate, OneOfSeveralKeysChangedIsWritten) {
  set_up();
  EXPECT_EQ(wifiprofile_updateParam(kProfile24, "SSID10", "Other", "SSID1", "New", ""), 1u);
  expect_written(with("SSID1=Home", "SSID1=New"));
}

TEST(ProfileUpdate, ValuesInPlaceAreNoChange) {
  set_up();
  const std::string errors = errors_of(
      [] { EXPECT_EQ(wifiprofile_updateParam(kProfile24, "SSID1", "Home", "Empty", "", ""), 2u); });
  EXPECT_EQ(errors, "no change\n");
  expect_untouched();
}

TEST(ProfileUpdate, NoChangeLeavesAnOlderMirrorAlone) {
  set_up();
  write_file(kMirror24, "older mirror");
  errors_of([] { EXPECT_EQ(wifiprofile_updateParam(kProfile24, "SSID1", "Home", ""), 2u); });
  EXPECT_EQ(read_file(kMirror24), "older mirror");
}

TEST(ProfileUpdate, SecondUpdateWithTheSameValueIsNoChange) {
  set_up();
  EXPECT_EQ(wifiprofile_updateParam(kProfile24, "SSID1", "New", ""), 1u);
  errors_of([] { EXPECT_EQ(wifiprofile_updateParam(kProfile24, "SSID1", "New", ""), 2u); });
}

TEST(ProfileUpdate, AbsentKeyFailsAndNothingIsWritten) {
  set_up();
  EXPECT_EQ(wifiprofile_updateParam(kProfile24, "SSID2", "New", ""), 0u);
  expect_untouched();
}

TEST(ProfileUpdate, OneAbsentKeyOfTwoFailsAndNothingIsWritten) {
  set_up();
  EXPECT_EQ(wifiprofile_updateParam(kProfile24, "SSID1", "New", "SSID2", "New", ""), 0u);
  expect_untouched();
  EXPECT_EQ(wifiprofile_updateParam(kProfile24, "SSID1", "Home", "SSID2", "New", ""), 0u);
  expect_untouched();
}

TEST(ProfileUpdate, KeyOnTwoLinesFails) {
  const std::string content = std::string(kContent) + "SSID1=Again\n";
  set_up(content);
  EXPECT_EQ(wifiprofile_updateParam(kProfile24, "SSID1", "New", ""), 0u);
  expect_untouched(content);
}

TEST(ProfileUpdate, KeyGivenTwiceCountsOnItsFirstRequestOnly) {
  set_up();
  EXPECT_EQ(wifiprofile_updateParam(kProfile24, "SSID1", "First", "SSID1", "Second", ""), 0u);
  expect_untouched();
}

TEST(ProfileUpdate, EmptyListIsNoChange) {
  set_up();
  EXPECT_EQ(errors_of([] { EXPECT_EQ(wifiprofile_updateParam(kProfile24, ""), 2u); }),
            "no change\n");
  expect_untouched();
}

TEST(ProfileUpdate, LinesWithoutEqualsSignAreKept) {
  set_up();
  EXPECT_EQ(wifiprofile_updateParam(kProfile24, "Default", "New", ""), 0u);
  expect_untouched();
}

TEST(ProfileUpdate, RewrittenLastLineGetsALineEnd) {
  set_up("A=1\nLast=value");
  EXPECT_EQ(wifiprofile_updateParam(kProfile24, "Last", "new", ""), 1u);
  expect_written("A=1\nLast=new\n");
}

TEST(ProfileUpdate, OtherLastLineKeepsItsMissingLineEnd) {
  set_up("A=1\nLast=value");
  EXPECT_EQ(wifiprofile_updateParam(kProfile24, "A", "2", ""), 1u);
  expect_written("A=2\nLast=value");
}

TEST(ProfileUpdate, LastLineWithoutLineEndComparesOneCharacterShort) {
  set_up("Last=value");
  errors_of([] { EXPECT_EQ(wifiprofile_updateParam(kProfile24, "Last", "valu", ""), 2u); });
  expect_untouched("Last=value");
}

TEST(ProfileUpdate, PiecesOfALongLineAreKeptByteForByte) {
  const std::string content = "Long=" + std::string(4000, 'v') + "\nSSID1=Home\n";
  set_up(content);
  EXPECT_EQ(wifiprofile_updateParam(kProfile24, "SSID1", "New", ""), 1u);
  expect_written("Long=" + std::string(4000, 'v') + "\nSSID1=New\n");
}

TEST(ProfileUpdate, NulBytesOfOtherLinesAreKept) {
  const std::string content = std::string("Bin=a\0b\n", 8) + "SSID1=Home\n";
  set_up(content);
  EXPECT_EQ(wifiprofile_updateParam(kProfile24, "SSID1", "New", ""), 1u);
  expect_written(std::string("Bin=a\0b\n", 8) + "SSID1=New\n");
}

// In a file from another system, carriage returns are part of the values.
TEST(ProfileUpdate, CarriageReturnsOfOtherLinesAreKept) {
  set_up("A=1\r\nSSID1=Home\r\nL=a;b\r\n");
  EXPECT_EQ(wifiprofile_updateParam(kProfile24, "SSID1", "Home", ""), 1u) << "it was \"Home\\r\"";
  expect_written("A=1\r\nSSID1=Home\nL=a;b\r\n");
  EXPECT_EQ(wifiprofile_updateParam_with_index(kProfile24, "L", 0, "x", ""), 1u);
  expect_written("A=1\r\nSSID1=Home\nL=x;b\r\n");
  EXPECT_EQ(wifiprofile_updateParam_with_index(kProfile24, "L", 1, "y", ""), 1u);
  expect_written("A=1\r\nSSID1=Home\nL=x;y\n");
}

TEST(ProfileUpdate, NulInItsOwnLineEndsNeitherLineNorProfile) {
  using std::string_literals::operator""s;
  set_up("A=1\0hidden\nL=a;b\0c;d\nSSID1=Home\n"s);
  EXPECT_EQ(wifiprofile_updateParam(kProfile24, "A", "1", ""), 1u) << "it was longer";
  expect_written("A=1\nL=a;b\0c;d\nSSID1=Home\n"s);
  EXPECT_EQ(wifiprofile_updateParam_with_index(kProfile24, "L", 2, "x", ""), 1u);
  expect_written("A=1\nL=a;b\0c;x\nSSID1=Home\n"s);
  EXPECT_EQ(wifiprofile_updateParam(kProfile24, "SSID1", "New", ""), 1u);
  expect_written("A=1\nL=a;b\0c;x\nSSID1=New\n"s);
}

TEST(ProfileUpdate, RequestsAreTracedInLogAndOnConsole) {
  set_up();
  switch_log_on();
  switch_console_on();
  const std::string output = output_of([] {
    EXPECT_EQ(wifiprofile_updateParam(kProfile24, "SSID1", "New", "Empty", "x", ""), 1u);
    EXPECT_EQ(wifiprofile_updateParam_with_index(kProfile24, "AuthMode", 2, "WPA", ""), 1u);
  });
  const std::string first = "_wifiprofile_updateParam: param:SSID1[0]=New\n";
  const std::string second = "_wifiprofile_updateParam: param:Empty[0]=x\n";
  const std::string third = "_wifiprofile_updateParam: param:AuthMode[2]=WPA\n";
  EXPECT_EQ(logged(), first + second + third);
  const std::string prefix = rpc_prefix(kUpdate);
  EXPECT_EQ(output, prefix + first + prefix + second + prefix + third);
}

TEST(ProfileIndexedUpdate, ReplacesOneFieldOfEachKey) {
  set_up();
  EXPECT_EQ(
      wifiprofile_updateParam_with_index(kProfile24, "AuthMode", 1, "WPA", "SSID1", 0, "New", ""),
      1u);
  std::string expected = with("WPA2PSK;OPEN;OPEN", "WPA2PSK;WPA;OPEN");
  expected.replace(expected.find("Home"), 4, "New");
  expect_written(expected);
}

TEST(ProfileIndexedUpdate, FillsAShorterListUpWithEmptyFields) {
  set_up();
  EXPECT_EQ(wifiprofile_updateParam_with_index(kProfile24, "AuthMode", 5, "x", ""), 1u);
  expect_written(with("WPA2PSK;OPEN;OPEN", "WPA2PSK;OPEN;OPEN;;;x"));
}

TEST(ProfileIndexedUpdate, FieldMayBecomeEmpty) {
  set_up();
  EXPECT_EQ(wifiprofile_updateParam_with_index(kProfile24, "AuthMode", 0, "", ""), 1u);
  expect_written(with("WPA2PSK;OPEN;OPEN", ";OPEN;OPEN"));
}

TEST(ProfileIndexedUpdate, FieldInPlaceIsNoChange) {
  set_up();
  const std::string errors = errors_of([] {
    EXPECT_EQ(wifiprofile_updateParam_with_index(kProfile24, "AuthMode", 1, "OPEN", ""), 2u);
  });
  EXPECT_EQ(errors, "no change\n");
  expect_untouched();
}

TEST(ProfileIndexedUpdate, NegativeIndexReturnsTwoWithoutOpeningAnyFile) {
  set_up();
  switch_log_on();
  unlink(kProfile24);
  const std::string errors = errors_of([] {
    EXPECT_EQ(wifiprofile_updateParam_with_index(kProfile24, "AuthMode", -1, "x", ""), 2u);
  });
  EXPECT_EQ(errors, rpc_error_prefix(kUpdate) + "Index -1 is error, it should be 0 or positive\n");
  EXPECT_EQ(logged(), "Index -1 is error, it should be 0 or positive\n");
  EXPECT_FALSE(exists(kLock24));
  EXPECT_TRUE(names_in("/tmp", "wifitemp").empty());
}

TEST(ProfileIndexedUpdate, NegativeIndexBehindAGoodRequestWritesNothing) {
  set_up();
  errors_of([] {
    EXPECT_EQ(wifiprofile_updateParam_with_index(kProfile24, "AuthMode", 0, "x", "SSID1", INT_MIN,
                                                 "y", ""),
              2u);
  });
  expect_untouched();
  EXPECT_FALSE(exists(kLock24));
}

TEST(ProfileIndexedUpdate, ListThatOutgrowsTheStoreIsRefused) {
  set_up();
  std::string errors = errors_of([] {
    EXPECT_EQ(wifiprofile_updateParam_with_index(kProfile24, "AuthMode", INT_MAX, "x", ""), 0u);
  });
  EXPECT_EQ(errors, rpc_error_prefix(kUpdate) + "AuthMode refused: value too long\n");
  expect_untouched();
  const std::string field(kProfileValueBuffer - 1, 'v');
  errors = errors_of([&] {
    EXPECT_EQ(wifiprofile_updateParam_with_index(kProfile24, "AuthMode", 1, field.c_str(), ""), 0u);
  });
  EXPECT_TRUE(contains(errors, "AuthMode refused: value too long\n")) << errors;
  expect_untouched();
}

TEST(ProfileIndexedUpdate, RefusalOfOneKeyLeavesTheOthersUnwritten) {
  set_up();
  errors_of([] {
    EXPECT_EQ(wifiprofile_updateParam_with_index(kProfile24, "SSID1", 0, "New", "AuthMode",
                                                 kProfileValueBuffer, "x", ""),
              0u);
  });
  expect_untouched();
}
