#include "wlan/tx_power.h"

#include <gtest/gtest.h>

#include <climits>
#include <vector>

#include "lifecycle/lifecycle_support.h"
#include "lying_driver.h"
#include "steer/steer_support.h"
#include "unit_support.h"

static constexpr uint16_t kPower = 0x0AA2;

struct limit {
  int channel;
  int dbm;
};

// A driver's answer: the count, then from `first` on entries of `size` bytes, with the
// channel in the first byte and the limit in the fifth. All other bytes are filler.
static std::string answer(int32_t count, size_t first, size_t size, size_t whole,
                          const std::vector<limit>& limits) {
  std::string bytes = bytes_of(static_cast<uint32_t>(count));
  bytes.resize(whole, '\xEE');
  for (size_t i = 0; i < limits.size(); ++i) {
    bytes[first + size * i] = static_cast<char>(limits[i].channel);
    bytes[first + size * i + 4] = static_cast<char>(limits[i].dbm);
  }
  return bytes;
}

static std::string small_answer(int32_t count, const std::vector<limit>& limits) {
  return answer(count, 4, 10, 592, limits);
}

static std::string large_answer(int32_t count, const std::vector<limit>& limits) {
  return answer(count, 6, 16, 948, limits);
}

static int highest(int radio) {
  int dbm = 99;
  EXPECT_EQ(wlan_getRadioMaxTxPowerdBm(radio, &dbm), 0);
  return dbm;
}

static int of_channel(int radio) {
  int dbm = 99;
  EXPECT_EQ(wlan_getOnChannelMaxTxPowerdBm(radio, &dbm), 0);
  return dbm;
}

TEST(TxPower, LimitsOfTheSimulatedRadios) {
  bring_radios_up();
  EXPECT_EQ(of_channel(1), 20);
  EXPECT_EQ(of_channel(9), 23);
  EXPECT_EQ(highest(1), 20);
  EXPECT_EQ(highest(9), 27);
  EXPECT_EQ(member_of(last_of("power_limits"), "interface"), "ra8");
  EXPECT_EQ(member_of(last_of("power_limits"), "sub"), "0x0AA2");
  EXPECT_EQ(member_of(last_of("power_limits"), "length"), "591");
}

TEST(TxPower, EntriesOfTenBytes) {
  bring_radios_up();
  run("gwbox set radio ra0 channel=11");
  answer_object_with(kPower, small_answer(4, {{1, 15}, {11, 17}, {11, 30}, {255, 255}}));
  EXPECT_EQ(of_channel(1), 17);
  EXPECT_EQ(highest(1), 255);
  answer_object_with(kPower, small_answer(3, {{1, 15}, {11, 17}, {12, 16}, {13, 30}}));
  EXPECT_EQ(highest(1), 17);
}

TEST(TxPower, LimitAbove127IsNotNegative) {
  bring_radios_up();
  for (const int dbm : {127, 128, 255}) {
    answer_object_with(kPower, small_answer(2, {{1, 15}, {6, dbm}}));
    EXPECT_EQ(of_channel(1), dbm);
    EXPECT_EQ(highest(1), dbm);
  }
}

TEST(TxPower, EntriesOfSixteenBytesOnTheDualBandChip) {
  pretend_mt7615();
  bring_radios_up();
  run("gwbox set radio ra8 channel=44");
  answer_object_with(kPower, large_answer(3, {{36, 21}, {44, 22}, {48, 20}}));
  EXPECT_EQ(of_channel(9), 22);
  EXPECT_EQ(highest(9), 22);
}

TEST(TxPower, CountThatLiesReadsNothingBeyondTheAnswer) {
  bring_radios_up();
  const std::vector<limit> full(59, {6, 12});
  answer_object_with(kPower, small_answer(INT_MAX, full));
  EXPECT_EQ(highest(1), 12);
  for (const int count : {0, -1, INT_MIN}) {
    answer_object_with(kPower, small_answer(count, full));
    EXPECT_EQ(highest(1), 0) << count;
    int dbm = 99;
    EXPECT_EQ(wlan_getOnChannelMaxTxPowerdBm(1, &dbm), -1);
    EXPECT_EQ(dbm, 0);
  }
}

TEST(TxPower, CountThatLiesReadsNothingBeyondTheDualBandChipsAnswer) {
  pretend_mt7615();
  answer_object_with(kPower, large_answer(INT_MAX, std::vector<limit>(59, {6, 12})));
  EXPECT_EQ(highest(1), 12);
}

