#include <gtest/gtest.h>

#include "support/daemon.h"
#include "support/files.h"
#include "support/gateway.h"
#include "support/wire.h"

static constexpr uint32_t kGetUuid = 93;
static constexpr uint32_t kCancel = 120;
static constexpr uint32_t kSetMode = 169;
static constexpr uint32_t kGetResultStatus = 172;
static constexpr uint32_t kPushButton = 176;
static constexpr uint32_t kPinStart = 177;
static constexpr uint32_t kOob = 181;

// A getter's text, preceded by "-1 " when it failed.
static std::string text_of(uint32_t procedure, uint32_t index) {
  reply_message reply = {};
  EXPECT_TRUE(call(procedure, xdr_word(index), &reply));
  EXPECT_EQ(word_at(reply.payload, 4), 0u);
  const uint32_t length = word_at(reply.payload, 8);
  const std::string text = reply.payload.substr(12, length);
  EXPECT_EQ(text.find('\0'), length - 1);
  return (word_at(reply.payload, 0) == 0 ? "" : "-1 ") + text.substr(0, length - 1);
}

static std::string result_of(uint32_t radio) {
  return text_of(kGetResultStatus, radio);
}

static std::string texts_of(const std::string& key) {
  return run("jq -r 'select(.text) | select(.text | startswith(\"" + key +
             "\")) | .interface + \" \" + .text' /run/gwbox/journal.jsonl");
}

static void plan(const std::string& radio, const std::string& words) {
  EXPECT_EQ(run("gwbox set radio " + radio + " " + words + " && echo done"), "done\n");
}

TEST(Wps, PushButtonSessionGoesThroughItsStatesToSuccess) {
  // The states in the middle take eight ninths of the time.
  plan("ra0", "wps.seconds=1.5");
  start_daemon();
  EXPECT_EQ(result_of(1), "Idle");
  EXPECT_EQ(call_for_code(kPushButton, xdr_word(1)), 0);
  EXPECT_TRUE(wait_until([] { return result_of(1).starts_with("Wait "); }));
  EXPECT_TRUE(wait_until([] { return result_of(1) == "Success"; }));
  EXPECT_EQ(result_of(9), "Idle");
  EXPECT_EQ(texts_of("Wsc"),
            "ra0 WscConfMode=7\nra0 WscConfStatus=2\nra0 WscMode=2\nra0 WscGetConf=1\n");
}

TEST(Wps, SessionThatSucceedsLetsItsStationIn) {
  run("gwbox set station 02:00:5e:00:00:77 bss=1 by_wps=true; ip link set ra0 up");
  plan("ra0", "wps.seconds=0.1");
  const auto is_in = [] {
    return run(
        "gwbox status --json | jq -j '.stations[] | "
        "select(.mac == \"02:00:5e:00:00:77\") | .associated'");
  };
  start_daemon();
  EXPECT_EQ(is_in(), "false");
  EXPECT_EQ(call_for_code(kPushButton, xdr_word(1)), 0);
  EXPECT_TRUE(wait_until([] { return result_of(1) == "Success"; }));
  EXPECT_EQ(is_in(), "true");
}

TEST(Wps, SessionThatFailsOrTimesOutIsFailed) {
  plan("ra0", "wps.outcome=failure wps.seconds=0.3");
  plan("ra8", "wps.outcome=timeout wps.timeout=1.5");
  start_daemon();
  EXPECT_EQ(call_for_code(kPushButton, xdr_word(1)), 0);
  EXPECT_EQ(call_for_code(kPushButton, xdr_word(9)), 0);
  EXPECT_TRUE(wait_until([] { return result_of(9) == "Wait EAPOL start"; }));
  EXPECT_TRUE(wait_until([] { return result_of(1) == "Failed"; }));
  EXPECT_TRUE(wait_until([] { return result_of(9) == "Failed"; }));
}

TEST(Wps, CancelledSessionIsIdle) {
  plan("ra8", "wps.seconds=100");
  start_daemon();
  EXPECT_EQ(call_for_code(kPushButton, xdr_word(9)), 0);
  EXPECT_EQ(result_of(9), "Start");
  EXPECT_EQ(call_for_code(kCancel, xdr_word(9)), 0);
  EXPECT_EQ(result_of(9), "Idle");
  EXPECT_EQ(texts_of("WscStop"), "ra8 WscStop\n");
}

