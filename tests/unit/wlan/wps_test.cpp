#include "wlan/wps.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <regex>
#include <string>

#include "lying_driver.h"
#include "unit_support.h"

// Profiles with everything switched on for every BSS.
static void set_up(const std::string& methods = "0084", const std::string& radio_on = "1",
                   const std::string& bss_enabled = "1", const std::string& wsc_enable = "1") {
  const auto list = [](const std::string& field) {
    std::string text = field;
    for (int i = 1; i < 8; ++i)
      text += ";" + field;
    return text + "\n";
  };
  const std::string profile = "RadioOn=" + radio_on + "\nBssEnabled=" + list(bss_enabled) +
                              "WscEnable=" + list(wsc_enable) + "WscConfMethods=" + list(methods);
  write_file(kProfile24, profile);
  write_file(kProfile5, profile);
}

// The texts that reached the driver since the last call, each as "ra0 WscMode=2".
static std::string new_texts() {
  static size_t seen = 0;
  const auto requests = driver_requests();
  const std::regex form("\"interface\":\"([^\"]*)\".*\"text\":\"([^\"]*)\"");
  std::string texts;
  for (; seen < requests.size(); ++seen) {
    std::smatch match;
    if (std::regex_search(requests[seen], match, form)) {
      texts += match[1].str() + " " + match[2].str() + "\n";
    }
  }
  return texts;
}

TEST(Wps, PushButtonRunsItsFourCommandsInOrder) {
  set_up();
  EXPECT_EQ(errors_of([] { EXPECT_EQ(wlan_setWpsPbcTrigger(1), 0); }), "");
  EXPECT_EQ(new_texts(),
            "ra0 WscConfMode=7\nra0 WscConfStatus=2\nra0 WscMode=2\nra0 WscGetConf=1\n");
  EXPECT_EQ(wlan_setWpsPushButton(16), 0);
  EXPECT_EQ(new_texts(),
            "ra15 WscConfMode=7\nra15 WscConfStatus=2\nra15 WscMode=2\nra15 WscGetConf=1\n");
}

TEST(Wps, PinIsSentFirst) {
  set_up();
  EXPECT_EQ(errors_of([] { EXPECT_EQ(wlan_setWpsPinStart(9, "12345670"), 0); }), "");
  EXPECT_EQ(new_texts(),
            "ra8 WscPinCode=12345670\n"
            "ra8 WscConfMode=7\nra8 WscConfStatus=2\nra8 WscMode=1\nra8 WscGetConf=1\n");
}

// The commands that a start runs, as the shell parses them.
static std::string commands_of(int bss, const char* pin) {
  write_file("/usr/local/bin/iwpriv", "#!/bin/sh\nprintf '<%s>' \"$0\" \"$@\" >>/tmp/commands\n");
  run("chmod +x /usr/local/bin/iwpriv; rm -f /tmp/commands");
  setenv("PATH", "/usr/local/bin:/usr/bin:/bin", 1);
  EXPECT_EQ(wlan_setWpsPinStart(bss, pin), 0);
  return read_file("/tmp/commands");
}

TEST(Wps, NoPinRunsACommandOfItsOwnAndLongOnesAreCutInsideTheText) {
  set_up();
  const struct {
    int bss;
    std::string pin;
    std::string sent;
  } rows[] = {
      {1, "", ""},
      {1, "1234-5670", "1234-5670"},
      {1, "1234 5670", "1234 5670"},
      {1, "$(touch /tmp/pwned)", "$(touch /tmp/pwned)"},
      {1, "`touch /tmp/pwned`;&|<>%n%s", "`touch /tmp/pwned`;&|<>%n%s"},
      {1, "a'b", "a'b"},
      {1, "1\n2", "1\n2"},
      // A command has 63 characters, 26 of them before the PIN.
      {1, std::string(37, '1'), std::string(37, '1')},
      {1, std::string(38, '1'), std::string(37, '1')},
      {16, std::string(5000, '2'), std::string(36, '2')},
      {1, std::string(5000, ' '), std::string(35, ' ')},
      {1, std::string(5000, '\''), std::string(8, '\'')},
  };
  for (const auto& row : rows) {
    const std::string begin = "</usr/local/bin/iwpriv><ra" + std::to_string(row.bss - 1) +
                              "><set><WscPinCode=" + row.sent + "></usr/local/bin/iwpriv>";
    const std::string commands = commands_of(row.bss, row.pin.c_str());
    EXPECT_TRUE(commands.starts_with(begin)) << commands;
    EXPECT_EQ(count_of(commands, "</usr/local/bin/iwpriv>"), 5) << commands;
  }
  EXPECT_FALSE(exists("/tmp/pwned"));
}

