// What a user of the box puts in the place of the MT7615's tables.

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/daemon.h"
#include "support/files.h"
#include "support/lifecycle.h"
#include "support/wire.h"
#include "trust/attacks/attacker.h"

static constexpr char kTable[] = "/tmp/.mt7615_SingleSKU.dat";
static constexpr char kTables[] = "/tmp/.mt7615_SingleSKU.dat /tmp/.mt7615_SingleSKU_BF.dat";

static bool is_roots_file(const char* path) {
  struct stat status = {};
  return lstat(path, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == 0 &&
         status.st_size > 0;
}

// Load, init and reset complete, and the tables are in place.
static void expect_sequences_run() {
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  EXPECT_EQ(call_for_code(kReset, ""), 0);
  EXPECT_TRUE(is_roots_file(kTable));
  EXPECT_TRUE(is_roots_file("/tmp/.mt7615_SingleSKU_BF.dat"));
}

TEST(PlantedMt7615, FifosHangNothing) {
  if (!has_other_users()) GTEST_SKIP() << "this box has one user id only";
  ASSERT_EQ(sh_as_nobody((std::string("mkfifo ") + kTables + " /tmp/l1profile.dat").c_str()), 0);
  expect_sequences_run();
  EXPECT_TRUE(is_roots_file("/tmp/l1profile.dat"));
}

// "cp" would copy into the FIFO in the directory.
TEST(PlantedMt7615, DirectoryWithAFifoHangsNothing) {
  if (!has_other_users()) GTEST_SKIP() << "this box has one user id only";
  ASSERT_EQ(sh_as_nobody("cd /tmp/; mkdir .mt7615_SingleSKU.dat; cd .mt7615_SingleSKU.dat; "
                         "for f in /etc/Wireless/7615AP/SingleSKU*; do mkfifo ${f##*/}; done"),
            0);
  expect_sequences_run();
}

TEST(PlantedMt7615, LinkLeadsNowhere) {
  if (!has_other_users()) GTEST_SKIP() << "this box has one user id only";
  write_file("/tmp/precious", "content");
  ASSERT_EQ(sh_as_nobody("ln -s /tmp/precious /tmp/.mt7615_SingleSKU.dat"), 0);
  expect_sequences_run();
  EXPECT_EQ(read_file("/tmp/precious"), "content");
}

TEST(PlantedMt7615, FifoThatIsMadeAgainAndAgainHangsNothing) {
  if (!has_other_users()) GTEST_SKIP() << "this box has one user id only";
  const pid_t attacker = start_as_nobody([] {
    for (;;)
      mkfifo(kTable, 0666);
    return 0;
  });
  ASSERT_TRUE(wait_until([] { return exists(kTable); }));
  expect_sequences_run();
  end_process(attacker, SIGKILL);
}
