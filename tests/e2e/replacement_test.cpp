// What callers and operators see when a service child is replaced.

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "support/daemon.h"
#include "support/files.h"
#include "support/gateway.h"
#include "support/lifecycle.h"
#include "support/wire.h"

static constexpr char kReplaced[] =
    "[RPC] **ERROR** run_service the service child was replaced: the new one does not know what "
    "was loaded. For a known state: wlan_load 1, wlan_init, wlan_reset, wlan_load 1, wlan_init, "
    "each when the one before is done\n";

static void replace_child(pid_t supervisor) {
  const pid_t child = service_child(supervisor);
  kill(child, SIGKILL);
  EXPECT_TRUE(wait_until([&] {
    const pid_t next = service_child(supervisor);
    return next != 0 && next != child && daemon_answers();
  }));
}

static int client_socket() {
  const int sock = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  sockaddr_in service = {};
  service.sin_family = AF_INET;
  service.sin_port = htons(60001);
  inet_aton("192.168.254.254", &service.sin_addr);
  EXPECT_EQ(connect(sock, reinterpret_cast<sockaddr*>(&service), sizeof service), 0);
  return sock;
}

static void send_null_call(int sock, uint32_t xid) {
  const std::string datagram = call_message(0, "", xid);
  EXPECT_EQ(send(sock, datagram.data(), datagram.size(), 0), static_cast<ssize_t>(datagram.size()));
}

// Whether the next datagram answers `xid`.
static bool takes_answer(int sock, uint32_t xid) {
  char bytes[256];
  pollfd answer = {sock, POLLIN, 0};
  if (poll(&answer, 1, 4000) != 1) return false;
  const ssize_t length = recv(sock, bytes, sizeof bytes, 0);
  return length == 24 && word_at(std::string(bytes, 24), 0) == xid;
}

static bool is_zombie(pid_t process) {
  return read_file("/proc/" + std::to_string(process) + "/status").find("State:\tZ") !=
         std::string::npos;
}

TEST(Replacement, CallsWaitWhileThereIsNoChild) {
  static constexpr uint32_t kKills = 50;
  static constexpr uint32_t kCallsEach = 20;
  const pid_t supervisor = start_daemon();
  const int sock = client_socket();
  for (uint32_t round = 0; round < kKills; ++round) {
    // A stopped supervisor starts no other child.
    kill(supervisor, SIGSTOP);
    const pid_t child = service_child(supervisor);
    kill(child, SIGKILL);
    ASSERT_TRUE(wait_until([&] { return is_zombie(child); }));
    for (uint32_t i = 0; i < kCallsEach; ++i)
      send_null_call(sock, round * kCallsEach + i);
    kill(supervisor, SIGCONT);
    for (uint32_t i = 0; i < kCallsEach; ++i)
      ASSERT_TRUE(takes_answer(sock, round * kCallsEach + i)) << round << ", " << i;
  }
  close(sock);
}

TEST(Replacement, CallThatWasServedIsAnsweredWhenItIsSentAgain) {
  static constexpr int kCalls = 1000;
  static constexpr int kKills = 50;
  const pid_t supervisor = start_daemon();
  std::atomic<int> calls = 0;
  std::atomic<int> kills = 0;
  std::thread killer([&] {
    pid_t killed = 0;
    for (; kills < kKills; ++kills) {
      const int before = calls;
      pid_t child = killed;
      while (child == killed || child == 0 || calls < before + kCalls / kKills)
        child = service_child(supervisor);
      kill(child, SIGKILL);
      killed = child;
    }
  });
  for (; calls < kCalls || kills < kKills; ++calls) {
    reply_message reply = {};
    EXPECT_TRUE(call(0, "", &reply, 0.05) || call(0, "", &reply)) << calls;
  }
  killer.join();
}

TEST(Replacement, IsReportedWithWhatToDo) {
  const pid_t supervisor = start_daemon();
  EXPECT_EQ(daemon_errors(), "");
  replace_child(supervisor);
  EXPECT_EQ(count_errors(kReplaced), 1) << daemon_errors();
  replace_child(supervisor);
  EXPECT_EQ(count_errors(kReplaced), 2) << daemon_errors();
}

TEST(Replacement, WhatItSaysToDoLeavesOneOfEachCompanion) {
  // Takes longer than other tests: four requests, each a second later.
  switch_everything_on();
  start_lifecycle_daemon();
  const std::string companions[] = {"mtk_ctrl", "dcs", "rtdot1xd"};
  // The companions that the child has left running.
  for (const std::string& name : companions)
    run(name + " >/dev/null 2>&1 &");
  ASSERT_EQ(system("pkill -9 -n -x wificonfd"), 0);
  ASSERT_TRUE(wait_until(daemon_answers));
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  EXPECT_EQ(call_for_code(kReset, ""), 0);
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  for (const std::string& name : companions)
    EXPECT_TRUE(wait_until([&] { return run("pgrep -xc " + name) == "1\n"; })) << name;
  EXPECT_EQ(interfaces(), all_interfaces());
}
