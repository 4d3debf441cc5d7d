#include <gtest/gtest.h>

#include "support/daemon.h"
#include "support/files.h"
#include "support/stations.h"
#include "support/wire.h"

static constexpr uint32_t kGetCurrentChannel = 216;
static constexpr uint32_t kGetScanResult = 218;
static constexpr uint32_t kScan = 219;
static constexpr uint32_t kSelectChannel = 220;
static constexpr uint32_t kGetScanStatus = 223;

static constexpr size_t kRecordSize = 6764;

// The value of an integer getter that succeeds.
static uint32_t value_of(uint32_t procedure, uint32_t index) {
  reply_message reply = {};
  EXPECT_TRUE(call(procedure, xdr_word(index), &reply));
  EXPECT_EQ(word_at(reply.payload, 0), 0u);
  EXPECT_EQ(word_at(reply.payload, 4), 4u);
  return word_at(reply.payload, 8);
}

static uint32_t scan_state(uint32_t radio) {
  return value_of(kGetScanStatus, radio);
}

// A result record without values.
static void expect_empty_success(uint32_t procedure, uint32_t index) {
  reply_message reply = {};
  ASSERT_TRUE(call(procedure, xdr_word(index), &reply));
  EXPECT_EQ(reply.payload, xdr_word(0) + xdr_word(0) + xdr_word(0)) << index;
}

struct scan_result {
  int32_t code;
  std::string record;
};

static scan_result fetch(uint32_t radio) {
  reply_message reply = {};
  EXPECT_TRUE(call(kGetScanResult, xdr_word(radio), &reply));
  EXPECT_EQ(word_at(reply.payload, 4), 0u);
  EXPECT_EQ(word_at(reply.payload, 8), kRecordSize);
  EXPECT_EQ(reply.payload.size(), 12 + kRecordSize);
  return {static_cast<int32_t>(word_at(reply.payload, 0)), reply.payload.substr(12)};
}

// The driver's bytes are passed on unchanged, in little-endian order.
static unsigned count_of(const std::string& record) {
  return static_cast<unsigned char>(record[0]) + 256u * static_cast<unsigned char>(record[1]);
}

static int queries() {
  return std::stoi(run("grep -c '\"object\":\"survey\"' /run/gwbox/journal.jsonl"));
}

TEST(Survey, GoesFromItsStartToItsResults) {
  start_radios("ra0 ra8");
  gwbox("set radio ra0 survey_seconds=0.6");
  start_daemon();
  EXPECT_EQ(scan_state(1), 0u);
  EXPECT_EQ(queries(), 0);
  expect_empty_success(kScan, 1);
  EXPECT_EQ(scan_state(1), 1u);
  const scan_result early = fetch(1);
  EXPECT_EQ(early.code, 3);
  EXPECT_EQ(early.record, std::string(kRecordSize, '\0'));
  ASSERT_TRUE(wait_until([] { return scan_state(1) == 3; }));
  const scan_result result = fetch(1);
  EXPECT_EQ(result.code, 0);
  ASSERT_EQ(count_of(result.record), 2u);
  EXPECT_EQ(result.record.substr(4, 17),
            std::string("\x02\x00\x5e\x10\x00\x01\x06\xb9Upstairs\0", 17));
  EXPECT_EQ(result.record.substr(104, 8), std::string("\x02\x00\x5e\x10\x00\x02\x0b\xaa", 8));
  EXPECT_EQ(result.record.substr(204, 6200), std::string(6200, '\0'));
  // After all entries come the driver's own bytes: networks by channel.
  EXPECT_EQ(result.record[6404 + 6], 1);
  EXPECT_EQ(result.record[6404 + 11], 1);
  EXPECT_EQ(result.record[6404 + 1], 0);
}

TEST(Survey, StartThatIsRefusedFailsWithoutAQuery) {
  start_radios("ra0 ra8");
  start_daemon();
  gwbox("fail set EIO");
  expect_empty_success(kScan, 1);
  EXPECT_EQ(scan_state(1), 2u);
  for (const uint32_t index : {0u, 17u, 0x80000000u, 0x7FFFFFFFu}) {
    expect_empty_success(kScan, index);
    EXPECT_EQ(scan_state(index), 2u) << index;
  }
  EXPECT_EQ(queries(), 0);
}

TEST(Survey, RunsAsLongAsTheDriverSaysTryAgain) {
  start_radios("ra0 ra8");
  start_daemon();
  gwbox("set radio ra0 survey_seconds=0");
  gwbox("fail survey EAGAIN 3");
  expect_empty_success(kScan, 1);
  EXPECT_EQ(scan_state(1), 1u);
  EXPECT_EQ(scan_state(1), 1u);
  EXPECT_EQ(fetch(1).code, 3);
  EXPECT_EQ(scan_state(1), 3u);
  EXPECT_EQ(scan_state(1), 3u);
  EXPECT_EQ(queries(), 4);
  gwbox("fail survey EIO");
  const scan_result failed = fetch(1);
  EXPECT_EQ(failed.code, -1);
  EXPECT_EQ(failed.record, std::string(kRecordSize, '\0'));
  EXPECT_EQ(scan_state(1), 2u);
}

TEST(Survey, NoMoreThan64NetworksAreAnswered) {
  start_radios("ra0 ra8");
  start_daemon();
  for (const std::string count : {"65", "200", "4294967295"}) {
    gwbox("fail survey count=" + count);
    const scan_result result = fetch(1);
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.record.substr(0, 4), std::string("\x40\0\0\0", 4)) << count;
  }
  gwbox("fail survey short=6");
  const scan_result result = fetch(1);
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.record.substr(6), std::string(kRecordSize - 6, '\0'));
}

TEST(Survey, RadioThatIsDownFails) {
  start_daemon();
  expect_empty_success(kScan, 1);
  EXPECT_EQ(scan_state(1), 2u);
  for (const uint32_t index : {1u, 9u, 0u, 17u, 0x80000000u, 0x7FFFFFFFu}) {
    EXPECT_EQ(fetch(index).code, -1) << index;
  }
}

TEST(ChannelSelection, SaysThatOnlyAnMt7615CanDoIt) {
  start_daemon();
  expect_empty_success(kSelectChannel, 1);
  EXPECT_NE(daemon_errors().find("wlan_apAutoChannelSelect only MT7615 support manual trigger "
                                 "ACS. \n"),
            std::string::npos)
      << daemon_errors();
  EXPECT_EQ(run("grep -c AutoChannelSel /run/gwbox/journal.jsonl"), "0\n");
}

TEST(CurrentChannel, IsTheOneOfTheRadio) {
  start_radios("ra0 ra8");
  start_daemon();
  gwbox("set radio ra8 channel=44");
  EXPECT_EQ(value_of(kGetCurrentChannel, 1), 6u);
  EXPECT_EQ(value_of(kGetCurrentChannel, 9), 44u);
}

TEST(CurrentChannel, FailureAnswersMinusOneAndZero) {
  start_daemon();
  for (const uint32_t index : {1u, 0u, 17u, 0x80000000u, 0x7FFFFFFFu}) {
    reply_message reply = {};
    ASSERT_TRUE(call(kGetCurrentChannel, xdr_word(index), &reply));
    EXPECT_EQ(word_at(reply.payload, 0), 0xFFFFFFFFu) << index;
    EXPECT_EQ(word_at(reply.payload, 8), 0u) << index;
  }
  EXPECT_NE(daemon_errors().find("wlan_getCurrentChannel wlan_getCurrentChannel ioctl failed \n"),
            std::string::npos)
      << daemon_errors();
}
