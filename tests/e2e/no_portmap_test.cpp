#include <gtest/gtest.h>
#include <unistd.h>

#include "support/daemon.h"
#include "support/files.h"

// The gateway of these tests has no portmapper.

TEST(NoPortmapper, EndsTheDaemonAtOnceWithStatusZero) {
  write_file("/tmp/wlandbg", "");
  EXPECT_EQ(wait_for_end(start_supervisor()), 0);
  EXPECT_EQ(daemon_output(),
            "\033[1;32;40m[RPC] main\033[0m wificonfd - Network and/or portmapper has not been "
            "setup\n");
  EXPECT_FALSE(exists("/tmp/.wlanrpc_lock"));
}

TEST(NoPortmapper, IsSilentWithoutTheConsoleSwitch) {
  EXPECT_EQ(wait_for_end(start_supervisor()), 0);
  EXPECT_EQ(daemon_output(), "");
  EXPECT_EQ(daemon_errors(), "");
}

TEST(NoPortmapper, FailedRegistrationEndsChildAndSupervisorWithStatusZero) {
  // This process is called portmap but maps no ports.
  write_file("/tmp/wlandbg", "");
  ASSERT_EQ(symlink("/bin/sleep", "/tmp/portmap"), 0);
  const pid_t name_only = fork();
  if (name_only == 0) {
    execl("/tmp/portmap", "portmap", "60", nullptr);
    _exit(127);
  }
  ASSERT_TRUE(wait_until([] { return !run("pgrep -l portmap").empty(); }));
  EXPECT_EQ(wait_for_end(start_supervisor()), 0);
  EXPECT_NE(daemon_errors().find("unable to register (WLAN_CONFIG_RPC_PROG, "
                                 "WLAN_CONFIG_API_VERSION, udp).\n"),
            std::string::npos)
      << daemon_errors();
  EXPECT_NE(daemon_output().find("Child exited with status = 0\n"), std::string::npos);
  end_process(name_only, 9);
}
