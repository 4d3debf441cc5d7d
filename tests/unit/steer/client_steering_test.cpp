#include "steer/client_steering.h"

#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <climits>

#include "lifecycle/lifecycle_support.h"
#include "steer/steer_support.h"
#include "support/gateway.h"
#include "unit_support.h"
#include "wlan/driver_gate.h"

static const std::string kError = rev_error_prefix("wlan_setHncSteerStaType");

static std::string errors_of_steer(int index, int type, int expected) {
  return errors_of([&] { EXPECT_EQ(wlan_setHncSteerStaType(index, type), expected); });
}

static void set_frame(const std::string& mac, const std::string& payload) {
  set_profile_value(kProfile24, "HNCActionFrameMac", mac);
  set_profile_value(kProfile24, "HNCActionFramePayload", payload);
}

static std::string hex_zeros(size_t bytes) {
  std::string digits;
  for (size_t i = 0; i < bytes; ++i)
    digits += "00";
  return digits;
}

TEST(TransitionRequest, GoesOutAsActionFrameAndSteerRecord) {
  bring_radios_up();
  set_frame(kStation, "0a1BzZ");
  EXPECT_EQ(errors_of_steer(1, 1, 0), "");
  EXPECT_EQ(profile_value(kProfile24, "HNCSteerSTAType"), "1");
  const auto requests = driver_requests();
  ASSERT_EQ(requests.size(), 2u);
  EXPECT_EQ(member_of(requests[0], "name"), "object_set");
  EXPECT_EQ(member_of(requests[0], "request"), "0x8BE1");
  EXPECT_EQ(member_of(requests[0], "sub"), "0x06B0");
  EXPECT_EQ(member_of(requests[0], "interface"), "ra0");
  EXPECT_EQ(member_of(requests[0], "length"), "1034");
  // Category, address, two body bytes, and the rest of the buffer.
  EXPECT_EQ(member_of(requests[0], "bytes"), "0a00000002005e0000010a1b" + hex_zeros(1022));
  EXPECT_EQ(member_of(requests[1], "name"), "object_set");
  EXPECT_EQ(member_of(requests[1], "sub"), "0x06B1");
  EXPECT_EQ(member_of(requests[1], "length"), "20");
  // Address, padding, kind 1, action 0 and time 0.
  EXPECT_EQ(member_of(requests[1], "bytes"), "02005e000001000001000000" + hex_zeros(8));
}

TEST(TransitionRequest, BodyEndsAtTheFirstPairThatIsNotHexadecimal) {
  bring_radios_up();
  std::string most;
  for (int i = 0; i < 512; ++i)
    most += "aB";
  std::string most_bytes;
  for (int i = 0; i < 512; ++i)
    most_bytes += "ab";
  const std::pair<std::string, std::string> cases[] = {
      {"", ""},           {"0", ""},
      {"0a1", "0a"},      {"09AFaf", "09afaf"},
      {"zz0a", ""},       {"0z1b", ""},
      {"z01b", ""},       {"0a 1b", "0a"},
      {"0a:1b", "0a"},    {"0a\xe9\x31", "0a"},
      {"%n%s", ""},       {"@G`g/:", ""},
      {most, most_bytes}, {most + "c", most_bytes},
  };
  for (const auto& [payload, body] : cases) {
    set_frame(kStation, payload);
    EXPECT_EQ(errors_of_steer(1, 1, 0), "") << payload;
    EXPECT_EQ(member_of(last_of("action_frame"), "bytes"),
              "0a00000002005e000001" + body + hex_zeros(1024 - body.size() / 2))
        << payload;
  }
}

