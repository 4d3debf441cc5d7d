// One call of one procedure over UDP: sent once, answered or not.
#pragma once

#include <cstdint>
#include <string>

#include "wire/rpc.h"

// What else goes on while a call has no answer: `go_on` is called whenever `fd` (-1: none)
// is readable, and a few times a second; when it returns false the call is given up.
struct call_idle {
  int fd;
  bool (*go_on)(void* context);
  void* context;
};

struct call_target {
  std::string host;  // name or IPv4 address
  uint16_t port;
  double timeout;  // seconds, for the whole call
  const call_idle* idle = nullptr;
};

enum class call_status {
  kAnswered,     // see `rpc`: accepted, or refused by the service
  kUnknownHost,  // no IPv4 address
  kTooLong,      // the daemon could not read a call of this length
  kRefused,      // nothing listens on the port
  kNetwork,      // `error_number`: the system could not send or receive
  kTimeout,      // nothing came
  kGivenUp,      // its call_idle gave it up
};

struct call_answer {
  call_status status;
  int error_number;
  rpc_status rpc;
  uint32_t low, high;  // versions served, for kVersionMismatch
  byte_string result;
  double seconds;  // from sending to the answer
};

// Some procedures act, so the call is sent once, never again. Only a datagram
// from the address that was called is looked at, and only one that carries the
// call's transaction id ends the wait.
call_answer call_procedure(const call_target& target, uint32_t number,
                           const byte_string& arguments);

// One line without a newline: what went wrong and what to do next. `what`
// names the procedure. Empty when the call was accepted and answered.
std::string call_explain(const call_answer& answer, const call_target& target,
                         const std::string& what);

// What went wrong as one word, for programs; "" when nothing did.
const char* call_kind(const call_answer& answer);