TEST(Wps, MethodsDecideWhatIsPermitted) {
  const struct {
    const char* methods;
    int push_button;
    int pin;
    const char* shown;
  } rows[] = {
      {"0084", 0, 0, "0x0084"},
      {"0080", 0, -1, "0x0080"},
      {"80", 0, -1, "0x0080"},
      {"0x238c", 0, 0, "0x238C"},
      {"0004", -1, 0, "0x0004"},
      {"0008", -1, 0, "0x0008"},
      {"0000", -1, -1, "0x0000"},
      {"", -1, -1, "0x0000"},
      {"junk", -1, -1, "0x0000"},
      {"10080", 0, -1, "0x0080"},
      {"ff73", -1, -1, "0xFF73"},
      {"ABC0", 0, -1, "0xABC0"},
      {"84junk", 0, 0, "0x0084"},
      {"-1", 0, 0, "0xFFFF"},
      {"7fffffffffffffffffffffff", 0, 0, "0xFFFF"},
  };
  for (const auto& row : rows) {
    set_up(row.methods);
    std::string refusals;
    const std::string errors = errors_of([&] {
      EXPECT_EQ(wlan_setWpsPbcTrigger(3), row.push_button) << row.methods;
      EXPECT_EQ(wlan_setWpsPinStart(11, "1"), row.pin) << row.methods;
    });
    if (row.push_button == -1) {
      refusals += rev_error_prefix("wlan_setWpsPbcTrigger") +
                  "IF(ra2) WPS PBC disabled, WscConfigMethods " + row.shown + "\n";
    }
    if (row.pin == -1) {
      refusals += rev_error_prefix("wlan_setWpsPinStart") +
                  "IF(ra10) WPS PIN disabled, WscConfigMethods " + row.shown + "\n";
    }
    EXPECT_EQ(errors, refusals);
    const std::string texts = new_texts();
    EXPECT_EQ(count_of(texts, "ra2 WscGetConf=1"), row.push_button + 1) << texts;
    EXPECT_EQ(count_of(texts, "ra10 WscGetConf=1"), row.pin + 1) << texts;
    EXPECT_EQ(count_of(texts, "\n"), 4 * (row.push_button + 1) + 5 * (row.pin + 1));
  }
}

TEST(Wps, MethodsThatAreMissingPermitNothing) {
  write_file(kProfile24, "RadioOn=1\nBssEnabled=1;1\nWscEnable=1;1\nWscConfMethods=0084\n");
  errors_of([] {
    EXPECT_EQ(wlan_setWpsPbcTrigger(1), 0);
    EXPECT_EQ(wlan_setWpsPbcTrigger(2), -1);
  });
}

TEST(Wps, MethodsInFrontOfOthersAreCutAtSixtyFourCharacters) {
  const std::string methods = std::string(70, '0') + "80";
  write_file(kProfile24, "RadioOn=1\nBssEnabled=1;1;1\nWscEnable=1;1;1\nWscConfMethods=0;" +
                             methods + ";" + methods + "\n");
  EXPECT_EQ(errors_of([] { EXPECT_EQ(wlan_setWpsPbcTrigger(2), -1); }),
            rev_error_prefix("wlan_setWpsPbcTrigger") +
                "IF(ra1) WPS PBC disabled, WscConfigMethods 0x0000\n");
  EXPECT_EQ(wlan_setWpsPbcTrigger(3), 0);
}

TEST(Wps, AllSwitchesAreReadWhateverTheFirstSays) {
  unlink(kProfile24);
  for (const auto start :
       {+[] { return wlan_setWpsPbcTrigger(1); }, +[] { return wlan_setWpsPinStart(1, "1"); }}) {
    const std::string errors = errors_of([&] { EXPECT_EQ(start(), 0); });
    EXPECT_EQ(count_of(errors, "/tmp/mt76xx_24.dat does not exist\n"), 4) << errors;
  }
}