TEST(TransitionRequest, MalformedAddressIsTakenAsFarAsItGoes) {
  bring_radios_up();
  const std::pair<std::string, std::string> cases[] = {
      {"", "000000000000"},
      {"nonsense", "000000000000"},
      {"02", "020000000000"},
      {"02:00:5e", "02005e000000"},
      {"02:00:5e:zz:00:01", "02005e000000"},
      {"2:0:5:0:0:1", "020005000001"},
      {"1ff:00:00:00:00:00", "1f0000000000"},
      {"-1:02:03:04:05:06", "ff0203040506"},
      {"02:00:5e:00:00:01x", "02005e000001"},
      {"FF:EE:dd:cc:BB:aa", "ffeeddccbbaa"},
  };
  for (const auto& [text, mac] : cases) {
    set_frame(text, "0a");
    EXPECT_EQ(errors_of_steer(1, 1, 0), "") << text;
    EXPECT_EQ(member_of(last_of("action_frame"), "bytes").substr(8, 12), mac) << text;
    EXPECT_EQ(member_of(last_of("steer"), "bytes").substr(0, 12), mac) << text;
  }
}

TEST(TransitionRequest, MissingKeysAreReported) {
  bring_radios_up();
  set_frame(kStation, "0a");
  remove_key(kProfile24, "HNCActionFramePayload");
  EXPECT_EQ(errors_of_steer(1, 1, -1),
            kError + "wlan_setHncSteerStaType:failed to action frame payload\n ");
  set_frame(std::string(19, 'a'), std::string(1026, 'a'));
  EXPECT_TRUE(errors_of_steer(1, 1, -1).ends_with(
      kError +
      "wlan_setHncSteerStaType:failed to action frame STA, can't "
      "find STA mac\n "));
  set_frame(kStation, std::string(1026, 'a'));
  EXPECT_TRUE(errors_of_steer(1, 1, -1).ends_with(
      kError + "wlan_setHncSteerStaType:failed to action frame payload\n "));
  EXPECT_EQ(driver_requests().size(), 0u);
  EXPECT_EQ(profile_value(kProfile24, "HNCSteerSTAType"), "1");
}

TEST(TransitionRequest, RefusalOfEitherRecordIsReported) {
  bring_radios_up();
  set_frame(kStation, "0a");
  const std::string prefix = rev_error_prefix("send_btm_action_frame_request");
  const int before = open_descriptors();
  run("gwbox fail action_frame EIO");
  EXPECT_EQ(errors_of_steer(1, 1, -1), prefix + "ioctl failed (cmd=0x8BE1, sub_cmd=0x86B0)\n");
  EXPECT_EQ(requests_of("steer").size(), 0u);
  run("gwbox fail steer EIO");
  EXPECT_EQ(errors_of_steer(1, 1, -1), prefix + "ioctl failed (cmd=0x8BE1, sub_cmd=0x6B1)\n");
  EXPECT_EQ(requests_of("action_frame").size(), 2u);
  EXPECT_EQ(open_descriptors(), before);
  fail_system_call(SYS_socket, EMFILE);
  EXPECT_EQ(errors_of_steer(1, 1, -1), prefix + "socket failed");
}

TEST(TransitionRequest, IsTracedOnTheConsole) {
  bring_radios_up();
  set_frame(kStation, "0a1b");
  switch_console_on();
  const std::string output = output_of([] { EXPECT_EQ(wlan_setHncSteerStaType(1, 1), 0); });
  const std::string steer = rev_prefix("wlan_setHncSteerStaType");
  EXPECT_TRUE(contains(output, steer + " STEER STA: mac address 02:00:5e:00:00:01 \n ")) << output;
  EXPECT_TRUE(contains(output, steer + " STEER STA: length = 2\n ")) << output;
  EXPECT_TRUE(contains(output, rev_prefix("send_btm_action_frame_request") +
                                   "sent btm action, length = 1034, MacAddr = 02:00:5e:00:00:01, "
                                   "flags = 34480 \n"))
      << output;
}

TEST(TransitionRequest, IsTracedAsSentOnlyWithASocketAndBeforeTheDriverAnswers) {
  bring_radios_up();
  set_frame(kStation, "0a1b");
  run("gwbox fail action_frame EIO");
  switch_console_on();
  const std::string refused = output_of([] { errors_of_steer(1, 1, -1); });
  EXPECT_EQ(count_of(refused, "sent btm action, "), 1) << refused;
  fail_system_call(SYS_socket, EMFILE);
  const std::string output = output_of([] { errors_of_steer(1, 1, -1); });
  EXPECT_TRUE(contains(output, "STEER STA: length = 2\n ")) << output;
  EXPECT_FALSE(contains(output, "sent btm action")) << output;
}

