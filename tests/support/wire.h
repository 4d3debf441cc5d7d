#pragma once

#include <cstdint>
#include <string>

// Datagrams as the protocol's documents draw them, made without the daemon's
// own filters.

constexpr uint32_t kProgramNumber = 0x20131337;
constexpr uint32_t kVersionNumber = 1;

// RFC 5531 answers.
constexpr uint32_t kAcceptSuccess = 0;
constexpr uint32_t kProgramUnavailable = 1;
constexpr uint32_t kProgramMismatch = 2;
constexpr uint32_t kProcedureUnavailable = 3;
constexpr uint32_t kGarbageArguments = 4;
constexpr uint32_t kSystemError = 5;

struct reply_message {
  uint32_t reply_status;   // 0 accepted, 1 denied
  uint32_t accept_status;  // of an accepted reply
  std::string payload;     // what follows it
};

// XDR of single items.
std::string xdr_word(uint32_t value);
std::string xdr_text(const std::string& text);
uint32_t word_at(const std::string& bytes, size_t offset);

// A whole call message with empty credentials.
std::string call_message(uint32_t procedure, const std::string& arguments, uint32_t xid = 1,
                         uint32_t program = kProgramNumber, uint32_t version = kVersionNumber);

// Sends one datagram to the service and waits for one that answers `xid`.
// False when none came in time or it is no reply.
[[nodiscard]] bool exchange(const std::string& datagram, uint32_t xid, reply_message* reply,
                            double seconds = 2.0);

// Sends a datagram without waiting.
void send_datagram(const std::string& datagram);

// Calls a procedure with a fresh xid.
[[nodiscard]] bool call(uint32_t procedure, const std::string& arguments, reply_message* reply,
                        double seconds = 2.0);

// Calls a procedure that answers a status and returns that status. Fails the
// test when the call is not answered successfully.
int32_t call_for_code(uint32_t procedure, const std::string& arguments);
