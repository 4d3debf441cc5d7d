#include "wlan/bss_service.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <climits>
#include <string>

#include "unit_support.h"

static int service_of(int bss, const std::string& list) {
  write_file(bss < 9 ? kProfile24 : kProfile5, "BSSHNCService=" + list + "\n");
  int service = 99;
  EXPECT_EQ(wlan_getBSSHNCService(bss, &service), 0);
  return service;
}

TEST(BssService, FieldOfTheBssIsRead) {
  EXPECT_EQ(service_of(1, "5;6;7"), 5);
  EXPECT_EQ(service_of(3, "5;6;7"), 7);
  EXPECT_EQ(service_of(9, "1;2"), 1);
  EXPECT_EQ(service_of(10, "1;2"), 2);
}

TEST(BssService, TextIsConvertedAsFarAsItIsANumber) {
  EXPECT_EQ(service_of(1, "junk;1"), 0);
  EXPECT_EQ(service_of(1, ";1"), 0);
  EXPECT_EQ(service_of(1, "7x;1"), 7);
  EXPECT_EQ(service_of(1, " -2;1"), -2);
}

TEST(BssService, FieldIsCutAtEightCharactersUnlessItIsTheLast) {
  EXPECT_EQ(service_of(1, "0000000012;1"), 0);
  EXPECT_EQ(service_of(1, "0000000012"), 12);
  EXPECT_EQ(service_of(2, "1;0000000712;1"), 7);
  EXPECT_EQ(service_of(10, "1;00000007;1"), 7);
}

TEST(BssService, ReadingIsTracedOnTheConsoleOnly) {
  switch_log_on();
  switch_console_on();
  EXPECT_EQ(output_of([] { EXPECT_EQ(service_of(1, "7"), 7); }),
            rev_prefix("wlan_getBSSHNCService") + "get BssHNCService:7 sucess \n");
  EXPECT_EQ(logged(), "");
}

static void expect_missing(int bss) {
  const std::string errors = errors_of([&] {
    int service = 99;
    EXPECT_EQ(wlan_getBSSHNCService(bss, &service), -1);
    EXPECT_EQ(service, 0);
  });
  EXPECT_TRUE(errors.ends_with(rev_error_prefix("wlan_getBSSHNCService") +
                               "failed to update wifi profile, ret:0\n "))
      << bss << errors;
}

TEST(BssService, MissingFieldFailsAndTheServiceIsZero) {
  write_file(kProfile24, "BSSHNCService=7;7\n");
  write_file(kProfile5, "Other=1\n");
  for (const int bss : {3, 9, 0, 17, -5, INT_MIN, INT_MAX}) {
    expect_missing(bss);
  }
}

TEST(BssService, MissingProfileFailsAndTheServiceIsZero) {
  unlink(kProfile24);
  expect_missing(1);
}

TEST(BssService, HostIsToldAnySettingOfABackhaulBss) {
  install_host_library();
  write_file(kProfile24, "BSSHNCService=0;7\n");
  for (const int setting : {kBackhaulPassphrase, kBackhaulSsid, kBackhaulEnable,
                            kBackhaulAdvertisement, kBackhaulAuthentication}) {
    wlan_syncBhSetting(2, setting, "value");
  }
  EXPECT_EQ(read_file("/tmp/host_calls"),
            "2 0 value\n2 1 value\n2 2 value\n2 3 value\n2 4 value\n");
}

TEST(BssService, HostIsNotToldWhereTheServiceIsAnotherOrUnknown) {
  install_host_library();
  write_file(kProfile24, "BSSHNCService=0;6;8;77;-7\n");
  errors_of([] {
    for (int bss = -1; bss <= 8; ++bss) {
      wlan_syncBhSetting(bss, kBackhaulSsid, "value");
    }
    unlink(kProfile24);
    wlan_syncBhSetting(1, kBackhaulSsid, "value");
  });
  EXPECT_FALSE(exists("/tmp/host_calls"));
}
