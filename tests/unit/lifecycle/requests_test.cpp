#include "lifecycle/requests.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <string>
#include <thread>

#include "lifecycle/init.h"
#include "lifecycle/lifecycle_support.h"
#include "lifecycle/load.h"
#include "lifecycle/queue.h"
#include "lifecycle/reset.h"
#include "lifecycle/restart.h"
#include "lifecycle/state.h"
#include "lifecycle/turn.h"
#include "support/gateway.h"
#include "unit_support.h"
#include "wlan/driver_gate.h"

static int result_of(void* result) {
  return *static_cast<int*>(result);
}

// A queued reset. The operations never queue one.

TEST(QueuedReset, ResetsAndForgetsThatTheDriverWasLoaded) {
  switch_console_on();
  lifecycle.modules_loaded = true;
  drivers_inited = 1;
  lifecycle.reset_running = true;
  const std::string output =
      output_of([] { EXPECT_EQ(result_of(reset_handler_func(nullptr)), 0); });
  EXPECT_TRUE(contains(output, "resetting wlan -->\n")) << output;
  EXPECT_TRUE(contains(output, "wlan reset complete.\n")) << output;
  EXPECT_FALSE(lifecycle.modules_loaded || lifecycle.reset_running);
  EXPECT_EQ(drivers_inited, 0);
  EXPECT_EQ(interfaces(), "");
  EXPECT_TRUE(contains(output_of([] { EXPECT_EQ(result_of(init_handler_func(nullptr)), -1); }),
                       "WLAN driver(s) has not been loaded\n"));
  const uint8_t mask = kMaskAll;
  EXPECT_TRUE(contains(output_of([&] { EXPECT_EQ(result_of(restart_handler_func(&mask)), -1); }),
                       "Driver(s) have not been initialized\n"));
}

TEST(QueuedReset, GoesOnWhileAnInitOrARestartRuns) {
  lifecycle.init_running = true;
  EXPECT_EQ(errors_of([] { EXPECT_EQ(result_of(reset_handler_func(nullptr)), 0); }),
            rev_error_prefix("reset_handler_func") + "init process is running !!!\n");
  lifecycle.init_running = false;
  lifecycle.restart_running = true;
  EXPECT_EQ(errors_of([] { EXPECT_EQ(result_of(reset_handler_func(nullptr)), 0); }),
            rev_error_prefix("reset_handler_func") + "restart process is running !!!\n");
}

TEST(QueuedReset, WorkerRunsItInItsTurn) {
  switch_console_on();
  catch_stream(1);
  wlan_queueLifecycleRequest(reset_handler_func, nullptr, "wlan_reset", &lifecycle.reset_running);
  EXPECT_TRUE(wait_until([] {
    fflush(stdout);
    return contains(read_file("/proc/self/fd/1"), "de-queue'd");
  }));
  EXPECT_TRUE(contains(caught_stream(1), "wlan reset complete.\n"));
}

TEST(Reset, IsRefusedWhileAnInitOrARestartRunsAndTouchesNothing) {
  lifecycle.modules_loaded = true;
  lifecycle.init_running = true;
  EXPECT_EQ(errors_of([] { EXPECT_EQ(wlan_reset(), -1); }),
            rev_error_prefix("wlan_reset") + "wlan_reset init process is running !!!\n");
  lifecycle.init_running = false;
  lifecycle.restart_running = true;
  EXPECT_EQ(errors_of([] { EXPECT_EQ(wlan_reset(), -1); }),
            rev_error_prefix("wlan_reset") + "wlan_reset restart process is running !!!\n");
  EXPECT_TRUE(lifecycle.modules_loaded);
  EXPECT_EQ(interfaces(), all_interfaces());
}

// The message of a reset that waits because the worker has the turn. It is refused as
// soon as the worker sets its flag.
static std::string said_of_waiting_reset(std::atomic<bool>* kind) {
  begin_turn();
  std::atomic<pid_t> thread = 0;
  std::atomic<int> status = 7;
  bool blocked = false;
  const std::string said = errors_of([&] {
    std::thread reset([&] {
      thread = gettid();
      status = wlan_reset();
    });
    blocked = wait_until([&] { return thread != 0; }) && wait_until_blocked(thread);
    set_running(kind, true);
    reset.join();
  });
  EXPECT_TRUE(blocked);
  EXPECT_EQ(status, -1);
  set_running(kind, false);
  end_turn();
  return said;
}

TEST(Reset, DoesNotWaitOutAnInitOrARestartThatBegins) {
  lifecycle.modules_loaded = true;
  EXPECT_EQ(said_of_waiting_reset(&lifecycle.init_running),
            rev_error_prefix("wlan_reset") + "wlan_reset init process is running !!!\n");
  EXPECT_EQ(said_of_waiting_reset(&lifecycle.restart_running),
            rev_error_prefix("wlan_reset") + "wlan_reset restart process is running !!!\n");
  EXPECT_TRUE(lifecycle.modules_loaded);
  // The refused reset has not kept the turn.
  note_commands();
  begin_turn();
  end_turn();
  EXPECT_EQ(wlan_reset(), 0);
  EXPECT_FALSE(lifecycle.modules_loaded);
}

TEST(Requests, RestartOfNoRadioIsReportedAndQueuesNothing) {
  switch_console_on();
  EXPECT_EQ(output_of([] {
              EXPECT_EQ(errors_of([] { EXPECT_EQ(wlan_restart(17), 0); }),
                        rev_error_prefix("wlan_restart") + "Invalid radio index\n");
            }),
            "");
}

TEST(Requests, InitIsAcceptedRightAfterTheStart) {
  switch_console_on();
  note_commands();
  const std::string output = output_of([] { EXPECT_EQ(result_of(init_handler_func(nullptr)), 0); });
  EXPECT_TRUE(in_order(output, {"wifi_init\033[0m WLAN driver(s) are not loaded\n",
                                "init_handler_func\033[0m wlan init - traffic is now passing.\n"}))
      << output;
  EXPECT_EQ(commands(), "");
}

TEST(Requests, LoadAfterAResetLetsAnInitBeButNoRestart) {
  switch_console_on();
  note_commands();
  EXPECT_EQ(wlan_reset(), 0);
  output_of([] { EXPECT_EQ(result_of(load_handler_func(nullptr)), 0); });
  const uint8_t mask = kMask24;
  const std::string output =
      output_of([&] { EXPECT_EQ(result_of(restart_handler_func(&mask)), -1); });
  EXPECT_TRUE(contains(output, "restart_handler_func\033[0m Driver(s) have not been initialized\n"))
      << output;
  output_of([] { EXPECT_EQ(result_of(init_handler_func(nullptr)), 0); });
}