TEST(Wps, WhatTheCommandsPrintIsNotShown) {
  set_up();
  write_file("/usr/local/bin/iwpriv", "#!/bin/sh\necho printed; echo run >>/tmp/commands\n");
  run("chmod +x /usr/local/bin/iwpriv");
  setenv("PATH", "/usr/local/bin:/usr/bin:/bin", 1);
  EXPECT_EQ(output_of([] {
              EXPECT_EQ(wlan_setWpsPbcTrigger(1), 0);
              EXPECT_EQ(wlan_setWpsPinStart(1, "1"), 0);
              EXPECT_EQ(wlan_setWpsOOB(1), 0);
              EXPECT_EQ(wlan_setWpsCancel(1), 0);
            }),
            "");
  EXPECT_EQ(count_of(read_file("/tmp/commands"), "run\n"), 4 + 5 + 1 + 1);
}

TEST(Wps, NothingRunsWhileSomethingIsSwitchedOff) {
  const struct {
    const char* radio_on;
    const char* bss_enabled;
    const char* wsc_enable;
  } rows[] = {{"0", "1", "1"},
              {"1", "0", "1"},
              {"1", "1", "0"},
              {"junk", "1", "1"},
              {"1", "", "1"},
              {"1", "1", ""},
              {"001", "1", "1"},
              // All fields but the last are cut to two characters.
              {"1", "001", "1"},
              {"1", "1", "001"}};
  for (const auto& row : rows) {
    // No method is permitted, but what is off is not even refused.
    set_up("0000", row.radio_on, row.bss_enabled, row.wsc_enable);
    const std::string errors = errors_of([] {
      EXPECT_EQ(wlan_setWpsPbcTrigger(1), 0);
      EXPECT_EQ(wlan_setWpsPushButton(9), 0);
      EXPECT_EQ(wlan_setWpsPinStart(9, "1"), 0);
    });
    EXPECT_FALSE(contains(errors, "disabled")) << errors;
    EXPECT_EQ(new_texts(), "") << row.radio_on << row.bss_enabled << row.wsc_enable;
  }
  write_file(kProfile24, "Other=1\n");
  EXPECT_EQ(wlan_setWpsPbcTrigger(1), 0);
  EXPECT_EQ(wlan_setWpsOOB(1), 0);
  EXPECT_EQ(wlan_setWpsCancel(1), 0);
  set_up("0084", "1", "1", "0");
  EXPECT_EQ(wlan_setWpsOOB(1), 0);
  EXPECT_EQ(wlan_setWpsCancel(9), 0);
  EXPECT_EQ(new_texts(), "");
}

TEST(Wps, EachRadioAndBssHasItsOwnSwitches) {
  set_up();
  write_file(kProfile24, "RadioOn=0\nBssEnabled=1\nWscEnable=1\nWscConfMethods=84\n");
  write_file(kProfile5, "RadioOn=1\nBssEnabled=0;1\nWscEnable=1;1\nWscConfMethods=0;84\n");
  EXPECT_EQ(wlan_setWpsPbcTrigger(1), 0);
  EXPECT_EQ(wlan_setWpsPbcTrigger(9), 0);
  EXPECT_EQ(new_texts(), "");
  EXPECT_EQ(wlan_setWpsPbcTrigger(10), 0);
  EXPECT_EQ(count_of(new_texts(), "ra9 "), 4);
}

TEST(Wps, IndexWithoutABssDoesNothing) {
  set_up("0000");
  const std::string errors = errors_of([] {
    for (const int bss : {0, 17, -5, INT_MIN, INT_MAX}) {
      EXPECT_EQ(wlan_setWpsPbcTrigger(bss), 0) << bss;
      EXPECT_EQ(wlan_setWpsPushButton(bss), 0) << bss;
      EXPECT_EQ(wlan_setWpsPinStart(bss, "1"), 0) << bss;
      EXPECT_EQ(wlan_setWpsOOB(bss), 0) << bss;
      EXPECT_EQ(wlan_setWpsCancel(bss), 0) << bss;
    }
  });
  EXPECT_FALSE(contains(errors, "disabled")) << errors;
  EXPECT_EQ(new_texts(), "");
}

TEST(Wps, ResetAndCancelAskForTheSwitchOfWpsOnly) {
  set_up("0000", "0", "0", "1");
  EXPECT_EQ(wlan_setWpsOOB(2), 0);
  EXPECT_EQ(new_texts(), "ra1 WscConfStatus=1\n");
  EXPECT_EQ(wlan_setWpsCancel(9), 0);
  EXPECT_EQ(new_texts(), "ra8 WscStop\n");
}

