// What another machine can reach when it uses the gateway as its router, and what the
// rules of docs/security.md leave of that.

#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sched.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>

#include "support/daemon.h"
#include "support/files.h"
#include "support/lifecycle.h"
#include "support/wire.h"

static constexpr uint32_t kPortmapper = 100000;
static constexpr uint32_t kPortmapperVersion = 2;
static constexpr uint32_t kPmapSet = 1;
static constexpr uint32_t kPmapUnset = 2;
static constexpr uint32_t kPmapGetPort = 3;
static constexpr uint32_t kPmapDump = 4;
static constexpr uint32_t kPmapCallIt = 5;
static constexpr uint32_t kUdp = 17;
static constexpr uint32_t kPort = 60001;

static constexpr char kHere[] = "/proc/self/ns/net";
static constexpr char kThere[] = "/run/netns/home";

// A machine 192.168.1.2 in the home network; the gateway is 192.168.1.1.
static void add_machine() {
  int status = -1;
  const std::string said =
      run("{ ip netns add home && ip link add home0 type veth peer name home1 netns home &&"
          " ip addr add 192.168.1.1/24 dev home0 && ip link set home0 up &&"
          " for words in 'addr add 192.168.1.2/24 dev home1' 'link set home1 up'"
          " 'route add 192.168.254.254 via 192.168.1.1';"
          " do nsenter --net=/run/netns/home ip $words || exit 1; done; } 2>&1",
          &status);
  ASSERT_EQ(status, 0) << said;
}

