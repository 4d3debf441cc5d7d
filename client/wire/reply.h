// What a procedure answered, decoded. A reply is not trusted: whatever its
// bytes are, it is decoded within its bounds or refused.
#pragma once

#include <cstdint>
#include <string>

#include "wire/table.h"
#include "wire/xdr.h"

struct decoded_reply {
  int32_t code;      // negative: the call failed
  int32_t value;     // INT
  std::string text;  // TEXT: bytes up to the first NUL
  std::string data;  // WORDS, IMAGE: the bytes of the record, little-endian
};

// Decodes the result of `procedure`. False: `error` says what is wrong with
// it. A result whose code is negative need not have a payload.
bool reply_decode(const procedure_row& procedure, unread_bytes result, decoded_reply& reply,
                  std::string& error);
