// Which procedures "wificonf dump" calls.
#include "commands/dump.h"

#include <gtest/gtest.h>

#include <map>

#include "fake_daemon.h"
#include "run_support.h"
#include "wire/lookup.h"

TEST(Dump, CallsNothingThatDoesMoreThanRead) {
  const std::string unsafe[] = {"wlan_get_ssid_bytes_sent",
                                "wlan_get_radio_bytes_received",
                                "wlan_get_ap_scan_result",
                                "wlan_get_ap_scan_status",
                                "wlan_get_channel",
                                "wlan_set_ssid",
                                "wlan_reset",
                                "wlan_undo_prek_operation",
                                "wlan_ap_scan"};
  for (const std::string& name : unsafe)
    EXPECT_FALSE(dump_is_safe(*lookup_name(name))) << name;
  EXPECT_TRUE(dump_is_safe(*lookup_name("wlan_get_btm_associated_device")));
}

// The calls of a dump: for each procedure, the indexes or other words that it is given.
static std::map<std::string, std::string> dumped() {
  // Rows below 3 exist; everything else fails.
  fake_daemon daemon;
  fake_daemon_start(daemon, [](const byte_string& call) {
    const bool row = call[20] == 1 && (call[23] == 0x76 || call[23] == 0x78);
    const bool there = row && call[43] < 3;
    byte_string reply = fake_reply(call, 0, {there ? 0 : 0xffffffff, 0});
    xdr_put_opaque(reply, std::string(there ? 1492 : 0, '\0'));
    return std::vector<fake_datagram>{{reply}};
  });
  run_outcome outcome =
      run_words({"--host", "127.0.0.1", "--port", std::to_string(daemon.port), "dump"});
  fake_daemon_stop(daemon);
  EXPECT_EQ(outcome.status, kExitDone) << outcome.err;
  std::map<std::string, std::string> given;
  for (const byte_string& call : daemon.calls) {
    unread_bytes words = unread_bytes(call).subspan(20);
    uint32_t number = 0, word = 0;
    EXPECT_TRUE(xdr_get_word(words, &number));
    words = words.subspan(16);
    std::string& list = given[lookup_display_name(*lookup_number(number))];
    while (xdr_get_word(words, &word))
      list += std::to_string(word) + " ";
    list += ",";
  }
  return given;
}

// A getter that takes anything but one index is left out: there is no knowing what to ask.
TEST(Dump, CallsEverySafeGetterOfEveryBss) {
  const std::map<std::string, std::string> given = dumped();
  const std::string bsses = "1 ,2 ,3 ,4 ,5 ,6 ,7 ,8 ,9 ,10 ,11 ,12 ,13 ,14 ,15 ,16 ,";
  const std::map<std::string, std::string> indexes = {
      {"", ","}, {"bss", bsses}, {"radio", "1 ,9 ,"}, {"instance", "1 ,"}, {"row", "1 ,2 ,3 ,"}};
  size_t expected = 0;
  for (const procedure_row& procedure : table_procedures()) {
    if (!dump_is_safe(procedure)) continue;
    const std::string name = lookup_display_name(procedure);
    const std::string index = procedure.members.count == 0 ? "" : procedure.members.at[0].name;
    if (procedure.members.count > 1 || !indexes.contains(index)) continue;
    ++expected;
    ASSERT_TRUE(given.contains(name)) << name;
    EXPECT_EQ(given.at(name), indexes.at(index)) << name;
  }
  EXPECT_EQ(given.size(), expected + 1) << "and wlan_get_stats";
  EXPECT_EQ(given.at("wlan_get_stats"),
            "1 1 ,9 1 ,1 0 ,2 0 ,3 0 ,4 0 ,5 0 ,6 0 ,7 0 ,8 0 ,9 0 ,10 0 ,11 0 ,12 0 ,13 0 ,14 0 ,"
            "15 0 ,16 0 ,");
}
