#include "call.h"

#include <gtest/gtest.h>

#include <chrono>

#include "fake_daemon.h"

namespace {

struct Outcome {
  Answer answer;
  std::vector<Bytes> calls;
  double seconds;
};

Outcome exchange(double timeout, Script script) {
  FakeDaemon daemon;
  fake_daemon_start(daemon, std::move(script));
  auto started = std::chrono::steady_clock::now();
  Answer answer = call_procedure({"127.0.0.1", daemon.port, timeout}, 21, {0, 0, 0, 3});
  std::chrono::duration<double> taken = std::chrono::steady_clock::now() - started;
  fake_daemon_stop(daemon);
  return {answer, daemon.calls, taken.count()};
}

// As a reply with another transaction id.
Bytes with_other_xid(Bytes reply) {
  reply[0] ^= 0xff;
  return reply;
}

TEST(Call, IsSentOnceAndAnswered) {
  Outcome outcome = exchange(10, [](const Bytes& call) {
    return std::vector<Datagram>{{fake_reply(call, 0, {7, 8})}};
  });
  EXPECT_EQ(outcome.answer.status, CallStatus::kAnswered);
  EXPECT_EQ(outcome.answer.rpc, RpcStatus::kSuccess);
  EXPECT_EQ(outcome.answer.result, (Bytes{0, 0, 0, 7, 0, 0, 0, 8}));
  EXPECT_GT(outcome.answer.seconds, 0);
  ASSERT_EQ(outcome.calls.size(), 1u);
  Bytes expected = rpc_call(0, 21, {0, 0, 0, 3});
  const Bytes& call = outcome.calls[0];
  EXPECT_TRUE(std::equal(call.begin() + 4, call.end(), expected.begin() + 4, expected.end()));
}

TEST(Call, WithoutAnAnswerIsStillSentOnce) {
  Outcome outcome = exchange(0.2, [](const Bytes&) { return std::vector<Datagram>{}; });
  EXPECT_EQ(outcome.answer.status, CallStatus::kTimeout);
  EXPECT_EQ(outcome.calls.size(), 1u);
  EXPECT_GE(outcome.seconds, 0.2);
}

TEST(Call, RepliesToOtherCallsAreWaitedThrough) {
  Outcome outcome = exchange(10, [](const Bytes& call) {
    Bytes reply = fake_reply(call, 0, {1});
    Bytes stale = fake_reply(call, 3, {});
    return std::vector<Datagram>{{with_other_xid(stale)}, {{}}, {{1, 2}}, {reply}};
  });
  EXPECT_EQ(outcome.answer.rpc, RpcStatus::kSuccess);
  EXPECT_EQ(outcome.answer.result, (Bytes{0, 0, 0, 1}));
}

TEST(Call, OnlyWrongTransactionIdsIsNoAnswer) {
  Outcome outcome = exchange(0.2, [](const Bytes& call) {
    return std::vector<Datagram>{{with_other_xid(fake_reply(call, 0, {1}))}};
  });
  EXPECT_EQ(outcome.answer.status, CallStatus::kTimeout);
}

TEST(Call, AReplyFromAnotherAddressIsNotLookedAt) {
  Outcome outcome = exchange(10, [](const Bytes& call) {
    return std::vector<Datagram>{{fake_reply(call, 0, {666}), true}, {fake_reply(call, 0, {1})}};
  });
  EXPECT_EQ(outcome.answer.result, (Bytes{0, 0, 0, 1}));
}

TEST(Call, MalformedReplyEndsTheWait) {
  Outcome outcome = exchange(10, [](const Bytes& call) {
    return std::vector<Datagram>{{Bytes(call.begin(), call.begin() + 7)}};
  });
  EXPECT_EQ(outcome.answer.status, CallStatus::kAnswered);
  EXPECT_EQ(outcome.answer.rpc, RpcStatus::kMalformed);
  EXPECT_LT(outcome.seconds, 5);
}

TEST(Call, ClosedPortIsReportedAtOnce) {
  Target target{"127.0.0.1", fake_closed_port(), 10};
  auto started = std::chrono::steady_clock::now();
  Answer answer = call_procedure(target, 0, {});
  EXPECT_EQ(answer.status, CallStatus::kRefused);
  EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(5));
  EXPECT_NE(call_explain(answer, target, "ping").find("nothing listens"), std::string::npos);
}

TEST(Call, TooLongIsNotSent) {
  FakeDaemon daemon;
  fake_daemon_start(
      daemon, [](const Bytes& call) { return std::vector<Datagram>{{fake_reply(call, 0, {0})}}; });
  Target target{"127.0.0.1", daemon.port, 10};
  Bytes fits(kCallBytesMax - 40), too_long(kCallBytesMax - 39);
  EXPECT_EQ(call_procedure(target, 22, fits).status, CallStatus::kAnswered);
  EXPECT_EQ(call_procedure(target, 22, too_long).status, CallStatus::kTooLong);
  fake_daemon_stop(daemon);
  EXPECT_EQ(daemon.calls.size(), 1u);
}

TEST(Call, UnknownHost) {
  Target target{"256.1.1.1.invalid", 1, 1};
  Answer answer = call_procedure(target, 0, {});
  EXPECT_EQ(answer.status, CallStatus::kUnknownHost);
  EXPECT_NE(call_explain(answer, target, "ping").find("--host"), std::string::npos);
}

}  // namespace
