#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>

#include "profile/store.h"
#include "unit_support.h"

// The value of a key in a profile with the content; "(none)" when it is not found.
static std::string value_in(const std::string& content, const char* key, int max_len = 255) {
  write_file(kProfile24, content);
  std::string buffer(2048, '#');
  if (wifiprofile_getParam(kProfile24, key, buffer.data(), max_len) == 0) return "(none)";
  return buffer.c_str();
}

TEST(ProfileRead, KeyThatBeginsLikeAnotherMatchesOnlyItsOwnLine) {
  const std::string content = "SSID10=ten\nSSID1=one\nSSID=none\n";
  EXPECT_EQ(value_in(content, "SSID1"), "one");
  EXPECT_EQ(value_in(content, "SSID10"), "ten");
  EXPECT_EQ(value_in(content, "SSID"), "none");
  EXPECT_EQ(value_in(content, "SSID100"), "(none)");
  EXPECT_EQ(value_in(content, "SSI"), "(none)");
}

TEST(ProfileRead, KeyIsComparedWithCaseAndBlanks) {
  const std::string content = "ssid1=small\n SSID1=before\nSSID1 =after\n\tSSID1=tab\n";
  EXPECT_EQ(value_in(content, "SSID1"), "(none)");
  EXPECT_EQ(value_in(content, "ssid1"), "small");
  EXPECT_EQ(value_in(content, " SSID1"), "before");
  EXPECT_EQ(value_in(content, "SSID1 "), "after");
}

TEST(ProfileRead, ValueIsAllBehindTheFirstEqualsSign) {
  EXPECT_EQ(value_in("Key=a=b;c \n", "Key"), "a=b;c ");
  EXPECT_EQ(value_in("Key=\n", "Key"), "");
  EXPECT_EQ(value_in("Key= x\n", "Key"), " x");
}

TEST(ProfileRead, CarriageReturnBelongsToTheValue) {
  EXPECT_EQ(value_in("Key=dos\r\n", "Key"), "dos\r");
}

// A caller gets a C string, which ends at the NUL. Later lines are still found.
TEST(ProfileRead, NulEndsNeitherLineNorProfile) {
  using std::string_literals::operator""s;
  const std::string content = "Key=ab\0cd\nK\0y=no\nNext=line\n"s;
  EXPECT_EQ(value_in(content, "Key"), "ab");
  EXPECT_EQ(value_in(content, "Key", 4), "(none)") << "five characters";
  EXPECT_EQ(value_in(content, "K"), "(none)");
  EXPECT_EQ(value_in(content, "Next"), "line");
}

TEST(ProfileRead, LastLineWithoutLineEndLosesItsLastCharacter) {
  EXPECT_EQ(value_in("Other=1\nKey=value", "Key"), "valu");
  EXPECT_EQ(value_in("Key=x", "Key"), "");
  EXPECT_EQ(value_in("Key=", "Key"), "");
}

TEST(ProfileRead, LinesWithoutEqualsSignNeverMatch) {
  const std::string content = "#The word of Default\nKey\n\n\nKey=found\n";
  EXPECT_EQ(value_in(content, "Key"), "found");
  EXPECT_EQ(value_in(content, "#The word of Default"), "(none)");
  EXPECT_EQ(value_in(content, ""), "(none)");
}

TEST(ProfileRead, EmptyProfileHasNoKeys) {
  EXPECT_EQ(value_in("", "Key"), "(none)");
}

TEST(ProfileRead, FirstOfSeveralLinesCounts) {
  EXPECT_EQ(value_in("Key=first\nKey=second\n", "Key"), "first");
}

TEST(ProfileRead, LimitIsTheLengthWithoutTerminator) {
  write_file(kProfile24, "Key=12345\n");
  char buffer[8];
  memset(buffer, '#', sizeof buffer);
  EXPECT_EQ(wifiprofile_getParam(kProfile24, "Key", buffer, 5), 1);
  EXPECT_EQ(memcmp(buffer, "12345\0##", 8), 0);
  memset(buffer, '#', sizeof buffer);
  EXPECT_EQ(wifiprofile_getParam(kProfile24, "Key", buffer, 4), 0);
  EXPECT_EQ(memcmp(buffer, "########", 8), 0);
  EXPECT_EQ(wifiprofile_getParam(kProfile24, "Key", buffer, -1), 0);
}