// The 59th entry's limit is within the answer, but its end is not.
TEST(TxPower, EntryWithoutItsEndCounts) {
  bring_radios_up();
  std::vector<limit> limits(58, {1, 12});
  limits.push_back({6, 25});
  answer_object_with(kPower, small_answer(59, limits));
  EXPECT_EQ(highest(1), 25);
  EXPECT_EQ(of_channel(1), 25);
  answer_object_with(kPower, small_answer(58, limits));
  EXPECT_EQ(highest(1), 12);
}

TEST(TxPower, EntryWithoutItsEndCountsOnTheDualBandChip) {
  pretend_mt7615();
  std::vector<limit> limits(58, {1, 12});
  limits.push_back({6, 25});
  answer_object_with(kPower, large_answer(59, limits));
  EXPECT_EQ(highest(1), 25);
  answer_object_with(kPower, large_answer(58, limits));
  EXPECT_EQ(highest(1), 12);
}

TEST(TxPower, ChannelWithoutALimitFailsSilently) {
  bring_radios_up();
  answer_object_with(kPower, small_answer(2, {{1, 15}, {0, 17}}));
  int dbm = 99;
  EXPECT_EQ(errors_of([&] { EXPECT_EQ(wlan_getOnChannelMaxTxPowerdBm(1, &dbm), -1); }), "");
  EXPECT_EQ(dbm, 0);
}

TEST(TxPower, FailuresAreReportedAndTheLimitIsZero) {
  bring_radios_up();
  run("gwbox fail get_frequency EIO");
  int dbm = 99;
  errors_of([&] { EXPECT_EQ(wlan_getOnChannelMaxTxPowerdBm(1, &dbm), -1); });
  EXPECT_EQ(dbm, 0);
  const std::string refused =
      rpc_error_prefix("rtpriv_get_ioctl") + "ioctl failed (cmd=0x8BE1, sub_cmd=0xAA2)\n";
  for (const int index : {0, 17, -5, INT_MIN, INT_MAX}) {
    dbm = 99;
    const std::string on =
        errors_of([&] { EXPECT_EQ(wlan_getOnChannelMaxTxPowerdBm(index, &dbm), -1); });
    EXPECT_EQ(on, refused + rev_error_prefix("wlan_getOnChannelMaxTxPowerdBm") +
                      " wlan_getOnChannelMaxTxPowerdBm: get channel info failed \n ");
    EXPECT_EQ(dbm, 0);
    dbm = 99;
    const std::string all =
        errors_of([&] { EXPECT_EQ(wlan_getRadioMaxTxPowerdBm(index, &dbm), -1); });
    EXPECT_EQ(all, refused + rev_error_prefix("wlan_getRadioMaxTxPowerdBm") +
                       " wlan_getRadioMaxTxPowerdBm: get channel info failed \n ");
    EXPECT_EQ(dbm, 0);
  }
}

TEST(TxPower, IsTraced) {
  bring_radios_up();
  switch_console_on();
  answer_object_with(kPower, small_answer(2, {{6, 15}, {7, 16}}));
  const std::string output = output_of([] {
    highest(1);
    of_channel(1);
  });
  EXPECT_TRUE(contains(output, "wlan_getRadioMaxTxPowerdBm\033[0m channel num:6 txpower:15\n"));
  EXPECT_TRUE(contains(output, "wlan_getRadioMaxTxPowerdBm\033[0m channel num:7 txpower:16\n"));
  EXPECT_TRUE(contains(output, "wlan_getRadioMaxTxPowerdBm\033[0m max radio tx power is 16 \n"));
  EXPECT_TRUE(contains(output,
                       "wlan_getOnChannelMaxTxPowerdBm\033[0m max channel tx power is 15 "
                       "for channel: 6\n"))
      << output;
}

TEST(TxPower, DualBandChipTracesNoEntries) {
  pretend_mt7615();
  switch_console_on();
  answer_object_with(kPower, large_answer(1, {{6, 15}}));
  const std::string output = output_of([] { EXPECT_EQ(highest(1), 15); });
  EXPECT_FALSE(contains(output, "channel num:")) << output;
  EXPECT_TRUE(contains(output, "max radio tx power is 15 \n"));
}
