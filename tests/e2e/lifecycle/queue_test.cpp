#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <random>
#include <thread>

#include "support/daemon.h"
#include "support/files.h"
#include "support/gateway.h"
#include "support/lifecycle.h"
#include "support/wire.h"

TEST(Queue, ResetInTheWindowOfAnInitLeavesEverythingDown) {
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  // The init's window ends during these resets.
  EXPECT_EQ(call_for_code(kInit, ""), 0);
  int refused = 0;
  int resets = 0;
  while (count_traces("name: wlan_init") < 2) {
    const int32_t code = call_for_code(kReset, "");
    resets += code == 0;
    refused += code == -1;
  }
  EXPECT_GT(resets + refused, 0);
  EXPECT_EQ(call_for_code(kReset, ""), 0);
  EXPECT_EQ(interfaces(), "");
  queue_and_wait(kRestart, "Driver(s) have not been initialized\n");
}

TEST(Queue, RestartsOfOneSecondRunOnceForAllTheirRadios) {
  start_lifecycle_daemon();
  EXPECT_EQ(call_for_code(kRestart, xdr_word(3)), 0);
  EXPECT_EQ(call_for_code(kRestart, xdr_word(12)), 0);
  ASSERT_TRUE(wait_for_trace("Restarting radio with mask: 11\n"));
  queue_and_wait(kLoad, kLoaded);
  EXPECT_EQ(count_traces("Restarting radio with mask"), 1);
}

TEST(Queue, RestartDisplacesTheInitBehindALoad) {
  start_lifecycle_daemon();
  EXPECT_EQ(call_for_code(kLoad, xdr_word(0)), 0);
  EXPECT_EQ(call_for_code(kInit, ""), 0);
  EXPECT_EQ(call_for_code(kRestart, xdr_word(1)), 0);
  ASSERT_TRUE(wait_for_trace("Restarting radio with mask: 01\n"));
  EXPECT_EQ(count_traces("wlan loaded."), 1);
  EXPECT_EQ(count_traces("Initializing WLAN"), 0);
}

TEST(Queue, IndexOfNoRadioIsReportedAndQueuesNothing) {
  start_lifecycle_daemon();
  for (const uint32_t index : {0u, 17u, 254u, 256u, 0xFFFFFFFFu, 0x80000000u}) {
    EXPECT_EQ(call_for_code(kRestart, xdr_word(index)), 0) << index;
  }
  EXPECT_EQ(count_errors("**ERROR** wlan_restart Invalid radio index\n"), 6) << daemon_errors();
  EXPECT_EQ(count_traces("queue'd"), 0);
}

TEST(Queue, RestartIsAcceptedRightAfterTheStart) {
  start_lifecycle_daemon();
  EXPECT_EQ(call_for_code(kRestart, xdr_word(1)), 0);
  // The request is accepted, although the sequence then finds no module.
  EXPECT_TRUE(wait_for_trace("WLAN driver(s) are not loaded\n"));
  EXPECT_EQ(count_traces("Driver(s) have not been initialized"), 0);
}

TEST(Queue, AfterAResetInitAndRestartAreRefusedUntilTheirTime) {
  start_lifecycle_daemon();
  EXPECT_EQ(call_for_code(kReset, ""), 0);
  EXPECT_EQ(call_for_code(kInit, ""), 0);
  EXPECT_TRUE(wait_for_trace("WLAN driver(s) has not been loaded\n"));
  EXPECT_EQ(call_for_code(kRestart, xdr_word(1)), 0);
  EXPECT_TRUE(wait_for_trace("Driver(s) have not been initialized\n"));
}

TEST(Queue, RequestWaitsOutItsSecond) {
  start_lifecycle_daemon();
  const auto start = std::chrono::steady_clock::now();
  queue_and_wait(kRestart, "not loaded");
  const std::chrono::duration<double> waited = std::chrono::steady_clock::now() - start;
  EXPECT_GE(waited.count(), 0.99);
  EXPECT_LT(waited.count(), 2.5);
}

TEST(Queue, IdleDaemonNeverWakesUp) {
#ifdef __SANITIZE_THREAD__
  GTEST_SKIP() << "ThreadSanitizer has threads of its own that wake up";
#endif
  const pid_t child = start_lifecycle_daemon();
  queue_and_wait(kRestart, "not loaded");
  ASSERT_TRUE(wait_for_trace("de-queue'd"));
  const std::string before = context_switches(child);
  // No event shows that nothing happens, so this is a plain wait.
  std::this_thread::sleep_for(std::chrono::milliseconds(1500));
  EXPECT_EQ(context_switches(child), before);
}

