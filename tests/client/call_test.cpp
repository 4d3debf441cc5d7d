#include "wire/call.h"

#include <gtest/gtest.h>

#include <chrono>

#include "fake_daemon.h"

namespace {

struct exchanged {
  call_answer answer;
  std::vector<byte_string> calls;
  double seconds;
};

}  // namespace

static exchanged exchange(double timeout, fake_script script) {
  fake_daemon daemon;
  fake_daemon_start(daemon, std::move(script));
  auto started = std::chrono::steady_clock::now();
  call_answer answer = call_procedure({"127.0.0.1", daemon.port, timeout}, 21, {0, 0, 0, 3});
  std::chrono::duration<double> taken = std::chrono::steady_clock::now() - started;
  fake_daemon_stop(daemon);
  return {answer, daemon.calls, taken.count()};
}

static byte_string with_other_xid(byte_string reply) {
  reply[0] ^= 0xff;
  return reply;
}

TEST(Call, IsSentOnceAndAnswered) {
  exchanged outcome = exchange(10, [](const byte_string& call) {
    return std::vector<fake_datagram>{{fake_reply(call, 0, {7, 8})}};
  });
  EXPECT_EQ(outcome.answer.status, call_status::kAnswered);
  EXPECT_EQ(outcome.answer.rpc, rpc_status::kSuccess);
  EXPECT_EQ(outcome.answer.result, (byte_string{0, 0, 0, 7, 0, 0, 0, 8}));
  EXPECT_GT(outcome.answer.seconds, 0);
  ASSERT_EQ(outcome.calls.size(), 1u);
  byte_string expected = rpc_call(0, 21, {0, 0, 0, 3});
  const byte_string& call = outcome.calls[0];
  EXPECT_TRUE(std::equal(call.begin() + 4, call.end(), expected.begin() + 4, expected.end()));
}

TEST(Call, WithoutAnAnswerIsStillSentOnce) {
  exchanged outcome =
      exchange(0.2, [](const byte_string&) { return std::vector<fake_datagram>{}; });
  EXPECT_EQ(outcome.answer.status, call_status::kTimeout);
  EXPECT_EQ(outcome.calls.size(), 1u);
  EXPECT_GE(outcome.seconds, 0.2);
}

TEST(Call, RepliesToOtherCallsAreWaitedThrough) {
  exchanged outcome = exchange(10, [](const byte_string& call) {
    byte_string reply = fake_reply(call, 0, {1});
    byte_string stale = fake_reply(call, 3, {});
    return std::vector<fake_datagram>{{with_other_xid(stale)}, {{}}, {{1, 2}}, {reply}};
  });
  EXPECT_EQ(outcome.answer.rpc, rpc_status::kSuccess);
  EXPECT_EQ(outcome.answer.result, (byte_string{0, 0, 0, 1}));
}

TEST(Call, OnlyWrongTransactionIdsIsNoAnswer) {
  exchanged outcome = exchange(0.2, [](const byte_string& call) {
    return std::vector<fake_datagram>{{with_other_xid(fake_reply(call, 0, {1}))}};
  });
  EXPECT_EQ(outcome.answer.status, call_status::kTimeout);
}

TEST(Call, AReplyFromAnotherAddressIsNotLookedAt) {
  exchanged outcome = exchange(10, [](const byte_string& call) {
    return std::vector<fake_datagram>{{fake_reply(call, 0, {666}), true},
                                      {fake_reply(call, 0, {1})}};
  });
  EXPECT_EQ(outcome.answer.result, (byte_string{0, 0, 0, 1}));
}

TEST(Call, MalformedReplyEndsTheWait) {
  exchanged outcome = exchange(10, [](const byte_string& call) {
    return std::vector<fake_datagram>{{byte_string(call.begin(), call.begin() + 7)}};
  });
  EXPECT_EQ(outcome.answer.status, call_status::kAnswered);
  EXPECT_EQ(outcome.answer.rpc, rpc_status::kMalformed);
  EXPECT_LT(outcome.seconds, 5);
}

TEST(Call, ClosedPortIsReportedAtOnce) {
  call_target target{"127.0.0.1", fake_closed_port(), 10};
  auto started = std::chrono::steady_clock::now();
  call_answer answer = call_procedure(target, 0, {});
  EXPECT_EQ(answer.status, call_status::kRefused);
  EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(5));
  EXPECT_NE(call_explain(answer, target, "ping").find("nothing listens"), std::string::npos);
}

TEST(Call, TooLongIsNotSent) {
  fake_daemon daemon;
  fake_daemon_start(daemon, [](const byte_string& call) {
    return std::vector<fake_datagram>{{fake_reply(call, 0, {0})}};
  });
  call_target target{"127.0.0.1", daemon.port, 10};
  byte_string fits(kCallBytesMax - 40), too_long(kCallBytesMax - 39);
  EXPECT_EQ(call_procedure(target, 22, fits).status, call_status::kAnswered);
  EXPECT_EQ(call_procedure(target, 22, too_long).status, call_status::kTooLong);
  fake_daemon_stop(daemon);
  EXPECT_EQ(daemon.calls.size(), 1u);
}

TEST(Call, UnknownHost) {
  call_target target{"256.1.1.1.invalid", 1, 1};
  call_answer answer = call_procedure(target, 0, {});
  EXPECT_EQ(answer.status, call_status::kUnknownHost);
  EXPECT_NE(call_explain(answer, target, "ping").find("--host"), std::string::npos);
}
