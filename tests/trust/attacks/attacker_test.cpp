// What the attacks rely on: a second, unprivileged user of the box.

#include "trust/attacks/attacker.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "support/files.h"

TEST(Attacker, IsAnotherUserWithoutRights) {
  if (!has_other_users()) GTEST_SKIP() << "this box has one user id only";
  EXPECT_EQ(sh_as_nobody("test \"$(id -u)\" = 65534 && test \"$(id -G)\" = 65534"), 0);
  write_file("/tmp/mine", "root's");
  EXPECT_NE(sh_as_nobody("echo taken >/tmp/mine"), 0);
  EXPECT_EQ(read_file("/tmp/mine"), "root's");
}

TEST(Attacker, TellsHowAnAttackEnded) {
  if (!has_other_users()) GTEST_SKIP() << "this box has one user id only";
  EXPECT_EQ(as_nobody([] { return 3; }), 3);
  EXPECT_EQ(sh_as_nobody("kill -9 $$"), 128 + 9);
}
