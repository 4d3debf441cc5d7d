// One call of one procedure over UDP: sent once, answered or not.
#pragma once

#include <cstdint>
#include <string>

#include "rpc.h"

struct Target {
  std::string host;  // name or IPv4 address
  uint16_t port;
  double timeout;  // seconds, for the whole call
};

enum class CallStatus {
  kAnswered,     // see `rpc`: accepted, or refused by the service
  kUnknownHost,  // no IPv4 address
  kTooLong,      // the daemon could not read a call of this length
  kRefused,      // nothing listens on the port
  kNetwork,      // `error_number`: the system could not send or receive
  kTimeout,      // nothing came
};

struct Answer {
  CallStatus status;
  int error_number;
  RpcStatus rpc;
  uint32_t low, high;  // versions served, for kVersionMismatch
  Bytes result;
  double seconds;  // from sending to the answer
};

// Some procedures act, so the call is sent once, never again. Only a datagram
// from the address that was called is looked at, and only one that carries the
// call's transaction id ends the wait.
Answer call_procedure(const Target& target, uint32_t number, const Bytes& arguments);

// One line without a newline: what went wrong and what to do next. `what`
// names the procedure. Empty when the call was accepted and answered.
std::string call_explain(const Answer& answer, const Target& target, const std::string& what);
