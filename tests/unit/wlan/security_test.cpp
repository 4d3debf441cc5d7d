#include "wlan/security.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <climits>
#include <string>

#include "profile/store.h"
#include "unit_support.h"
#include "wlan/bss_settings.h"

static constexpr char kList[] = "o1;o2;o3;o4;o5;o6;o7;o8";

// Lists for eight BSSs. BSSs 3 and 10 are backhaul, as is an index after the last one.
static void set_up_security() {
  const std::string lists = std::string("AuthMode=") + kList + "\nEncrypType=" + kList +
                            "\nHideSSID=" + kList + "\nRADIUS_Server=" + kList + "\n";
  write_file(kProfile24, lists + "BSSHNCService=0;1;7;0\n");
  write_file(kProfile5, lists + "BSSHNCService=0;7;0;0;0;0;0;0;7\n");
}

static std::string list_of(const char* path, const char* key) {
  char buffer[kProfileValueBuffer] = {};
  return wifiprofile_getParam(path, key, buffer, 1567) == 1 ? buffer : "(none)";
}

using mode_setter = int (*)(int, const char*);

struct setter_row {
  const char* name;
  mode_setter set;
  const char* key;
};
static const setter_row kModeSetters[] = {
    {"wlan_setBasicEncryptionModes", wlan_setBasicEncryptionModes, "EncrypType"},
    {"wlan_setBasicAuthenticationModes", wlan_setBasicAuthenticationModes, "AuthMode"},
    {"wlan_setWpaEncryptionModes", wlan_setWpaEncryptionModes, "EncrypType"},
    {"wlan_setWpaBasicAuthenticationModes", wlan_setWpaBasicAuthenticationModes, "AuthMode"},
};

TEST(Security, ModesAreWrittenAsTheDriverNamesThem) {
  const struct {
    mode_setter set;
    const char* key;
    const char* asked;
    const char* written;
  } rows[] = {
      {wlan_setBasicEncryptionModes, "EncrypType", "None", "NONE"},
      {wlan_setBasicAuthenticationModes, "AuthMode", "None", "OPEN"},
      {wlan_setWpaEncryptionModes, "EncrypType", "None", "NONE"},
      {wlan_setWpaEncryptionModes, "EncrypType", "AESEncryption", "AES"},
      {wlan_setWpaEncryptionModes, "EncrypType", "TKIPEncryption", "TKIP"},
      {wlan_setWpaEncryptionModes, "EncrypType", "TKIPandAESEncryption", "TKIPAES"},
      {wlan_setWpaBasicAuthenticationModes, "AuthMode", "WPAPSK", "WPAPSK"},
      {wlan_setWpaBasicAuthenticationModes, "AuthMode", "WPA2PSK", "WPA2PSK"},
      {wlan_setWpaBasicAuthenticationModes, "AuthMode", "WPA", "WPA"},
      {wlan_setWpaBasicAuthenticationModes, "AuthMode", "WPA2", "WPA2"},
      {wlan_setWpaBasicAuthenticationModes, "AuthMode", "WPAPSKWPA2PSK", "WPAPSKWPA2PSK"},
      {wlan_setWpaBasicAuthenticationModes, "AuthMode", "WPA1WPA2", "WPA1WPA2"},
  };
  for (const auto& row : rows) {
    set_up_security();
    EXPECT_EQ(row.set(3, row.asked), 1) << row.asked;
    EXPECT_EQ(list_of(kProfile24, row.key),
              std::string("o1;o2;") + row.written + ";o4;o5;o6;o7;o8");
    EXPECT_EQ(list_of(kProfile5, row.key), kList) << row.asked;
    EXPECT_EQ(row.set(10, row.asked), 1) << row.asked;
    EXPECT_EQ(list_of(kProfile5, row.key), std::string("o1;") + row.written + ";o3;o4;o5;o6;o7;o8");
  }
}

TEST(Security, ModeThatIsNotKnownEmptiesTheField) {
  const std::string refused[] = {"",      "none", "NONE",       "None ",
                                 " None", "AES",  "WPA3PSK",    "wpa2psk",
                                 "%n%s",  "a;b",  "a\nSSID1=b", std::string(8000, 'x')};
  for (const setter_row& setter : kModeSetters) {
    for (const std::string& mode : refused) {
      set_up_security();
      EXPECT_EQ(setter.set(1, mode.c_str()), 1) << setter.name << mode;
      EXPECT_EQ(list_of(kProfile24, setter.key), ";o2;o3;o4;o5;o6;o7;o8") << setter.name << mode;
    }
  }
  // Each setter knows only its own modes.
  set_up_security();
  EXPECT_EQ(wlan_setBasicEncryptionModes(1, "AESEncryption"), 1);
  EXPECT_EQ(wlan_setWpaBasicAuthenticationModes(1, "None"), 1);
  EXPECT_EQ(list_of(kProfile24, "EncrypType"), ";o2;o3;o4;o5;o6;o7;o8");
  EXPECT_EQ(list_of(kProfile24, "AuthMode"), ";o2;o3;o4;o5;o6;o7;o8");
}