TEST(Wps, StartsAreTracedOnTheConsole) {
  set_up();
  switch_console_on();
  const auto traced = [](const std::string& function, const std::string& text) {
    return rev_prefix(function) + text + "\n";
  };
  EXPECT_TRUE(contains(output_of([] { wlan_setWpsPushButton(9); }),
                       traced("wlan_setWpsPbcTrigger", "Starting WPS PBC mode on ra8")));
  EXPECT_TRUE(contains(output_of([] { wlan_setWpsPinStart(1, "1"); }),
                       traced("wlan_setWpsPinStart", "Starting WPS PIN mode on ra0")));
  EXPECT_TRUE(contains(output_of([] { wlan_setWpsOOB(3); }),
                       traced("wlan_setWpsOOB", "Resetting AP to WPS OOB configuration on ra2")));
  char status[kWpsResultStatusSize] = "";
  EXPECT_EQ(output_of([&] { EXPECT_EQ(wlan_getWpsResultStatus(2, status), -1); }),
            traced("wlan_getWpsResultStatus", "Bad index"));
}

TEST(Wps, WhatDoesNotStartIsNotTraced) {
  switch_console_on();
  const auto output = [] {
    return output_of([] {
      errors_of([] {
        wlan_setWpsPbcTrigger(1);
        wlan_setWpsPinStart(1, "1");
      });
    });
  };
  set_up("0000");
  EXPECT_FALSE(contains(output(), "Starting WPS"));
  set_up("0084", "0");
  EXPECT_FALSE(contains(output(), "Starting WPS"));
  set_up("0084", "1", "1", "0");
  EXPECT_FALSE(contains(output(), "Starting WPS"));
  EXPECT_FALSE(contains(output_of([] { wlan_setWpsOOB(1); }), "Resetting"));
  set_up();
  EXPECT_EQ(count_of(output(), "Starting WPS"), 2);
}

static std::string code_bytes(int32_t code) {
  return std::string(reinterpret_cast<const char*>(&code), sizeof code);
}

static std::string result_of(int32_t state, int32_t status) {
  answer_object_with(0x0AA0, code_bytes(state));
  answer_object_with(0x0751, code_bytes(status));
  // The longest text, and a guard after it.
  struct {
    char text[kWpsResultStatusSize];
    char guard;
  } room;
  memset(&room, '#', sizeof room);
  EXPECT_EQ(wlan_getWpsResultStatus(9, room.text), 0);
  EXPECT_EQ(room.guard, '#');
  return room.text;
}

TEST(WpsResult, StatesThatStandForThemselves) {
  const struct {
    int state;
    const char* text;
  } rows[] = {
      {1, "Init"},
      {2, "Start"},
      {5, "Link Up"},
      {6, "Send EAPOL start"},
      {7, "Wait EAPOL start"},
      {8, "Wait upnp start"},
      {9, "Wait request ID"},
      {10, "Wait response ID"},
      {11, "Wait wps start"},
      {12, "Wait M1"},
      {13, "Sent M1"},
      {14, "Sent M2D"},
      {15, "Wait M2"},
      {16, "received M2D"},
      {17, "Wait Pincode"},
      {18, "Wait M3"},
      {19, "Wait M4"},
      {20, "Wait M5"},
      {21, "Wait M6"},
      {22, "Wait M7"},
      {23, "Wait M8"},
      {24, "Wait done"},
      {25, "Wait ack"},
      {26, "Wait EAP fail"},
      {27, "Wait disconnect"},
  };
  for (const auto& row : rows) {
    for (const int status : {0, 1, 2, 34, 3, -1, INT_MAX}) {
      EXPECT_EQ(result_of(row.state, status), row.text) << row.state << " " << status;
    }
  }
}

TEST(WpsResult, StatesThatTheStatusDecides) {
  static constexpr char kUnknown[] = "Unknown result";
  const struct {
    int state;
    int status;
    const char* text;
  } rows[] = {
      {0, 0, "Idle"},    {0, 1, "Idle"},         {0, 2, "Failed"},        {0, 34, kUnknown},
      {0, 3, kUnknown},  {0, -1, kUnknown},      {3, 0, kUnknown},        {3, 1, kUnknown},
      {3, 2, "Failed"},  {3, 34, "Success"},     {3, 33, kUnknown},       {4, 0, kUnknown},
      {4, 1, kUnknown},  {4, 2, kUnknown},       {4, 34, "Success"},      {4, 35, kUnknown},
      {28, 2, "Failed"}, {28, 0, kUnknown},      {28, 34, kUnknown},      {-1, 2, "Failed"},
      {-1, 1, kUnknown}, {INT_MIN, 2, "Failed"}, {INT_MAX, 34, kUnknown},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(result_of(row.state, row.status), row.text) << row.state << " " << row.status;
  }
}

