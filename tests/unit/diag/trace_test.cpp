#include "diag/trace.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include "unit_support.h"

// One case is a null format.
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"

static constexpr char kLog[] = "/tmp/auto_debug/dbg_rpc.log";

// A log as the daemon makes it, with access for its owner only.
static void fill_log(size_t size) {
  write_file(kLog, std::string(size, 'x'));
  ASSERT_EQ(chmod(kLog, 0600), 0);
}
static constexpr char kBackup[] = "/tmp/auto_debug/dbg_rpc.log.bak";

// The part of a log line after the time stamp and its separator.
static std::string after_stamp(const std::string& line) {
  const size_t separator = line.find(" - ");
  return separator == std::string::npos ? line : line.substr(separator + 3);
}

static void emit_all_families() {
  RPC_TRACE("rpc %d\n", 1);
  RPC_ERROR("rpc error %d\n", 2);
  REV_TRACE("rev %d\n", 3);
  REV_ERROR("rev error %d\n", 4);
}

TEST(Trace, WithoutSwitchesOnlyTheErrorFamiliesWrite) {
  catch_stream(1);
  catch_stream(2);
  emit_all_families();
  EXPECT_EQ(caught_stream(2),
            "\033[1;31;40m[RPC] **ERROR**\033[0m emit_all_families rpc error 2\n"
            "[REV-RPC] \033[40m\033[31;40m**ERROR**\033[0m emit_all_families rev error 4\n");
  EXPECT_EQ(caught_stream(1), "");
  EXPECT_FALSE(exists("/tmp/auto_debug"));
}

TEST(Trace, ConsoleSwitchShowsTheTraceFamilies) {
  write_file("/tmp/wlandbg", "");
  catch_stream(1);
  emit_all_families();
  EXPECT_EQ(caught_stream(1),
            "\033[1;32;40m[RPC] emit_all_families\033[0m rpc 1\n"
            "[REV-RPC] \033[40m\033[31;40memit_all_families\033[0m rev 3\n");
}

TEST(Trace, ConsoleSwitchIsTestedAtEveryMessage) {
  catch_stream(1);
  RPC_TRACE("off\n");
  mkdir("/tmp/wlandbg", 0755);  // any file type counts
  RPC_TRACE("on\n");
  rmdir("/tmp/wlandbg");
  RPC_TRACE("off again\n");
  const std::string text = caught_stream(1);
  EXPECT_NE(text.find("on\n"), text.npos);
  EXPECT_EQ(text.find("off"), text.npos);
}

// Otherwise a text from the wire could begin a line that looks like the daemon's own.
TEST(Trace, TextNeitherDrivesTheTerminalNorForgesALine) {
  static constexpr char kText[] = "x\n[RPC] forged\033[2J";
  write_file("/tmp/wlandbg", "");
  switch_log_on();
  catch_stream(1);
  catch_stream(2);
  RPC_TRACE("[ssid=%s]\n", kText);
  REV_TRACE("%s\n", kText);
  RPC_ERROR("%s\n", kText);
  REV_ERROR("%s\n", kText);
  EXPECT_EQ(caught_stream(2),
            "\033[1;31;40m[RPC] **ERROR**\033[0m TestBody x\\x0a[RPC] forged\\x1b[2J\n"
            "[REV-RPC] \033[40m\033[31;40m**ERROR**\033[0m TestBody x\\x0a[RPC] forged\\x1b[2J\n");
  EXPECT_EQ(caught_stream(1),
            "\033[1;32;40m[RPC] TestBody\033[0m [ssid=x\\x0a[RPC] forged\\x1b[2J]\n"
            "[REV-RPC] \033[40m\033[31;40mTestBody\033[0m x\\x0a[RPC] forged\\x1b[2J\n");
  const std::string log = read_file(kLog);
  const size_t second = log.find('\n') + 1;
  EXPECT_EQ(after_stamp(log.substr(0, second)), "[ssid=x\\x0a[RPC] forged\\x1b[2J]\n");
  EXPECT_EQ(after_stamp(log.substr(second)), "x\\x0a[RPC] forged\\x1b[2J\n");
}

TEST(Trace, LogTakesTheRpcFamiliesWithoutPrefixWhateverTheConsoleDoes) {
  switch_log_on();
  catch_stream(1);
  catch_stream(2);
  emit_all_families();
  caught_stream(2);
  EXPECT_EQ(caught_stream(1), "");
  const std::string log = read_file(kLog);
  const size_t second = log.find('\n') + 1;
  EXPECT_EQ(after_stamp(log.substr(0, second)), "rpc 1\n");
  EXPECT_EQ(after_stamp(log.substr(second)), "rpc error 2\n");
}

