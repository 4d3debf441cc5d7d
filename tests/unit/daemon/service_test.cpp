#include "daemon/service.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "unit_support.h"

static constexpr char kAddress[] = "192.168.254.254";

TEST(Service, SocketIsBoundToTheAddressAndPort) {
  switch_log_on();
  const int sock = build_rpc_sockt(-1, kAddress);
  ASSERT_GT(sock, 2);
  sockaddr_in local = {};
  socklen_t length = sizeof local;
  ASSERT_EQ(getsockname(sock, reinterpret_cast<sockaddr*>(&local), &length), 0);
  EXPECT_STREQ(inet_ntoa(local.sin_addr), kAddress);
  EXPECT_EQ(ntohs(local.sin_port), 60001);
  int type = 0;
  length = sizeof type;
  ASSERT_EQ(getsockopt(sock, SOL_SOCKET, SO_TYPE, &type, &length), 0);
  EXPECT_EQ(type, SOCK_DGRAM);
  EXPECT_EQ(fcntl(sock, F_GETFD), FD_CLOEXEC);
  EXPECT_EQ(logged(), "MTK WLAN RPC server bind successfully to 192.168.254.254:60001\n");
  close(sock);
}

TEST(Service, KeptSocketIsBoundOnceAndTracedEachTime) {
  switch_log_on();
  const int kept = make_service_socket();
  ASSERT_GT(kept, 2);
  EXPECT_EQ(fcntl(kept, F_GETFD), FD_CLOEXEC);
  EXPECT_EQ(build_rpc_sockt(kept, kAddress), kept);
  EXPECT_EQ(build_rpc_sockt(kept, kAddress), kept);
  const std::string bound = "MTK WLAN RPC server bind successfully to 192.168.254.254:60001\n";
  EXPECT_EQ(logged(), bound + bound);
  close(kept);
}

TEST(Service, SecondSocketEndsTheProcess) {
  const int sock = build_rpc_sockt(-1, kAddress);
  EXPECT_EXIT((void)build_rpc_sockt(-1, kAddress), testing::ExitedWithCode(1),
              "^bind: Address already in use\n$");
  close(sock);
}

TEST(Service, ForeignAddressEndsTheProcess) {
  EXPECT_EXIT((void)build_rpc_sockt(-1, "192.168.254.1"), testing::ExitedWithCode(1),
              "^bind: Cannot assign requested address\n$");
}

TEST(Service, BadAddressEndsTheProcessWithATraceOnly) {
  switch_log_on();
  EXPECT_EXIT((void)build_rpc_sockt(-1, "not an address"), testing::ExitedWithCode(1), "^$");
  EXPECT_EQ(logged(), "inet_aton failed with IPv4 not an address\n");
}

TEST(Service, NoSocketEndsTheProcess) {
  EXPECT_EXIT(
      {
        fail_system_call(SYS_socket, EMFILE);
        static_cast<void>(build_rpc_sockt(-1, kAddress));
      },
      testing::ExitedWithCode(1), "^socket: Too many open files\n$");
}

TEST(Service, NoTransportEndsTheProcessWithOne) {
  EXPECT_EXIT(
      {
        // The library uses this call to ask for the type of its socket.
        fail_system_call(SYS_getsockopt, ENOBUFS);
        run_service(-1);
      },
      testing::ExitedWithCode(1), "cannot create udp service\\.\n$");
}
