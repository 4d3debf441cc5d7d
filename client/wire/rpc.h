// ONC RPC version 2 messages (RFC 5531) for the daemon's program: a call without credentials,
// and its reply.
#pragma once

#include <cstdint>
#include <string>

#include "wire/xdr.h"

inline constexpr uint32_t kProgram = 0x20131337;
inline constexpr uint32_t kProgramVersion = 1;

// Size of the daemon's buffer for a call.
inline constexpr size_t kCallBytesMax = 8800;

enum class rpc_status {
  kSuccess,
  kOther,      // a reply to another call, or too short to know: keep waiting
  kMalformed,  // has our transaction id, but is not a valid reply
  kDenied,     // credentials or RPC version refused
  kProgramUnavailable,
  kVersionMismatch,
  kProcedureUnavailable,
  kGarbageArguments,
  kSystemError,
};

byte_string rpc_call(uint32_t xid, uint32_t procedure, const byte_string& arguments);

// The reply to call `xid`. kSuccess: *result is the part of `message` after the header.
// kVersionMismatch: low and high are the served versions.
struct rpc_reply {
  rpc_status status;
  unread_bytes result;
  uint32_t low, high;
};

rpc_reply rpc_read_reply(uint32_t xid, unread_bytes message);