TEST(ProfileRead, ValueThatDoesNotFitIsReportedAndALaterOneTaken) {
  switch_log_on();
  std::string value;
  const std::string errors =
      errors_of([&] { value = value_in("Key=too long\nKey=fits\nKey=last\n", "Key", 4); });
  EXPECT_EQ(value, "fits");
  const std::string message = "malloc failed. value:too long, param_len=4, value_len=9\n";
  EXPECT_EQ(errors, rpc_error_prefix("wifiprofile_getParam") + message);
  EXPECT_EQ(logged(), message);
}

TEST(ProfileRead, NoValueThatFitsIsNotFound) {
  std::string value;
  const std::string errors =
      errors_of([&] { value = value_in("Key=12345\nKey=1234567\n", "Key", 3); });
  EXPECT_EQ(value, "(none)");
  EXPECT_EQ(count_of(errors, "malloc failed."), 2);
}

TEST(ProfileRead, LongLineIsReadInPiecesThatCountAsLines) {
  // The first piece has 1727 characters, and the value loses the last of them.
  const std::string first = "Long=" + std::string(1722, 'v');
  const std::string content = first + "Tail=behind\nNext=line\n";
  EXPECT_EQ(value_in(content, "Long", 2000), std::string(1721, 'v'));
  EXPECT_EQ(value_in(content, "Tail"), "behind");
  EXPECT_EQ(value_in(content, "Next"), "line");
}

TEST(ProfileRead, LineOfTheGreatestLengthIsReadWhole) {
  const std::string value(1721, 'v');
  EXPECT_EQ(value_in("Long=" + value + "\nTail=x\n", "Long", 2000), value);
}

TEST(ProfileRead, LineOneCharacterLongerLeavesItsLineEndForTheNext) {
  const std::string value(1722, 'v');
  EXPECT_EQ(value_in("Long=" + value + "\nTail=x\n", "Long", 2000), std::string(1721, 'v'));
  EXPECT_EQ(value_in("Long=" + value + "\nTail=x\n", "Tail"), "x");
}

TEST(ProfileRead, MissingProfileIsReportedWithTheReason) {
  switch_log_on();
  unlink(kProfile24);
  char buffer[16];
  int result = -1;
  const std::string errors =
      errors_of([&] { result = wifiprofile_getParam(kProfile24, "Key", buffer, 15); });
  EXPECT_EQ(result, 0);
  EXPECT_EQ(errors, rpc_error_prefix("wifiprofile_getParam") +
                        "/tmp/mt76xx_24.dat does not exist\n"
                        "wifiprofile_getParam fopen: No such file or directory\n");
  EXPECT_EQ(logged(), "/tmp/mt76xx_24.dat does not exist\n");
}

TEST(ProfileRead, AbsentKeySaysNothing) {
  EXPECT_EQ(errors_of([] { EXPECT_EQ(value_in("Key=1\n", "Other"), "(none)"); }), "");
}

TEST(ProfileRead, FifoInPlaceOfTheProfileDoesNotBlock) {
  unlink(kProfile24);
  ASSERT_EQ(mkfifo(kProfile24, 0666), 0);
  char buffer[16];
  const std::string errors =
      errors_of([&] { EXPECT_EQ(wifiprofile_getParam(kProfile24, "Key", buffer, 15), 0); });
  EXPECT_TRUE(contains(errors, "does not exist")) << errors;
}

TEST(ProfileRead, DirectoryInPlaceOfTheProfileIsNotReadable) {
  unlink(kProfile24);
  ASSERT_EQ(mkdir(kProfile24, 0755), 0);
  char buffer[16];
  errors_of([&] { EXPECT_EQ(wifiprofile_getParam(kProfile24, "Key", buffer, 15), 0); });
}

TEST(ProfileRead, ProfileOfTwoGigabytesOrMoreIsRefused) {
  for (const int64_t size : {0x80000000LL, 0xFFFFFFFFLL, 0x100000000LL}) {
    write_file(kProfile24, "Key=1\n");
    ASSERT_EQ(truncate(kProfile24, size), 0);
    char buffer[16];
    const std::string errors =
        errors_of([&] { EXPECT_EQ(wifiprofile_getParam(kProfile24, "Key", buffer, 15), 0); });
    EXPECT_TRUE(errors.ends_with("wifiprofile_getParam fopen: File too large\n")) << errors;
  }
}

TEST(ProfileRead, LockFileIsMadeForTheBandOfThePath) {
  value_in("Key=1\n", "Key");
  EXPECT_TRUE(exists(kLock24));
  EXPECT_FALSE(exists(kLock5));
  char buffer[16];
  write_file("/tmp/other.dat", "Key=5\n");
  EXPECT_EQ(wifiprofile_getParam("/tmp/other.dat", "Key", buffer, 15), 1);
  EXPECT_STREQ(buffer, "5");
  EXPECT_TRUE(exists(kLock5));
}

