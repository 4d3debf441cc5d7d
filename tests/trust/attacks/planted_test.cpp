// What a user of the box plants in /tmp where the daemon will write, read or lock.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/daemon.h"
#include "support/files.h"
#include "support/gateway.h"
#include "support/lifecycle.h"
#include "support/wire.h"
#include "trust/attacks/attacker.h"

#define SKIP_WITHOUT_OTHER_USERS() \
  if (!has_other_users()) GTEST_SKIP() << "this box has one user id only"

static constexpr uint32_t kSetPassPhrase = 65;
static constexpr char kSecret[] = "a pass phrase of ours";
static constexpr char kProfile[] = "/tmp/mt76xx_24.dat";
static constexpr char kMirror[] = "/tmp/mt76xx_24.dat.hnc";
static constexpr char kLog[] = "/tmp/auto_debug/dbg_rpc.log";
static constexpr char kInstanceLock[] = "/tmp/.wlanrpc_lock";
static constexpr char kProfileLock[] = "/tmp/.mt76xx_24.dat.lock";

static void set_secret() {
  EXPECT_EQ(call_for_code(kSetPassPhrase, xdr_word(1) + xdr_word(1) + xdr_text(kSecret)), 0);
  EXPECT_EQ(profile_value(kProfile, "WPAPSK1"), kSecret);
}

// Whether the user nobody can read the secret in the file.
static bool tells_nobody(const char* path) {
  return sh_as_nobody(
             (std::string("grep -q '") + kSecret + "' " + path + " 2>/dev/null").c_str()) == 0;
}

static void expect_daemon_starts() {
  start_supervisor();
  EXPECT_TRUE(wait_until(daemon_answers)) << daemon_errors();
}

TEST(Planted, LogOfAnotherUserIsToldNoSecret) {
  SKIP_WITHOUT_OTHER_USERS();
  ASSERT_EQ(sh_as_nobody("mkdir /tmp/auto_debug; cd /tmp/auto_debug; touch rpc_dbg_en dbg_rpc.log"),
            0);
  start_daemon();
  set_secret();
  EXPECT_FALSE(tells_nobody(kLog));
  const std::string complaint =
      std::string("logToFile ") + kLog + " is not written: Permission denied\n";
  EXPECT_EQ(daemon_errors().find(complaint), daemon_errors().rfind(complaint)) << "once";
  EXPECT_NE(daemon_errors().find(complaint), std::string::npos) << daemon_errors();
}

TEST(Planted, LogThatAnotherUserSwitchedOnIsNotForHim) {
  SKIP_WITHOUT_OTHER_USERS();
  ASSERT_EQ(sh_as_nobody("mkdir /tmp/auto_debug; touch /tmp/auto_debug/rpc_dbg_en"), 0);
  umask(0);
  start_daemon();
  set_secret();
  EXPECT_NE(read_file(kLog).find(kSecret), std::string::npos);
  EXPECT_FALSE(tells_nobody(kLog));
}

// A lock file that anyone may write is hard-linked in the log's place. Once the daemon
// has removed the original name, the file looks like root's own, with a single link.
TEST(Planted, LockThatBecomesTheLogTellsNoSecret) {
  SKIP_WITHOUT_OTHER_USERS();
  umask(0);
  start_daemon();
  EXPECT_EQ(call_for_code(kSetSsid, xdr_word(1) + xdr_text("first")), 0);
  const std::string linked = std::string("mkdir /tmp/auto_debug; ln ") + kProfileLock + " " + kLog +
                             "; touch /tmp/auto_debug/rpc_dbg_en; test -e " + kLog;
  ASSERT_EQ(sh_as_nobody(linked.c_str()), 0);
  set_secret();
  set_secret();
  EXPECT_FALSE(tells_nobody(kLog));
  EXPECT_FALSE(tells_nobody("/tmp/auto_debug/dbg_rpc.log.bak"));
}

