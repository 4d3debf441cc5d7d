#include "lifecycle/queue.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <semaphore.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <regex>
#include <thread>

#include "lifecycle/init.h"
#include "lifecycle/lifecycle_support.h"
#include "lifecycle/load.h"
#include "lifecycle/requests.h"
#include "lifecycle/restart.h"
#include "lifecycle/state.h"
#include "lifecycle/turn.h"
#include "unit_support.h"

// Controls the worker's wait of one second: it lasts until the test lets it pass.
static std::atomic<bool> seconds_by_hand;
static std::atomic<int> seconds_begun;
static sem_t seconds_opened;

extern "C" int nanosleep(const timespec* time, timespec* left) {
  if (!seconds_by_hand || time->tv_sec != 1) {
    return static_cast<int>(syscall(SYS_nanosleep, time, left));
  }
  ++seconds_begun;
  while (sem_wait(&seconds_opened) != 0) {
  }
  return 0;
}

// From now on traces go to a file until caught_stream(1) takes them back. In between,
// messages of failed expectations go there too.
static void begin() {
  sem_init(&seconds_opened, 0, 0);
  seconds_by_hand = true;
  lifecycle.modules_loaded = true;
  note_commands("0\n");
  switch_console_on();
  catch_stream(1);
}

static void let_a_second_pass() {
  sem_post(&seconds_opened);
}

static bool wait_for_second(int number) {
  return wait_until([=] { return seconds_begun == number; });
}

static bool wait_for_traces(const std::string& text, int count = 1) {
  return wait_until([&] {
    fflush(stdout);
    return count_of(read_file("/proc/self/fd/1"), text) >= count;
  });
}

TEST(Queue, RestartAskedForWhileOneRunsRunsAfterwardsForItsRadioAlone) {
  begin();
  hold_command("killall -USR2 HncInit");
  wlan_restart(1);
  let_a_second_pass();
  bool done = wait_for_held_command();
  wlan_restart(9);
  release_command();
  done = done && wait_for_second(2);
  let_a_second_pass();
  done = done && wait_for_traces("de-queue'd", 2);
  const std::string traces = caught_stream(1);
  EXPECT_TRUE(done);
  EXPECT_TRUE(
      in_order(traces, {"restart_handler_func\033[0m Restarting radio with mask: 01\n",
                        "restart_handler_func\033[0m 2.4GHz radio restarted\n", "de-queue'd",
                        "restart_handler_func\033[0m Restarting radio with mask: 10\n",
                        "restart_handler_func\033[0m 5GHz radio restarted\n", "de-queue'd"}))
      << traces;
  EXPECT_EQ(count_of(traces, "Restarting WLAN\n"), 2) << traces;
}

TEST(Queue, RestartsOfBothRadiosInOneSecondRunOnceForBoth) {
  begin();
  wlan_restart(12);
  wlan_restart(3);
  let_a_second_pass();
  const bool done = wait_for_traces("de-queue'd");
  const std::string traces = caught_stream(1);
  EXPECT_TRUE(done);
  EXPECT_TRUE(in_order(traces, {"mask: 11\n", "Restarting WLAN\n", "2.4GHz radio restarted\n",
                                "Restarting WLAN\n", "5GHz radio restarted\n"}))
      << traces;
  EXPECT_FALSE(contains(traces, "All radio(s)")) << traces;
  EXPECT_EQ(count_of(traces, "queue'd -> "), 2) << "one put in, one taken out";
}

TEST(Queue, RestartOfAllRadiosSaysSoWhereThereAreTwo) {
  begin();
  wlan_restart_all();
  let_a_second_pass();
  const bool done = wait_for_traces("de-queue'd");
  const std::string traces = caught_stream(1);
  EXPECT_TRUE(done);
  EXPECT_TRUE(in_order(traces, {"mask: ff\n", "Restarting WLAN\n", "Restarting WLAN\n",
                                "restart_handler_func\033[0m All radio(s) have been restarted\n"}))
      << traces;
  EXPECT_FALSE(contains(traces, "GHz radio restarted")) << traces;
}