TEST(ProfileRead, GoesOnWithoutALockWhenTheLockFileCannotBeOpened) {
  ASSERT_EQ(mkdir(kLock24, 0755), 0);
  std::string value;
  const std::string errors = errors_of([&] { value = value_in("Key=here\n", "Key"); });
  EXPECT_EQ(value, "here");
  EXPECT_EQ(errors,
            "fopen /tmp/.mt76xx_24.dat.lock error\n"
            "fread_lock: Is a directory\n");
}

// Fields.

static std::string field_in(const std::string& list, int index, int max_len = 255) {
  write_file(kProfile24, "List=" + list + "\n");
  char buffer[kProfileFieldBuffer];
  memset(buffer, '#', sizeof buffer);
  if (wifiprofile_getParam_with_index(kProfile24, "List", index, buffer, max_len) == 0) {
    return "(none)";
  }
  return buffer;
}

TEST(ProfileField, CarriageReturnBelongsToTheLastField) {
  EXPECT_EQ(field_in("a;b\r", 0), "a");
  EXPECT_EQ(field_in("a;b\r", 1), "b\r");
}

TEST(ProfileField, FieldsAreCountedFromZero) {
  EXPECT_EQ(field_in("WPA2PSK;OPEN", 0), "WPA2PSK");
  EXPECT_EQ(field_in("WPA2PSK;OPEN", 1), "OPEN");
  EXPECT_EQ(field_in("WPA2PSK;OPEN", 2), "(none)");
}

TEST(ProfileField, EmptyFieldsAreFields) {
  EXPECT_EQ(field_in("", 0), "");
  EXPECT_EQ(field_in("", 1), "(none)");
  EXPECT_EQ(field_in(";;x;", 0), "");
  EXPECT_EQ(field_in(";;x;", 1), "");
  EXPECT_EQ(field_in(";;x;", 2), "x");
  EXPECT_EQ(field_in(";;x;", 3), "");
  EXPECT_EQ(field_in(";;x;", 4), "(none)");
}

TEST(ProfileField, LimitCutsEveryFieldButTheLast) {
  EXPECT_EQ(field_in("abcdef;ghijkl", 0, 3), "abc");
  EXPECT_EQ(field_in("abcdef;ghijkl", 1, 3), "ghijkl");
  EXPECT_EQ(field_in("abcdef", 0, 3), "abcdef");
  EXPECT_EQ(field_in("abcdef;x", 0, 6), "abcdef");
  EXPECT_EQ(field_in("abcdef;x", 0, 0), "");
}

TEST(ProfileField, LastFieldFillsTheBufferOfAWholeValue) {
  EXPECT_EQ(field_in(std::string(255, 'v'), 0, 1), std::string(255, 'v'));
}

TEST(ProfileField, ListOfMoreThan255CharactersIsNotRead) {
  errors_of([] { EXPECT_EQ(field_in("a;" + std::string(254, 'v'), 0), "(none)"); });
}

TEST(ProfileField, NegativeIndexIsRefusedWithAMessage) {
  switch_log_on();
  const std::string errors = errors_of([] {
    char buffer[kProfileFieldBuffer] = "untouched";
    EXPECT_EQ(wifiprofile_getParam_with_index(kProfile24, "AuthMode", -3, buffer, 255), 0);
    EXPECT_STREQ(buffer, "untouched");
  });
  EXPECT_EQ(errors, rpc_error_prefix("wifiprofile_getParam_with_index") +
                        "Index -3 is error, it should be 0 or positive\n");
  EXPECT_EQ(logged(), "Index -3 is error, it should be 0 or positive\n");
  EXPECT_FALSE(exists(kLock24));
}

TEST(ProfileField, MissingKeyIsNotFound) {
  write_file(kProfile24, "Other=1\n");
  char buffer[kProfileFieldBuffer];
  EXPECT_EQ(wifiprofile_getParam_with_index(kProfile24, "List", 0, buffer, 255), 0);
}

TEST(ProfileField, MissingProfileIsNotFound) {
  unlink(kProfile24);
  const std::string errors = errors_of([] {
    char buffer[kProfileFieldBuffer];
    EXPECT_EQ(wifiprofile_getParam_with_index(kProfile24, "List", 0, buffer, 255), 0);
  });
  EXPECT_TRUE(contains(errors, "wifiprofile_getParam fopen: No such file")) << errors;
}