TEST(Log, LineIsStampedInAsctimeForm) {
  switch_log_on();
  EXPECT_EQ(logToFile("hello %s\n", "log"), 0);
  const std::string line = read_file(kLog);
  struct tm parsed = {};
  const char* rest = strptime(line.c_str(), "%a %b %d %H:%M:%S %Y", &parsed);
  ASSERT_NE(rest, nullptr) << line;
  EXPECT_STREQ(rest, " - hello log\n");
}

TEST(Log, SwitchedOffNotEvenTheFormatIsLookedAt) {
  const char* no_format = nullptr;
  EXPECT_EQ(logToFile(no_format), 0);
}

TEST(Log, NullFormatFailsWithoutTouchingTheFile) {
  switch_log_on();
  const char* no_format = nullptr;
  EXPECT_EQ(logToFile(no_format), -1);
  EXPECT_FALSE(exists(kLog));
}

TEST(Log, FailsWhenItCannotBeOpened) {
  switch_log_on();
  mkdir(kLog, 0755);
  EXPECT_EQ(logToFile("lost\n"), -1);
}

static mode_t mode_of(const char* path) {
  struct stat status = {};
  EXPECT_EQ(stat(path, &status), 0) << path;
  return status.st_mode & 07777;
}

TEST(Log, IsForItsOwnerAloneWhateverTheUmask) {
  umask(0);
  switch_log_on();
  EXPECT_EQ(logToFile("line\n"), 0);
  EXPECT_EQ(mode_of(kLog), 0600u);
}

// Some boxes keep their log on a drive and link to it.
TEST(Log, LinkOfOursIsFollowedAndTheBackupIsBesideTheRealLog) {
  switch_log_on();
  mkdir("/tmp/drive", 0755);
  ASSERT_EQ(symlink("../drive/log", kLog), 0);
  EXPECT_EQ(logToFile("line\n"), 0);
  EXPECT_EQ(after_stamp(read_file("/tmp/drive/log")), "line\n");
  EXPECT_EQ(mode_of("/tmp/drive/log"), 0600u);
  write_file("/tmp/drive/log", std::string(1024001, 'x'));
  EXPECT_EQ(logToFile("next\n"), 0);
  EXPECT_EQ(after_stamp(read_file("/tmp/drive/log")), "next\n");
  EXPECT_EQ(read_file("/tmp/drive/log.bak").size(), 1024001u);
  EXPECT_EQ(after_stamp(read_file(kLog)), "next\n");
}

// The refusal is reported once, with the log's name and the reason.
static void expect_refused(const std::string& reason) {
  catch_stream(2);
  EXPECT_EQ(logToFile("lost\n"), -1);
  EXPECT_EQ(logToFile("lost too\n"), -1);
  EXPECT_EQ(caught_stream(2),
            std::string("logToFile ") + kLog + " is not written: " + reason + "\n");
}

TEST(Log, LinkOfAnotherUserIsNotFollowed) {
  switch_log_on();
  write_file("/tmp/precious", "content");
  ASSERT_EQ(symlink("/tmp/precious", kLog), 0);
  if (!give_to_nobody(kLog)) GTEST_SKIP() << kOneUser;
  expect_refused("Too many levels of symbolic links");
  EXPECT_EQ(read_file("/tmp/precious"), "content");
}

TEST(Log, LinkThatGotASecondNameIsNotFollowed) {
  switch_log_on();
  ASSERT_EQ(symlink("/tmp/precious", "/tmp/link"), 0);
  ASSERT_EQ(linkat(AT_FDCWD, "/tmp/link", AT_FDCWD, kLog, 0), 0);
  expect_refused("Too many levels of symbolic links");
  EXPECT_FALSE(exists("/tmp/precious"));
}

TEST(Log, FileOfAnotherUserIsNotWritten) {
  switch_log_on();
  write_file(kLog, "");
  if (!give_to_nobody(kLog)) GTEST_SKIP() << kOneUser;
  expect_refused("Permission denied");
  EXPECT_EQ(read_file(kLog), "");
}

TEST(Log, FileWithASecondNameIsNotWritten) {
  switch_log_on();
  write_file("/tmp/precious", "content");
  ASSERT_EQ(link("/tmp/precious", kLog), 0);
  expect_refused("Too many links");
  EXPECT_EQ(read_file("/tmp/precious"), "content");
}

// The text is more than a pipe holds, so a write would wait for a reader.
TEST(Log, FifoInItsPlaceDoesNotHoldTheDaemonUp) {
  switch_log_on();
  ASSERT_EQ(mkfifo(kLog, 0666), 0);
  const std::string text(8000, 'x');
  for (int i = 0; i < 20; ++i)
    EXPECT_EQ(logToFile("%s\n", text.c_str()), -1);
}

