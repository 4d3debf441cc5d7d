#include "sys/host_library.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "unit_support.h"

// A gateway has the host's library here or does not have it at all.
static constexpr char kInstalled[] = "/usr/lib/libvexal_rev_rpc_client.so";

static void install_library(const char* from) {
  write_file(kInstalled, read_file(from));
}

TEST(HostLibrary, AbsentTheCallDoesNothing) {
  const std::string errors = errors_of([] { rev_set_bh_setting(3, 1, "Home"); });
  EXPECT_EQ(errors, "");
  EXPECT_FALSE(exists("/tmp/host_calls"));
}

TEST(HostLibrary, CallIsHandedOn) {
  install_library(HOST_LIBRARY);
  rev_set_bh_setting(3, 1, "Living room");
  rev_set_bh_setting(16, 0, "");
  EXPECT_EQ(read_file("/tmp/host_calls"), "3 1 Living room\n16 0 \n");
}

TEST(HostLibrary, OpenedOnFirstNeedAndKept) {
  install_library(HOST_LIBRARY);
  EXPECT_FALSE(contains(read_file("/proc/self/maps"), "libvexal"));
  rev_set_bh_setting(3, 1, "a");
  EXPECT_TRUE(contains(read_file("/proc/self/maps"), "libvexal"));
  unlink(kInstalled);
  rev_set_bh_setting(3, 1, "b");
  EXPECT_EQ(read_file("/tmp/host_calls"), "3 1 a\n3 1 b\n");
}

TEST(HostLibrary, LookedForAgainWhereItWasAbsent) {
  rev_set_bh_setting(3, 1, "lost");
  install_library(HOST_LIBRARY);
  rev_set_bh_setting(3, 1, "heard");
  EXPECT_EQ(read_file("/tmp/host_calls"), "3 1 heard\n");
}

TEST(HostLibrary, LibraryWithoutTheFunctionIsAsIfAbsent) {
  install_library(HOST_LIBRARY_OTHER);
  rev_set_bh_setting(3, 1, "lost");
  EXPECT_FALSE(exists("/tmp/host_calls"));
  EXPECT_FALSE(contains(read_file("/proc/self/maps"), "libvexal"));
  unlink(kInstalled);
  install_library(HOST_LIBRARY);
  rev_set_bh_setting(3, 1, "heard");
  EXPECT_EQ(read_file("/tmp/host_calls"), "3 1 heard\n");
}
