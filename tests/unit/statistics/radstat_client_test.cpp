#include "statistics/radstat_client.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "datagram_daemon.h"
#include "statistics/radstat_sockets.h"
#include "unit_support.h"

static const std::string kDaemon = "/var/run/test_daemon";

static std::string own_path() {
  return "/tmp/rad_ctrl_" + std::to_string(getpid());
}

static bool sleeps(pid_t thread) {
  const std::string status = read_file("/proc/self/task/" + std::to_string(thread) + "/status");
  return contains(status, "State:\tS");
}

// Receives datagrams from a full queue until `wanted` comes; false when no more come.
static bool make_room_for(int sock, char wanted) {
  pollfd readable = {sock, POLLIN, 0};
  char byte = 0;
  while (poll(&readable, 1, 4000) > 0 && recv(sock, &byte, 1, 0) == 1) {
    if (byte == wanted) return true;
  }
  return false;
}

TEST(RadCtrl, IsBoundToAPathOfTheProcessWhileItIsOpen) {
  const int before = open_descriptors();
  const int daemon = listen_on(kDaemon);
  for (int round = 0; round < 2; ++round) {
    rad_ctrl* client = rad_ctrl_open(kDaemon.c_str());
    ASSERT_NE(client, nullptr);
    struct stat status = {};
    EXPECT_EQ(stat(own_path().c_str(), &status), 0);
    EXPECT_TRUE(S_ISSOCK(status.st_mode));
    EXPECT_EQ(open_descriptors(), before + 2);
    rad_ctrl_close(client);
    EXPECT_FALSE(exists(own_path()));
  }
  rad_ctrl_close(nullptr);
  close(daemon);
  EXPECT_EQ(open_descriptors(), before);
}

TEST(RadCtrl, PathOfAnEarlierProcessIsTakenOver) {
  const int daemon = listen_on(kDaemon);
  close(listen_on(own_path()));
  ASSERT_TRUE(exists(own_path()));
  rad_ctrl* client = rad_ctrl_open(kDaemon.c_str());
  EXPECT_NE(client, nullptr);
  rad_ctrl_close(client);
  close(daemon);
}

TEST(RadCtrl, FailedBindIsReportedAndRemovesNothing) {
  const int daemon = listen_on(kDaemon);
  const int before = open_descriptors();
  ASSERT_EQ(mkdir(own_path().c_str(), 0755), 0);
  EXPECT_EQ(errors_of([] { EXPECT_EQ(rad_ctrl_open(kDaemon.c_str()), nullptr); }),
            rev_error_prefix("rad_ctrl_open") + "Could not bind - Address already in use \n");
  EXPECT_TRUE(exists(own_path()));
  EXPECT_EQ(open_descriptors(), before);
  close(daemon);
}

TEST(RadCtrl, WithoutADaemonNothingIsLeftAndNothingSaid) {
  const int before = open_descriptors();
  const std::string errors = errors_of([] {
    EXPECT_EQ(rad_ctrl_open(kDaemon.c_str()), nullptr);
    close(listen_on(kDaemon));
    EXPECT_EQ(rad_ctrl_open(kDaemon.c_str()), nullptr) << "a socket that nobody has open";
  });
  EXPECT_EQ(errors, "");
  EXPECT_FALSE(exists(own_path()));
  EXPECT_EQ(open_descriptors(), before);
}

TEST(RadCtrl, RequestAndReplyGoUnchangedAndALongReplyIsCut) {
  datagram_daemon daemon;
  start_datagram_daemon(kDaemon, {std::string("a\0b", 3), std::string(5000, 'r'), ""}, &daemon);
  rad_ctrl* client = rad_ctrl_open(kDaemon.c_str());
  ASSERT_NE(client, nullptr);
  std::string reply(12, '.');
  size_t length = 10;
  EXPECT_EQ(rad_ctrl_request(client, "q\0r", 3, reply.data(), &length), 0);
  EXPECT_EQ(length, 3u);
  EXPECT_EQ(reply, std::string("a\0b.........", 12));
  length = 10;
  EXPECT_EQ(rad_ctrl_request(client, "2", 1, reply.data(), &length), 0);
  EXPECT_EQ(length, 10u);
  EXPECT_EQ(reply, "rrrrrrrrrr..");
  EXPECT_EQ(rad_ctrl_request(client, "3", 1, reply.data(), &length), 0);
  EXPECT_EQ(length, 0u);
  rad_ctrl_close(client);
  EXPECT_EQ(end_datagram_daemon(&daemon),
            (std::vector<std::string>{std::string("q\0r", 3), "2", "3"}));
}

