#include "values/constraint.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <climits>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "show/schema.h"
#include "values/argument_check.h"
#include "values/argument_meanings.h"
#include "wire/lookup.h"

using word_list = std::vector<std::string>;

static std::string repeat(size_t count, char character) {
  return std::string(count, character);
}

namespace {

// Values that the daemon understands, and their neighbours that it does not. Written down
// independently of the client's table.
struct expected_words {
  const char* procedure;  // nullptr: every other procedure
  const char* argument;
  word_list passes;
  word_list refused;
};

}  // namespace

static const word_list kAnyInt = {"0", "-1", "2147483647", "-2147483648", "0x10"};
static const word_list kNoInt = {"2147483648", "-2147483649", "three", "", "1.5"};
static const word_list kAnyUnsigned = {"0", "1", "4294967295"};
static const word_list kNoUnsigned = {"-1", "4294967296", "x"};
static const word_list kIntFromZero = {"0", "2147483647"};
static const word_list kNoIntFromZero = {"-1", "2147483648", "x"};
static const word_list kOnOff = {"on", "off", "1", "0", "Yes", "no", "true", "false"};
static const word_list kNoOnOff = {"2", "-1", "", "maybe"};
static const word_list kBsss = {"1", "8", "9", "16"};
static const word_list kNoBss = {"0", "17", "-1", "255", "x"};
static const word_list kMacs = {"00:11:22:33:44:55", "aA:bB:cC:dD:eE:fF"};
static const word_list kNoMacs = {"junk",
                                  "",
                                  "00:11:22:33:44",
                                  "00:11:22:33:44:5g",
                                  "00-11-22-33-44-55",
                                  "001122334455",
                                  "00:11:22:33:44:55:66",
                                  "0:11:22:33:44:555"};
static const word_list kTexts127 = {"", "x", repeat(127, 'x')};
static const word_list kNoTexts127 = {repeat(128, 'x'), "a\nb"};
static const word_list kTexts63 = {"", repeat(63, 'x')};
static const word_list kNoTexts63 = {repeat(64, 'x'), "a\rb"};
static const word_list kTexts255 = {"", repeat(255, 'x')};
static const word_list kNoTexts255 = {repeat(256, 'x'), "\x01"};
static const word_list kAnyText = {"", "x", repeat(300, 'x'), "\xff", "a;b"};
static const word_list kNoText = {"x\n", "\rx", "a\x1b[0m", "\x7f", "a\tb"};

