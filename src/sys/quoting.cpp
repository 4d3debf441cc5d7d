#include "sys/quoting.h"

#include <cctype>
#include <cstring>

static bool is_plain(const char* text) {
  for (; *text != '\0'; ++text) {
    const bool plain = isalnum(static_cast<unsigned char>(*text)) != 0 && isascii(*text) != 0;
    if (!plain && strchr("._-:", *text) == nullptr) return false;
  }
  return true;
}

void quote_for_shell(const char* text, char* out, size_t size) {
  static constexpr char kQuote[] = "'\\''";
  const bool plain = is_plain(text);
  // Always leaves room for the closing quote and the NUL.
  const char* end = out + size - (plain ? 1 : 2);
  if (!plain) *out++ = '\'';
  for (; *text != '\0'; ++text) {
    const bool quote = *text == '\'';
    const size_t length = quote ? sizeof kQuote - 1 : 1;
    if (out + length > end) break;
    memcpy(out, quote ? kQuote : text, length);
    out += length;
  }
  if (!plain) *out++ = '\'';
  *out = '\0';
}