TEST(RadCtrl, WhatCameBeforeTheRequestIsNotItsReply) {
  datagram_daemon daemon;
  start_datagram_daemon(kDaemon, {"new"}, &daemon);
  rad_ctrl* client = rad_ctrl_open(kDaemon.c_str());
  ASSERT_NE(client, nullptr);
  EXPECT_EQ(send_to_path(daemon.sock, own_path(), "old"), 0);
  EXPECT_EQ(send_to_path(daemon.sock, own_path(), "older"), 0);
  char reply[8] = {};
  size_t length = sizeof reply;
  EXPECT_EQ(rad_ctrl_request(client, "q", 1, reply, &length), 0);
  EXPECT_STREQ(reply, "new");
  rad_ctrl_close(client);
  end_datagram_daemon(&daemon);
}

TEST(RadCtrl, DaemonThatSendsWithoutPauseHoldsNoRequest) {
  const int daemon = listen_on(kDaemon);
  rad_ctrl* client = rad_ctrl_open(kDaemon.c_str());
  ASSERT_NE(client, nullptr);
  std::atomic<bool> ending = false;
  std::thread senders[3];
  for (std::thread& sender : senders) {
    sender = std::thread([&] {
      while (!ending)
        send_to_path(daemon, own_path(), "more");
    });
  }
  char reply[8] = {};
  size_t length = sizeof reply;
  const double waited =
      seconds_of([&] { EXPECT_EQ(rad_ctrl_request(client, "q", 1, reply, &length), 0); });
  EXPECT_LT(waited, 2.0);
  EXPECT_STREQ(reply, "more");
  ending = true;
  // Wakes a sender that is waiting for room.
  rad_ctrl_close(client);
  for (std::thread& sender : senders)
    sender.join();
  close(daemon);
}

TEST(RadCtrl, SilentDaemonIsGivenUpAfterTwoSeconds) {
  const int daemon = listen_on(kDaemon);
  rad_ctrl* client = rad_ctrl_open(kDaemon.c_str());
  ASSERT_NE(client, nullptr);
  char reply[] = "same";
  size_t length = 4;
  const double waited =
      seconds_of([&] { EXPECT_EQ(rad_ctrl_request(client, "q", 1, reply, &length), -2); });
  EXPECT_GE(waited, 1.99);
  EXPECT_LT(waited, 3.0);
  EXPECT_STREQ(reply, "same");
  EXPECT_EQ(length, 4u);
  rad_ctrl_close(client);
  close(daemon);
}

TEST(RadCtrl, DaemonThatIsGoneFailsAtOnce) {
  const int daemon = listen_on(kDaemon);
  rad_ctrl* client = rad_ctrl_open(kDaemon.c_str());
  ASSERT_NE(client, nullptr);
  close(daemon);
  char reply[4];
  size_t length = sizeof reply;
  const double waited =
      seconds_of([&] { EXPECT_EQ(rad_ctrl_request(client, "q", 1, reply, &length), -1); });
  EXPECT_LT(waited, 1.5);
  rad_ctrl_close(client);
}

TEST(RadCtrl, FullQueueIsGivenTwoSecondsToMakeRoom) {
  const int stuck = start_stuck_daemon(kDaemon);
  rad_ctrl* client = rad_ctrl_open(kDaemon.c_str());
  ASSERT_NE(client, nullptr);
  char reply[4] = {};
  size_t length = sizeof reply;
  const double waited =
      seconds_of([&] { EXPECT_EQ(rad_ctrl_request(client, "q", 1, reply, &length), -1); });
  EXPECT_GE(waited, 1.99);
  EXPECT_LT(waited, 3.0);
  rad_ctrl_close(client);
  close(stuck);
}