TEST(TransitionRequest, BodyNeverOverrunsTheFrame) {
  bring_radios_up();
  const uint8_t mac[6] = {1, 2, 3, 4, 5, 6};
  const std::string body(2000, '\x77');
  const auto* bytes = reinterpret_cast<const uint8_t*>(body.data());
  EXPECT_EQ(send_btm_action_frame_request(9, 0x01020304, mac, bytes, body.size()), 0);
  const std::string frame = last_of("action_frame");
  EXPECT_EQ(member_of(frame, "interface"), "ra8");
  EXPECT_EQ(member_of(frame, "length"), "1034");
  EXPECT_TRUE(member_of(frame, "bytes").starts_with("040302010102030405067777"));
  EXPECT_TRUE(member_of(frame, "bytes").ends_with("7777"));
}

TEST(Disconnect, RunsItsCommandForTheInterfaceOfTheIndex) {
  drivers_inited = 1;
  set_profile_value(kProfile24, "HNCSteerSTAMac", kStation);
  set_profile_value(kProfile5, "HNCSteerSTAMac", "02:00:5E:00:00:02");
  note_commands();
  EXPECT_EQ(errors_of_steer(1, 3, 0), "");
  EXPECT_EQ(errors_of_steer(16, 3, 0), "");
  EXPECT_EQ(errors_of_steer(0, 3, 0), "");
  EXPECT_EQ(errors_of_steer(INT_MIN, 3, 0), "");
  EXPECT_EQ(errors_of_steer(INT_MAX, 3, 0), "");
  EXPECT_EQ(commands(),
            "iwpriv ra0 set DisConnectSta=02:00:5e:00:00:01\n"
            "iwpriv ra15 set DisConnectSta=02:00:5E:00:00:02\n"
            "iwpriv ra-1 set DisConnectSta=02:00:5e:00:00:01\n"
            "iwpriv ra-2147483649 set DisConnectSta=02:00:5e:00:00:01\n"
            "iwpriv ra2147483646 set DisConnectSta=02:00:5E:00:00:02\n");
}

TEST(Disconnect, TextThatIsNoAddressRunsNoCommandOfItsOwn) {
  drivers_inited = 1;
  note_commands();
  const std::pair<std::string, std::string> cases[] = {
      {"", ""},
      {"$(touch /tmp/x)", "'$(touch /tmp/x)'"},
      {"a;b&c|d`e`\"f\"", "'a;b&c|d`e`\"f\"'"},
      {"''''''''''''''''''",
       "''\\'''\\'''\\'''\\'''\\'''\\'''\\'''\\'''\\'''\\'''\\'''\\'''\\'''\\'"
       "''\\'''\\'''\\'''\\'''"},
  };
  for (const auto& [text, word] : cases) {
    set_profile_value(kProfile24, "HNCSteerSTAMac", text);
    EXPECT_EQ(errors_of_steer(1, 3, 0), "");
    EXPECT_EQ(commands(), "iwpriv ra0 set DisConnectSta=" + word + "\n");
  }
}

TEST(Disconnect, OutcomeOfTheCommandDoesNotMatterButTheStationMustBeNamed) {
  bring_radios_up();
  set_profile_value(kProfile24, "HNCSteerSTAMac", kStation);
  run("gwbox fail set EINVAL");
  errors_of_steer(1, 3, 0);
  remove_key(kProfile24, "HNCSteerSTAMac");
  const std::string missing = kError + "failed to steer STA, can't find STA mac\n ";
  EXPECT_EQ(errors_of_steer(1, 3, -1), missing);
  EXPECT_EQ(errors_of_steer(1, 0, -1), missing);
}

