#include <gtest/gtest.h>

#include "companions/processes.h"
#include "lifecycle/lifecycle_support.h"
#include "support/gateway.h"
#include "unit_support.h"

static constexpr char kNone[] = "0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0";
static constexpr char kEighth[] =
    "0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0;10.0.0.1";

static void set_servers(const std::string& servers24, const std::string& servers5) {
  set_profile_value(kProfile24, "RADIUS_Server", servers24);
  set_profile_value(kProfile5, "RADIUS_Server", servers5);
}

TEST(Authenticator, EachRadioHasItsOwn) {
  set_servers("10.0.0.1;0.0.0.0", "0.0.0.0;10.0.0.1");
  note_commands();
  rtdot1x_start(1, 1);
  EXPECT_EQ(commands(), "/sbin/rtdot1xd &\n");
  rtdot1x_start(9, 1);
  EXPECT_EQ(commands(), "/sbin/rtinicapd &\n");
}

TEST(Authenticator, WalkFromTheFirstRadioRunsOnIntoTheOtherProfile) {
  note_commands("0\n");
  set_servers(kEighth, kNone);
  rtdot1x_start(1, 1);
  EXPECT_EQ(commands(), "/sbin/rtdot1xd &\n");
  set_servers(kNone, kEighth);
  rtdot1x_start(1, 1);
  EXPECT_EQ(commands(), "/sbin/rtdot1xd &\n");
  set_servers(kEighth, kNone);
  rtdot1x_start(9, 1);
  EXPECT_EQ(commands(), "pgrep -l rtinicapd | grep -c rtinicapd\n") << "not the other way";
}

TEST(Authenticator, WalkFromTheSecondRadioGoesPastItsLists) {
  note_commands("0\n");
  set_servers(kNone, std::string(kNone) + ";" + kEighth);
  rtdot1x_start(9, 1);
  EXPECT_EQ(commands(), "/sbin/rtinicapd &\n") << "the sixteenth field";
  rtdot1x_start(1, 1);
  EXPECT_EQ(commands(), "pgrep -l rtdot1xd | grep -c rtdot1xd\n") << "its sixteenth is the eighth";
}

TEST(Authenticator, EmptyFieldIsAServerAsItIsNotTheNone) {
  set_servers("", kNone);
  note_commands();
  rtdot1x_start(1, 1);
  EXPECT_EQ(commands(), "/sbin/rtdot1xd &\n");
}

TEST(Authenticator, RunningOneIsKilledWithoutAServerAndByAStop) {
  set_servers(kNone, kNone);
  note_commands("1\n");
  rtdot1x_start(1, 1);
  EXPECT_EQ(commands(), "pgrep -l rtdot1xd | grep -c rtdot1xd\n/usr/bin/killall -9 rtdot1xd\n");
  set_servers(kEighth, kEighth);
  rtdot1x_start(9, 0);
  EXPECT_EQ(commands(), "pgrep -l rtinicapd | grep -c rtinicapd\n/usr/bin/killall -9 rtinicapd\n");
}

TEST(Authenticator, NothingIsKilledWhereNoneRunsOrNothingCanBeRead) {
  set_servers(kNone, kNone);
  note_commands("0\n");
  rtdot1x_start(1, 0);
  EXPECT_EQ(commands(), "pgrep -l rtdot1xd | grep -c rtdot1xd\n");
  write_file("/tmp/answer", "");
  rtdot1x_start(1, 0);
  EXPECT_EQ(commands(), "pgrep -l rtdot1xd | grep -c rtdot1xd\n");
}

TEST(Authenticator, OnlyItsStartIsLogged) {
  set_servers(kEighth, kNone);
  note_commands("1\n");
  switch_log_on();
  rtdot1x_start(1, 1);
  rtdot1x_start(1, 0);
  EXPECT_EQ(logged(), "cfg_executecmd: cmd:/sbin/rtdot1xd &\n");
}

TEST(Authenticator, OtherModesDoNothing) {
  set_servers(kEighth, kEighth);
  note_commands("1\n");
  for (const int mode : {2, -1, 255})
    rtdot1x_start(1, mode);
  EXPECT_EQ(commands(), "");
}

// A service child that died has left the authenticator running.
TEST(Authenticator, OneThatWasLeftRunningIsNotStartedBesideItself) {
  set_servers(kEighth, kEighth);
  note_commands("1\n");
  const pid_t left = start_process_named("rtdot1xd");
  rtdot1x_start(1, 1);
  EXPECT_EQ(commands(), "");
  rtdot1x_start(9, 1);
  EXPECT_EQ(commands(), "/sbin/rtinicapd &\n");
  rtdot1x_start(1, 0);
  EXPECT_TRUE(contains(commands(), "/usr/bin/killall -9 rtdot1xd\n"));
  rtdot1x_start(1, 1);
  EXPECT_EQ(commands(), "/sbin/rtdot1xd &\n") << "the one that was killed may still be ending";
  end_process(left);
}

TEST(Authenticator, OneThatIsKilledFirstIsStartedAgain) {
  set_servers(kEighth, kEighth);
  note_commands("1\n");
  const pid_t left = start_process_named("rtinicapd");
  rtdot1x_start(9, 0);
  rtdot1x_start(9, 1);
  EXPECT_TRUE(commands().ends_with("/sbin/rtinicapd &\n"));
  end_process(left);
}