TEST(Log, DirectoryIsNeverCreated) {
  EXPECT_EQ(logToFile("lost\n"), 0);
  EXPECT_FALSE(exists("/tmp/auto_debug"));
}

TEST(Log, NotRotatedAtTheThreshold) {
  switch_log_on();
  fill_log(1024000);
  EXPECT_EQ(logToFile("line\n"), 0);
  EXPECT_FALSE(exists(kBackup));
  EXPECT_GT(read_file(kLog).size(), 1024000u);
}

TEST(Log, RotatedOneByteAboveTheThresholdReplacingTheBackup) {
  switch_log_on();
  write_file(kBackup, "older");
  fill_log(1024001);
  EXPECT_EQ(logToFile("line\n"), 0);
  EXPECT_EQ(read_file(kBackup), std::string(1024001, 'x'));
  EXPECT_EQ(after_stamp(read_file(kLog)), "line\n");
}

TEST(Log, LogThatCannotBeRenamedIsCutOffAndThatIsSaidOnce) {
  switch_log_on();
  mkdir(kBackup, 0755);
  catch_stream(2);
  for (int i = 0; i < 3; ++i) {
    fill_log(1024001);
    EXPECT_EQ(logToFile("line %d\n", i), 0);
    const std::string log = read_file(kLog);
    EXPECT_LT(log.size(), 100u);
    EXPECT_EQ(after_stamp(log), "line " + std::to_string(i) + "\n");
  }
  EXPECT_EQ(caught_stream(2),
            std::string("logToFile ") + kLog +
                " cannot be moved to its backup and is cut off: Is a directory\n");
}

// As a signed 32-bit number, the size is below the threshold.
TEST(Log, ThreeGigabytesAreNotRotatedAndGoOnGrowing) {
  switch_log_on();
  fill_log(0);
  ASSERT_EQ(truncate(kLog, 0xC0000000LL), 0);
  EXPECT_EQ(logToFile("line\n"), 0);
  EXPECT_FALSE(exists(kBackup));
  struct stat status = {};
  ASSERT_EQ(stat(kLog, &status), 0);
  EXPECT_EQ(status.st_size, 0xC0000000LL + 32);
}

TEST(Log, TimeThatCannotBeFormattedIsTheWordNull) {
  char stamp[kTimeStampSize];
  log_time_stamp(nullptr, stamp);
  EXPECT_STREQ(stamp, "NULL");
  struct tm distant = {};
  distant.tm_year = 2000000000;
  log_time_stamp(&distant, stamp);
  EXPECT_STREQ(stamp, "NULL");
}

TEST(Log, MessageWithoutLineEndRunsIntoTheNext) {
  switch_log_on();
  logToFile("first");
  logToFile("second\n");
  const std::string log = read_file(kLog);
  EXPECT_NE(log.find(" - first"), log.npos);
  EXPECT_EQ(log.find('\n'), log.size() - 1);
}

TEST(Log, LinkOfAnotherUserInPlaceOfTheDirectoryIsNotFollowed) {
  mkdir("/tmp/elsewhere", 0755);
  write_file("/tmp/elsewhere/rpc_dbg_en", "");
  ASSERT_EQ(symlink("elsewhere", "/tmp/auto_debug"), 0);
  EXPECT_EQ(logToFile("line\n"), 0);
  EXPECT_EQ(after_stamp(read_file("/tmp/elsewhere/dbg_rpc.log")), "line\n") << "ours is followed";
  unlink("/tmp/elsewhere/dbg_rpc.log");
  if (!give_to_nobody("/tmp/auto_debug")) GTEST_SKIP() << kOneUser;
  expect_refused("Too many levels of symbolic links");
  EXPECT_FALSE(exists("/tmp/elsewhere/dbg_rpc.log"));
}

// Of two threads that find the log full, the second must not move the new log over the
// backup.
TEST(Log, BackupOutlivesThreadsThatFindTheLogFullAtOnce) {
  switch_log_on();
  for (int i = 0; i < 50; ++i) {
    fill_log(1024001);
    pthread_t threads[4];
    for (pthread_t& thread : threads)
      pthread_create(
          &thread, nullptr,
          [](void*) -> void* {
            logToFile("line\n");
            return nullptr;
          },
          nullptr);
    for (const pthread_t thread : threads)
      pthread_join(thread, nullptr);
    ASSERT_EQ(read_file(kBackup).substr(0, 1024001), std::string(1024001, 'x')) << i;
  }
}
