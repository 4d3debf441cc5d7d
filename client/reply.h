// What a procedure answered, decoded. A reply is not trusted: whatever its
// bytes are, it is decoded within its bounds or refused.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "table.h"
#include "wire.h"

struct decoded_reply {
  int32_t code;                 // negative: the call failed
  int32_t value;                // INT
  std::string text;             // TEXT: bytes up to the first NUL
  std::vector<uint32_t> words;  // WORDS: the size/4 words that have meaning
  std::string data;             // IMAGE: the bytes of the record
};

// Decodes the result of `procedure`. False: `error` says what is wrong with
// it. A result whose code is negative need not have a payload.
bool reply_decode(const procedure_row& procedure, unread_bytes result, decoded_reply& reply,
                  std::string& error);
