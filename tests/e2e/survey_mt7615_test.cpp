#include <gtest/gtest.h>

#include "support/daemon.h"
#include "support/files.h"
#include "support/stations.h"
#include "support/wire.h"

// The dual-band chip chooses its channel only when told to.

static constexpr uint32_t kGetCurrentChannel = 216;
static constexpr uint32_t kSelectChannel = 220;

static uint32_t channel_of(uint32_t radio) {
  reply_message reply = {};
  EXPECT_TRUE(call(kGetCurrentChannel, xdr_word(radio), &reply));
  EXPECT_EQ(word_at(reply.payload, 0), 0u);
  return word_at(reply.payload, 8);
}

TEST(ChannelSelection, MovesTheRadioToTheQuietestChannel) {
  start_radios("ra0 ra8");
  start_daemon();
  ASSERT_EQ(channel_of(1), 6u);
  for (const uint32_t index : {1u, 0u, 17u, 0x80000000u, 0x7FFFFFFFu}) {
    reply_message reply = {};
    ASSERT_TRUE(call(kSelectChannel, xdr_word(index), &reply));
    EXPECT_EQ(reply.payload, xdr_word(0) + xdr_word(0) + xdr_word(0)) << index;
  }
  // Channel 1 is free: only channels 6 and 11 have neighbours.
  EXPECT_EQ(channel_of(1), 1u);
  EXPECT_EQ(run("jq -r 'select(.text) | .interface + \" \" + .text' /run/gwbox/journal.jsonl"),
            "ra0 AutoChannelSel=3\n");
  EXPECT_EQ(daemon_errors().find("only MT7615"), std::string::npos);
}
