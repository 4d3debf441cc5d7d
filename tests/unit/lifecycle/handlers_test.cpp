#include "lifecycle/handlers.h"

#include <gtest/gtest.h>

#include "lifecycle/queue.h"
#include "lifecycle/state.h"
#include "support/gateway.h"
#include "unit_support.h"

// A reset that stands in the queue; the operations never put one there.

static int result_of(void* result) {
  return *static_cast<int*>(result);
}

TEST(QueuedReset, ResetsAndForgetsThatTheDriverWasLoaded) {
  switch_console_on();
  modules_loaded = true;
  drivers_inited = 1;
  reset_running = true;
  const std::string output =
      output_of([] { EXPECT_EQ(result_of(reset_handler_func(nullptr)), 0); });
  EXPECT_TRUE(contains(output, "resetting wlan -->\n")) << output;
  EXPECT_TRUE(contains(output, "wlan reset complete.\n")) << output;
  EXPECT_FALSE(modules_loaded || reset_running);
  EXPECT_EQ(drivers_inited, 0);
  EXPECT_EQ(interfaces(), "");
  EXPECT_TRUE(contains(output_of([] { EXPECT_EQ(result_of(init_handler_func(nullptr)), -1); }),
                       "WLAN driver(s) has not been loaded\n"));
  const uint8_t mask = kMaskAll;
  EXPECT_TRUE(contains(output_of([&] { EXPECT_EQ(result_of(restart_handler_func(&mask)), -1); }),
                       "Driver(s) have not been initialized\n"));
}

TEST(QueuedReset, GoesOnWhileAnInitOrARestartRuns) {
  init_running = true;
  EXPECT_EQ(errors_of([] { EXPECT_EQ(result_of(reset_handler_func(nullptr)), 0); }),
            rev_error_prefix("reset_handler_func") + "init process is running !!!\n");
  init_running = false;
  restart_running = true;
  EXPECT_EQ(errors_of([] { EXPECT_EQ(result_of(reset_handler_func(nullptr)), 0); }),
            rev_error_prefix("reset_handler_func") + "restart process is running !!!\n");
}

TEST(QueuedReset, WorkerRunsItInItsTurn) {
  switch_console_on();
  catch_stream(1);
  wlan_queueLifecycleRequest(reset_handler_func, nullptr, "wlan_reset", &reset_running);
  EXPECT_TRUE(wait_until([] {
    fflush(stdout);
    return contains(read_file("/proc/self/fd/1"), "de-queue'd");
  }));
  EXPECT_TRUE(contains(caught_stream(1), "wlan reset complete.\n"));
}

TEST(Reset, IsRefusedWhileAnInitOrARestartRunsAndTouchesNothing) {
  modules_loaded = true;
  init_running = true;
  EXPECT_EQ(errors_of([] { EXPECT_EQ(wlan_reset(), -1); }),
            rev_error_prefix("wlan_reset") + "wlan_reset init process is running !!!\n");
  init_running = false;
  restart_running = true;
  EXPECT_EQ(errors_of([] { EXPECT_EQ(wlan_reset(), -1); }),
            rev_error_prefix("wlan_reset") + "wlan_reset restart process is running !!!\n");
  EXPECT_TRUE(modules_loaded);
  EXPECT_EQ(interfaces(), all_interfaces());
}
