#include <gtest/gtest.h>

#include "support/daemon.h"
#include "support/files.h"
#include "support/gateway.h"
#include "support/lifecycle.h"
#include "support/wire.h"

// Runs once per board, in a gateway without a loaded driver. The window in which requests
// are merged is a real second. Unless a test measures waits, the "sleep" in commands ends
// at once.

TEST(Cycle, NewSsidIsOnAirAfterARestartAndNothingIsLeftAfterAReset) {
  // Takes longer than other tests: four requests, each a second later, and two loads.
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
  // Takes longer than other tests: every step is traced.
  write_file("/nvram/hnc_enable", "");
  start_traced_daemon();
  for (const lifecycle_step& step : lifecycle_steps()) {
    run_step(step);
    EXPECT_EQ(transcript_of_step(), committed_transcript(step.name))
        << "the new transcript is in " << save_transcript(step.name);
  }
}

TEST(Transcript, SameWithVlansSteeringDcsAndAuthenticators) {
  // Takes longer than other tests: every step is traced.
  switch_everything_on();
  start_traced_daemon();
  for (lifecycle_step step : lifecycle_steps()) {
    step.name = "everything." + step.name;
    run_step(step);
    EXPECT_EQ(transcript_of_step(), committed_transcript(step.name))
        << "the new transcript is in " << save_transcript(step.name);
  }
}
