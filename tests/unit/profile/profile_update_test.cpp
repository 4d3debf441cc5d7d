#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <string>

#include "profile/profile.h"
#include "profile/profile_text.h"
#include "unit_support.h"

static constexpr char kContent[] =
    "#The word of \"Default\" must not be removed\n"
    "Default\n"
    "SSID1=Home\n"
    "AuthMode=WPA2PSK;OPEN;OPEN\n"
    "SSID10=Other\n"
    "Empty=\n";

static const std::string kUpdate = "_wifiprofile_updateParam";

// A fresh profile, no mirror and no lock file.
static void set_up(const std::string& content = kContent) {
  for (const char* path : {kMirror24, kMirror5, kLock24, kLock5}) {
    unlink(path);
  }
  write_file(kProfile24, content);
}

// The content with a part of it replaced.
static std::string with(const std::string& old_part, const std::string& new_part) {
  std::string content = kContent;
  const size_t at = content.find(old_part);
  EXPECT_NE(at, content.npos);
  return content.replace(at, old_part.size(), new_part);
}

static void expect_untouched(const std::string& content = kContent) {
  EXPECT_EQ(read_file(kProfile24), content);
  EXPECT_FALSE(exists(kMirror24));
  EXPECT_TRUE(names_in("/tmp", "wifitemp").empty());
}

static void expect_written(const std::string& content) {
  EXPECT_EQ(read_file(kProfile24), content);
  EXPECT_EQ(read_file(kMirror24), content);
  EXPECT_TRUE(names_in("/tmp", "wifitemp").empty());
}

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

// The indexed form.

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

// The file sets of the bands.

static void update_with_blocked_temporary(const char* path, const char* pattern, bool forced) {
  // All thousand names are taken by directories, so that the message shows the name.
  for (int i = 0; i < 1000; ++i) {
    char name[64];
    snprintf(name, sizeof name, "%s%d", pattern, i);
    mkdir(name, 0755);
  }
  unsigned result = 9;
  const std::string errors = errors_of([&] {
    result = forced ? wifiprofile_updateParam_force(path, "SSID1", "New", "")
                    : wifiprofile_updateParam(path, "SSID1", "New", "");
  });
  EXPECT_EQ(result, 0u);
  const std::string name = forced ? "_wifiprofile_updateParam_force" : "_wifiprofile_updateParam";
  const std::string head = name + " 2 open " + pattern;
  const std::string tail = " erroropen file: Is a directory\n";
  ASSERT_TRUE(errors.starts_with(head) && errors.ends_with(tail)) << errors;
  const std::string number = errors.substr(head.size(), errors.size() - head.size() - tail.size());
  EXPECT_TRUE(!number.empty() && number.size() <= 3 &&
              number.find_first_not_of("0123456789") == number.npos)
      << errors;
}

TEST(ProfileFiles, TemporaryThatCannotBeOpenedFailsTheUpdate) {
  set_up();
  update_with_blocked_temporary(kProfile24, "/tmp/wifitemp.24.1.", false);
  EXPECT_EQ(read_file(kProfile24), kContent);
  EXPECT_FALSE(exists(kMirror24));
  const int lock = try_exclusive(kLock24);
  EXPECT_GE(lock, 0);
  close(lock);
}

TEST(ProfileFiles, ForcedTemporaryHasNamesOfItsOwn) {
  set_up();
  update_with_blocked_temporary(kProfile24, "/tmp/wifitemp.24.", true);
  EXPECT_EQ(read_file(kProfile24), kContent);
  // The names of a normal update are free.
  EXPECT_EQ(wifiprofile_updateParam(kProfile24, "SSID1", "New", ""), 1u);
}