TEST(Wps, PinSessionNeedsTheRightPin) {
  plan("ra0", "wps.seconds=0.3 wps.pin=12345670");
  start_daemon();
  EXPECT_EQ(call_for_code(kPinStart, xdr_word(1) + xdr_text("00000000")), 0);
  EXPECT_TRUE(wait_until([] { return result_of(1) == "Failed"; }));
  EXPECT_EQ(call_for_code(kPinStart, xdr_word(1) + xdr_text("12345670")), 0);
  EXPECT_TRUE(wait_until([] { return result_of(1) == "Success"; }));
  EXPECT_EQ(texts_of("WscPinCode"), "ra0 WscPinCode=00000000\nra0 WscPinCode=12345670\n");
  EXPECT_EQ(texts_of("WscMode"), "ra0 WscMode=1\nra0 WscMode=1\n");
}

TEST(Wps, PinRunsNoCommandOfItsOwn) {
  start_daemon();
  for (const std::string& pin :
       {std::string("$(touch /tmp/pwned)"), std::string("'; touch /tmp/pwned"), std::string("1 2"),
        std::string(8000, '3')}) {
    EXPECT_EQ(call_for_code(kPinStart, xdr_word(1) + xdr_text(pin)), 0);
  }
  EXPECT_FALSE(exists("/tmp/pwned"));
  EXPECT_EQ(texts_of("WscPinCode"),
            "ra0 WscPinCode=$(touch /tmp/pwned)\nra0 WscPinCode='; touch /tmp/pwned\n"
            "ra0 WscPinCode=1 2\nra0 WscPinCode=" +
                std::string(37, '3') + "\n");
}

TEST(Wps, MethodThatIsNotPermittedFails) {
  set_profile_value("/tmp/mt76xx_24.dat", "WscConfMethods", "0080;0004");
  set_profile_value("/tmp/mt76xx_24.dat", "WscEnable", "1;1");
  start_daemon();
  EXPECT_EQ(call_for_code(kPinStart, xdr_word(1) + xdr_text("1")), -1);
  EXPECT_EQ(call_for_code(kPushButton, xdr_word(2)), -1);
  EXPECT_EQ(texts_of("Wsc"), "");
  EXPECT_NE(daemon_errors().find("IF(ra0) WPS PIN disabled, WscConfigMethods 0x0080\n"),
            std::string::npos)
      << daemon_errors();
  EXPECT_NE(daemon_errors().find("IF(ra1) WPS PBC disabled, WscConfigMethods 0x0004\n"),
            std::string::npos);
}

TEST(Wps, WhatIsSwitchedOffAnswersZeroAndRunsNothing) {
  start_daemon();
  // BSSs 2 and 10 have WPS switched off; the others do not exist.
  for (const uint32_t bss : {2u, 10u, 0u, 17u, 0x80000000u, 0x7FFFFFFFu}) {
    EXPECT_EQ(call_for_code(kPushButton, xdr_word(bss)), 0) << bss;
    EXPECT_EQ(call_for_code(kPinStart, xdr_word(bss) + xdr_text("1")), 0) << bss;
    EXPECT_EQ(call_for_code(kOob, xdr_word(bss)), 0) << bss;
    EXPECT_EQ(call_for_code(kCancel, xdr_word(bss)), 0) << bss;
    EXPECT_EQ(call_for_code(kSetMode, xdr_word(bss) + xdr_word(1)), 0) << bss;
  }
  EXPECT_EQ(texts_of(""), "");
  EXPECT_EQ(call_for_code(kOob, xdr_word(1)), 0);
  EXPECT_EQ(texts_of(""), "ra0 WscConfStatus=1\n");
}

TEST(Wps, ResultIsAskedOfARadio) {
  start_daemon();
  write_file("/tmp/wlandbg", "");
  for (const uint32_t index : {0u, 2u, 10u, 17u, 0x80000000u, 0x7FFFFFFFu}) {
    EXPECT_EQ(result_of(index), "-1 ") << index;
  }
  EXPECT_NE(daemon_output().find("wlan_getWpsResultStatus\033[0m Bad index\n"), std::string::npos)
      << daemon_output();
  EXPECT_EQ(result_of(9), "Idle");
  EXPECT_NE(daemon_output().find(" WLAN RPC server : [len = 5]\n"), std::string::npos);
}

TEST(Wps, UuidIsTheDriversText) {
  start_daemon();
  EXPECT_EQ(text_of(kGetUuid, 1), "28802880-2880-1880-a880-000c43260000");
  EXPECT_EQ(text_of(kGetUuid, 16), "28802880-2880-1880-a880-000c4326010f");
  EXPECT_EQ(text_of(kGetUuid, 17), "");
}