TEST(Disconnect, ShellThatCannotBeRunDoesNotMatter) {
  drivers_inited = 1;
  for (const char* profile : {kProfile24, kProfile5})
    set_profile_value(profile, "HNCSteerSTAMac", kStation);
  remove_key(kProfile5, "HNCSteerBlackListAction");
  // A child process, because no later wait would succeed.
  EXPECT_EXIT(
      {
        fail_system_call(SYS_wait4, ECHILD);
        const bool silent = errors_of_steer(1, 3, 0).empty() && errors_of_steer(9, 0, 0).empty();
        _exit(silent && !testing::Test::HasFailure() ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

TEST(Disconnect, AddressHasAtMost18Characters) {
  drivers_inited = 1;
  note_commands();
  set_profile_value(kProfile24, "HNCSteerSTAMac", std::string(18, 'a'));
  EXPECT_EQ(errors_of_steer(1, 3, 0), "");
  EXPECT_EQ(commands(), "iwpriv ra0 set DisConnectSta=aaaaaaaaaaaaaaaaaa\n");
  set_profile_value(kProfile24, "HNCSteerSTAMac", std::string(19, 'a'));
  EXPECT_TRUE(
      errors_of_steer(1, 3, -1).ends_with(kError + "failed to steer STA, can't find STA mac\n "));
  EXPECT_EQ(commands(), "");
}

struct blacklist_case {
  const char* action;
  const char* seconds;  // null: no such key
  std::string record;   // after address and padding: kind, action, time
};

TEST(Blacklist, RecordCarriesActionAndTime) {
  bring_radios_up();
  set_profile_value(kProfile24, "HNCSteerSTAMac", kStation);
  const blacklist_case cases[] = {
      {"0", "77", "000000000000000000000000"},   {"1", "77", "000000000100000000000000"},
      {"2", "77", "00000000020000004d000000"},   {"2", "0x", "000000000200000000000000"},
      {"2", "", "000000000200000000000000"},     {"junk", "77", "000000000000000000000000"},
      {"2x", "300", "00000000020000002c010000"}, {"2", nullptr, "000000000200000000000000"},
  };
  for (const blacklist_case& c : cases) {
    set_profile_value(kProfile24, "HNCSteerBlackListAction", c.action);
    if (c.seconds != nullptr) set_profile_value(kProfile24, "HNCSteerBlackListTimer", c.seconds);
    if (c.seconds == nullptr) remove_key(kProfile24, "HNCSteerBlackListTimer");
    EXPECT_EQ(errors_of_steer(1, 0, 0), "") << c.action;
    const std::string request = last_of("steer");
    EXPECT_EQ(member_of(request, "name"), "object_set");
    EXPECT_EQ(member_of(request, "sub"), "0x06B1");
    EXPECT_EQ(member_of(request, "length"), "20");
    EXPECT_EQ(member_of(request, "bytes"), "02005e0000010000" + c.record) << c.action;
  }
}

TEST(Blacklist, LongNumbersAreReadUpTo256Characters) {
  bring_radios_up();
  const std::string zeros(255, '0');
  set_profile_value(kProfile24, "HNCSteerSTAMac", kStation);
  set_profile_value(kProfile24, "HNCSteerBlackListAction", zeros + "2");
  set_profile_value(kProfile24, "HNCSteerBlackListTimer", zeros + "7");
  EXPECT_EQ(errors_of_steer(1, 0, 0), "");
  EXPECT_EQ(member_of(last_of("steer"), "bytes"), "02005e0000010000000000000200000007000000");
  set_profile_value(kProfile24, "HNCSteerBlackListTimer", zeros + "07");
  errors_of_steer(1, 0, 0);
  EXPECT_EQ(member_of(last_of("steer"), "bytes"), "02005e0000010000000000000200000000000000");
  set_profile_value(kProfile24, "HNCSteerBlackListAction", zeros + "02");
  note_commands();
  errors_of_steer(1, 0, 0);
  EXPECT_TRUE(contains(commands(), "ACLAddEntry=")) << "no action was found";
}

TEST(Blacklist, ActionIsTraced) {
  bring_radios_up();
  set_profile_value(kProfile24, "HNCSteerSTAMac", kStation);
  set_profile_value(kProfile24, "HNCSteerBlackListAction", "2");
  switch_console_on();
  const std::string output = output_of([] { errors_of_steer(1, 0, 0); });
  EXPECT_TRUE(output.ends_with(rev_prefix("wlan_setHncSteerStaType") + "Steer STA type: 2\n "))
      << output;
}

TEST(Blacklist, IllegalActionIsRefused) {
  bring_radios_up();
  set_profile_value(kProfile24, "HNCSteerSTAMac", kStation);
  for (const char* action : {"-1", "3", "-2147483648", "2147483647"}) {
    set_profile_value(kProfile24, "HNCSteerBlackListAction", action);
    EXPECT_EQ(errors_of_steer(1, 0, -1), kError + "Action type illegal. \n ") << action;
  }
  EXPECT_EQ(driver_requests().size(), 0u);
}

TEST(Blacklist, RefusalOfTheDriverIsAFailure) {
  bring_radios_up();
  for (const char* profile : {kProfile24, kProfile5}) {
    set_profile_value(profile, "HNCSteerSTAMac", kStation);
    set_profile_value(profile, "HNCSteerBlackListAction", "2");
    set_profile_value(profile, "HNCSteerBlackListTimer", "5");
  }
  for (const int index : {0, 17, -5, INT_MIN, INT_MAX}) {
    EXPECT_TRUE(contains(errors_of_steer(index, 0, -1), "sub_cmd=0x6B1)")) << index;
  }
  run("gwbox fail steer EIO");
  EXPECT_TRUE(contains(errors_of_steer(16, 0, -1), "sub_cmd=0x6B1)"));
  EXPECT_EQ(member_of(last_of("steer"), "interface"), "ra15");
}

TEST(Blacklist, WithoutAnActionTheAccessListIsUsed) {
  drivers_inited = 1;
  switch_console_on();
  set_profile_value(kProfile5, "HNCSteerSTAMac", "a'b");
  remove_key(kProfile5, "HNCSteerBlackListAction");
  note_commands();
  const std::string output = output_of([] { EXPECT_EQ(errors_of_steer(9, 0, 0), ""); });
  EXPECT_TRUE(contains(output, "failed to get wifi HNCSteerBlackListAction, ret:0\n "));
  EXPECT_EQ(commands(),
            "iwpriv ra8 set AccessPolicy=2\n"
            "iwpriv ra8 set ACLAddEntry='a'\\''b'\n");
  EXPECT_EQ(requests_of("steer").size(), 0u);
}

TEST(SteerType, IllegalTypeIsNotedAndRefused) {
  drivers_inited = 1;
  for (const int type : {2, 4, -1, INT_MIN, INT_MAX}) {
    EXPECT_EQ(errors_of_steer(9, type, -1), kError + "Steer type illegal. \n ") << type;
    EXPECT_EQ(profile_value(kProfile5, "HNCSteerSTAType"), std::to_string(type));
  }
  EXPECT_EQ(profile_value(kProfile24, "HNCSteerSTAType"), "0");
  EXPECT_EQ(driver_requests().size(), 0u);
}

TEST(SteerType, NothingHappensWhileTheDriverIsNotInited) {
  const std::string before = read_file(kProfile24);
  for (const int type : {0, 1, 2, 3}) {
    EXPECT_EQ(errors_of_steer(1, type, -1), kError + "dirver isn't inited. \n ") << type;
  }
  EXPECT_EQ(read_file(kProfile24), before);
  EXPECT_EQ(driver_requests().size(), 0u);
}

TEST(SteerType, ProfileThatCannotBeWrittenStopsIt) {
  bring_radios_up();
  unlink(kProfile24);
  EXPECT_TRUE(
      errors_of_steer(1, 0, -1).ends_with(kError + "failed to update wifi profile, ret:0\n "));
  EXPECT_EQ(driver_requests().size(), 0u);
}