// Runs a function in that machine's network namespace.
template <typename Function>
static void there(Function function) {
  const int here = open(kHere, O_RDONLY | O_CLOEXEC);
  const int other = open(kThere, O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(setns(other, CLONE_NEWNET), 0);
  function();
  ASSERT_EQ(setns(here, CLONE_NEWNET), 0);
  close(other);
  close(here);
}

static int connected_to(const char* address, uint16_t port) {
  const int sock = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  sockaddr_in service = {};
  service.sin_family = AF_INET;
  service.sin_port = htons(port);
  inet_aton(address, &service.sin_addr);
  EXPECT_EQ(connect(sock, reinterpret_cast<sockaddr*>(&service), sizeof service), 0);
  return sock;
}

// The answer from that address and port; empty when none came in time.
static std::string ask(const char* address, uint16_t port, const std::string& datagram) {
  const int sock = connected_to(address, port);
  EXPECT_EQ(send(sock, datagram.data(), datagram.size(), 0), static_cast<ssize_t>(datagram.size()));
  pollfd waiting = {sock, POLLIN, 0};
  char bytes[9000];
  ssize_t length = 0;
  if (poll(&waiting, 1, 300) > 0) length = recv(sock, bytes, sizeof bytes, 0);
  close(sock);
  return std::string(bytes, length > 0 ? static_cast<size_t>(length) : 0);
}

// Whether the kernel answers that the port is closed.
static bool refused(const char* address, uint16_t port) {
  const int sock = connected_to(address, port);
  char byte = 0;
  send(sock, &byte, sizeof byte, 0);
  pollfd waiting = {sock, POLLIN, 0};
  poll(&waiting, 1, 2000);
  const bool answer = recv(sock, &byte, sizeof byte, MSG_DONTWAIT) < 0 && errno == ECONNREFUSED;
  close(sock);
  return answer;
}

static std::string ask_portmapper(const char* address, uint32_t procedure,
                                  const std::string& arguments) {
  return ask(address, 111, call_message(procedure, arguments, 1, kPortmapper, kPortmapperVersion));
}

static std::string mapping(uint32_t port) {
  return xdr_word(kProgramNumber) + xdr_word(kVersionNumber) + xdr_word(kUdp) + xdr_word(port);
}

static std::string accepted(const std::string& payload) {
  return xdr_word(1) + xdr_word(1) + std::string(16, '\0') + payload;
}

static bool registered() {
  return ask_portmapper("127.0.0.1", kPmapGetPort, mapping(0)) == accepted(xdr_word(kPort));
}

TEST(Exposure, ServiceHasOneSocketAtTheInternalAddress) {
  const pid_t child = service_child(start_daemon());
  EXPECT_EQ(run("ss -anpH | grep -w pid=" + std::to_string(child) + " | awk '{print $1, $5}'"),
            "udp 192.168.254.254:60001\n");
}

// The kernel accepts a datagram for any of its addresses on any interface.
TEST(Exposure, AnotherMachineWithARouteReachesIt) {
  add_machine();
  start_daemon();
  there([] {
    EXPECT_TRUE(daemon_answers());
    EXPECT_EQ(ask("192.168.1.1", kPort, call_message(0, "")), "");
  });
}

TEST(Exposure, PortmapperTellsAnotherMachineAndTakesNothingFromIt) {
  add_machine();
  start_daemon();
  there([] {
    const std::string told = ask_portmapper("192.168.1.1", kPmapDump, "");
    EXPECT_NE(told.find(mapping(kPort)), told.npos);
    // Denied: the credential is too weak.
    const std::string denied = xdr_word(1) + xdr_word(1) + xdr_word(1) + xdr_word(1) + xdr_word(5);
    EXPECT_EQ(ask_portmapper("192.168.1.1", kPmapUnset, mapping(kPort)), denied);
    EXPECT_EQ(ask_portmapper("192.168.1.1", kPmapSet, mapping(5555)), denied);
    EXPECT_EQ(ask_portmapper("192.168.254.254", kPmapUnset, mapping(kPort)), denied);
    // A NULL call for the portmapper to forward.
    const std::string indirect =
        xdr_word(kProgramNumber) + xdr_word(kVersionNumber) + xdr_word(0) + xdr_word(0);
    EXPECT_EQ(ask_portmapper("192.168.1.1", kPmapCallIt, indirect), "");
  });
  EXPECT_TRUE(registered());
}

TEST(Exposure, UserOfTheBoxDoesNotRemoveTheRegistration) {
  start_daemon();
  ASSERT_TRUE(registered());
  EXPECT_EQ(run("setpriv --reuid 65534 --clear-groups rpcinfo -d 538121015 1 >/dev/null 2>&1;"
                " echo $?"),
            "1\n");
  EXPECT_TRUE(registered());
}

// The table's lines in the document, from its name to its closing brace.
static std::string documented_rules(const std::string& table) {
  std::ifstream document(SECURITY_DOCUMENT);
  std::string rules;
  for (std::string line; std::getline(document, line);) {
    if (rules.empty() && line != "    table inet " + table + " {") continue;
    rules += line + "\n";
    if (line == "    }") break;
  }
  return rules;
}

static void apply_documented_rules(const std::string& table) {
  write_file("/tmp/rules", documented_rules(table));
  int status = -1;
  const std::string said = run("nft -f /tmp/rules 2>&1", &status);
  ASSERT_EQ(status, 0) << said;
}

TEST(Exposure, DocumentedRulesKeepAnotherMachineOut) {
  add_machine();
  start_daemon();
  apply_documented_rules("wificonfd");
  there([] {
    EXPECT_FALSE(daemon_answers());
    EXPECT_EQ(ask_portmapper("192.168.1.1", kPmapDump, ""), "");
    EXPECT_EQ(ask_portmapper("192.168.254.254", kPmapDump, ""), "");
    // The rules change nothing else.
    EXPECT_TRUE(refused("192.168.1.1", 9));
  });
  EXPECT_TRUE(daemon_answers());
  EXPECT_TRUE(registered());
}

// Sends the same call many times at full speed, without waiting for replies.
static void send_burst(uint32_t procedure, const std::string& arguments, int calls) {
  const int sock = connected_to("192.168.254.254", kPort);
  for (int i = 0; i < calls; ++i) {
    const std::string datagram = call_message(procedure, arguments, static_cast<uint32_t>(i));
    EXPECT_EQ(send(sock, datagram.data(), datagram.size(), 0),
              static_cast<ssize_t>(datagram.size()));
  }
  close(sock);
}

static int count_lines(const std::string& command) {
  return atoi(run(command + " | wc -l").c_str());
}

TEST(Exposure, DocumentedLimitsLetNoBurstHoldUpTheOthers) {
  static constexpr uint32_t kRadioTxPackets = 240;
  add_machine();
  start_lifecycle_daemon();
  apply_documented_rules("wificonfd_bursts");
  there([] {
    send_burst(kSetPrek, xdr_word(1) + xdr_word(1), 400);
    send_burst(kRadioTxPackets, xdr_word(1), 200);
  });
  EXPECT_TRUE(wait_until(daemon_answers)) << "after the few that were let through";
  EXPECT_EQ(count_lines("grep 'name.*RX2GSELFTEST' /run/gwbox/journal.jsonl"), 2);
  const int statistics = count_errors("rad_ctrl_request_buffered Could not connect\n");
  EXPECT_GE(statistics, 20);
  EXPECT_LE(statistics, 30) << "some more as time passes";
  // Local callers are not limited.
  for (int i = 0; i < 200; ++i)
    ASSERT_TRUE(daemon_answers()) << i;
}
