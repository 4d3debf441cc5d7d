#include "lifecycle/turn.h"
#include "lifecycle/state.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "lifecycle/lifecycle_support.h"
#include "unit_support.h"

// Calls `take` on another thread while this one has the turn: it must wait, and must get
// the turn once it is free.
template <typename Function>
static void expect_passed_on(Function take) {
  begin_turn();
  std::atomic<pid_t> thread = 0;
  std::atomic<bool> taken = false;
  std::thread other([&] {
    thread = gettid();
    take();
    taken = true;
    end_turn();
  });
  EXPECT_TRUE(wait_until([&] { return thread != 0; }) && wait_until_blocked(thread));
  EXPECT_FALSE(taken);
  end_turn();
  EXPECT_TRUE(wait_until([&] { return taken.load(); })) << "it was not passed on";
  // Wakes the thread if it still waits, so that the test ends.
  set_running(&lifecycle.load_running, false);
  other.join();
}

TEST(Turn, IsWaitedForAndPassedOn) {
  expect_passed_on(begin_turn);
}

TEST(Turn, IsPassedOnToAReset) {
  expect_passed_on([] { EXPECT_EQ(begin_reset_turn(), nullptr); });
}
