#include "wire/rpc.h"

static constexpr uint32_t kCall = 0, kReply = 1, kRpcVersion = 2;
static constexpr uint32_t kAccepted = 0, kDeniedReply = 1;
static constexpr uint32_t kAuthBytesMax = 400;

static rpc_reply with_status(rpc_status status) {
  return {status, {}, 0, 0};
}

static rpc_reply version_mismatch(unread_bytes unread) {
  rpc_reply reply = with_status(rpc_status::kVersionMismatch);
  if (!xdr_get_word(unread, &reply.low) || !xdr_get_word(unread, &reply.high))
    return with_status(rpc_status::kMalformed);
  return reply;
}

static rpc_reply accepted(unread_bytes unread) {
  uint32_t flavor = 0, state = 0;
  std::string verifier;
  if (!xdr_get_word(unread, &flavor) || !xdr_get_opaque(unread, kAuthBytesMax, verifier) ||
      !xdr_get_word(unread, &state))
    return with_status(rpc_status::kMalformed);
  switch (state) {
    case 0:
      return {rpc_status::kSuccess, unread, 0, 0};
    case 1:
      return with_status(rpc_status::kProgramUnavailable);
    case 2:
      return version_mismatch(unread);
    case 3:
      return with_status(rpc_status::kProcedureUnavailable);
    case 4:
      return with_status(rpc_status::kGarbageArguments);
    case 5:
      return with_status(rpc_status::kSystemError);
    default:
      return with_status(rpc_status::kMalformed);
  }
}

byte_string rpc_call(uint32_t xid, uint32_t procedure, const byte_string& arguments) {
  byte_string message;
  const uint32_t no_credentials = 0, no_verifier = 0, empty = 0;
  for (uint32_t word : {xid, kCall, kRpcVersion, kProgram, kProgramVersion, procedure,
                        no_credentials, empty, no_verifier, empty})
    xdr_put_word(message, word);
  message.insert(message.end(), arguments.begin(), arguments.end());
  return message;
}

rpc_reply rpc_read_reply(uint32_t xid, unread_bytes message) {
  uint32_t id = 0, direction = 0, state = 0;
  if (!xdr_get_word(message, &id) || id != xid) return with_status(rpc_status::kOther);
  if (!xdr_get_word(message, &direction) || direction != kReply || !xdr_get_word(message, &state))
    return with_status(rpc_status::kMalformed);
  if (state == kAccepted) return accepted(message);
  return with_status(state == kDeniedReply ? rpc_status::kDenied : rpc_status::kMalformed);
}