// The same in the mirror's place; the attacker keeps the file open.
TEST(Planted, LockThatBecomesTheMirrorTellsNoSecret) {
  SKIP_WITHOUT_OTHER_USERS();
  umask(0);
  chmod(kProfile, 0600);
  start_daemon();
  EXPECT_EQ(call_for_code(kSetSsid, xdr_word(1) + xdr_text("first")), 0);
  unlink(kMirror);
  const pid_t reader = start_as_nobody([] {
    if (link(kProfileLock, kMirror) != 0) return 2;
    const int file = open(kMirror, O_RDONLY);
    while (!exists("/tmp/told"))
      usleep(1000);
    char text[65536] = {};
    static_cast<void>(pread(file, text, sizeof text - 1, 0));
    return std::string(text).find(kSecret) == std::string::npos ? 0 : 1;
  });
  ASSERT_TRUE(wait_until([] { return exists(kMirror); }));
  ASSERT_TRUE(wait_until([reader] {
    return run("readlink /proc/" + std::to_string(reader) + "/fd/*").find(kMirror) !=
           std::string::npos;
  }));
  set_secret();
  EXPECT_EQ(call_for_code(kSetSsid, xdr_word(1) + xdr_text("second")), 0);
  write_file("/tmp/told", "");
  EXPECT_EQ(wait_for_end(reader), 0);
}

TEST(Planted, MirrorOfAnotherUserIsToldNoSecret) {
  SKIP_WITHOUT_OTHER_USERS();
  unlink(kMirror);
  ASSERT_EQ(sh_as_nobody("touch /tmp/mt76xx_24.dat.hnc"), 0);
  start_daemon();
  set_secret();
  EXPECT_FALSE(tells_nobody(kMirror));
  EXPECT_NE(daemon_errors().find(std::string("mirror ") + kMirror + " error"), std::string::npos)
      << daemon_errors();
}

TEST(Planted, MirrorOfAPrivateProfileIsPrivate) {
  SKIP_WITHOUT_OTHER_USERS();
  ASSERT_EQ(chmod(kProfile, 0600), 0);
  start_daemon();
  set_secret();
  EXPECT_NE(read_file(kMirror).find(kSecret), std::string::npos);
  EXPECT_FALSE(tells_nobody(kMirror));
}

// The kernel may refuse a user such a link.
TEST(Planted, SecondNameOfAFileOfRootsIsNotWrittenToNorTruncated) {
  SKIP_WITHOUT_OTHER_USERS();
  write_file("/tmp/precious", "content");
  chmod("/tmp/precious", 0666);
  unlink(kMirror);
  if (sh_as_nobody("ln /tmp/precious /tmp/mt76xx_24.dat.hnc && ln /tmp/precious "
                   "/tmp/.wlanrpc_lock 2>/dev/null") != 0)
    GTEST_SKIP() << "this kernel protects hard links";
  start_daemon();
  set_secret();
  EXPECT_EQ(read_file("/tmp/precious"), "content");
}

// Opens the file as nobody, creates it if `flags` say so, and holds its locks until
// killed.
static pid_t lock_as_nobody(const char* path, int flags, short type) {
  const pid_t attacker = start_as_nobody([=] {
    const int file = open(path, flags, 0666);
    struct flock whole = {};
    whole.l_type = type;
    if (file < 0 || fcntl(file, F_SETLK, &whole) != 0 || flock(file, LOCK_EX) != 0) return 1;
    close(open("/tmp/attacker_is_ready", O_CREAT | O_WRONLY | O_CLOEXEC, 0666));
    for (;;)
      pause();
  });
  EXPECT_TRUE(wait_until([] { return exists("/tmp/attacker_is_ready"); }));
  return attacker;
}

TEST(Planted, InstanceLockOfAnotherUserKeepsNobodyFromStarting) {
  SKIP_WITHOUT_OTHER_USERS();
  const pid_t attacker = lock_as_nobody(kInstanceLock, O_RDWR | O_CREAT, F_WRLCK);
  expect_daemon_starts();
  end_process(attacker, SIGKILL);
}

// The lock file of a daemon of another version, or one made by hand.
TEST(Planted, LockOfAnotherUserOnRootsInstanceLockKeepsNobodyFromStarting) {
  SKIP_WITHOUT_OTHER_USERS();
  write_file(kInstanceLock, "");
  const pid_t attacker = lock_as_nobody(kInstanceLock, O_RDONLY, F_RDLCK);
  expect_daemon_starts();
  end_process(attacker, SIGKILL);
}

