// The driver model alone: plain data in, plain data out.
#include <gtest/gtest.h>
#include <cerrno>

#include "driver/model.h"
#include "trap/faults.h"

static int set(driver_state& state, int bss, const std::string& text) {
  driver_request r = {};
  r.bss = bss;
  r.request = kRequestSetText;
  r.length = static_cast<uint16_t>(text.size() + 1);
  r.input = text;
  return driver_handle(state, r);
}

TEST(Model, KeepsTheLastValueOfEachKeyPerInterface) {
  driver_state state;
  driver_init(state, *board_find("mt7603+mt7612"));
  EXPECT_EQ(set(state, 0, "SSID=first"), 0);
  EXPECT_EQ(set(state, 0, "SSID=second=with equals"), 0);
  EXPECT_EQ(set(state, 8, "SSID=other band"), 0);
  EXPECT_EQ(state.bss[0].settings["SSID"], "second=with equals");
  EXPECT_EQ(state.bss[8].settings["SSID"], "other band");
  EXPECT_TRUE(state.bss[1].settings.empty());
}

TEST(Model, ARefusedTextChangesNothing) {
  driver_state state;
  driver_init(state, *board_find("mt7603"));
  EXPECT_EQ(set(state, 0, "LEDEnable"), -EINVAL);
  EXPECT_TRUE(state.bss[0].settings.empty());
}

TEST(Model, InterfaceNames) {
  EXPECT_EQ(board_interface_number("ra0"), 0);
  EXPECT_EQ(board_interface_number("ra15"), 15);
  for (const char* name : {"ra16", "ra", "ra-1", "ra00", "rai0", "eth0", "ra1x", ""}) {
    EXPECT_EQ(board_interface_number(name), -1) << name;
  }
}

TEST(Model, OnlySetsCarryInput) {
  EXPECT_EQ(driver_input_size(kRequestSetText, 0, 12), 12u);
  EXPECT_EQ(driver_input_size(kRequestObject, 0x06B2, 12), 0u);
  EXPECT_EQ(driver_input_size(kRequestObject, 0x86B2, 12), 12u);
  EXPECT_EQ(driver_input_size(kRequestGetPriv, 0, 16), 0u);
  EXPECT_EQ(driver_input_size(0x8B01, 0, 16), 0u);
}

TEST(Model, BoardsDifferInCardsAndInterfaces) {
  EXPECT_EQ(board_find("mt7603")->interfaces, 8);
  EXPECT_EQ(board_find("mt7615")->interfaces, 16);
  EXPECT_EQ(board_find("mt7999"), nullptr);
  std::string devices = board_pci_devices(*board_find("mt7615"));
  EXPECT_NE(devices.find("14c37615"), std::string::npos);
  EXPECT_EQ(devices.find("14c37612"), std::string::npos);
}

TEST(Model, FirstMatchingFaultIsUsedUpFirst) {
  std::vector<fault_rule> rules(2);
  std::string wrong;
  ASSERT_TRUE(fault_parse("0x8BE1:0x069B@ra8", "EAGAIN", 1, rules[0], wrong));
  ASSERT_TRUE(fault_parse("35809", "EIO", 1, rules[1], wrong));  // 0x8BE1
  fault_rule taken;
  EXPECT_TRUE(fault_take(rules, 0x8BE1, true, 0x069B, "ra0", taken));
  EXPECT_EQ(taken.error, EIO);
  EXPECT_FALSE(fault_take(rules, 0x8BE1, true, 0x069B, "ra0", taken));
  EXPECT_TRUE(fault_take(rules, 0x8BE1, true, 0x069B, "ra8", taken));
  EXPECT_EQ(taken.error, EAGAIN);
  for (const fault_rule& rule : rules) {
    EXPECT_EQ(rule.hits, 1);
    EXPECT_EQ(rule.left, 0);
  }
}
