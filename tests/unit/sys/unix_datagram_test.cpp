#include "sys/unix_datagram.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/net.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

#include "datagram_daemon.h"
#include "unit_support.h"

TEST(UnixDatagram, SocketIsNotHandedToCommands) {
  const int sock = unix_datagram_socket();
  ASSERT_GE(sock, 0);
  EXPECT_EQ(fcntl(sock, F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
  unix_datagram_close(sock, nullptr);
  EXPECT_EQ(fcntl(sock, F_GETFD), -1);
}

TEST(UnixDatagram, BindTakesOverWhatWasLeftButNoDirectory) {
  const int sock = unix_datagram_socket();
  write_file("/tmp/own", "a file");
  EXPECT_EQ(unix_datagram_bind(sock, "/tmp/own"), 0);
  struct stat status = {};
  EXPECT_EQ(stat("/tmp/own", &status), 0);
  EXPECT_TRUE(S_ISSOCK(status.st_mode));
  unix_datagram_close(sock, "/tmp/own");
  EXPECT_FALSE(exists("/tmp/own"));
  const int other = unix_datagram_socket();
  ASSERT_EQ(mkdir("/tmp/directory", 0755), 0);
  EXPECT_EQ(unix_datagram_bind(other, "/tmp/directory"), -1);
  EXPECT_EQ(errno, EADDRINUSE);
  EXPECT_EQ(unix_datagram_bind(other, "/nowhere/own"), -1);
  EXPECT_EQ(errno, ENOENT);
  unix_datagram_close(other, nullptr);
}

TEST(UnixDatagram, BindTakesTheNameThatAnotherUserTook) {
  mkdir("/tmp/own", 0755);
  write_file("/tmp/own/inside", "");
  if (!give_to_nobody("/tmp/own")) GTEST_SKIP() << kOneUser;
  const int sock = unix_datagram_socket();
  EXPECT_EQ(
      errors_of([&] { EXPECT_EQ(unix_datagram_bind(sock, "/tmp/own"), 0); }),
      rpc_error_prefix("remove_planted") + "/tmp/own of user 65534 is moved out of the way\n");
  unix_datagram_close(sock, "/tmp/own");
}

TEST(UnixDatagram, BindThatFailsForAnotherReasonRemovesNothing) {
  write_file("/tmp/own", "a file");
  const int sock = unix_datagram_socket();
#ifdef __i386__
  fail_system_call_if(SYS_socketcall, 0, SYS_BIND, EACCES);
#endif
  fail_system_call(SYS_bind, EACCES);
  EXPECT_EQ(unix_datagram_bind(sock, "/tmp/own"), -1);
  EXPECT_EQ(errno, EACCES);
  EXPECT_EQ(read_file("/tmp/own"), "a file");
  unix_datagram_close(sock, nullptr);
}

TEST(UnixDatagram, PathOf108CharactersIsTakenWholeAndALongerOneCut) {
  const std::string path = "/tmp/" + std::string(103, 'p');
  const int peer = listen_on(path);
  for (const std::string& longer : {path, path + "q"}) {
    const int sock = unix_datagram_socket();
    EXPECT_EQ(unix_datagram_connect(sock, longer.c_str()), 0);
    EXPECT_EQ(unix_datagram_send(sock, "hello", 5, 0), 0);
    char bytes[16] = {};
    EXPECT_EQ(recv(peer, bytes, sizeof bytes, MSG_DONTWAIT), 5);
    unix_datagram_close(sock, nullptr);
  }
  close(peer);
}

TEST(UnixDatagram, ConnectedSocketHearsItsPeerOnly) {
  const int peer = listen_on("/tmp/peer");
  const int stranger = listen_on("/tmp/stranger");
  const int sock = unix_datagram_socket();
  ASSERT_EQ(unix_datagram_bind(sock, "/tmp/own"), 0);
  ASSERT_EQ(unix_datagram_connect(sock, "/tmp/peer"), 0);
  EXPECT_EQ(send_to_path(stranger, "/tmp/own", "wrong"), EPERM);
  EXPECT_EQ(send_to_path(peer, "/tmp/own", "right"), 0);
  char bytes[4] = {'.', '.', '.', '.'};
  EXPECT_EQ(unix_datagram_receive(sock, bytes, 3, 1000), 3);
  EXPECT_EQ(std::string(bytes, 4), "rig.");
  EXPECT_EQ(unix_datagram_receive(sock, bytes, 3, 0), -2);
  EXPECT_EQ(send_to_path(peer, "/tmp/own", ""), 0);
  EXPECT_EQ(unix_datagram_receive(sock, bytes, 3, 1000), 0);
  EXPECT_EQ(send_to_path(peer, "/tmp/own", "one"), 0);
  EXPECT_EQ(send_to_path(peer, "/tmp/own", "two"), 0);
  unix_datagram_discard(sock);
  EXPECT_EQ(unix_datagram_receive(sock, bytes, 3, 0), -2);
  unix_datagram_close(sock, "/tmp/own");
  close(peer);
  close(stranger);
}

TEST(UnixDatagram, AtMostSoManyAreDiscarded) {
  const int peer = listen_on("/tmp/peer");
  const int sock = unix_datagram_socket();
  ASSERT_EQ(unix_datagram_bind(sock, "/tmp/own"), 0);
  // Linux does not limit the queue of a socket that is connected to its sender.
  ASSERT_EQ(unix_datagram_connect(sock, "/tmp/peer"), 0);
  for (int i = 0; i < 100; ++i)
    ASSERT_EQ(send_to_path(peer, "/tmp/own", std::to_string(i)), 0);
  unix_datagram_discard(sock);
  char bytes[4] = {};
  EXPECT_EQ(unix_datagram_receive(sock, bytes, sizeof bytes, 0), 2);
  EXPECT_STREQ(bytes, "64");
  unix_datagram_discard(sock);
  EXPECT_EQ(unix_datagram_receive(sock, bytes, sizeof bytes, 0), -2);
  unix_datagram_close(sock, "/tmp/own");
  close(peer);
}

TEST(UnixDatagram, FullQueueFailsWhenItsTimeIsUpAndNotWhenRoomComes) {
  const int peer = start_stuck_daemon("/tmp/peer");
  const int sock = unix_datagram_socket();
  ASSERT_EQ(unix_datagram_connect(sock, "/tmp/peer"), 0);
  EXPECT_LT(seconds_of([&] { EXPECT_EQ(unix_datagram_send(sock, "m", 1, 0), -1); }), 1.0);
  EXPECT_EQ(errno, EAGAIN);
  EXPECT_GE(seconds_of([&] { EXPECT_EQ(unix_datagram_send(sock, "m", 1, 100), -1); }), 0.095);
  EXPECT_EQ(errno, EAGAIN);
  std::thread reader([&] {
    char byte;
    while (recv(peer, &byte, 1, 0) == 1 && byte != 'm') {
    }
  });
  EXPECT_EQ(unix_datagram_send(sock, "m", 1, 4000), 0);
  reader.join();
  close(peer);
  EXPECT_EQ(unix_datagram_send(sock, "m", 1, 4000), -1);
  EXPECT_EQ(errno, ECONNREFUSED);
  unix_datagram_close(sock, nullptr);
}
