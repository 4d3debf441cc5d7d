#include "base/text.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

static bool breaks_terminal(uint32_t c) {
  if (c < 0x20 || (c >= 0x7f && c <= 0x9f)) return true;
  if (c == 0x200e || c == 0x200f || c == 0x061c) return true;  // direction marks
  return (c >= 0x2028 && c <= 0x202e) || (c >= 0x2066 && c <= 0x2069);
}

static std::string escape_bytes(std::string_view bytes) {
  std::string out;
  for (unsigned char c : bytes)
    out += text_format("\\x%02x", c);
  return out;
}

static size_t sequence_length(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xc2 && lead <= 0xdf) return 2;
  if (lead >= 0xe0 && lead <= 0xef) return 3;
  if (lead >= 0xf0 && lead <= 0xf4) return 4;
  return 0;
}

static char printable(unsigned char c) {
  return c >= 0x20 && c < 0x7f ? static_cast<char>(c) : '.';
}

static constexpr size_t kDumpRow = 16;

static std::string dump_line(size_t at, std::string_view row) {
  std::string out = text_format("%04zx ", at);
  for (size_t i = 0; i < kDumpRow; ++i) {
    if (i == kDumpRow / 2) out += ' ';
    out += i < row.size() ? text_format(" %02x", static_cast<unsigned char>(row[i])) : "   ";
  }
  out += "  ";
  for (unsigned char c : row)
    out += printable(c);
  return out + '\n';
}

size_t text_decode(std::string_view bytes, size_t at, uint32_t* code_point) {
  auto lead = static_cast<unsigned char>(bytes[at]);
  size_t length = sequence_length(lead);
  if (length == 0 || length > bytes.size() - at) return 0;
  uint32_t c = length == 1 ? lead : lead & (0x7fu >> length);
  for (size_t i = 1; i < length; ++i) {
    auto next = static_cast<unsigned char>(bytes[at + i]);
    if ((next & 0xc0) != 0x80) return 0;
    c = (c << 6) | (next & 0x3f);
  }
  bool overlong = (length == 3 && c < 0x800) || (length == 4 && c < 0x10000);
  if (overlong || c > 0x10ffff || (c >= 0xd800 && c <= 0xdfff)) return 0;
  *code_point = c;
  return length;
}

bool text_is_utf8(std::string_view bytes) {
  uint32_t c;
  for (size_t at = 0; at < bytes.size();) {
    size_t length = text_decode(bytes, at, &c);
    if (length == 0) return false;
    at += length;
  }
  return true;
}

std::string text_escape(std::string_view bytes) {
  std::string out;
  for (size_t at = 0; at < bytes.size();) {
    uint32_t c = 0;
    size_t length = text_decode(bytes, at, &c);
    size_t taken = length == 0 ? 1 : length;
    std::string_view piece = bytes.substr(at, taken);
    if (length == 0 || breaks_terminal(c))
      out += escape_bytes(piece);
    else if (c == '\\')
      out += "\\\\";
    else
      out += piece;
    at += taken;
  }
  return out;
}

std::string text_quote(std::string_view bytes) {
  const size_t limit = 40;
  std::string shown = text_escape(bytes.substr(0, limit));
  if (bytes.size() <= limit) return text_format("'%s'", shown.c_str());
  return text_format("'%s...' (%zu bytes)", shown.c_str(), bytes.size());
}

std::string text_for_json(std::string_view bytes, bool* escaped) {
  *escaped = !text_is_utf8(bytes);
  if (!*escaped) return std::string(bytes);
  std::string out;
  for (size_t at = 0; at < bytes.size();) {
    uint32_t c = 0;
    size_t length = text_decode(bytes, at, &c);
    if (length == 0)
      out += escape_bytes(bytes.substr(at, 1));
    else if (c == '\\')
      out += "\\\\";
    else
      out += bytes.substr(at, length);
    at += length == 0 ? 1 : length;
  }
  return out;
}

std::string text_hex(std::string_view bytes) {
  static const char kDigits[] = "0123456789abcdef";
  std::string out;
  for (unsigned char c : bytes) {
    out += kDigits[c >> 4];
    out += kDigits[c & 15];
  }
  return out;
}

std::string text_dump_bytes(std::string_view bytes) {
  std::string out;
  bool folded = false;
  for (size_t at = 0; at < bytes.size(); at += kDumpRow) {
    const std::string_view row = bytes.substr(at, kDumpRow);
    const bool is_last = bytes.size() - at <= kDumpRow;
    const bool repeats = at != 0 && !is_last && row == bytes.substr(at - kDumpRow, kDumpRow);
    if (!repeats) out += dump_line(at, row);
    if (repeats && !folded) out += "*\n";
    folded = repeats;
  }
  return out;
}

std::string text_wrap(std::string_view text, size_t width, size_t column, size_t indent) {
  if (width == 0) return std::string(text);
  std::string out;
  bool line_has_word = false;
  while (!text.empty()) {
    std::string_view word = text.substr(0, text.find(' '));
    text.remove_prefix(word.size() == text.size() ? text.size() : word.size() + 1);
    size_t needed = word.size() + (line_has_word ? 1 : 0);
    if (line_has_word && column + needed > width) {
      out.append("\n").append(indent, ' ');
      column = indent;
      line_has_word = false;
      needed = word.size();
    }
    if (line_has_word) out += ' ';
    out += word;
    column += needed;
    line_has_word = true;
  }
  return out;
}

std::string text_lower(std::string_view text) {
  std::string out(text);
  for (char& c : out)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return out;
}

std::string text_upper(std::string_view text) {
  std::string out(text);
  for (char& c : out)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return out;
}

std::string text_format(const char* format, ...) {
  va_list list;
  va_start(list, format);
  char* buffer = nullptr;
  int length = vasprintf(&buffer, format, list);
  va_end(list);
  if (length < 0) abort();  // out of memory
  std::string out(buffer, static_cast<size_t>(length));
  free(buffer);
  return out;
}
