#include "wlan/access_control.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "unit_support.h"

// Checks that the last request to the driver was this text for the interface.
static void expect_text(const std::string& interface, const std::string& text) {
  const auto requests = driver_requests();
  ASSERT_FALSE(requests.empty());
  const std::string& line = requests.back();
  EXPECT_TRUE(contains(line, "\"interface\":\"" + interface + "\"")) << line;
  EXPECT_TRUE(contains(line, "\"request\":\"0x8BE2\"")) << line;
  EXPECT_TRUE(contains(line, "\"text\":\"" + text + "\"")) << line;
  // Including the terminator.
  EXPECT_TRUE(contains(line, "\"length\":" + std::to_string(text.size() + 1) + ",")) << line;
}

TEST(AccessControl, CommandsReachTheDriverOfTheBss) {
  EXPECT_EQ(wlan_setMacAddressControlEnabled(1, 2), 0);
  expect_text("ra0", "AccessPolicy=2");
  EXPECT_EQ(wlan_setMacAddressControlAdd(9, "00:11:22:33:44:55", "phone"), 0);
  expect_text("ra8", "ACLAddEntry=00:11:22:33:44:55");
  EXPECT_EQ(wlan_setMacAddressControlDelete(16, "00:11:22:33:44:55"), 0);
  expect_text("ra15", "ACLDelEntry=00:11:22:33:44:55");
  EXPECT_EQ(wlan_setMacAddressControlClear(3), 0);
  expect_text("ra2", "ACLClearAll=1");
  EXPECT_EQ(driver_requests().size(), 4u);
}

TEST(AccessControl, NothingIsWrittenToTheProfile) {
  const std::string before = read_file(kProfile24);
  EXPECT_EQ(wlan_setMacAddressControlEnabled(1, 1), 0);
  EXPECT_EQ(wlan_setMacAddressControlAdd(1, "00:11:22:33:44:55", ""), 0);
  EXPECT_EQ(read_file(kProfile24), before);
  EXPECT_FALSE(exists(kMirror24));
}

TEST(AccessControl, ValuesPassUnchangedAndTheDriverRefusesThem) {
  errors_of([] {
    EXPECT_EQ(wlan_setMacAddressControlEnabled(1, INT_MIN), -1);
    expect_text("ra0", "AccessPolicy=-2147483648");
    EXPECT_EQ(wlan_setMacAddressControlEnabled(1, INT_MAX), -1);
    expect_text("ra0", "AccessPolicy=2147483647");
    for (const std::string& text : {std::string("$(touch /tmp/pwned);'%n%s"), std::string(""),
                                    std::string("no address"), std::string(1000, 'a')}) {
      EXPECT_EQ(wlan_setMacAddressControlAdd(1, text.c_str(), "name"), -1) << text;
      expect_text("ra0", "ACLAddEntry=" + text);
      EXPECT_EQ(wlan_setMacAddressControlDelete(1, text.c_str()), -1) << text;
      expect_text("ra0", "ACLDelEntry=" + text);
    }
  });
  EXPECT_FALSE(exists("/tmp/pwned"));
}

TEST(AccessControl, TextBeyondTheDriversRequestFails) {
  errors_of([] {
    EXPECT_EQ(wlan_setMacAddressControlAdd(1, std::string(2000, 'a').c_str(), ""), -1);
    EXPECT_EQ(wlan_setMacAddressControlDelete(1, std::string(70000, 'a').c_str()), -1);
  });
  EXPECT_EQ(driver_requests().size(), 1u);
}

TEST(AccessControl, FailureOfTheDriverIsAFailure) {
  ASSERT_EQ(system("gwbox fail set EIO 4"), 0);
  const std::string errors = errors_of([] {
    EXPECT_EQ(wlan_setMacAddressControlEnabled(1, 1), -1);
    EXPECT_EQ(wlan_setMacAddressControlAdd(1, "00:11:22:33:44:55", ""), -1);
    EXPECT_EQ(wlan_setMacAddressControlDelete(1, "00:11:22:33:44:55"), -1);
    EXPECT_EQ(wlan_setMacAddressControlClear(1), -1);
  });
  EXPECT_EQ(count_of(errors, rpc_error_prefix("rtpriv_set_ioctl") +
                                 "ioctl failed (cmd=0x8BE2, sub_cmd=0x0)\n"),
            4);
}

TEST(AccessControl, IndexWithoutAnInterfaceFails) {
  errors_of([] {
    for (const int bss : {0, 17, -5, INT_MIN, INT_MAX}) {
      EXPECT_EQ(wlan_setMacAddressControlEnabled(bss, 1), -1) << bss;
      EXPECT_EQ(wlan_setMacAddressControlAdd(bss, "00:11:22:33:44:55", ""), -1) << bss;
      EXPECT_EQ(wlan_setMacAddressControlDelete(bss, "00:11:22:33:44:55"), -1) << bss;
      EXPECT_EQ(wlan_setMacAddressControlClear(bss), -1) << bss;
    }
  });
}
