#include "hnc/listener.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <set>
#include <string>
#include <thread>

#include "support/hnc_listener.h"
#include "unit_support.h"

// A reply followed by bytes that must not change.
namespace {
struct guarded_reply {
  hnc_reply reply;
  char guard[64];
};
}  // namespace

static const std::string kGuard(sizeof(guarded_reply::guard), '#');

static guarded_reply make_reply() {
  guarded_reply made;
  memset(&made, '#', sizeof made);
  return made;
}

static std::string bytes_of(const hnc_reply& reply) {
  return std::string(reinterpret_cast<const char*>(&reply), sizeof reply);
}

static hnc_request make_request(const char* name) {
  hnc_request request = {};
  strcpy(request.name, name);
  return request;
}

// Sends a get request for the key and returns the status.
static int ask(const char* name, hnc_reply* reply) {
  const hnc_request request = make_request(name);
  return sendMessage(HOST_IP, HOST_PORT, &request, reply);
}

static double seconds_of(const std::function<void()>& function) {
  const auto start = std::chrono::steady_clock::now();
  function();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

static std::string trace(const std::string& text) {
  return rev_prefix("sendMessage") + text + "\n";
}

static const std::string kEntered = trace("DEBUG >>>>>>>>>>>>>>>>>>>>>>>>> In func sendMessage. ");
static const std::string kSent =
    trace(">>>>>>>>>>>>>>>>>>>sendMessage fuunction: Sent Request TopologyEnable");

TEST(Listener, IsOnTheInternalLink) {
  EXPECT_STREQ(HOST_IP, "192.168.254.254");
  EXPECT_EQ(HOST_PORT, 4567);
}

TEST(Listener, RequestAndReplyAreCarriedByteForByte) {
  start_listener();
  std::string pattern;
  for (int i = 0; i < 2860; ++i)
    pattern += static_cast<char>(i * 7 + i / 251);
  listener_answers(pattern);
  hnc_request request;
  memcpy(&request, pattern.data() + 3, sizeof request);
  guarded_reply got = make_reply();
  EXPECT_EQ(sendMessage(HOST_IP, HOST_PORT, &request, &got.reply), 0);
  EXPECT_EQ(last_listener_request(), pattern.substr(3, 1496));
  EXPECT_EQ(bytes_of(got.reply), pattern);
  EXPECT_EQ(std::string(got.guard, sizeof got.guard), kGuard);
}

TEST(Listener, ReplyOfAnySizeIsASuccessAndWhatItLeavesOutIsZero) {
  start_listener();
  for (const size_t size : {0, 1, 20, 132, 2859, 2860, 2861, 65000}) {
    listener_answers(std::string(size, 'H'));
    guarded_reply got = make_reply();
    EXPECT_EQ(ask("Enable", &got.reply), 0) << size;
    std::string expected(std::min<size_t>(size, 2860), 'H');
    expected.resize(2860, '\0');
    EXPECT_EQ(bytes_of(got.reply), expected) << size;
    EXPECT_EQ(std::string(got.guard, sizeof got.guard), kGuard) << size;
  }
}

TEST(Listener, ExchangeIsTraced) {
  start_listener();
  listener_answers(hnc_reply_bytes("1"));
  switch_console_on();
  hnc_reply reply;
  EXPECT_EQ(
      output_of([&] { EXPECT_EQ(ask("TopologyEnable", &reply), 0); }),
      kEntered + kSent + trace(">>>>>>>>>>>>>>>>>>>sendMessage function: Received Response 1"));
}

TEST(Listener, TextsOfATraceEndWithTheirFields) {
  start_listener();
  listener_answers(std::string(2860, 'U'));
  switch_console_on();
  hnc_request request;
  memset(&request, 'N', sizeof request);
  hnc_reply reply;
  const std::string output =
      output_of([&] { EXPECT_EQ(sendMessage(HOST_IP, HOST_PORT, &request, &reply), 0); });
  EXPECT_TRUE(contains(output, "Sent Request " + std::string(128, 'N') + "\n")) << output;
  EXPECT_TRUE(contains(output, "Received Response " + std::string(131, 'U') + "\n")) << output;
}

TEST(Listener, FormatCharactersAreJustText) {
  start_listener();
  listener_answers(hnc_reply_bytes("%n%s%n"));
  switch_console_on();
  hnc_reply reply;
  const std::string output = output_of([&] { EXPECT_EQ(ask("%n%s", &reply), 0); });
  EXPECT_TRUE(contains(output, "Sent Request %n%s\n"));
  EXPECT_TRUE(contains(output, "Received Response %n%s%n\n"));
}

static void expect_no_reply_after_a_second() {
  switch_console_on();
  hnc_reply reply;
  memset(&reply, '#', sizeof reply);
  std::string output;
  const double waited = seconds_of(
      [&] { output = output_of([&] { EXPECT_EQ(ask("TopologyEnable", &reply), -1); }); });
  // Two clocks may differ by a tick of up to 10 ms, and a busy machine may wake the test
  // late, but not by half a second. WaitsForOneSecond checks the exact time.
  EXPECT_GE(waited, 0.99);
  EXPECT_LT(waited, 1.5);
  EXPECT_EQ(output, kEntered + kSent +
                        trace(">>>>>>>>>>> ERROR !!!!! in receiving data from HNC errno 11"));
  EXPECT_EQ(bytes_of(reply), std::string(2860, '\0'));
}

TEST(Listener, SilentOneIsWaitedForOneSecond) {
  start_listener();
  listener_is_silent();
  expect_no_reply_after_a_second();
}

// The network reports at once that the port is unreachable; the wait is the same.
TEST(Listener, MissingOneIsWaitedForOneSecond) {
  expect_no_reply_after_a_second();
}

TEST(Listener, LateReplyIsNotTakenForALaterOne) {
  start_listener();
  listener_is_silent();
  hnc_reply reply;
  EXPECT_EQ(ask("First", &reply), -1);
  const uint16_t first = listener_ports().back();
  // One late reply arrives before the second request is sent, another while it waits.
  listener_sends(first, hnc_reply_bytes("late"));
  listener_asks([first](const std::string&) {
    listener_sends(first, hnc_reply_bytes("later"));
    return hnc_reply_bytes("second");
  });
  EXPECT_EQ(ask("Second", &reply), 0);
  EXPECT_STREQ(reply.value, "second");
}

static std::set<int> open_sockets() {
  std::set<int> sockets;
  for (const std::string& name : names_in("/proc/self/fd")) {
    struct stat status;
    const int file = stoi(name);
    if (fstat(file, &status) == 0 && S_ISSOCK(status.st_mode)) sockets.insert(file);
  }
  return sockets;
}

TEST(Listener, EveryCallHasASocketOfItsOwnThatStaysOpenAndClosesOnExec) {
  start_listener();
  const std::set<int> before = open_sockets();
  hnc_reply reply;
  const hnc_request request = {};
  for (int i = 0; i < 20; ++i)
    EXPECT_EQ(sendMessage(HOST_IP, HOST_PORT, &request, &reply), 0);
  EXPECT_EQ(sendMessage("203.0.113.1", HOST_PORT, &request, &reply), -1);
  const std::set<int> after = open_sockets();
  EXPECT_EQ(after.size(), before.size() + 21);
  for (const int file : after)
    EXPECT_EQ(fcntl(file, F_GETFD), FD_CLOEXEC) << file;
  const auto ports = listener_ports();
  EXPECT_EQ(std::set<uint16_t>(ports.begin(), ports.end()).size(), 20u);
}

static double time_out_of(int sock, int option) {
  timeval time = {77, 0};
  socklen_t size = sizeof time;
  EXPECT_EQ(getsockopt(sock, SOL_SOCKET, option, &time, &size), 0);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

// The socket stays open, so its timeout can still be read.
TEST(Listener, WaitsForOneSecond) {
  start_listener();
  const std::set<int> before = open_sockets();
  hnc_reply reply;
  EXPECT_EQ(ask("Enable", &reply), 0);
  for (const int sock : open_sockets()) {
    if (before.contains(sock)) continue;
    EXPECT_EQ(time_out_of(sock, SO_RCVTIMEO), 1.0);
    EXPECT_EQ(time_out_of(sock, SO_SNDTIMEO), 0.0) << "waits for ever";
  }
  EXPECT_EQ(open_sockets().size(), before.size() + 1);
}

// A socket bound to the internal link's address, with a timeout of two seconds. Port 0
// means any.
static int bound_socket(uint16_t port) {
  const int sock = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  inet_aton("192.168.254.254", &address.sin_addr);
  EXPECT_EQ(bind(sock, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  const timeval patience = {2, 0};
  EXPECT_EQ(setsockopt(sock, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience), 0);
  return sock;
}

// Receives one request on one socket and answers through the other.
static void answer_one(int from, int through, const char* answer) {
  char request[2000];
  sockaddr_in client = {};
  socklen_t size = sizeof client;
  EXPECT_EQ(recvfrom(from, request, sizeof request, 0, reinterpret_cast<sockaddr*>(&client), &size),
            1496);
  sendto(through, answer, strlen(answer), 0, reinterpret_cast<const sockaddr*>(&client), size);
}

TEST(Listener, MayHaveAnotherPortAndAnswerThroughAnotherSocket) {
  start_listener();
  const int other = bound_socket(4568);
  const int third = bound_socket(0);
  const hnc_request request = make_request("Enable");
  for (const int through : {other, third}) {
    std::thread answering(answer_one, other, through, "other");
    hnc_reply reply;
    EXPECT_EQ(sendMessage(HOST_IP, 4568, &request, &reply), 0);
    EXPECT_STREQ(reply.value, "other");
    answering.join();
  }
  EXPECT_TRUE(listener_requests().empty());
}

TEST(Listener, RequestThatCannotBeSentFailsAtOnce) {
  // There is no route to this address.
  switch_console_on();
  hnc_reply reply;
  memset(&reply, '#', sizeof reply);
  const hnc_request request = make_request("Enable");
  std::string output;
  const double waited = seconds_of([&] {
    output =
        output_of([&] { EXPECT_EQ(sendMessage("203.0.113.1", HOST_PORT, &request, &reply), -1); });
  });
  EXPECT_LT(waited, 0.5);
  EXPECT_EQ(output, kEntered + trace("@@@sendMessage Failed to send request to HNC LISTNER"));
  EXPECT_EQ(bytes_of(reply), std::string(2860, '#'));
}

TEST(Listener, RequestFailsAtOnceWhenNoPortIsLeft) {
  start_listener();
  write_file("/proc/sys/net/ipv4/ip_local_port_range", "40000 40003\n");
  hnc_reply reply;
  for (int i = 0; i < 4; ++i)
    EXPECT_EQ(ask("Enable", &reply), 0);
  EXPECT_LT(seconds_of([&] { EXPECT_EQ(ask("Enable", &reply), -1); }), 0.5);
}

TEST(Listener, WithoutASocketTheProcessEndsWithItsReason) {
  switch_console_on();
  EXPECT_EXIT(
      {
        fail_system_call(SYS_socket, EMFILE);
        hnc_reply reply;
        static_cast<void>(ask("Enable", &reply));
      },
      testing::ExitedWithCode(1), "^ERROR opening socket: Too many open files\n$");
}

TEST(Listener, WithoutATimeOutNothingIsSentAndThatIsASuccess) {
  start_listener();
  fail_system_call(SYS_setsockopt, ENOPROTOOPT);
  hnc_reply reply;
  memset(&reply, '#', sizeof reply);
  const int before = open_descriptors();
  EXPECT_EQ(errors_of([&] { EXPECT_EQ(ask("Enable", &reply), 0); }),
            "Error setting SO_RCVTIMEO: Protocol not available\n");
  EXPECT_EQ(bytes_of(reply), std::string(2860, '#'));
  EXPECT_TRUE(listener_requests().empty());
  EXPECT_EQ(open_descriptors(), before + 1);
}
