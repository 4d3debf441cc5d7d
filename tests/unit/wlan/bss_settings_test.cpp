#include "wlan/bss_settings.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <climits>
#include <string>

#include "profile/store.h"
#include "unit_support.h"

// Profiles with eight BSSs each; BSSs 3 and 10 are backhaul.
static void set_up_names() {
  std::string content;
  for (int i = 1; i <= 8; ++i) {
    content += "SSID" + std::to_string(i) + "=old\nWPAPSK" + std::to_string(i) + "=secret\n";
  }
  write_file(kProfile24, content + "BSSHNCService=0;1;7;0\n");
  write_file(kProfile5, content + "BSSHNCService=0;7;0\n");
}

static std::string value_of(const char* path, const char* key) {
  char buffer[256] = {};
  return wifiprofile_getParam(path, key, buffer, 255) == 1 ? buffer : "(none)";
}

TEST(BssSettings, NetworkNameIsWrittenUnderTheNumberOfTheBss) {
  set_up_names();
  for (int bss = 1; bss <= 16; ++bss) {
    const std::string name = "Network " + std::to_string(bss);
    EXPECT_EQ(wlan_setSSID(bss, name.c_str()), 0);
    const std::string key = "SSID" + std::to_string(bss < 9 ? bss : bss - 8);
    EXPECT_EQ(value_of(bss < 9 ? kProfile24 : kProfile5, key.c_str()), name) << bss;
  }
  EXPECT_EQ(value_of(kProfile24, "SSID1"), "Network 1");
}

TEST(BssSettings, FirstBssOfFiveGigahertzHasNumberOne) {
  set_up_names();
  EXPECT_EQ(wlan_setSSID(9, "Five"), 0);
  EXPECT_EQ(value_of(kProfile5, "SSID1"), "Five");
  EXPECT_EQ(value_of(kProfile24, "SSID1"), "old");
}

TEST(BssSettings, PassPhraseIsWrittenUnderTheNumberOfTheBss) {
  set_up_names();
  EXPECT_EQ(wlan_setKeyPassphrase(3, 0, "correct horse"), 0);
  EXPECT_EQ(value_of(kProfile24, "WPAPSK3"), "correct horse");
  EXPECT_EQ(wlan_setKeyPassphrase(16, 4, "battery staple"), 0);
  EXPECT_EQ(value_of(kProfile5, "WPAPSK8"), "battery staple");
  EXPECT_EQ(value_of(kProfile24, "WPAPSK8"), "secret");
}

TEST(BssSettings, SettingTheSameTwiceSucceedsTwice) {
  set_up_names();
  EXPECT_EQ(wlan_setSSID(3, "Living room"), 0);
  EXPECT_EQ(errors_of([] { EXPECT_EQ(wlan_setSSID(3, "Living room"), 0); }), "no change\n");
  EXPECT_EQ(wlan_setKeyPassphrase(3, 1, "pass phrase"), 0);
  EXPECT_EQ(errors_of([] { EXPECT_EQ(wlan_setKeyPassphrase(3, 2, "pass phrase"), 0); }),
            "no change\n");
}

TEST(BssSettings, IndexOutsideTheBoardFailsWithAMessage) {
  set_up_names();
  const std::string before24 = read_file(kProfile24);
  const std::string before5 = read_file(kProfile5);
  for (const int bss : {0, 17, -5, INT_MIN, INT_MAX}) {
    const std::string ssid_errors = errors_of([&] { EXPECT_EQ(wlan_setSSID(bss, "x"), -1); });
    EXPECT_TRUE(ssid_errors.ends_with(rev_error_prefix("wlan_setSSID") +
                                      "failed to update wifi profile, ret:0\n"))
        << bss << ssid_errors;
    const std::string key_errors =
        errors_of([&] { EXPECT_EQ(wlan_setKeyPassphrase(bss, 0, "x"), -1); });
    EXPECT_TRUE(key_errors.ends_with(rev_error_prefix("wlan_setKeyPassphrase") +
                                     "failed to update wifi profile, ret:0\n"))
        << bss << key_errors;
  }
  EXPECT_EQ(read_file(kProfile24), before24);
  EXPECT_EQ(read_file(kProfile5), before5);
  EXPECT_FALSE(exists(kMirror24));
  EXPECT_FALSE(exists(kMirror5));
}