TEST(Queue, RestartOfAllRadiosRestartsTheOnlyOneInSilence) {
  pretend_single_band();
  begin();
  wlan_restart(255);
  let_a_second_pass();
  const bool done = wait_for_traces("de-queue'd");
  const std::string traces = caught_stream(1);
  EXPECT_TRUE(done);
  EXPECT_EQ(count_of(traces, "Restarting WLAN\n"), 1) << traces;
  EXPECT_FALSE(contains(traces, "restarted\n")) << traces;
}

static std::smatch match(const std::string& text, const std::string& pattern) {
  static std::string kept;
  kept = text;
  std::smatch found;
  EXPECT_TRUE(std::regex_search(kept, found, std::regex(pattern))) << pattern << "\n" << text;
  return found;
}

static std::string address_of(lifecycle_sequence sequence) {
  char text[32];
  snprintf(text, sizeof text, "%p", reinterpret_cast<void*>(sequence));
  return text;
}

TEST(Queue, RequestsAreASecondApartAndTracedWithTheirFields) {
  begin();
  wlan_load();
  const bool first = wait_for_second(1);
  wlan_init();
  let_a_second_pass();
  const bool second = wait_for_second(2);
  fflush(stdout);
  const std::string between = read_file("/proc/self/fd/1");
  let_a_second_pass();
  const bool done = wait_for_traces("de-queue'd", 2);
  const std::string traces = caught_stream(1);
  EXPECT_TRUE(first && second && done) << traces;
  EXPECT_TRUE(in_order(between, {"lir_handler_thread\033[0m lir_handler_thread started\n",
                                 "load_handler_func\033[0m wlan loaded.\n"}))
      << between;
  EXPECT_FALSE(contains(between, "Initializing")) << between;
  const std::string load = address_of(load_handler_func) + " arg: 0 name: wlan_load state: 0";
  const std::string init = address_of(init_handler_func) + " arg: 0 name: wlan_init state: 0";
  const std::string queued =
      "add_lir_to_list\033\\[0m queue'd -> request_ptr:(0x[0-9a-f]+) routine: ";
  const std::string taken =
      "lir_handler_thread\033\\[0m de-queue'd -> request_ptr: (0x[0-9a-f]+) routine: ";
  const std::string load_request = match(traces, queued + load + "\n")[1];
  const std::string init_request = match(traces, queued + init + "\n")[1];
  EXPECT_EQ(match(traces, taken + load + " next_req=" + init_request + "\n")[1], load_request);
  EXPECT_EQ(match(traces, taken + init + " next_req=\\(nil\\)\n")[1], init_request);
}

TEST(Queue, RestartWithoutRadiosOrNameDoesNothing) {
  begin();
  wlan_queueLifecycleRequest(restart_handler_func, nullptr, nullptr, nullptr);
  let_a_second_pass();
  bool done = wait_for_traces("de-queue'd");
  const uint8_t mask = kMask5;
  wlan_queueLifecycleRequest(restart_handler_func, &mask, "a name of 16 chrand more",
                             &lifecycle.restart_running);
  let_a_second_pass();
  done = done && wait_for_traces("de-queue'd", 2);
  const std::string traces = caught_stream(1);
  EXPECT_TRUE(done);
  EXPECT_TRUE(in_order(
      traces, {"arg: 0 name:  state: 0\n", "restart_handler_func\033[0m Nothing to do\n",
               "arg: 0 name:  state: 0 next_req", "arg: 16 name: a name of 16 chr state: 0\n"}))
      << traces;
}

TEST(Queue, ResetWaitsForALoadThatRuns) {
  begin();
  hold_command("cp /etc/Wireless/7603AP/MT7603_EEPROM.bin");
  wlan_load();
  let_a_second_pass();
  const bool loading = wait_for_held_command();
  std::atomic<pid_t> thread = 0;
  std::atomic<int> status = 7;
  std::thread reset([&] {
    thread = gettid();
    status = wlan_reset();
  });
  const bool waits = wait_until([&] { return thread != 0; }) && wait_until_blocked(thread);
  release_command();
  reset.join();
  const std::string traces = caught_stream(1);
  EXPECT_TRUE(loading);
  EXPECT_TRUE(waits) << traces;
  EXPECT_EQ(status, 0);
  EXPECT_TRUE(in_order(traces, {"wlan loaded.\n", "wlan_reset\033[0m resetting wifi!!!\n",
                                "wlan_reset\033[0m reset wifi done !!!\n"}))
      << traces;
  EXPECT_FALSE(lifecycle.modules_loaded);
}

