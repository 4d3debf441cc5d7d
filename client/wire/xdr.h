// XDR words (RFC 4506), written to and read from plain bytes. Reads never go past the end,
// whatever a length says.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

using byte_string = std::vector<uint8_t>;

void xdr_put_word(byte_string& bytes, uint32_t word);

// Length, bytes, zeros up to a multiple of four.
void xdr_put_opaque(byte_string& bytes, std::string_view data);

// The rest to read. Every reader takes from the front. If there is less than it needs, it takes
// nothing and returns false.
using unread_bytes = std::span<const uint8_t>;

bool xdr_get_word(unread_bytes& unread, uint32_t* word);

// A count and that many words.
bool xdr_get_words(unread_bytes& unread, std::vector<uint32_t>& words);

// A length of at most `limit`, the bytes and their padding.
bool xdr_get_opaque(unread_bytes& unread, uint32_t limit, std::string& data);
