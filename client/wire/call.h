// One call of one procedure over UDP, sent only once.
#pragma once

#include <cstdint>
#include <string>

#include "wire/rpc.h"

// What else goes on during a call. `go_on` is called whenever `fd` (-1: none) is readable, and
// a few times a second. If it returns false, the call is given up.
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
  kAnswered,     // accepted, or refused by the service: see `rpc`
  kUnknownHost,  // no IPv4 address
  kTooLong,      // too long for the daemon to read
  kRefused,      // nothing listens on the port
  kNetwork,      // `error_number`: the system could not send or receive
  kTimeout,      // no answer came
  kGivenUp,      // go_on returned false
};

struct call_answer {
  call_status status;
  int error_number;
  rpc_status rpc;
  uint32_t low, high;  // versions served, for kVersionMismatch
  byte_string result;
  double seconds;  // from sending to the answer
};

// The call is sent once and never repeated, because some procedures act. Only datagrams from
// the called address are read, and only the call's transaction id ends the wait.
call_answer call_procedure(const call_target& target, uint32_t number,
                           const byte_string& arguments);

// One line without a newline: what went wrong and what to do next. `what` names the procedure.
// Empty if the call was accepted and answered.
std::string call_explain(const call_answer& answer, const call_target& target,
                         const std::string& what);

// The failure as one word, for programs; "" if there is none.
const char* call_kind(const call_answer& answer);