TEST(WpsResult, WhatTheDriverDoesNotTellCountsAsNoSession) {
  char text[kWpsResultStatusSize] = "";
  const auto read = [&] { EXPECT_EQ(wlan_getWpsResultStatus(1, text), 0); };
  ASSERT_EQ(system("gwbox fail wps_state EIO; gwbox fail wps_status EIO"), 0);
  EXPECT_EQ(errors_of(read), rpc_error_prefix("rtpriv_get_int_ioctl") +
                                 "ioctl failed (cmd=0x8BE1, sub_cmd=0xAA0)\n" +
                                 rpc_error_prefix("rtpriv_get_int_ioctl") +
                                 "ioctl failed (cmd=0x8BE1, sub_cmd=0x751)\n");
  EXPECT_STREQ(text, "Idle");
  answer_object_with(0x0751, code_bytes(2));
  ASSERT_EQ(system("gwbox fail wps_state EIO"), 0);
  errors_of(read);
  EXPECT_STREQ(text, "Failed");
  answer_object_with(0x0AA0, code_bytes(3));
  answer_object_with(0x0751, code_bytes(34), EIO);
  errors_of(read);
  EXPECT_STREQ(text, "Unknown result");
}

TEST(WpsResult, RadiosAreNamedByTheirFirstBss) {
  char text[kWpsResultStatusSize] = "untouched";
  EXPECT_EQ(errors_of([&] {
              for (const int index : {0, 2, 8, 10, 16, 17, -1, INT_MIN, INT_MAX}) {
                EXPECT_EQ(wlan_getWpsResultStatus(index, text), -1) << index;
              }
            }),
            "");
  EXPECT_STREQ(text, "untouched");
  EXPECT_EQ(driver_requests().size(), 0u);
  EXPECT_EQ(wlan_getWpsResultStatus(9, text), 0);
  const auto requests = driver_requests();
  ASSERT_EQ(requests.size(), 2u);
  EXPECT_TRUE(contains(requests[0], "\"interface\":\"ra8\"")) << requests[0];
  EXPECT_TRUE(contains(requests[0], "\"sub\":\"0x0AA0\"")) << requests[0];
  EXPECT_TRUE(contains(requests[1], "\"sub\":\"0x0751\"")) << requests[1];
}

TEST(WpsUuid, TextOfTheDriverIsAnswered) {
  char uuid[kWpsUuidSize];
  memset(uuid, '#', sizeof uuid);
  EXPECT_EQ(wlan_getWpsUuid(1, uuid), 0);
  EXPECT_STREQ(uuid, "28802880-2880-1880-a880-000c43260000");
  const std::string request = driver_requests().back();
  EXPECT_TRUE(contains(request, "\"sub\":\"0x0753\"")) << request;
  EXPECT_TRUE(contains(request, "\"length\":120,")) << request;
}

TEST(WpsUuid, FailureAnswersAnEmptyText) {
  char uuid[kWpsUuidSize] = "old";
  ASSERT_EQ(system("gwbox fail wps_uuid EIO"), 0);
  errors_of([&] { EXPECT_EQ(wlan_getWpsUuid(9, uuid), 0); });
  EXPECT_STREQ(uuid, "");
  for (const int bss : {0, 17, -5, INT_MIN, INT_MAX}) {
    strcpy(uuid, "old");
    errors_of([&] { EXPECT_EQ(wlan_getWpsUuid(bss, uuid), 0); });
    EXPECT_STREQ(uuid, "") << bss;
  }
}

TEST(WpsUuid, TextOfAFailedQueryIsNotAnswered) {
  char uuid[kWpsUuidSize] = "old";
  answer_object_with(0x0753, "28802880-2880", EIO);
  errors_of([&] { EXPECT_EQ(wlan_getWpsUuid(1, uuid), 0); });
  EXPECT_EQ(std::string(uuid, sizeof uuid), std::string(kWpsUuidSize, '\0'));
}

TEST(WpsUuid, TextWithoutAnEndIsClosed) {
  struct {
    char uuid[kWpsUuidSize];
    char guard;
  } room;
  memset(&room, '#', sizeof room);
  answer_object_with(0x0753, std::string(500, 'u'));
  EXPECT_EQ(wlan_getWpsUuid(1, room.uuid), 0);
  EXPECT_EQ(room.uuid, std::string(120, 'u'));
  EXPECT_EQ(room.guard, '#');
}
