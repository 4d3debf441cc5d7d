// A user of the box runs a process with a companion's name.

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

#include "support/daemon.h"
#include "support/files.h"
#include "support/lifecycle.h"
#include "trust/attacks/attacker.h"

static std::string running(const std::string& name) {
  return run("ps -e -o user:8=,comm= | grep -w " + name + " | sort");
}

TEST(Companion, ProcessOfAnotherUsersDoesNotKeepItFromBeingStarted) {
  if (!has_other_users()) GTEST_SKIP() << "this box has one user id only";
  const pid_t impostor = start_as_nobody([] {
    prctl(PR_SET_NAME, "mtk_ctrl");
    // Makes root the owner of the process's directory in /proc.
    prctl(PR_SET_DUMPABLE, 0);
    for (;;)
      pause();
    return 0;
  });
  ASSERT_TRUE(wait_until([] { return running("mtk_ctrl") == "nobody   mtk_ctrl\n"; }));
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  EXPECT_TRUE(wait_until([] {
    return running("mtk_ctrl") == "nobody   mtk_ctrl\nroot     mtk_ctrl\n";
  })) << running("mtk_ctrl");
  end_process(impostor, SIGKILL);
}
