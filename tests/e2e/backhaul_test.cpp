#include <gtest/gtest.h>

#include "support/daemon.h"
#include "support/gateway.h"
#include "support/wire.h"

// What the host is told about a BSS.

static constexpr uint32_t kSetService = 0x0100009F;

struct backhaul_setting {
  uint32_t set;
  uint32_t get;
  const char* key;
};

static constexpr backhaul_setting kBackhaulSettings[] = {
    {0x010000A0, 0x010000A1, "BSSHNCBHEnable"},
    {0x010000A2, 0x010000A3, "BSSHNCReplicate"},
    {0x010000A6, 0x010000A7, "BSSHNCWdsMode"},
};

TEST(BackhaulSettings, AreSetAndReadBack) {
  start_daemon();
  for (const backhaul_setting& s : kBackhaulSettings) {
    set_profile_value(kProfile5, s.key, "0;0;0;0;0;0;0;0");
    EXPECT_EQ(call_for_code(s.set, xdr_word(10) + xdr_word(1)), 0) << s.key;
    EXPECT_EQ(profile_value(kProfile5, s.key), "0;1;0;0;0;0;0;0");
    reply_message reply = {};
    ASSERT_TRUE(call(s.get, xdr_word(10), &reply));
    EXPECT_EQ(reply.payload, xdr_word(0) + xdr_word(4) + xdr_word(1) + std::string(16, '\0'));
    ASSERT_TRUE(call(s.get, xdr_word(0), &reply));
    EXPECT_EQ(word_at(reply.payload, 0), 0xFFFFFFFF);
  }
  EXPECT_EQ(call_for_code(0x010000A4, xdr_word(2) + xdr_text("5GHz")), 0);
  reply_message reply = {};
  ASSERT_TRUE(call(0x010000A5, xdr_word(2), &reply));
  EXPECT_EQ(reply.payload, xdr_word(0) + xdr_word(0) + xdr_text(std::string("5\0", 2)));
}

TEST(BackhaulSettings, ServiceAnswersOneWhenWrittenAndTwoWhenInPlace) {
  set_profile_value(kProfile24, "VLANID", "10;20;30;0;0;0;0;0");
  start_daemon();
  EXPECT_EQ(call_for_code(kSetService, xdr_word(3) + xdr_word(7)), 1);
  EXPECT_EQ(call_for_code(kSetService, xdr_word(3) + xdr_word(7)), 2);
  EXPECT_EQ(profile_value(kProfile24, "BSSHNCService"), "0;0;7;0;0;0;0;0");
  EXPECT_EQ(profile_value(kProfile24, "VLANID"), "10;20;10;0;0;0;0;0");
  EXPECT_EQ(call_for_code(kSetService, xdr_word(12) + xdr_word(7)), 1);
  EXPECT_EQ(profile_value(kProfile5, "VLANID"), "0;0;0;10;0;0;0;0");
}