static const expected_words kExpected[] = {
    {"WLAN_SET_ENABLE", "index", kBsss, kNoBss},
    {"WLAN_GET_WPS_RESULT_STATUS", "bss", {"1", "9"}, {"0", "2", "8", "10", "17"}},
    {"WLAN_SET_RAD_STAT_ENABLE", "radio", {"1", "9"}, {"0", "2", "8", "10", "17"}},
    {"WLAN_GET_CHANNEL_STATISTICS", "radio", {"1", "9"}, {"0", "2", "10"}},
    {"WLAN_GET_CHANNEL_NOISE_FLOOR", "radio", {"1", "9"}, {"0", "2", "10"}},
    {"WLAN_GET_RADIO_TX_PACKETS", "radio", {"1", "9"}, {"0", "2", "10"}},
    {"WLAN_GET_RADIO_RX_PACKETS", "radio", {"1", "9"}, {"0", "2", "10"}},
    {"WLAN_GET_RETRANSMISSION_METRIC", "radio", {"1", "9"}, {"0", "2", "10"}},
    {"WLAN_GET_RSSI_TABLE", "radio", {"1", "9"}, {"0", "2", "10"}},
    {"WLAN_RESTART", "radio", {"1", "2", "9", "16", "255"}, {"0", "17", "254", "256", "-1"}},
    {"WLAN_SET_PREK_OPERATION", "radio", kAnyInt, kNoInt},
    {"WLAN_UNDO_PREK_OPERATION", "radio", kAnyInt, kNoInt},
    {"WLAN_GET_PREK_STATUS", "radio", kAnyInt, kNoInt},
    {nullptr, "bss", kBsss, kNoBss},
    {nullptr, "radio", kBsss, kNoBss},
    {nullptr, "instance", kAnyInt, kNoInt},
    {nullptr, "index", kAnyInt, kNoInt},
    {nullptr, "mode", kAnyInt, kNoInt},
    {nullptr, "row", kAnyUnsigned, kNoUnsigned},
    {nullptr, "type", {"0", "1"}, {"2", "-1"}},
    {nullptr, "enable", kOnOff, kNoOnOff},
    {nullptr, "on", kOnOff, kNoOnOff},
    {nullptr, "wps_mode", kOnOff, kNoOnOff},
    {nullptr, "replicate", kOnOff, kNoOnOff},
    {nullptr, "policy", kAnyInt, kNoInt},
    {nullptr,
     "ssid",
     {"x", repeat(32, 'x'), "Living room", "a;b"},
     {"", repeat(33, 'x'), repeat(39, 'x'), "Living\nroom", "room\r", "\x1b[2J"}},
    {nullptr, "key_index", kAnyInt, kNoInt},
    {nullptr,
     "passphrase",
     {repeat(8, 'x'), repeat(63, 'x'), repeat(64, 'F')},
     {"", "12345", repeat(7, 'x'), repeat(64, 'x'), repeat(65, 'f'), "12345678\n", "1234\t5678"}},
    {nullptr, "basic_encryption_modes", {"None"}, {"none", "", "WEP", "None "}},
    {nullptr, "basic_authentication_modes", {"None"}, {"none", "", "OPEN"}},
    {nullptr,
     "wpa_encryption_modes",
     {"None", "AESEncryption", "TKIPEncryption", "TKIPandAESEncryption"},
     {"AES", "aesencryption", "", "TKIP", "AESEncryption "}},
    {nullptr,
     "wpa_authentication_modes",
     {"WPAPSK", "WPA2PSK", "WPA", "WPA2", "WPAPSKWPA2PSK", "WPA1WPA2"},
     {"WPA3", "wpa2psk", "", "WPA3PSK", "WPA2 WPA"}},
    {nullptr, "mac_address", kMacs, kNoMacs},
    {nullptr, "name", kAnyText, kNoText},
    {nullptr,
     "pin",
     {"1234", "12345670"},
     {"", "123", "12345", "1234567", "123456789", "1234567x"}},
    {nullptr,
     "radius_server_address",
     {"192.168.1.10", "0.0.0.0", "255.255.255.255"},
     {"", "1.2.3", "256.1.1.1", "radius.example", "1.2.3.4.5", "::1"}},
    {nullptr, "report_period", kIntFromZero, kNoIntFromZero},
    {nullptr, "measure_period", kIntFromZero, kNoIntFromZero},
    {nullptr, "steer_type", {"0", "1", "3"}, {"2", "4", "-1"}},
    {nullptr, "action", {"0", "1", "2"}, {"3", "-1"}},
    {nullptr, "seconds", kIntFromZero, kNoIntFromZero},
    {nullptr, "category_type", {"", repeat(256, 'x')}, {repeat(257, 'x')}},
    {nullptr,
     "payload",
     {"0a", "0a1B", repeat(1024, 'f')},
     {"", "0", "0a1", "0g", repeat(1023, 'f'), repeat(1026, 'f')}},
    {nullptr, "url", kTexts127, kNoTexts127},
    {nullptr, "filename", kTexts127, kNoTexts127},
    {nullptr, "username", kTexts127, kNoTexts127},
    {nullptr, "password", kTexts127, kNoTexts127},
    {nullptr, "time", kTexts127, kNoTexts127},
    {nullptr, "manufacturer", kTexts127, kNoTexts127},
    {nullptr, "model_name", kTexts127, kNoTexts127},
    {nullptr, "model_number", kTexts127, kNoTexts127},
    {nullptr, "device_name", kTexts127, kNoTexts127},
    {nullptr, "no_of_entries", kIntFromZero, kNoIntFromZero},
    {nullptr, "attempts", kIntFromZero, kNoIntFromZero},
    {nullptr, "duration", kIntFromZero, kNoIntFromZero},
    {nullptr, "row_status", kIntFromZero, kNoIntFromZero},
    {nullptr, "entry.index", kAnyUnsigned, kNoUnsigned},
    {nullptr, "entry.row_status", kAnyUnsigned, kNoUnsigned},
    {nullptr, "entry.manufacturer", kTexts63, kNoTexts63},
    {nullptr, "entry.model_name", kTexts63, kNoTexts63},
    {nullptr, "entry.model_number", kTexts63, kNoTexts63},
    {nullptr, "entry.firmware_url", kTexts255, kNoTexts255},
    {nullptr, "entry.firmware_file_name", kTexts255, kNoTexts255},
    {nullptr, "entry.firmware_user_name", kTexts255, kNoTexts255},
    {nullptr, "entry.firmware_password", kTexts255, kNoTexts255},
    {nullptr, "entry.update_time", kAnyUnsigned, kNoUnsigned},
    {nullptr, "entry.config_on_demand", kOnOff, kNoOnOff},
    {nullptr, "serving_channel_sample_time", kAnyInt, kNoInt},
    {nullptr, "serving_channel_sample_num", kAnyInt, kNoInt},
    {nullptr, "medium_utilization_threshold", kAnyInt, kNoInt},
    {nullptr, "medium_utilization_weight", kAnyInt, kNoInt},
    {nullptr, "medium_utilization_latest_sample_weight", kAnyInt, kNoInt},
    {nullptr, "off_channel_scan_period", kAnyInt, kNoInt},
    {nullptr, "off_channel_scan_sample_num", kAnyInt, kNoInt},
    {nullptr, "channel_switch_time_window", kAnyInt, kNoInt},
    {nullptr, "channel_switch_limited_num", kAnyInt, kNoInt},
    {nullptr, "power_adjuster", kAnyInt, kNoInt},
    {nullptr, "rssi_weight", {"", "50", repeat(81, 'x')}, {repeat(82, 'x')}},
    {nullptr, "level", kAnyInt, kNoInt},
    {nullptr, "service", kAnyInt, kNoInt},
    {nullptr, "wds_mode", kAnyInt, kNoInt},
    {nullptr, "replicate_radio", {"", "1", repeat(300, 'x')}, {"1;2", ";", "1\n"}},
};