TEST(RadCtrl, RoomThatComesInTimeLetsTheRequestThrough) {
  const int slow = start_stuck_daemon(kDaemon);
  rad_ctrl* client = rad_ctrl_open(kDaemon.c_str());
  ASSERT_NE(client, nullptr);
  const pid_t asking = gettid();
  std::atomic<bool> answered = false;
  std::thread daemon([&] {
    answered = wait_until([&] { return sleeps(asking); }) && make_room_for(slow, 'q') &&
               send_to_path(slow, own_path(), "yes") == 0;
  });
  char reply[4] = {};
  size_t length = sizeof reply;
  EXPECT_EQ(rad_ctrl_request(client, "q", 1, reply, &length), 0);
  EXPECT_STREQ(reply, "yes");
  daemon.join();
  EXPECT_TRUE(answered);
  rad_ctrl_close(client);
  close(slow);
}

TEST(RadCtrl, DescriptorsAbove1024Work) {
  const rlimit many = {4096, 4096};
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &many), 0);
  while (dup(0) < 1100) {
  }
  datagram_daemon daemon;
  start_datagram_daemon(kDaemon, {"yes"}, &daemon);
  rad_ctrl* client = rad_ctrl_open(kDaemon.c_str());
  ASSERT_NE(client, nullptr);
  char reply[4] = {};
  size_t length = sizeof reply;
  EXPECT_EQ(rad_ctrl_request(client, "q", 1, reply, &length), 0);
  EXPECT_STREQ(reply, "yes");
  rad_ctrl_close(client);
  end_datagram_daemon(&daemon);
}

namespace {

struct answer {
  int result;
  size_t length;
  std::string bytes;
};

}  // namespace

// One buffered request. Dots in the reply buffer mark bytes that were not written.
static answer ask(int radio) {
  answer said = {99, 7, std::string(200, '.')};
  said.result = rad_ctrl_request_buffered(radio, "q", 1, said.bytes.data(), &said.length);
  return said;
}

static void expect_answer(const answer& said, int result, size_t length, const std::string& bytes) {
  EXPECT_EQ(said.result, result);
  EXPECT_EQ(said.length, length);
  EXPECT_EQ(said.bytes, bytes + std::string(200 - bytes.size(), '.'));
}

TEST(RadCtrlBuffered, ZerosAreAnsweredWithTheLastGoodReplyOfTheSameRadio) {
  const std::string zeros(192, '\0');
  const std::string good(192, 'g');
  const std::string better = std::string(191, '\0') + "b";
  datagram_daemon ra0;
  datagram_daemon ra8;
  start_datagram_daemon(kRa0, {zeros, good, zeros, better, zeros, ""}, &ra0);
  start_datagram_daemon(kRa8, {zeros, zeros, std::string(192, '8'), zeros}, &ra8);
  expect_answer(ask(1), 0, 192, zeros);
  expect_answer(ask(9), 0, 192, zeros);
  expect_answer(ask(1), 0, 192, good);
  expect_answer(ask(1), 0, 192, good);
  expect_answer(ask(9), 0, 192, zeros);
  expect_answer(ask(1), 0, 192, better);
  expect_answer(ask(9), 0, 192, std::string(192, '8'));
  expect_answer(ask(1), 0, 192, better);
  expect_answer(ask(1), 0, 192, better);
  expect_answer(ask(9), 0, 192, std::string(192, '8'));
  end_datagram_daemon(&ra0);
  end_datagram_daemon(&ra8);
}

