// Messages of ONC RPC version 2 (RFC 5531) for the one program that the daemon
// serves: the call with no credentials, and its reply.
#pragma once

#include <cstdint>
#include <string>

#include "wire/xdr.h"

inline constexpr uint32_t kProgram = 0x20131337;
inline constexpr uint32_t kVersion = 1;

// The daemon reads a call into a buffer of this many bytes.
inline constexpr size_t kCallBytesMax = 8800;

enum class rpc_status {
  kSuccess,
  kOther,      // reply to another call, or too short to tell: wait on
  kMalformed,  // ours by its transaction id, but no valid reply
  kDenied,     // credentials or RPC version refused
  kProgramUnavailable,
  kVersionMismatch,
  kProcedureUnavailable,
  kGarbageArguments,
  kSystemError,
};

byte_string rpc_call(uint32_t xid, uint32_t procedure, const byte_string& arguments);

// Reads the reply to call `xid`. kSuccess: *result is what follows the header,
// a part of `message`. kVersionMismatch: low and high are what is served.
struct rpc_reply {
  rpc_status status;
  unread_bytes result;
  uint32_t low, high;
};

rpc_reply rpc_read_reply(uint32_t xid, unread_bytes message);
