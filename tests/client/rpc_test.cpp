#include "rpc.h"

#include <gtest/gtest.h>

namespace {

constexpr uint32_t kXid = 0x12345678;

Bytes words(std::initializer_list<uint32_t> list) {
  Bytes bytes;
  for (uint32_t word : list)
    wire_put_word(bytes, word);
  return bytes;
}

TEST(Rpc, CallHeader) {
  Bytes arguments = words({3});
  EXPECT_EQ(rpc_call(kXid, 21, arguments), words({kXid, 0, 2, 0x20131337, 1, 21, 0, 0, 0, 0, 3}));
}

TEST(Rpc, ReplyStates) {
  const struct {
    Bytes message;
    RpcStatus status;
  } cases[] = {
      {words({kXid, 1, 0, 0, 0, 0}), RpcStatus::kSuccess},
      {words({kXid, 1, 0, 0, 0, 1}), RpcStatus::kProgramUnavailable},
      {words({kXid, 1, 0, 0, 0, 2, 1, 3}), RpcStatus::kVersionMismatch},
      {words({kXid, 1, 0, 0, 0, 2, 1}), RpcStatus::kMalformed},
      {words({kXid, 1, 0, 0, 0, 3}), RpcStatus::kProcedureUnavailable},
      {words({kXid, 1, 0, 0, 0, 4}), RpcStatus::kGarbageArguments},
      {words({kXid, 1, 0, 0, 0, 5}), RpcStatus::kSystemError},
      {words({kXid, 1, 0, 0, 0, 6}), RpcStatus::kMalformed},
      {words({kXid, 1, 1, 1, 5}), RpcStatus::kDenied},
      {words({kXid, 1, 1, 0, 2, 2}), RpcStatus::kDenied},
      {words({kXid, 1, 2}), RpcStatus::kMalformed},
      {words({kXid, 0, 2, 1, 1, 1, 0, 0, 0, 0}), RpcStatus::kMalformed},
      {words({kXid + 1, 1, 0, 0, 0, 0}), RpcStatus::kOther},
      {words({kXid, 1, 0, 0, 401, 0}), RpcStatus::kMalformed},
      {words({kXid, 1, 0, 0, 0xffffffff, 0}), RpcStatus::kMalformed},
      {{}, RpcStatus::kOther},
  };
  for (const auto& c : cases)
    EXPECT_EQ(rpc_read_reply(kXid, c.message).status, c.status);
}

TEST(Rpc, ResultFollowsTheVerifier) {
  Bytes message = words({kXid, 1, 0, 7});
  wire_put_opaque(message, "abcde");
  for (uint32_t word : {0u, 42u})
    wire_put_word(message, word);
  RpcReply reply = rpc_read_reply(kXid, message);
  ASSERT_EQ(reply.status, RpcStatus::kSuccess);
  EXPECT_EQ(Bytes(reply.result.begin(), reply.result.end()), words({42}));
  reply = rpc_read_reply(kXid, words({kXid, 1, 0, 0, 0, 2, 4, 9}));
  EXPECT_EQ(reply.low, 4u);
  EXPECT_EQ(reply.high, 9u);
}

TEST(Rpc, HeaderCutAtEveryByte) {
  Bytes whole = words({kXid, 1, 0, 0, 0, 0});
  for (size_t length = 0; length < whole.size(); length++) {
    Bytes cut(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(length));
    cut.shrink_to_fit();
    RpcStatus status = rpc_read_reply(kXid, cut).status;
    EXPECT_EQ(status, length < 4 ? RpcStatus::kOther : RpcStatus::kMalformed) << length;
  }
}

}  // namespace