TEST(ProfileFiles, FiveGigahertzBandHasASetOfItsOwn) {
  set_up();
  write_file(kProfile5, kContent);
  EXPECT_EQ(wifiprofile_updateParam(kProfile5, "SSID1", "Five", ""), 1u);
  EXPECT_EQ(read_file(kMirror5), with("SSID1=Home", "SSID1=Five"));
  EXPECT_TRUE(exists(kLock5));
  EXPECT_FALSE(exists(kLock24));
  expect_untouched();
  update_with_blocked_temporary(kProfile5, "/tmp/wifitemp.5.1.", false);
}

TEST(ProfileFiles, ForcedUpdateOfFiveGigahertzHasItsTemporaryNames) {
  write_file(kProfile5, kContent);
  update_with_blocked_temporary(kProfile5, "/tmp/wifitemp.5.", true);
}

TEST(ProfileFiles, AnyOtherPathUsesTheFiveGigahertzSet) {
  set_up();
  write_file("/tmp/elsewhere.dat", kContent);
  EXPECT_EQ(wifiprofile_updateParam("/tmp/elsewhere.dat", "SSID1", "Five", ""), 1u);
  EXPECT_EQ(read_file("/tmp/elsewhere.dat"), with("SSID1=Home", "SSID1=Five"));
  EXPECT_EQ(read_file(kMirror5), with("SSID1=Home", "SSID1=Five"));
  EXPECT_TRUE(exists(kLock5));
  EXPECT_FALSE(exists(kLock24));
}

TEST(ProfileFiles, PathThatContainsTheNameUsesTheTwoPointFourGigahertzSet) {
  set_up();
  mkdir("/tmp/copy", 0755);
  write_file("/tmp/copy/mt76xx_24.dat.old", kContent);
  EXPECT_EQ(wifiprofile_updateParam("/tmp/copy/mt76xx_24.dat.old", "SSID1", "New", ""), 1u);
  EXPECT_TRUE(exists(kLock24));
  EXPECT_EQ(read_file(kMirror24), with("SSID1=Home", "SSID1=New"));
  EXPECT_EQ(read_file(kProfile24), kContent);
}

TEST(ProfileFiles, MissingProfileIsReportedAndNotCreated) {
  set_up();
  unlink(kProfile24);
  const std::string errors =
      errors_of([] { EXPECT_EQ(wifiprofile_updateParam(kProfile24, "SSID1", "New", ""), 0u); });
  EXPECT_EQ(errors,
            "_wifiprofile_updateParam 1 open /tmp/mt76xx_24.dat error"
            "open file: No such file or directory\n");
  EXPECT_FALSE(exists(kProfile24));
  EXPECT_FALSE(exists(kMirror24));
  EXPECT_TRUE(names_in("/tmp", "wifitemp").empty());
  const int lock = try_exclusive(kLock24);
  EXPECT_GE(lock, 0);
  close(lock);
}

TEST(ProfileFiles, UpdateGoesOnWithoutALockWhenTheLockFileCannotBeOpened) {
  set_up();
  mkdir(kLock24, 0755);
  const std::string errors =
      errors_of([] { EXPECT_EQ(wifiprofile_updateParam(kProfile24, "SSID1", "New", ""), 1u); });
  EXPECT_EQ(errors,
            "open /tmp/.mt76xx_24.dat.lock error\n"
            "fwrite_lock: Is a directory\n");
  expect_written(with("SSID1=Home", "SSID1=New"));
  rmdir(kLock24);
}

// Refusals.

static void expect_refused(const char* key, const char* value, const char* reason) {
  set_up();
  switch_log_on();
  unlink("/tmp/auto_debug/dbg_rpc.log");
  const std::string message = std::string(key) + " refused: " + reason + "\n";
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

TEST(ProfileRefusal, LineEndsInAValue) {
  expect_refused("SSID1", "a\nSSID2=b", "line end in the value");
  expect_refused("SSID1", "a\r", "line end in the value");
}

TEST(ProfileRefusal, LineEndsOrAnEqualsSignInAKey) {
  expect_refused("SS\nID1", "a", "line end or '=' in the key");
  expect_refused("SSID1\r", "a", "line end or '=' in the key");
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

// The forced forms.

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
