#include "wire/rpc.h"

#include <gtest/gtest.h>

#include "run_support.h"

static constexpr uint32_t kXid = 0x12345678;

TEST(Rpc, CallHeader) {
  byte_string arguments = words({3});
  EXPECT_EQ(rpc_call(kXid, 21, arguments), words({kXid, 0, 2, 0x20131337, 1, 21, 0, 0, 0, 0, 3}));
}

TEST(Rpc, ReplyStates) {
  const struct {
    byte_string message;
    rpc_status status;
  } cases[] = {
      {words({kXid, 1, 0, 0, 0, 0}), rpc_status::kSuccess},
      {words({kXid, 1, 0, 0, 0, 1}), rpc_status::kProgramUnavailable},
      {words({kXid, 1, 0, 0, 0, 2, 1, 3}), rpc_status::kVersionMismatch},
      {words({kXid, 1, 0, 0, 0, 2, 1}), rpc_status::kMalformed},
      {words({kXid, 1, 0, 0, 0, 3}), rpc_status::kProcedureUnavailable},
      {words({kXid, 1, 0, 0, 0, 4}), rpc_status::kGarbageArguments},
      {words({kXid, 1, 0, 0, 0, 5}), rpc_status::kSystemError},
      {words({kXid, 1, 0, 0, 0, 6}), rpc_status::kMalformed},
      {words({kXid, 1, 1, 1, 5}), rpc_status::kDenied},
      {words({kXid, 1, 1, 0, 2, 2}), rpc_status::kDenied},
      {words({kXid, 1, 2}), rpc_status::kMalformed},
      {words({kXid, 0, 2, 1, 1, 1, 0, 0, 0, 0}), rpc_status::kMalformed},
      {words({kXid + 1, 1, 0, 0, 0, 0}), rpc_status::kOther},
      {words({kXid, 1, 0, 0, 401, 0}), rpc_status::kMalformed},
      {words({kXid, 1, 0, 0, 0xffffffff, 0}), rpc_status::kMalformed},
      {{}, rpc_status::kOther},
  };
  for (const auto& c : cases)
    EXPECT_EQ(rpc_read_reply(kXid, c.message).status, c.status);
}

TEST(Rpc, ResultFollowsTheVerifier) {
  byte_string message = words({kXid, 1, 0, 7});
  xdr_put_opaque(message, "abcde");
  for (uint32_t word : {0u, 42u})
    xdr_put_word(message, word);
  rpc_reply reply = rpc_read_reply(kXid, message);
  ASSERT_EQ(reply.status, rpc_status::kSuccess);
  EXPECT_EQ(byte_string(reply.result.begin(), reply.result.end()), words({42}));
  reply = rpc_read_reply(kXid, words({kXid, 1, 0, 0, 0, 2, 4, 9}));
  EXPECT_EQ(reply.low, 4u);
  EXPECT_EQ(reply.high, 9u);
}

TEST(Rpc, HeaderCutAtEveryByte) {
  byte_string whole = words({kXid, 1, 0, 0, 0, 0});
  for (size_t length = 0; length < whole.size(); ++length) {
    byte_string cut(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(length));
    cut.shrink_to_fit();
    rpc_status status = rpc_read_reply(kXid, cut).status;
    EXPECT_EQ(status, length < 4 ? rpc_status::kOther : rpc_status::kMalformed) << length;
  }
}