static const expected_words* expected_of(const procedure_row& procedure,
                                         const std::string& argument) {
  for (const expected_words& one : kExpected) {
    const bool applies = one.procedure == nullptr || procedure.name == std::string(one.procedure);
    if (applies && argument == one.argument) return &one;
  }
  return nullptr;
}

static word_list example_with(const procedure_row& procedure, size_t place,
                              const std::string& word) {
  word_list given;
  for (const argument_spec& argument : table_arguments(procedure))
    given.push_back(meanings_find(procedure, argument.name)->example);
  given[place] = word;
  return given;
}

static bool accepted(const procedure_row& procedure, size_t place, const std::string& word) {
  const word_list given = example_with(procedure, place, word);
  byte_string bytes;
  std::string error;
  return arguments_encode(procedure, given, bytes, error) &&
         arguments_check(procedure, given, error);
}

// Visits every argument of every procedure that does something.
template <typename Visit>
static void for_every_argument(Visit visit) {
  for (const procedure_row& procedure : table_procedures()) {
    if (procedure.inert) continue;
    const auto arguments = table_arguments(procedure);
    for (size_t i = 0; i < arguments.size(); ++i) {
      const expected_words* expected = expected_of(procedure, arguments[i].name);
      ASSERT_NE(expected, nullptr)
          << procedure.name << ": write a row of kExpected in tests/client/constraint_test.cpp for "
          << arguments[i].name;
      visit(procedure, arguments[i], i, *expected);
    }
  }
}

TEST(Constraint, WhatMakesSensePassesAndANeighbourDoesNot) {
  for_every_argument([](const procedure_row& procedure, const argument_spec& argument, size_t place,
                        const expected_words& expected) {
    const std::string what = std::string(procedure.name) + " " + argument.name;
    for (const std::string& word : expected.passes)
      EXPECT_TRUE(accepted(procedure, place, word)) << what << " '" << word << "'";
    for (const std::string& word : expected.refused)
      EXPECT_FALSE(accepted(procedure, place, word)) << what << " '" << word << "'";
    const constraint limits = meanings_limits(procedure, argument);
    EXPECT_FALSE(expected.refused.empty()) << what;
    for (const std::string& word : constraint_values(limits))
      EXPECT_TRUE(accepted(procedure, place, word)) << what << " offers '" << word << "'";
    EXPECT_TRUE(constraint_nearest(limits, "").empty());
  });
}

static nlohmann::json as_json(const argument_spec& argument, const constraint& limits,
                              const std::string& word) {
  int64_t number = 0;
  bool on = false;
  if (limits.kind == constraint_kind::kSwitch && constraint_parse_switch(word, &on)) return on;
  const bool text =
      argument.type == argument_type::kString || argument.type == argument_type::kText;
  if (!text && constraint_parse_integer(word, &number)) return number;
  return word;
}

// One line for the validator: the schema, a value, and whether it should be valid.
static std::string schema_line(const procedure_row& procedure, const argument_spec& argument,
                               const std::string& word, bool valid) {
  const nlohmann::json value = as_json(argument, meanings_limits(procedure, argument), word);
  const nlohmann::json line = {
      {"schema",
       nlohmann::json::parse(schema_of_arguments(procedure))["properties"][argument.name]},
      {"value", value},
      {"valid", valid}};
  return line.dump(-1, ' ', true, nlohmann::json::error_handler_t::replace) + "\n";
}

