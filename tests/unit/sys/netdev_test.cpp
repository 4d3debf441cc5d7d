#include "sys/netdev.h"

#include <gtest/gtest.h>
#include <net/if.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <thread>

#include "unit_support.h"

static void make_link() {
  run("ip link add test0 type veth peer name test1");
}

static std::string link_flags() {
  return run("ip -br link show test0 | sed 's/.*<//; s/>.*//'");
}

static std::string address() {
  return run("ip -br -4 addr show test0 | awk '{print $3}'");
}

TEST(Interface, RaisesAndTakesDown) {
  make_link();
  EXPECT_EQ(if_ioctl("test0", nullptr, nullptr, 0x1041, 1), 1u);
  EXPECT_NE(link_flags().find("UP"), std::string::npos);
  EXPECT_EQ(if_ioctl("test0", nullptr, nullptr, 0x1000, 0), 1u);
  EXPECT_EQ(link_flags().find("UP"), std::string::npos) << link_flags();
  EXPECT_NE(link_flags().find("MULTICAST"), std::string::npos) << link_flags();
}

TEST(Interface, MissingOneCountsAsDoneWithoutAWord) {
  catch_stream(2);
  EXPECT_EQ(if_ioctl("nosuch0", "10.0.0.1", "255.0.0.0", 0x1041, 1), 1u);
  EXPECT_EQ(caught_stream(2), "");
}

TEST(Interface, NoNameDoesNothing) {
  EXPECT_EQ(if_ioctl(nullptr, nullptr, nullptr, 0, 1), 0u);
}

TEST(Interface, AddressAndMaskAreSet) {
  make_link();
  EXPECT_EQ(if_ioctl("test0", "10.9.8.7", "255.255.0.0", 0x1041, 1), 1u);
  EXPECT_EQ(address(), "10.9.8.7/16\n");
}

TEST(Interface, NoMaskGoesWithTheZeroAddress) {
  make_link();
  catch_stream(2);
  // The kernel would refuse a mask without an address.
  EXPECT_EQ(if_ioctl("test0", "0.0.0.0", "255.255.0.0", 0x1041, 1), 1u);
  EXPECT_EQ(caught_stream(2), "");
  EXPECT_EQ(address(), "");
}

TEST(Interface, RefusedMaskIsReported) {
  make_link();
  catch_stream(2);
  EXPECT_EQ(if_ioctl("test0", "10.9.8.7", "255.0.255.0", 0x1041, 1), 0u);
  EXPECT_NE(caught_stream(2).find("if_ioctl ioctl to socket failed - test0 SIOCSIFNETMASK\n"),
            std::string::npos);
}

// The requests of an if_ioctl on test0 in a child, one per line, without their
// descriptors. Request `failing`, counted from 1, fails; with 0 none does.
static std::string requests_of(const char* address, int failing, unsigned* result) {
  int go[2];
  EXPECT_EQ(pipe(go), 0);
  const pid_t child = fork();
  if (child == 0) {
    char byte;
    static_cast<void>(!read(go[0], &byte, 1));
    _exit(static_cast<int>(if_ioctl("test0", address, nullptr, 0x1041, 1)));
  }
  const std::string pid = std::to_string(child);
  std::string command = "strace -qq -o /tmp/requests -e trace=ioctl -p " + pid;
  if (failing != 0) command += " -e inject=ioctl:error=EPERM:when=" + std::to_string(failing);
  std::thread tracer([&] { run(command + " 2>/dev/null"); });
  EXPECT_TRUE(
      wait_until([&] { return run("grep -c 'TracerPid:.0$' /proc/" + pid + "/status") == "0\n"; }));
  static_cast<void>(!write(go[1], "x", 1));
  tracer.join();
  int status = -1;
  waitpid(child, &status, 0);
  close(go[0]);
  close(go[1]);
  *result = WIFEXITED(status) ? WEXITSTATUS(status) : 99;
  return run("sed 's/^ioctl([0-9]*, //' /tmp/requests");
}

static constexpr char kDown[] = "SIOCSIFFLAGS, {ifr_name=\"test0\", ifr_flags=0}) = 0\n";

TEST(Interface, FamilyOfAnAddressStaysInTheFlags) {
  make_link();
  unsigned result = 99;
  EXPECT_EQ(requests_of("10.9.8.7", 0, &result),
            std::string(kDown) +
                "SIOCSIFADDR, {ifr_name=\"test0\", ifr_addr={sa_family=AF_INET, "
                "sin_port=htons(0), sin_addr=inet_addr(\"10.9.8.7\")}}) = 0\n"
                "SIOCSIFFLAGS, {ifr_name=\"test0\", "
                "ifr_flags=IFF_UP|IFF_BROADCAST|IFF_RUNNING|IFF_MULTICAST}) = 0\n");
  EXPECT_EQ(result, 1u);
  EXPECT_EQ(requests_of(nullptr, 0, &result),
            std::string(kDown) +
                "SIOCSIFFLAGS, {ifr_name=\"test0\", "
                "ifr_flags=IFF_UP|IFF_RUNNING|IFF_MULTICAST}) = 0\n");
}