TEST(BssSettings, MissingProfileFails) {
  unlink(kProfile24);
  const std::string errors = errors_of([] { EXPECT_EQ(wlan_setSSID(1, "x"), -1); });
  EXPECT_TRUE(contains(errors, "_wifiprofile_updateParam 1 open /tmp/mt76xx_24.dat error"))
      << errors;
}

TEST(BssSettings, NameThatIsNoLineOfTheProfileIsRefused) {
  set_up_names();
  const std::string before = read_file(kProfile24);
  errors_of([] {
    EXPECT_EQ(wlan_setSSID(1, "a\nSSID2=b"), -1);
    EXPECT_EQ(wlan_setSSID(1, std::string(1568, 'x').c_str()), -1);
  });
  EXPECT_EQ(read_file(kProfile24), before);
}

TEST(BssSettings, HostOfABackhaulBssIsTold) {
  set_up_names();
  install_host_library();
  EXPECT_EQ(wlan_setSSID(3, "Mesh"), 0);
  EXPECT_EQ(wlan_setKeyPassphrase(10, 0, "mesh secret"), 0);
  EXPECT_EQ(read_file("/tmp/host_calls"), "3 1 Mesh\n10 0 mesh secret\n");
}

TEST(BssSettings, NameAndPassPhraseHaveNoStatusLine) {
  set_up_names();
  switch_console_on();
  const std::string service = rev_prefix("wlan_getBSSHNCService") + "get BssHNCService:0 sucess \n";
  const std::string update =
      rpc_prefix("_wifiprofile_updateParam") + "_wifiprofile_updateParam: param:";
  EXPECT_EQ(output_of([] { wlan_setSSID(1, "New"); }), service + update + "SSID1[0]=New\n");
  EXPECT_EQ(output_of([] { wlan_setKeyPassphrase(1, 0, "new secret"); }),
            service + update + "WPAPSK1[0]=new secret\n");
}

TEST(BssSettings, HostOfAnyOtherBssIsNotTold) {
  set_up_names();
  install_host_library();
  errors_of([] {
    EXPECT_EQ(wlan_setSSID(1, "a"), 0);
    EXPECT_EQ(wlan_setSSID(2, "b"), 0);
    EXPECT_EQ(wlan_setKeyPassphrase(9, 0, "c"), 0);
    EXPECT_EQ(wlan_setSSID(8, "field is missing"), 0);
    EXPECT_EQ(wlan_setSSID(0, "d"), -1);
  });
  EXPECT_FALSE(exists("/tmp/host_calls"));
}

TEST(BssSettings, HostIsToldBeforeTheWrite) {
  set_up_names();
  install_host_library();
  EXPECT_EQ(wlan_setSSID(3, "Mesh"), 0);
  EXPECT_EQ(read_file("/tmp/host_saw"), "not yet written");
  EXPECT_EQ(wlan_setKeyPassphrase(3, 0, "mesh secret"), 0);
  EXPECT_EQ(read_file("/tmp/host_saw"), "not yet written");
}

TEST(BssSettings, HostIsToldAlsoWhenTheWriteFails) {
  set_up_names();
  install_host_library();
  write_file(kProfile24, "BSSHNCService=0;1;7;0\n");
  errors_of([] { EXPECT_EQ(wlan_setSSID(3, "Mesh"), -1); });
  EXPECT_EQ(read_file("/tmp/host_calls"), "3 1 Mesh\n");
}

TEST(BssSettings, HostIsToldAlsoWhenTheValueIsInPlace) {
  set_up_names();
  install_host_library();
  errors_of([] { EXPECT_EQ(wlan_setSSID(3, "old"), 0); });
  EXPECT_EQ(read_file("/tmp/host_calls"), "3 1 old\n");
  EXPECT_EQ(read_file("/tmp/host_saw"), "written");
}

