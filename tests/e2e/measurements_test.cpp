#include <gtest/gtest.h>

#include "support/daemon.h"
#include "support/files.h"
#include "support/gateway.h"
#include "support/lifecycle.h"
#include "support/wire.h"

// Runs on boards with both layouts of the power limits.

static constexpr uint32_t kGetBtmCapable = 256;
static constexpr uint32_t kSetBtmEnable = 257;
static constexpr uint32_t kGetBtmEnable = 258;
static constexpr uint32_t kSetUtilizationEnable = 259;
static constexpr uint32_t kGetUtilizationEnable = 260;
static constexpr uint32_t kGetOperatingClass = 261;
static constexpr uint32_t kGetHtSupport = 262;
static constexpr uint32_t kGetVhtSupport = 263;
static constexpr uint32_t kGetUtilization = 294;
static constexpr uint32_t kGetMaxBitRate = 299;
static constexpr uint32_t kGetOnChannelPower = 0x0100007B;
static constexpr uint32_t kGetMaxPower = 0x0100007C;

// The code and value of an integer getter.
static std::pair<int, int> get(uint32_t procedure, uint32_t radio) {
  reply_message reply = {};
  EXPECT_TRUE(call(procedure, xdr_word(radio), &reply));
  EXPECT_EQ(reply.payload.size(), 28u);
  return {static_cast<int>(word_at(reply.payload, 0)), static_cast<int>(word_at(reply.payload, 8))};
}

static std::pair<int, int> answered(int value) {
  return {0, value};
}

static const std::pair<int, int> kFailed = {-1, 0};

static int32_t set(uint32_t procedure, uint32_t radio, uint32_t value) {
  return call_for_code(procedure, xdr_word(radio) + xdr_word(value));
}

TEST(Measurements, OfBothRadiosThroughTheWire) {
  // Takes longer than other tests: the load and the init each wait for a second.
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  for (const uint32_t procedure :
       {kGetBtmCapable, kGetUtilizationEnable, kGetOperatingClass, kGetUtilization}) {
    EXPECT_EQ(get(procedure, 1), kFailed) << procedure;
  }
  EXPECT_EQ(set(kSetBtmEnable, 1, 1), -1);
  queue_and_wait(kInit, kInitialized);

  EXPECT_EQ(get(kGetOperatingClass, 1), answered(81));
  EXPECT_EQ(get(kGetOperatingClass, 9), answered(115));
  EXPECT_EQ(get(kGetHtSupport, 1), answered(1));
  EXPECT_EQ(get(kGetVhtSupport, 1), answered(0));
  EXPECT_EQ(get(kGetHtSupport, 9), answered(1));
  EXPECT_EQ(get(kGetVhtSupport, 9), answered(1));
  EXPECT_EQ(get(kGetMaxBitRate, 1), answered(300));
  EXPECT_EQ(get(kGetMaxBitRate, 9), answered(866));
  EXPECT_EQ(get(kGetMaxBitRate, 17), kFailed);

  EXPECT_EQ(set(kSetUtilizationEnable, 1, 0), 0);
  EXPECT_EQ(get(kGetUtilizationEnable, 1), answered(0));
  EXPECT_EQ(get(kGetUtilization, 1), kFailed);
  EXPECT_EQ(set(kSetUtilizationEnable, 1, 1), 0);
  EXPECT_EQ(get(kGetUtilizationEnable, 1), answered(1));
  EXPECT_EQ(get(kGetUtilization, 1), answered(30));
  run("gwbox set radio ra0 load_busy=1000");
  EXPECT_EQ(get(kGetUtilization, 1), answered(100));

  EXPECT_EQ(get(kGetBtmCapable, 9), answered(1));
  EXPECT_EQ(get(kGetBtmEnable, 9), answered(0));
  EXPECT_EQ(set(kSetBtmEnable, 9, 1), 0);
  EXPECT_EQ(get(kGetBtmEnable, 9), answered(1));
  EXPECT_EQ(get(kGetBtmEnable, 1), answered(0));
  EXPECT_EQ(profile_value("/tmp/mt76xx_5.dat", "WNMEnable"), "1");
  run("gwbox set radio ra8 btm=false");
  EXPECT_EQ(get(kGetBtmCapable, 9), answered(0));
  EXPECT_EQ(get(kGetBtmEnable, 9), kFailed);

  EXPECT_EQ(get(kGetOnChannelPower, 1), answered(20));
  EXPECT_EQ(get(kGetOnChannelPower, 9), answered(23));
  EXPECT_EQ(get(kGetMaxPower, 1), answered(20));
  EXPECT_EQ(get(kGetMaxPower, 9), answered(27));
  run("gwbox set radio ra8 channel=104");
  EXPECT_EQ(get(kGetOnChannelPower, 9), answered(27));
  run("gwbox set radio ra8 channel=165");
  EXPECT_EQ(get(kGetOnChannelPower, 9), kFailed);
}