// The random requests of one client, resets included.
static void send_random_requests(unsigned seed) {
  static constexpr uint32_t kRequests[] = {kLoad,    kLoad,       kInit,    kInit, kRestart,
                                           kRestart, kRestartAll, kRestart, kInit, kReset};
  std::mt19937 random(seed);
  for (int i = 0; i < 100; ++i) {
    const uint32_t procedure = kRequests[random() % std::size(kRequests)];
    const bool indexed = procedure == kLoad || procedure == kRestart;
    reply_message reply = {};
    const std::string call_bytes =
        call_message(procedure, indexed ? xdr_word(1 + random() % 16) : "", seed * 1000 + i);
    EXPECT_TRUE(exchange(call_bytes, seed * 1000 + i, &reply, 20)) << i;
    EXPECT_EQ(reply.accept_status, kAcceptSuccess) << i;
  }
}

TEST(Queue, TwoHundredRandomRequestsOfTwoClientsLeaveEverythingInAgreement) {
  // Takes longer than other tests: about twenty resets and the requests that wait for
  // them.
  const pid_t child = start_lifecycle_daemon();
  std::thread other(send_random_requests, 1);
  send_random_requests(2);
  other.join();
  // When this request is done, all earlier ones are too.
  queue_and_wait(kLoad, kLoaded);
  EXPECT_EQ(interfaces(), all_interfaces());
  queue_and_wait(kInit, kInitialized);
  EXPECT_EQ(beaconed_ssid("ra0"), profile_value("/tmp/mt76xx_24.dat", "SSID1"));
  EXPECT_EQ(call_for_code(kReset, ""), 0);
  EXPECT_EQ(interfaces(), "");
  queue_and_wait(kInit, "WLAN driver(s) has not been loaded\n");
  EXPECT_EQ(kill(child, 0), 0);
}

TEST(Queue, LoadWaitsForAResetThatRuns) {
  // Takes longer than other tests: two loads, each a second later, and a slow reset.
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  run("gwbox fail delete_module delay=2000 1");
  // The load's window ends while the reset is still unloading.
  EXPECT_EQ(call_for_code(kLoad, xdr_word(1)), 0);
  reply_message reply = {};
  ASSERT_TRUE(call(kReset, "", &reply, 20));
  EXPECT_EQ(word_at(reply.payload, 0), 0U);
  EXPECT_TRUE(wait_until([] { return count_traces(kLoaded) == 2; }, 15)) << daemon_output();
  EXPECT_LT(daemon_output().find("reset wifi done !!!\n"), daemon_output().rfind(kLoaded));
  EXPECT_EQ(interfaces(), all_interfaces());
}

TEST(Reset, WaitsForALoadThatRuns) {
  start_lifecycle_daemon();
  run("gwbox fail init_module delay=1000 1");
  EXPECT_EQ(call_for_code(kLoad, xdr_word(1)), 0);
  // A load copies the images first.
  ASSERT_TRUE(wait_until([] { return !run("ls /nvram").empty(); }));
  reply_message reply = {};
  ASSERT_TRUE(call(kReset, "", &reply, 20));
  EXPECT_EQ(word_at(reply.payload, 0), 0U);
  EXPECT_LT(daemon_output().find(kLoaded), daemon_output().find("resetting wifi!!!\n"))
      << daemon_output();
  EXPECT_EQ(interfaces(), "");
}

TEST(Reset, IsRefusedWhileAnInitRuns) {
  // Steering's marker never comes, so the init waits for ten seconds.
  make_bands_alike();
  const pid_t child = start_lifecycle_daemon();
  if (board() != "mt7603+mt7612") GTEST_SKIP() << "only here an init waits";
  set_companion("bndstrg_1.marker_after", "1000");
  queue_and_wait(kLoad, kLoaded);
  EXPECT_EQ(call_for_code(kInit, ""), 0);
  ASSERT_TRUE(wait_for_trace("Sart band steering\n"));
  EXPECT_EQ(call_for_code(kReset, ""), -1);
  EXPECT_NE(daemon_errors().find("wlan_reset wlan_reset init process is running !!!\n"),
            std::string::npos)
      << daemon_errors();
  EXPECT_EQ(interfaces(), all_interfaces());
  EXPECT_EQ(kill(child, 0), 0);
}

TEST(Reset, IsRefusedWhileARestartRuns) {
  // Takes longer than other tests: three requests, each a second later. Then steering's
  // marker never comes, so the restart waits for ten seconds.
  make_bands_alike();
  start_lifecycle_daemon();
  if (board() != "mt7603+mt7612") GTEST_SKIP() << "only here a restart waits";
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  set_companion("bndstrg_1.marker_after", "1000");
  EXPECT_EQ(call_for_code(kRestart, xdr_word(1)), 0);
  ASSERT_TRUE(wait_until([] { return count_traces("Sart band steering\n") == 2; }, 15));
  EXPECT_EQ(call_for_code(kReset, ""), -1);
  EXPECT_EQ(count_errors("wlan_reset wlan_reset restart process is running !!!\n"), 1)
      << daemon_errors();
  EXPECT_EQ(interfaces(), all_interfaces());
}