TEST(BssSettings, BackhaulBssWithoutAHostLibraryIsSetAllTheSame) {
  set_up_names();
  EXPECT_EQ(wlan_setSSID(3, "Mesh"), 0);
  EXPECT_EQ(value_of(kProfile24, "SSID3"), "Mesh");
}

// Profiles with the switches; BSSs 3 and 10 are backhaul.
static void set_up_switches() {
  write_file(kProfile24, "BssEnabled=1;1;1;1;1;1;1;1\nBSSHNCService=0;1;7;0\n");
  write_file(kProfile5, "BssEnabled=1;1;1;1;1;1;1;1\nBSSHNCService=0;7;0\n");
}

TEST(BssEnable, FieldOfTheBssIsWrittenAndTraced) {
  set_up_switches();
  switch_console_on();
  const std::string output = output_of([] { EXPECT_EQ(wlan_setEnable(11, 0), 0); });
  EXPECT_EQ(value_of(kProfile5, "BssEnabled"), "1;1;0;1;1;1;1;1");
  EXPECT_EQ(value_of(kProfile24, "BssEnabled"), "1;1;1;1;1;1;1;1");
  const std::string trace = rev_prefix("wlan_setEnable") + "RPC wlan_setEnable status=";
  EXPECT_TRUE(contains(output, trace + "1, BssEnabled=0, index=11\n")) << output;
  errors_of([&] {
    EXPECT_TRUE(contains(output_of([] { EXPECT_EQ(wlan_setEnable(8, 1), 0); }),
                         trace + "2, BssEnabled=1, index=8\n"));
  });
  EXPECT_EQ(wlan_setEnable(8, INT_MIN), 0);
  EXPECT_EQ(value_of(kProfile24, "BssEnabled"), "1;1;1;1;1;1;1;-2147483648");
}

TEST(BssEnable, ProfileThatCannotBeWrittenFailsWithATrailingBlank) {
  set_up_switches();
  unlink(kProfile5);
  const std::string errors = errors_of([] { EXPECT_EQ(wlan_setEnable(9, 1), -1); });
  EXPECT_TRUE(errors.ends_with(rev_error_prefix("wlan_setEnable") +
                               "failed to update wifi profile, ret:0\n "))
      << errors;
}

TEST(BssEnable, IndexOutOfRangeIsReportedAndCountsAsDone) {
  set_up_switches();
  for (const int bss : {0, 17, -1, INT_MIN, INT_MAX}) {
    const std::string errors = errors_of([=] { EXPECT_EQ(wlan_setEnable(bss, 0), 0); });
    EXPECT_TRUE(errors.ends_with(rev_error_prefix("wlan_setEnable") + "Index " +
                                 std::to_string(bss) + " should be range from 1 to 16\n"))
        << errors;
  }
  EXPECT_EQ(value_of(kProfile24, "BssEnabled"), "1;1;1;1;1;1;1;1");
  EXPECT_EQ(value_of(kProfile5, "BssEnabled"), "1;1;1;1;1;1;1;1");
}

TEST(BssEnable, HostIsToldInSevenCharactersAndBeforeTheRangeIsLookedAt) {
  set_up_switches();
  install_host_library();
  EXPECT_EQ(wlan_setEnable(10, 0), 0);
  EXPECT_EQ(wlan_setEnable(3, 123456789), 0);
  EXPECT_EQ(wlan_setEnable(3, -12345678), 0);
  EXPECT_EQ(wlan_setEnable(2, 0), 0);
  write_file(kProfile5, "BSSHNCService=0;0;0;0;0;0;0;0;7\n");
  errors_of([] { EXPECT_EQ(wlan_setEnable(17, 1), 0); });
  EXPECT_EQ(read_file("/tmp/host_calls"), "10 2 0\n3 2 1234567\n3 2 -123456\n17 2 1\n");
}