// Lets the worker's next second pass and waits until the request has ended.
static bool run_request(int number) {
  const bool waits = wait_for_second(number);
  let_a_second_pass();
  return waits && wait_for_traces("de-queue'd", number);
}

TEST(Queue, RadiosOfADisplacedRestartAreRestartedWithTheNextOneAlsoAfterAReset) {
  begin();
  wlan_load();
  wlan_restart(1);
  wlan_init();
  bool done = run_request(1) && run_request(2);
  const int reset = wlan_reset();
  wlan_load();
  done = done && run_request(3);
  wlan_init();
  done = done && run_request(4);
  wlan_restart(9);
  done = done && run_request(5);
  const std::string traces = caught_stream(1);
  EXPECT_TRUE(done);
  EXPECT_EQ(reset, 0);
  EXPECT_EQ(count_of(traces, "Restarting radio with mask: "), 1) << traces;
  EXPECT_TRUE(in_order(traces, {"reset wifi done !!!\n", "Restarting radio with mask: 11\n"}))
      << traces;
}

TEST(Queue, DisplacedRequestsTakeNoMemory) {
  static constexpr int kRequests = 1000;
  begin();
  wlan_load();
  bool done = wait_for_second(1);
  wlan_init();
  // Memory that stays allocated; a sanitizer reports it itself at the end.
  const size_t before = mallinfo2().uordblks;
  for (int i = 0; i < kRequests; ++i)
    wlan_init();
  const size_t after = mallinfo2().uordblks;
  done = done && run_request(1) && run_request(2);
  caught_stream(1);
  EXPECT_TRUE(done);
  EXPECT_LT(after, before + kRequests);
}

static std::atomic<int> routines_run;
static std::atomic<pid_t> worker;

static void* count_routine(const uint8_t*) {
  ++routines_run;
  return nullptr;
}

static void* leave_no_room_for_the_trace(const uint8_t*) {
  worker = gettid();
  fcntl(1, F_SETFL, O_NONBLOCK);
  while (write(1, "full", 4) > 0 || write(1, "f", 1) > 0) {
  }
  fcntl(1, F_SETFL, 0);
  switch_console_on();
  return count_routine(nullptr);
}

static bool blocked_in_write(pid_t thread) {
  const std::string path = "/proc/self/task/" + std::to_string(thread) + "/syscall";
  return read_file(path).starts_with(std::to_string(SYS_write) + " ");
}

TEST(Queue, HeadHasMovedWhenTheEndOfARequestIsTraced) {
  begin();
  unlink("/tmp/wlandbg");
  setvbuf(stdout, nullptr, _IONBF, 0);
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  const int kept = dup(1);
  dup2(ends[1], 1);
  wlan_queueLifecycleRequest(leave_no_room_for_the_trace, nullptr, nullptr, nullptr);
  let_a_second_pass();
  const bool tracing = wait_until([] { return worker != 0 && blocked_in_write(worker); });
  unlink("/tmp/wlandbg");
  // Both fit, because the request that has ended no longer takes a place.
  wlan_queueLifecycleRequest(count_routine, nullptr, nullptr, nullptr);
  wlan_queueLifecycleRequest(count_routine, nullptr, nullptr, nullptr);
  char bytes[65536];
  EXPECT_GT(read(ends[0], bytes, sizeof bytes), 0);
  let_a_second_pass();
  let_a_second_pass();
  const bool all_ran = wait_until([] { return routines_run == 3; });
  dup2(kept, 1);
  caught_stream(1);
  EXPECT_TRUE(tracing);
  EXPECT_TRUE(all_ran) << routines_run;
}