TEST(RadCtrlBuffered, ShortReplyChangesNoMoreThanItsLengthAndALongOneIsCut) {
  datagram_daemon daemon;
  start_datagram_daemon(kRa0,
                        {std::string(5000, 'l'), "short", std::string("\0\0\0", 3),
                         std::string("\0\0\0s", 4), std::string(1, '\0')},
                        &daemon);
  expect_answer(ask(1), 0, 192, std::string(192, 'l'));
  expect_answer(ask(1), 0, 5, "short");
  expect_answer(ask(1), 0, 192, "short" + std::string(187, 'l'));
  expect_answer(ask(1), 0, 4, std::string("\0\0\0s", 4));
  expect_answer(ask(1), 0, 192, std::string("\0\0\0st", 5) + std::string(187, 'l'));
  end_datagram_daemon(&daemon);
}

TEST(RadCtrlBuffered, LostReplyLeavesTheLastGoodOne) {
  const std::string good(192, 'g');
  datagram_daemon daemon;
  start_datagram_daemon(kRa0, {good, std::nullopt, std::string(192, '\0')}, &daemon);
  expect_answer(ask(1), 0, 192, good);
  expect_answer(ask(1), -2, 192, "");
  expect_answer(ask(1), 0, 192, good);
  end_datagram_daemon(&daemon);
}

TEST(RadCtrlBuffered, ReplyThatComesInTheNextRequestsTimeIsTakenForItsOwn) {
  const std::string late(192, 'l');
  const std::string third(192, '3');
  const int sock = listen_on(kRa0);
  bool sent = false;
  std::thread daemon([&] {
    char byte;
    const bool asked_twice = recv(sock, &byte, 1, 0) == 1 && recv(sock, &byte, 1, 0) == 1;
    sent = asked_twice && send_to_path(sock, own_path(), late) == 0 &&
           recv(sock, &byte, 1, 0) == 1 && send_to_path(sock, own_path(), third) == 0;
  });
  expect_answer(ask(1), -2, 192, "");
  expect_answer(ask(1), 0, 192, late);
  expect_answer(ask(1), 0, 192, third);
  daemon.join();
  EXPECT_TRUE(sent);
  close(sock);
}

TEST(RadCtrlBuffered, WithoutADaemonTheLastGoodReplyComesWithAFailure) {
  datagram_daemon daemon;
  start_datagram_daemon(kRa8, {std::string(192, 'g')}, &daemon);
  expect_answer(ask(9), 0, 192, std::string(192, 'g'));
  end_datagram_daemon(&daemon);
  const std::string errors = errors_of([] {
    expect_answer(ask(9), -1, 192, std::string(192, 'g'));
    expect_answer(ask(1), -1, 192, std::string(192, '\0'));
    rad_ctrl_forget(9);
    expect_answer(ask(9), -1, 192, std::string(192, '\xFF'));
    expect_answer(ask(1), -1, 192, std::string(192, '\0'));
  });
  EXPECT_EQ(count_of(errors, rev_error_prefix("rad_ctrl_request_buffered") + "Could not connect\n"),
            4)
      << errors;
}

TEST(RadCtrlBuffered, IndexSelectsDaemonAndKeptReply) {
  // Indexes up to 7 share the 2.4 GHz radio's kept reply, those from 8 on the other's.
  struct {
    int index;
    const char* interface;
    char kept;
  } const cases[] = {{7, "ra6", 'a'},
                     {8, "ra7", 'b'},
                     {17, "ra16", 'b'},
                     {0, "ra-1", 'a'},
                     {-5, "ra-6", 'a'},
                     {2147483647, "ra2147483646", 'b'},
                     {-2147483647 - 1, "ra-2147483649", 'a'}};
  datagram_daemon daemon;
  for (const auto& [index, letter] : {std::pair(1, 'a'), std::pair(9, 'b')}) {
    start_datagram_daemon(index == 1 ? kRa0 : kRa8, {std::string(192, letter)}, &daemon);
    ask(index);
    end_datagram_daemon(&daemon);
  }
  for (const auto& row : cases) {
    start_datagram_daemon(std::string("/var/run/radstat/") + row.interface,
                          {std::string(192, '\0')}, &daemon);
    expect_answer(ask(row.index), 0, 192, std::string(192, row.kept));
    EXPECT_EQ(end_datagram_daemon(&daemon).size(), 1u) << row.index;
  }
}
