#include "sys/host_library.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "unit_support.h"

TEST(HostLibrary, AbsentTheCallDoesNothing) {
  const std::string errors = errors_of([] { rev_set_bh_setting(3, 1, "Home"); });
  EXPECT_EQ(errors, "");
  EXPECT_FALSE(exists("/tmp/host_calls"));
}

TEST(HostLibrary, CallIsHandedOn) {
  install_host_library();
  rev_set_bh_setting(3, 1, "Living room");
  rev_set_bh_setting(16, 0, "");
  EXPECT_EQ(read_file("/tmp/host_calls"), "3 1 Living room\n16 0 \n");
}

TEST(HostLibrary, OpenedOnFirstNeedAndKept) {
  install_host_library();
  EXPECT_FALSE(contains(read_file("/proc/self/maps"), "libvexal"));
  rev_set_bh_setting(3, 1, "a");
  EXPECT_TRUE(contains(read_file("/proc/self/maps"), "libvexal"));
  unlink(kHostLibrary);
  rev_set_bh_setting(3, 1, "b");
  EXPECT_EQ(read_file("/tmp/host_calls"), "3 1 a\n3 1 b\n");
}

TEST(HostLibrary, LookedForAgainWhereItWasAbsent) {
  rev_set_bh_setting(3, 1, "lost");
  install_host_library();
  rev_set_bh_setting(3, 1, "heard");
  EXPECT_EQ(read_file("/tmp/host_calls"), "3 1 heard\n");
}

TEST(HostLibrary, LibraryWithoutTheFunctionIsAsIfAbsent) {
  install_host_library(HOST_LIBRARY_OTHER);
  rev_set_bh_setting(3, 1, "lost");
  EXPECT_FALSE(exists("/tmp/host_calls"));
  EXPECT_FALSE(contains(read_file("/proc/self/maps"), "libvexal"));
  unlink(kHostLibrary);
  install_host_library();
  rev_set_bh_setting(3, 1, "heard");
  EXPECT_EQ(read_file("/tmp/host_calls"), "3 1 heard\n");
}
