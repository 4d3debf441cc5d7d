#include <gtest/gtest.h>

#include "support/daemon.h"
#include "support/files.h"
#include "support/gateway.h"
#include "support/lifecycle.h"
#include "support/wire.h"

// Run once per board, in a gateway that has no driver loaded yet. The window in
// which requests meet is a real second; where a test does not look at waits,
// the commands' own "sleep" is cut short.

TEST(Cycle, NewSsidIsOnAirAfterARestartAndNothingIsLeftAfterAReset) {
  // Four requests, a second's window each, and twice the board's load.
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  EXPECT_EQ(interfaces(), all_interfaces());
  queue_and_wait(kInit, kInitialized);
  EXPECT_EQ(beaconed_ssid("ra0"), profile_value("/tmp/mt76xx_24.dat", "SSID1"));
  ASSERT_EQ(call_for_code(22, xdr_word(1) + xdr_text("On air")), 0);
  EXPECT_NE(beaconed_ssid("ra0"), "On air");
  queue_and_wait(kRestartAll, kRestarted);
  EXPECT_EQ(beaconed_ssid("ra0"), "On air");
  EXPECT_EQ(call_for_code(kReset, ""), 0);
  EXPECT_EQ(interfaces(), "");
  queue_and_wait(kLoad, kLoaded);
  EXPECT_EQ(interfaces(), all_interfaces());
}

TEST(Transcript, LoadInitRestartAndResetRunTheirCommandsAndRequestsInOrder) {
  // Every step traced, on top of the windows.
  write_file("/nvram/hnc_enable", "");
  start_traced_daemon();
  for (const lifecycle_step& step : lifecycle_steps()) {
    run_step(step);
    EXPECT_EQ(transcript_of_step(), committed_transcript(step.name))
        << "the new transcript is in " << save_transcript(step.name);
  }
}

TEST(Transcript, SameWithVlansSteeringDcsAndAuthenticators) {
  // Every step traced, on top of the windows.
  switch_everything_on();
  start_traced_daemon();
  for (lifecycle_step step : lifecycle_steps()) {
    step.name = "everything." + step.name;
    run_step(step);
    EXPECT_EQ(transcript_of_step(), committed_transcript(step.name))
        << "the new transcript is in " << save_transcript(step.name);
  }
}
