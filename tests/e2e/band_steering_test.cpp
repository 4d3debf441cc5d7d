#include <gtest/gtest.h>

#include "support/daemon.h"
#include "support/files.h"
#include "support/gateway.h"
#include "support/wire.h"

static constexpr uint32_t kSetBsEnable = 0x01000018;
static constexpr uint32_t kGetBsEnable = 0x01000019;

static int32_t band_steering() {
  reply_message reply = {};
  EXPECT_TRUE(call(kGetBsEnable, "", &reply));
  EXPECT_EQ(reply.payload.size(), 28u);
  EXPECT_EQ(word_at(reply.payload, 0), 0u);
  return static_cast<int32_t>(word_at(reply.payload, 8));
}

static std::string driver_texts() {
  return run("jq -r 'select(.text) | .interface + \" \" + .text' /run/gwbox/journal.jsonl");
}

TEST(BandSteering, IsSwitchedOnAndOffWithDriverAndDaemon) {
  // The start checks for the steering daemon's marker once a second.
  make_bands_alike();
  start_daemon();
  reply_message reply = {};
  ASSERT_TRUE(call(kSetBsEnable, xdr_word(1), &reply, 4));
  EXPECT_EQ(reply.payload, xdr_word(0));
  EXPECT_EQ(driver_texts(), "ra0 BndStrgEnable=1\nra8 BndStrgEnable=1\n");
  EXPECT_EQ(run("gwbox status --json | jq -c '[.companions[].name]'"), "[\"bndstrg_1\"]\n");
  EXPECT_EQ(band_steering(), 1);
  EXPECT_EQ(call_for_code(kSetBsEnable, xdr_word(0)), 0);
  EXPECT_EQ(driver_texts(),
            "ra0 BndStrgEnable=1\nra8 BndStrgEnable=1\n"
            "ra0 BndStrgEnable=0\nra8 BndStrgEnable=0\n");
  EXPECT_TRUE(wait_until([] { return run("pgrep -xc bndstrg_1") == "0\n"; }));
  EXPECT_FALSE(exists("/tmp/mtk_bnd_file"));
  EXPECT_EQ(band_steering(), 0);
}

TEST(BandSteering, OtherValuesAreRefused) {
  start_daemon();
  const std::string before24 = read_file("/tmp/mt76xx_24.dat");
  const std::string before5 = read_file("/tmp/mt76xx_5.dat");
  for (const uint32_t value : {2u, 0xFFFFFFFFu, 0x80000000u, 0x7FFFFFFFu}) {
    EXPECT_EQ(call_for_code(kSetBsEnable, xdr_word(value)), -1) << value;
  }
  EXPECT_EQ(read_file("/tmp/mt76xx_24.dat"), before24);
  EXPECT_EQ(read_file("/tmp/mt76xx_5.dat"), before5);
  EXPECT_EQ(driver_texts(), "");
}

TEST(BandSteering, BandsThatDifferSwitchItOffAgainInTheProfiles) {
  make_bands_alike();
  set_profile_value("/tmp/mt76xx_5.dat", "WPAPSK1", "another");
  start_daemon();
  EXPECT_EQ(call_for_code(kSetBsEnable, xdr_word(1)), 0);
  EXPECT_EQ(band_steering(), 0);
  EXPECT_EQ(driver_texts(), "ra0 BndStrgEnable=1\nra8 BndStrgEnable=1\n");
  EXPECT_EQ(run("pgrep -xc bndstrg_1"), "0\n");
}

TEST(BandSteering, FiveGigahertzProfileIsNotAsked) {
  set_profile_value("/tmp/mt76xx_24.dat", "BandSteering", "0");
  set_profile_value("/tmp/mt76xx_5.dat", "BandSteering", "1");
  start_daemon();
  EXPECT_EQ(band_steering(), 0);
  set_profile_value("/tmp/mt76xx_24.dat", "BandSteering", "1");
  set_profile_value("/tmp/mt76xx_5.dat", "BandSteering", "0");
  EXPECT_EQ(band_steering(), 1);
}
