#pragma once

#include <cstdint>
#include <string>

// Datagrams as the protocol's documents show them, made without the daemon's own filters.

constexpr uint32_t kProgramNumber = 0x20131337;
constexpr uint32_t kVersionNumber = 1;

// RFC 5531 answers.
constexpr uint32_t kAcceptSuccess = 0;
constexpr uint32_t kProgramUnavailable = 1;
constexpr uint32_t kProgramMismatch = 2;
constexpr uint32_t kProcedureUnavailable = 3;
constexpr uint32_t kGarbageArguments = 4;
constexpr uint32_t kSystemError = 5;

// The setter that many tests call: a BSS and a text.
constexpr uint32_t kSetSsid = 22;

struct reply_message {
  uint32_t reply_status;   // 0 accepted, 1 denied
  uint32_t accept_status;  // of an accepted reply
  std::string payload;     // the rest
};

std::string xdr_word(uint32_t value);
std::string xdr_text(const std::string& text);
uint32_t word_at(const std::string& bytes, size_t offset);

// A complete call message with empty credentials.
std::string call_message(uint32_t procedure, const std::string& arguments, uint32_t xid = 1,
                         uint32_t program = kProgramNumber, uint32_t version = kVersionNumber);

// Sends one datagram to the service and waits for a reply to `xid`. False if none came in time
// or it is malformed.
[[nodiscard]] bool exchange(const std::string& datagram, uint32_t xid, reply_message* reply,
                            double seconds = 2.0);

void send_datagram(const std::string& datagram);

// Calls a procedure with a new xid.
[[nodiscard]] bool call(uint32_t procedure, const std::string& arguments, reply_message* reply,
                        double seconds = 2.0);

// Calls a procedure that returns a status, and returns that status. Fails the test if the call
// does not succeed.
int32_t call_for_code(uint32_t procedure, const std::string& arguments);

// The same for any result, which it returns as sent.
std::string call_for_payload(uint32_t procedure, const std::string& arguments);