TEST(Constraint, TheSchemaOfTheArgumentsSaysTheSame) {
  const std::string path = testing::TempDir() + "values." + std::to_string(getpid());
  FILE* file = fopen(path.c_str(), "w");
  ASSERT_NE(file, nullptr);
  for_every_argument([&](const procedure_row& procedure, const argument_spec& argument, size_t,
                         const expected_words& expected) {
    for (const std::string& word : expected.passes)
      fputs(schema_line(procedure, argument, word, true).c_str(), file);
    for (const std::string& word : expected.refused)
      fputs(schema_line(procedure, argument, word, false).c_str(), file);
  });
  fclose(file);
  FILE* pipe = popen((VALIDATOR " --values <" + path + " 2>&1").c_str(), "r");
  char said[4096] = {};
  const size_t length = fread(said, 1, sizeof said - 1, pipe);
  EXPECT_EQ(pclose(pipe), 0);
  unlink(path.c_str());
  EXPECT_TRUE(std::string(said, length).ends_with(" values are as expected\n")) << said;
}

TEST(Constraint, TheNearestWordIsTheOneMeant) {
  const struct {
    const char* procedure;
    const char* given;
    const char* nearest;
  } cases[] = {
      {"wlan_set_wpa_encryption_modes", "AES", "AESEncryption"},
      {"wlan_set_wpa_encryption_modes", "tkip", "TKIPEncryption"},
      {"wlan_set_wpa_encryption_modes", "NONE", "None"},
      {"wlan_set_wpa_encryption_modes", "TKIPandAESEncrypton", "TKIPandAESEncryption"},
      {"wlan_set_wpa_encryption_modes", "junk", ""},
      {"wlan_set_wpa_authentication_modes", "WPA3", "WPA2"},
      {"wlan_set_wpa_authentication_modes", "wpa2psk", "WPA2PSK"},
      {"wlan_set_wpa_authentication_modes", "WPA2-PSK", "WPA2PSK"},
  };
  for (const auto& c : cases) {
    const procedure_row& procedure = *lookup_name(c.procedure);
    const constraint limits = meanings_limits(procedure, table_arguments(procedure)[1]);
    EXPECT_EQ(constraint_nearest(limits, c.given), c.nearest) << c.given;
  }
}

TEST(Constraint, LengthsAreBytes) {
  const procedure_row& procedure = *lookup_name("wlan_set_ssid");
  std::string text;
  for (int i = 0; i < 16; ++i)
    text += "\xc3\xa9";
  EXPECT_TRUE(accepted(procedure, 1, text));
  EXPECT_FALSE(accepted(procedure, 1, text + "x"));
}

TEST(Constraint, ARefusalNamesTheCharacterAndShowsNoText) {
  const auto refusal = [](const char* name, const word_list& given) {
    std::string error;
    EXPECT_FALSE(arguments_check(*lookup_name(name), given, error)) << name;
    EXPECT_EQ(error.find("tell-no"), std::string::npos) << error;
    return error;
  };
  EXPECT_TRUE(refusal("wlan_set_key_passphrase", {"1", "1", "tell-no\none"})
                  .ends_with("not a text whose byte 8 is a line end"));
  EXPECT_TRUE(refusal("wlan_set_radius_server_key", {"1", "tell-no\x1b"})
                  .ends_with("not a text whose byte 8 is a control character"));
  EXPECT_TRUE(refusal("wlan_set_hnc_replicate_radio", {"1", "1;2"})
                  .ends_with("not a text whose byte 2 is ';', which separates the BSSs in the "
                             "profile"));
  EXPECT_TRUE(refusal("wlan_set_hnc_action_frame_payload", {"1", "zz"})
                  .ends_with("an even number, not a text whose byte 1 is not a hexadecimal digit"));
  EXPECT_TRUE(refusal("wlan_set_wps_pinstart", {"1", "123x"})
                  .ends_with("not a text whose byte 4 is not a digit"));
}

TEST(Constraint, Words) {
  const auto words = [](const char* procedure, size_t place) {
    const procedure_row& row = *lookup_name(procedure);
    return meanings_text(row, table_arguments(row)[place]);
  };
  EXPECT_EQ(words("wlan_set_ssid", 0), "BSS index, 1 to 8 (2.4 GHz) or 9 to 16 (5 GHz)");
  EXPECT_EQ(words("wlan_set_ssid", 1), "network name, 1 to 32 bytes");
  EXPECT_EQ(words("wlan_set_hnc_steer_sta_type", 1),
            "how to steer, 0 (blacklist), 1 (BTM request) or 3 (disconnect)");
  EXPECT_EQ(words("wlan_set_wps_pinstart", 1), "PIN of the station, 4 or 8 digits");
  EXPECT_EQ(words("hnc_set_updatefw_url", 1),
            "where extenders load firmware from, at most 127 bytes");
  EXPECT_EQ(words("wlan_set_dcs_debug_level", 1), "debug level of the channel selection daemon");
  EXPECT_EQ(words("wlan_set_bh_enable", 1), "on or off");
}
