// Decodes a procedure's answer. Replies are not trusted: any bytes are decoded within bounds or
// rejected.
#pragma once

#include <cstdint>
#include <string>

#include "wire/table.h"
#include "wire/xdr.h"

struct decoded_reply {
  int32_t code;      // negative: the call failed
  int32_t value;     // INT
  std::string text;  // TEXT: up to the first NUL
  std::string data;  // WORDS, IMAGE: the record's bytes, little-endian
};

// Decodes the result of `procedure`. False: `error` says what is wrong with it. A result with a
// negative code need not have a payload.
bool reply_decode(const procedure_row& procedure, unread_bytes result, decoded_reply& reply,
                  std::string& error);
