#include "wire/xdr.h"

void xdr_put_word(byte_string& bytes, uint32_t word) {
  for (int shift = 24; shift >= 0; shift -= 8)
    bytes.push_back(static_cast<uint8_t>(word >> shift));
}

void xdr_put_opaque(byte_string& bytes, std::string_view data) {
  xdr_put_word(bytes, static_cast<uint32_t>(data.size()));
  bytes.insert(bytes.end(), data.begin(), data.end());
  while (bytes.size() % 4 != 0)
    bytes.push_back(0);
}

bool xdr_get_word(unread_bytes& unread, uint32_t* word) {
  if (unread.size() < 4) return false;
  *word = 0;
  for (uint8_t byte : unread.first(4))
    *word = (*word << 8) | byte;
  unread = unread.subspan(4);
  return true;
}

bool xdr_get_words(unread_bytes& unread, std::vector<uint32_t>& words) {
  unread_bytes rest = unread;
  uint32_t count = 0;
  if (!xdr_get_word(rest, &count) || count > rest.size() / 4) return false;
  words.resize(count);
  for (uint32_t& word : words)
    if (!xdr_get_word(rest, &word)) return false;
  unread = rest;
  return true;
}

bool xdr_get_opaque(unread_bytes& unread, uint32_t limit, std::string& data) {
  unread_bytes rest = unread;
  uint32_t length = 0;
  if (!xdr_get_word(rest, &length) || length > limit || length > rest.size()) return false;
  size_t padded = (static_cast<size_t>(length) + 3) / 4 * 4;
  if (padded > rest.size()) return false;
  data.assign(rest.begin(), rest.begin() + length);
  unread = rest.subspan(padded);
  return true;
}
