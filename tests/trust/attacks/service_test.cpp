// Attacks on the service itself: its memory, its port, its registration.

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <rpc/rpc.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <random>

#include "support/daemon.h"
#include "support/files.h"
#include "support/wire.h"
#include "trust/attacks/attacker.h"

static sockaddr_in service_address() {
  sockaddr_in service = {};
  service.sin_family = AF_INET;
  service.sin_port = htons(60001);
  inet_aton("192.168.254.254", &service.sin_addr);
  return service;
}

static int client_socket() {
  const int sock = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  const sockaddr_in service = service_address();
  const timeval patience = {4, 0};
  EXPECT_EQ(setsockopt(sock, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience), 0);
  EXPECT_EQ(connect(sock, reinterpret_cast<const sockaddr*>(&service), sizeof service), 0);
  return sock;
}

// The resident memory of a process, in kB.
static long resident(pid_t process) {
  const std::string status = read_file("/proc/" + std::to_string(process) + "/status");
  const size_t at = status.find("VmRSS:");
  return at == status.npos ? 0 : atol(status.c_str() + at + 6);
}

// A null call whose credential the RPC library's GSS code takes for a new context.
static std::string context_call(uint32_t flavor, uint32_t xid) {
  const std::string body = xdr_word(1) + xdr_word(1) + xdr_word(1) + xdr_word(1) + xdr_word(0);
  return call_message(0, "", xid).substr(0, 24) + xdr_word(flavor) + xdr_text(body) +
         xdr_word(flavor) + xdr_text(body) + xdr_text(std::string(36, 't'));
}

// Sends `calls` calls with the flavors in turn and returns the number of replies.
static int send_flavors(int sock, int calls) {
  static constexpr int kAtOnce = 32;
  static std::mt19937 random(1);
  int replies = 0;
  for (int sent = 0; sent < calls;) {
    for (int i = 0; i < kAtOnce; ++i, ++sent) {
      const uint32_t kind = static_cast<uint32_t>(sent) % 12;
      const std::string datagram = context_call(kind < 11 ? kind : random(), kind);
      EXPECT_EQ(send(sock, datagram.data(), datagram.size(), 0),
                static_cast<ssize_t>(datagram.size()));
    }
    char reply[1024];
    for (int i = 0; i < kAtOnce && recv(sock, reply, sizeof reply, 0) > 0; ++i)
      ++replies;
  }
  return replies;
}

TEST(Service, NoFlavorOfACredentialCostsMemory) {
  static constexpr int kCalls = 100000;
  const pid_t child = service_child(start_daemon());
  const int sock = client_socket();
  EXPECT_EQ(send_flavors(sock, 3200), 3200);
  const long before = resident(child);
  EXPECT_GT(before, 0);
  EXPECT_EQ(send_flavors(sock, kCalls), kCalls);
  EXPECT_LE(resident(child), before + 64);
  close(sock);
}

// Tries to bind the service's port until it succeeds.
static int take_port() {
  const sockaddr_in service = service_address();
  const int sock = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  while (bind(sock, reinterpret_cast<const sockaddr*>(&service), sizeof service) != 0) {
  }
  return 0;
}

TEST(Service, NobodyElseGetsThePortWhileAChildIsReplaced) {
  if (!has_other_users()) GTEST_SKIP() << "this box has one user id only";
  const pid_t supervisor = start_daemon();
  const pid_t attack = start_as_nobody(take_port);
  for (int i = 0; i < 20; ++i) {
    const pid_t child = service_child(supervisor);
    kill(child, SIGKILL);
    ASSERT_TRUE(wait_until([&] {
      const pid_t next = service_child(supervisor);
      return next != 0 && next != child && daemon_answers();
    })) << i;
  }
  EXPECT_EQ(end_process(attack, SIGKILL), 128 + SIGKILL) << "it has got the port";
}

// Registers the service's program as the attacker's, again and again.
static int register_program() {
  const netconfig* udp = getnetconfigent("udp");
  sockaddr_in service = service_address();
  const netbuf address = {sizeof service, sizeof service, &service};
  for (;;)
    rpcb_set(kProgramNumber, kVersionNumber, udp, &address);
}

TEST(Service, RegistersWhileOthersTryTo) {
  if (!has_other_users()) GTEST_SKIP() << "this box has one user id only";
  const pid_t attacks[] = {start_as_nobody(register_program), start_as_nobody(register_program),
                           start_as_nobody(register_program), start_as_nobody(register_program)};
  for (int i = 0; i < 10; ++i) {
    ASSERT_TRUE(wait_until([] { return run("rpcinfo").find(" 65534") != std::string::npos; }));
    const pid_t supervisor = start_supervisor();
    ASSERT_TRUE(wait_until([] {
      return run("rpcinfo | grep -w 538121015").find("superuser") != std::string::npos;
    })) << daemon_errors();
    EXPECT_TRUE(daemon_answers());
    EXPECT_EQ(end_process(supervisor, SIGTERM), 0);
  }
  EXPECT_EQ(daemon_errors(), "");
  for (const pid_t attack : attacks)
    EXPECT_EQ(end_process(attack, SIGKILL), 128 + SIGKILL);
}