TEST(Interface, RefusedAddressAndFlagsAreReportedAndEndIt) {
  make_link();
  struct {
    const char* address;
    int request;
    const char* name;
  } const refusals[] = {{"10.9.8.7", 2, "SIOCSIFADDR"},
                        {"10.9.8.7", 3, "SIOCSIFFLAGS"},
                        {nullptr, 2, "SIOCSIFFLAGS"}};
  for (const auto& item : refusals) {
    unsigned result = 99;
    std::string requests;
    EXPECT_EQ(errors_of([&] { requests = requests_of(item.address, item.request, &result); }),
              rpc_error_prefix("if_ioctl") + "ioctl to socket failed - test0 " + item.name + "\n");
    EXPECT_EQ(result, 0u);
    EXPECT_EQ(count_of(requests, "SIOCS"), item.request) << requests;
  }
}

TEST(Interface, LongNameIsCutForTheKernelAndReportedWhole) {
  run("ip link add test45678901234 type veth peer name test1");
  EXPECT_EQ(errors_of([] {
              EXPECT_EQ(if_ioctl("test45678901234xyz", "10.9.8.7", "255.0.255.0", 0x1041, 1), 0u);
            }),
            rpc_error_prefix("if_ioctl") +
                "ioctl to socket failed - test45678901234xyz SIOCSIFNETMASK\n");
  EXPECT_EQ(if_ioctl("test45678901234xyz", nullptr, nullptr, 0x1041, 1), 1u);
  EXPECT_TRUE(contains(run("ip -br link show test45678901234"), "UP"));
}

TEST(Interface, MissingSocketIsReported) {
  rlimit before;
  getrlimit(RLIMIT_NOFILE, &before);
  catch_stream(2);
  const rlimit soft = {0, before.rlim_max};
  setrlimit(RLIMIT_NOFILE, &soft);
  const unsigned interface = if_ioctl("lo", nullptr, nullptr, 0, 1);
  const unsigned bridge = bridge_ioctl("br9", nullptr, kBridgeAdd);
  const unsigned vlan = vconfig_ioctl("eth0", 5, kVlanAdd);
  setrlimit(RLIMIT_NOFILE, &before);
  const std::string said = caught_stream(2);
  EXPECT_EQ(interface + bridge + vlan, 0u);
  for (const char* function : {"if_ioctl", "bridge_ioctl", "vconfig_ioctl"}) {
    EXPECT_NE(said.find(std::string(function) + " failed to grab socket\n"), said.npos) << said;
  }
}

TEST(Bridge, IsMadeFilledEmptiedAndDeleted) {
  make_link();
  EXPECT_EQ(bridge_ioctl("br9", nullptr, kBridgeAdd), 1u);
  EXPECT_EQ(bridge_ioctl("br9", nullptr, kBridgeAdd), 0u) << "it is there";
  EXPECT_EQ(bridge_ioctl("br9", "test0", kBridgeAddInterface), 1u);
  EXPECT_EQ(run("ls /sys/class/net/br9/brif"), "test0\n");
  EXPECT_EQ(bridge_ioctl("br9", "test0", kBridgeDeleteInterface), 1u);
  EXPECT_EQ(run("ls /sys/class/net/br9/brif"), "");
  EXPECT_EQ(bridge_ioctl("br9", nullptr, kBridgeDelete), 1u);
  EXPECT_FALSE(exists("/sys/class/net/br9"));
}

TEST(Bridge, LongNameIsCutForTheKernel) {
  make_link();
  EXPECT_EQ(bridge_ioctl("br3456789012345", nullptr, kBridgeAdd), 1u);
  EXPECT_EQ(bridge_ioctl("br3456789012345xyz", "test0", kBridgeAddInterface), 1u);
  EXPECT_EQ(run("ls /sys/class/net/br3456789012345/brif"), "test0\n");
}

TEST(Bridge, OtherRequestsTouchNothing) {
  catch_stream(2);
  for (const int op : {0, 1, 6, -1})
    EXPECT_EQ(bridge_ioctl("br9", "lo", op), 0u) << op;
  EXPECT_EQ(bridge_ioctl(nullptr, nullptr, kBridgeAdd), 0u);
  EXPECT_EQ(bridge_ioctl("br9", nullptr, kBridgeAddInterface), 0u);
  EXPECT_EQ(bridge_ioctl("br9", "nosuch0", kBridgeAddInterface), 0u);
  EXPECT_EQ(caught_stream(2), "");
  EXPECT_FALSE(exists("/sys/class/net/br9"));
}

TEST(Vlan, DeviceIsMadeAndDeleted) {
  EXPECT_EQ(vconfig_ioctl("eth0", 5, kVlanAdd), 1u);
  EXPECT_TRUE(exists("/sys/class/net/eth0.5"));
  catch_stream(2);
  EXPECT_EQ(vconfig_ioctl("eth0", 5, kVlanAdd), 0u) << "it is there";
  EXPECT_EQ(caught_stream(2), "");
  EXPECT_EQ(vconfig_ioctl("eth0.5", 5, kVlanDelete), 1u);
  EXPECT_FALSE(exists("/sys/class/net/eth0.5"));
}