TEST(Security, ResultIsThatOfTheUpdate) {
  for (const setter_row& setter : kModeSetters) {
    set_up_security();
    EXPECT_EQ(setter.set(16, "None"), 1) << setter.name;
    EXPECT_EQ(errors_of([&] { EXPECT_EQ(setter.set(16, "None"), 2) << setter.name; }),
              "no change\n");
    write_file(kProfile24, "BSSHNCService=0\n");
    errors_of([&] { EXPECT_EQ(setter.set(1, "None"), 0) << setter.name; });
    EXPECT_EQ(read_file(kProfile24), "BSSHNCService=0\n");
    unlink(kProfile24);
    errors_of([&] { EXPECT_EQ(setter.set(1, "None"), 0) << setter.name; });
    EXPECT_FALSE(exists(kProfile24));
  }
}

TEST(Security, IndexOutsideTheBoardIsReportedAndAnswersZero) {
  set_up_security();
  const std::string before24 = read_file(kProfile24);
  const std::string before5 = read_file(kProfile5);
  for (const setter_row& setter : kModeSetters) {
    for (const int bss : {0, 17, -5, INT_MIN, INT_MAX}) {
      const std::string errors = errors_of([&] { EXPECT_EQ(setter.set(bss, "None"), 0); });
      EXPECT_TRUE(errors.ends_with(rev_error_prefix(setter.name) + "Index " + std::to_string(bss) +
                                   " should be range from 1 to 16\n"))
          << errors;
    }
  }
  EXPECT_EQ(read_file(kProfile24), before24);
  EXPECT_EQ(read_file(kProfile5), before5);
}

TEST(Security, OutcomeIsTracedOnTheConsole) {
  set_up_security();
  switch_console_on();
  for (const setter_row& setter : kModeSetters) {
    const std::string output = output_of([&] { EXPECT_EQ(setter.set(5, "unknown"), 1); });
    EXPECT_TRUE(output.ends_with("\033[0m RPC " + std::string(setter.name) + " status=1, " +
                                 setter.key + "=, index=5\n"))
        << output;
    set_up_security();
  }
  const std::string output = output_of([] { wlan_setWpaEncryptionModes(12, "AESEncryption"); });
  EXPECT_TRUE(
      output.ends_with(" RPC wlan_setWpaEncryptionModes status=1, EncrypType=AES, index=12\n"))
      << output;
}

TEST(Security, HostOfABackhaulBssIsToldOfItsAuthentication) {
  set_up_security();
  install_host_library();
  const struct {
    mode_setter set;
    int bss;
    const char* mode;
    const char* told;
  } rows[] = {
      {wlan_setBasicAuthenticationModes, 3, "None", "3 4 None\n"},
      {wlan_setBasicAuthenticationModes, 3, "NoneOrSo", "3 4 None\n"},
      {wlan_setBasicAuthenticationModes, 3, "xNone", "3 4 None\n"},
      {wlan_setBasicAuthenticationModes, 3, "EAPAuthentication", ""},
      {wlan_setBasicAuthenticationModes, 1, "None", ""},
      {wlan_setBasicAuthenticationModes, 17, "None", ""},
      {wlan_setWpaBasicAuthenticationModes, 10, "WPA2PSK", "10 4 WPA2PSK\n"},
      {wlan_setWpaBasicAuthenticationModes, 10, "no mode at all", "10 4 no mode at all\n"},
      {wlan_setWpaBasicAuthenticationModes, 2, "WPA2PSK", ""},
      {wlan_setWpaBasicAuthenticationModes, 17, "WPA2", "17 4 WPA2\n"},
      {wlan_setBasicEncryptionModes, 3, "None", ""},
      {wlan_setWpaEncryptionModes, 3, "AESEncryption", ""},
  };
  for (const auto& row : rows) {
    unlink("/tmp/host_calls");
    errors_of([&] { row.set(row.bss, row.mode); });
    EXPECT_EQ(read_file("/tmp/host_calls"), row.told) << row.bss << row.mode;
  }
}

TEST(Security, HostIsToldBeforeTheWrite) {
  set_up_security();
  install_host_library();
  const std::string before = read_file(kProfile24);
  EXPECT_EQ(wlan_setWpaBasicAuthenticationModes(3, "WPA1WPA2"), 1);
  EXPECT_EQ(read_file("/tmp/host_profile"), before);
  set_up_security();
  unlink("/tmp/host_profile");
  EXPECT_EQ(wlan_setBasicAuthenticationModes(3, "None"), 1);
  EXPECT_EQ(read_file("/tmp/host_profile"), before);
  set_up_security();
  unlink("/tmp/host_profile");
  EXPECT_EQ(wlan_setSsidAdvertisementEnabled(3, 0), 0);
  EXPECT_EQ(read_file("/tmp/host_profile"), before);
  EXPECT_NE(read_file(kProfile24), before);
}

