#include "values/argument_check.h"

#include <gtest/gtest.h>

#include "base/text.h"
#include "wire/lookup.h"

using word_list = std::vector<std::string>;

static std::string encoded(const char* name, const word_list& given) {
  byte_string bytes;
  std::string error;
  EXPECT_TRUE(arguments_encode(*lookup_name(name), given, bytes, error)) << error;
  return text_hex({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

static std::string refused(const char* name, const word_list& given) {
  byte_string bytes;
  std::string error;
  EXPECT_FALSE(arguments_encode(*lookup_name(name), given, bytes, error)) << name;
  EXPECT_EQ(error.find_first_of("\n\x1b"), std::string::npos) << error;
  return error;
}

TEST(Arguments, BytesOnTheWire) {
  const struct {
    const char* name;
    word_list given;
    const char* bytes;
  } cases[] = {
      {"wlan_init", {}, ""},
      {"wlan_get_ssid", {"3"}, "00000003"},
      {"wlan_get_ssid", {"0x10"}, "00000010"},
      {"wlan_get_ssid", {"010"}, "0000000a"},
      {"wlan_get_ssid", {"-5"}, "fffffffb"},
      {"wlan_get_ssid", {"-0x5"}, "fffffffb"},
      {"wlan_get_ssid", {"2147483647"}, "7fffffff"},
      {"wlan_get_ssid", {"-2147483648"}, "80000000"},
      {"wlan_set_channel", {"9", "4294967295"}, "00000009ffffffff"},
      {"wlan_set_ssid", {"3", ""}, "0000000300000000"},
      {"wlan_set_ssid", {"3", "abc"}, "000000030000000361626300"},
      {"wlan_set_ssid", {"3", "abcd"}, "000000030000000461626364"},
      {"wlan_set_ssid", {"3", "\\x41"}, "00000003000000045c783431"},
      {"wlan_set_ssid", {"3", "\xff\xc3"}, "0000000300000002ffc30000"},
      {"wlan_set_enable", {"1", "on"}, "0000000100000001"},
      {"wlan_get_bssid_port", {"ra0"}, "0000000372613000"},
      {"wlan_associate_vlan", {"ra0", "65535"}, "00000003726130000000ffff"},
      {"wlan_set_mac_address_control_add",
       {"1", "a", "b"},
       "00000001000000016100000000000001"
       "62000000"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(encoded(c.name, c.given), c.bytes) << c.name;
}

TEST(Arguments, Switches) {
  for (const char* word : {"1", "true", "on", "yes", "ON", "True"})
    EXPECT_EQ(encoded("wlan_set_enable", {"1", word}), "0000000100000001") << word;
  for (const char* word : {"0", "false", "off", "no", "OFF"})
    EXPECT_EQ(encoded("wlan_set_enable", {"1", word}), "0000000100000000") << word;
  for (const char* word : {"", "2", "o", "enable", "-1", "01"})
    EXPECT_NE(refused("wlan_set_enable", {"1", word}).find("'enable'"), std::string::npos) << word;
}

TEST(Arguments, WrongTypesNameTheArgumentTheFormAndWhatWasGiven) {
  const struct {
    const char* name;
    word_list given;
    const char* argument;
    const char* shown;
  } cases[] = {
      {"wlan_get_ssid", {"three"}, "'bss'", "'three'"},
      {"wlan_get_ssid", {""}, "'bss'", "''"},
      {"wlan_get_ssid", {"3 "}, "'bss'", "'3 '"},
      {"wlan_get_ssid", {"3.0"}, "'bss'", "'3.0'"},
      {"wlan_get_ssid", {"+3"}, "'bss'", "'+3'"},
      {"wlan_get_ssid", {"--3"}, "'bss'", "'--3'"},
      {"wlan_get_ssid", {"2147483648"}, "'bss'", "'2147483648'"},
      {"wlan_get_ssid", {"-2147483649"}, "'bss'", "'-2147483649'"},
      {"wlan_get_ssid", {"0xffffffff"}, "'bss'", "'0xffffffff'"},
      {"wlan_get_ssid", {"\x1b[2J"}, "'bss'", "'\\x1b[2J'"},
      {"wlan_set_channel", {"1", "-1"}, "'channel'", "'-1'"},
      {"wlan_set_channel", {"1", "4294967296"}, "'channel'", "'4294967296'"},
      {"wlan_associate_vlan", {"ra0", "65536"}, "'vlan_id'", "'65536'"},
  };
  for (const auto& c : cases) {
    std::string error = refused(c.name, c.given);
    EXPECT_NE(error.find(c.argument), std::string::npos) << error;
    EXPECT_NE(error.find(c.shown), std::string::npos) << error;
    EXPECT_NE(error.find("integer"), std::string::npos) << error;
  }
}

TEST(Arguments, WrongCounts) {
  EXPECT_EQ(refused("wlan_set_ssid", {"3"}),
            "wlan_set_ssid takes 2 arguments, 1 given: 'ssid' is missing, a text of 1 to 32 bytes");
  EXPECT_EQ(refused("wlan_get_ssid", {"3", "4"}),
            "wlan_get_ssid takes 1 argument, 2 given: unexpected '4'");
  EXPECT_EQ(refused("wlan_init", {"3"}), "wlan_init takes no arguments, 1 given: unexpected '3'");
  EXPECT_EQ(arguments_usage(*lookup_name("wlan_set_ssid")), "wificonf wlan_set_ssid BSS SSID");
}

TEST(Arguments, OptionsAmongThemAreToldWhereTheyGo) {
  const std::string hint = " (options go before the procedure)";
  EXPECT_EQ(refused("wlan_get_stats", {"1", "0", "--json"}),
            "wlan_get_stats takes 2 arguments, 3 given: unexpected '--json'" + hint);
  EXPECT_EQ(refused("wlan_get_stats", {"--json", "1", "0"}),
            "wlan_get_stats takes 2 arguments, 3 given: unexpected '--json'" + hint);
  EXPECT_EQ(refused("wlan_set_ssid", {"--json"}),
            "wlan_set_ssid takes 2 arguments, 1 given: 'ssid' is missing, a text of 1 to 32 bytes" +
                hint);
  const std::string among = refused("wlan_get_stats", {"--json", "1"});
  EXPECT_TRUE(among.ends_with("not '--json'" + hint)) << among;
  // A text argument may begin like an option, and a negative number is not an option.
  EXPECT_EQ(refused("wlan_get_stats", {"1", "-0x"}).find(hint), std::string::npos);
  byte_string bytes;
  std::string error;
  EXPECT_TRUE(arguments_encode(*lookup_name("wlan_set_ssid"), {"3", "--json"}, bytes, error));
}

static word_list hne_record() {
  return {"1", "2", "3", "m", "n", "o", "u", "f", "v", "p", "4", "-1"};
}

TEST(Arguments, TheRecordComesAsItsFields) {
  const char* name = "hnc_set_hne_table_entry";
  std::string bytes = encoded(name, hne_record());
  // row, then index, row_status, 3 * 64 and 4 * 256 chars of four bytes each, two words
  EXPECT_EQ(bytes.size(), 2u * 4 * (1 + 2 + 3 * 64 + 4 * 256 + 2));
  EXPECT_EQ(bytes.substr(0, 8 * 5),
            "000000010000000200000003"
            "0000006d00000000");
  EXPECT_EQ(bytes.substr(bytes.size() - 16), "00000004ffffffff");
  EXPECT_EQ(table_arguments(*lookup_name(name))[3].name, "entry.manufacturer");
}

TEST(Arguments, TextsOfTheRecordKeepRoomForTheirNul) {
  word_list given = hne_record();
  given[3] = std::string(63, 'x');
  EXPECT_EQ(encoded("hnc_set_hne_table_entry", given).substr(8 * (3 + 62), 16), "0000007800000000");
  given[3] += 'x';
  std::string error = refused("hnc_set_hne_table_entry", given);
  EXPECT_NE(error.find("'entry.manufacturer' takes a text of at most 63 bytes"), std::string::npos)
      << error;
  EXPECT_NE(error.find("not 64 bytes"), std::string::npos) << error;
}