TEST(Planted, LinkOrDirectoryInThePlaceOfTheInstanceLockKeepsNobodyFromStarting) {
  SKIP_WITHOUT_OTHER_USERS();
  write_file("/tmp/precious", "content");
  ASSERT_EQ(sh_as_nobody("ln -s /tmp/precious /tmp/.wlanrpc_lock"), 0);
  const pid_t supervisor = start_daemon();
  EXPECT_EQ(read_file("/tmp/precious"), "content");
  EXPECT_NE(daemon_errors().find("/tmp/.wlanrpc_lock of user 65534 is removed\n"),
            std::string::npos)
      << daemon_errors();
  EXPECT_EQ(end_process(supervisor, SIGTERM), 0);
  unlink(kInstanceLock);
  ASSERT_EQ(sh_as_nobody("mkdir -p /tmp/.wlanrpc_lock/inside"), 0);
  expect_daemon_starts();
}

TEST(Planted, ProfileLockOfAnotherUserHoldsNoCallUp) {
  SKIP_WITHOUT_OTHER_USERS();
  start_daemon();
  unlink(kProfileLock);
  const pid_t attacker = lock_as_nobody(kProfileLock, O_RDWR | O_CREAT, F_WRLCK);
  EXPECT_EQ(call_for_code(kSetSsid, xdr_word(1) + xdr_text("All the same")), 0);
  EXPECT_EQ(profile_value(kProfile, "SSID1"), "All the same");
  end_process(attacker, SIGKILL);
}

TEST(Planted, DirectoryInThePlaceOfAProfileLockDoesNotUnlock) {
  SKIP_WITHOUT_OTHER_USERS();
  unlink(kProfileLock);
  ASSERT_EQ(sh_as_nobody("mkdir -p /tmp/.mt76xx_24.dat.lock/inside"), 0);
  start_daemon();
  EXPECT_EQ(call_for_code(kSetSsid, xdr_word(1) + xdr_text("Locked")), 0);
  struct stat status = {};
  EXPECT_EQ(lstat(kProfileLock, &status), 0);
  EXPECT_TRUE(S_ISREG(status.st_mode));
}

// The driver takes its power limits from a table.
TEST(Planted, PowerTableOfAnotherUserIsNotUsed) {
  SKIP_WITHOUT_OTHER_USERS();
  const std::string table = "/tmp/" + profile_value(kProfile, "CountryCode") + "_1.dat";
  ASSERT_EQ(sh_as_nobody(("echo planted > " + table).c_str()), 0);
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  EXPECT_EQ(read_file("/tmp/.mt7603_SingleSKU.dat").find("planted"), std::string::npos);
  EXPECT_NE(read_file("/tmp/.mt7603_SingleSKU.dat"), "");
  EXPECT_EQ(count_errors(table + " of user 65534 is removed\n"), 1) << daemon_errors();
}

TEST(Planted, RestartMakesNoFileWhereALinkLeads) {
  SKIP_WITHOUT_OTHER_USERS();
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  ASSERT_EQ(sh_as_nobody("ln -s /etc/nologin /tmp/wifi_restart"), 0);
  queue_and_wait(kRestartAll, kRestarted);
  EXPECT_TRUE(wait_until([] { return exists("/tmp/wifi_restart"); }));
  EXPECT_FALSE(exists("/etc/nologin"));
}

// The generator of the power tables opens its table by name. The attacker makes a FIFO
// there as soon as the name is free.
TEST(Planted, FifoInTheGeneratorsPlaceHangsNothing) {
  SKIP_WITHOUT_OTHER_USERS();
  set_profile_value(kProfile, "CountryCode", "FR");
  const pid_t attacker = start_as_nobody([] {
    for (;;)
      mkfifo("/tmp/FR_1.dat", 0666);
    return 0;
  });
  ASSERT_TRUE(wait_until([] { return exists("/tmp/FR_1.dat"); }));
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  EXPECT_EQ(call_for_code(kReset, ""), 0);
  end_process(attacker, SIGKILL);
}