TEST(Advertisement, HidesOrShowsTheNameOfTheBss) {
  set_up_security();
  EXPECT_EQ(wlan_setSsidAdvertisementEnabled(2, 1), 0);
  EXPECT_EQ(wlan_setSsidAdvertisementEnabled(3, 0), 0);
  EXPECT_EQ(wlan_setSsidAdvertisementEnabled(9, -7), 0);
  EXPECT_EQ(list_of(kProfile24, "HideSSID"), "o1;0;1;o4;o5;o6;o7;o8");
  EXPECT_EQ(list_of(kProfile5, "HideSSID"), "0;o2;o3;o4;o5;o6;o7;o8");
  EXPECT_EQ(errors_of([] { EXPECT_EQ(wlan_setSsidAdvertisementEnabled(3, 0), 0); }), "no change\n");
  switch_console_on();
  const std::string output = output_of([] { wlan_setSsidAdvertisementEnabled(16, 0); });
  EXPECT_TRUE(
      output.ends_with(" RPC wlan_setSsidAdvertisementEnabled status=1, HideSSID=1, index=16\n"))
      << output;
}

TEST(Advertisement, FailureIsReported) {
  write_file(kProfile24, "BSSHNCService=0\n");
  const std::string errors =
      errors_of([] { EXPECT_EQ(wlan_setSsidAdvertisementEnabled(1, 1), -1); });
  EXPECT_TRUE(errors.ends_with(rev_error_prefix("wlan_setSsidAdvertisementEnabled") +
                               "failed to update wifi profile, ret:0\n"))
      << errors;
}

TEST(Advertisement, HostIsToldTheRequestWhateverTheIndex) {
  set_up_security();
  install_host_library();
  const std::string before = read_file(kProfile5);
  for (const int bss : {0, 17, INT_MIN, INT_MAX}) {
    const std::string errors =
        errors_of([&] { EXPECT_EQ(wlan_setSsidAdvertisementEnabled(bss, 5), 0); });
    EXPECT_TRUE(errors.ends_with(rev_error_prefix("wlan_setSsidAdvertisementEnabled") + "Index " +
                                 std::to_string(bss) + " should be range from 1 to 16\n"))
        << errors;
  }
  EXPECT_EQ(read_file(kProfile5), before);
  EXPECT_EQ(wlan_setSsidAdvertisementEnabled(3, 0), 0);
  EXPECT_EQ(read_file("/tmp/host_calls"), "17 3 5\n3 3 0\n");
}

TEST(RadiusServer, AddressIsWrittenToTheFieldOfTheBss) {
  set_up_security();
  EXPECT_EQ(wlan_setRadiusServerAddress(1, "192.0.2.7"), 1);
  EXPECT_EQ(wlan_setRadiusServerAddress(16, ""), 1);
  EXPECT_EQ(list_of(kProfile24, "RADIUS_Server"), "192.0.2.7;o2;o3;o4;o5;o6;o7;o8");
  EXPECT_EQ(list_of(kProfile5, "RADIUS_Server"), "o1;o2;o3;o4;o5;o6;o7;");
  errors_of([] { EXPECT_EQ(wlan_setRadiusServerAddress(1, "192.0.2.7"), 2); });
}

TEST(RadiusServer, WritingItHasNoStatusLine) {
  set_up_security();
  switch_console_on();
  EXPECT_EQ(output_of([] { wlan_setRadiusServerAddress(1, "192.0.2.7"); }),
            rpc_prefix("_wifiprofile_updateParam") +
                "_wifiprofile_updateParam: param:RADIUS_Server[0]=192.0.2.7\n");
}

TEST(RadiusServer, IndexIsNotChecked) {
  set_up_security();
  const std::string before24 = read_file(kProfile24);
  const std::string errors = errors_of([] {
    EXPECT_EQ(wlan_setRadiusServerAddress(0, "192.0.2.7"), 2);
    EXPECT_EQ(wlan_setRadiusServerAddress(INT_MIN, "192.0.2.7"), 2);
    EXPECT_EQ(wlan_setRadiusServerAddress(17, "192.0.2.7"), 1);
  });
  EXPECT_FALSE(contains(errors, "should be range")) << errors;
  EXPECT_EQ(read_file(kProfile24), before24);
  EXPECT_EQ(list_of(kProfile5, "RADIUS_Server"), std::string(kList) + ";192.0.2.7");
  // No list has room for so many fields.
  const std::string before5 = read_file(kProfile5);
  errors_of([] { EXPECT_EQ(wlan_setRadiusServerAddress(INT_MAX, "192.0.2.7"), 0); });
  EXPECT_EQ(read_file(kProfile5), before5);
}

TEST(RadiusServer, TextThatIsNoFieldIsRefused) {
  set_up_security();
  const std::string before = read_file(kProfile24);
  errors_of([] {
    for (const std::string& text :
         {std::string("a;b"), std::string("a\nSSID1=b"), std::string(8000, '1')}) {
      EXPECT_EQ(wlan_setRadiusServerAddress(1, text.c_str()), 0) << text;
    }
  });
  EXPECT_EQ(read_file(kProfile24), before);
}
