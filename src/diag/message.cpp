#include "diag/message.h"

#include <cstdlib>
#include <cstring>

// The compiler checks formats at the call sites; here they come in parts.
#pragma GCC diagnostic ignored "-Wformat-nonliteral"

namespace {

// Output that is not yet written. It makes each message one call even on a stream without
// a buffer, such as standard error.
struct piece {
  FILE* stream;
  size_t length;
  char bytes[kMessagePiece];
};

// A conversion in a format, such as "%.16s".
struct conversion {
  char text[16];
  size_t length;
  char kind;  // the last letter
};

// A lead byte of UTF-8: its range and that of the next byte, which excludes overlong
// forms, surrogates and the control characters from U+0080 on.
struct lead_range {
  unsigned char first, last;
  unsigned char second_first, second_last;
  size_t bytes;
};

constexpr lead_range kLeads[] = {
    {0xC2, 0xC2, 0xA0, 0xBF, 2}, {0xC3, 0xDF, 0x80, 0xBF, 2}, {0xE0, 0xE0, 0xA0, 0xBF, 3},
    {0xE1, 0xEC, 0x80, 0xBF, 3}, {0xED, 0xED, 0x80, 0x9F, 3}, {0xEE, 0xEF, 0x80, 0xBF, 3},
    {0xF0, 0xF0, 0x90, 0xBF, 4}, {0xF1, 0xF3, 0x80, 0xBF, 4}, {0xF4, 0xF4, 0x80, 0x8F, 4},
};

}  // namespace

static bool within(unsigned char byte, unsigned char first, unsigned char last) {
  return byte >= first && byte <= last;
}

static bool begins_character(const lead_range& lead, const unsigned char* bytes, size_t left) {
  if (left < lead.bytes || !within(bytes[1], lead.second_first, lead.second_last)) return false;
  for (size_t i = 2; i < lead.bytes; ++i) {
    if (!within(bytes[i], 0x80, 0xBF)) return false;
  }
  return true;
}

size_t showable_bytes(const char* text, size_t left) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(text);
  if (bytes[0] < 0x80) return within(bytes[0], ' ', '~') || bytes[0] == '\t' ? 1 : 0;
  for (const lead_range& lead : kLeads) {
    if (within(bytes[0], lead.first, lead.last))
      return begins_character(lead, bytes, left) ? lead.bytes : 0;
  }
  return 0;
}

static void flush(piece* out) {
  fwrite(out->bytes, 1, out->length, out->stream);
  out->length = 0;
}

static void put(piece* out, const char* bytes, size_t length) {
  while (length > 0) {
    if (out->length == sizeof out->bytes) flush(out);
    const size_t room = sizeof out->bytes - out->length;
    const size_t part = length < room ? length : room;
    memcpy(out->bytes + out->length, bytes, part);
    out->length += part;
    bytes += part;
    length -= part;
  }
}

static void put_text(piece* out, const char* text, int precision) {
  if (text == nullptr) text = "(null)";
  const size_t length =
      precision < 0 ? strlen(text) : strnlen(text, static_cast<size_t>(precision));
  static constexpr char kDigits[] = "0123456789abcdef";
  size_t shown = 0;
  for (size_t at = 0; at < length; at += shown) {
    shown = showable_bytes(text + at, length - at);
    if (shown > 0) {
      put(out, text + at, shown);
      continue;
    }
    const auto byte = static_cast<unsigned char>(text[at]);
    const char escape[] = {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 15]};
    put(out, escape, sizeof escape);
    shown = 1;
  }
}

template <typename T>
static void put_as(piece* out, const char* text, va_list* values) {
  char digits[64];
  const int length = snprintf(digits, sizeof digits, text, va_arg(*values, T));
  if (length <= 0) return;
  const size_t whole = static_cast<size_t>(length);
  put(out, digits, whole < sizeof digits ? whole : sizeof digits - 1);
}

static void put_number(piece* out, const conversion& how, va_list* values) {
  if (how.kind == 'p') return put_as<void*>(out, how.text, values);
  if (strstr(how.text, "ll") != nullptr) return put_as<long long>(out, how.text, values);
  if (strchr(how.text, 'l') != nullptr) return put_as<long>(out, how.text, values);
  if (strchr(how.text, 'z') != nullptr) return put_as<size_t>(out, how.text, values);
  put_as<int>(out, how.text, values);
}

static bool parse_conversion(const char* format, conversion* how) {
  how->length = 1 + strspn(format + 1, "-+ #0123456789.*hlz") + 1;
  if (how->length >= sizeof how->text) return false;
  how->kind = format[how->length - 1];
  if (how->kind == '\0' || strchr("diuxXps", how->kind) == nullptr) return false;
  memcpy(how->text, format, how->length);
  how->text[how->length] = '\0';
  return true;
}

static int precision_of(const conversion& how, va_list* values) {
  const char* dot = strchr(how.text, '.');
  if (dot == nullptr) return -1;
  return dot[1] == '*' ? va_arg(*values, int) : atoi(dot + 1);
}

// Writes what starts at the "%" and returns its length in the format.
static size_t put_conversion(piece* out, const char* format, va_list* values) {
  conversion how;
  if (format[1] == '%' || !parse_conversion(format, &how)) {
    put(out, format, 1);
    return format[1] == '%' ? 2 : 1;
  }
  if (how.kind == 's') {
    const int precision = precision_of(how, values);
    put_text(out, va_arg(*values, const char*), precision);
  } else {
    put_number(out, how, values);
  }
  return how.length;
}

void write_message(FILE* stream, const char* format, va_list values) {
  piece out;
  out.stream = stream;
  out.length = 0;
  va_list walk;
  va_copy(walk, values);
  while (*format != '\0') {
    const size_t plain = strcspn(format, "%");
    put(&out, format, plain);
    format += plain;
    if (*format == '%') format += put_conversion(&out, format, &walk);
  }
  va_end(walk);
  flush(&out);
}

void print_message(FILE* stream, const char* format, ...) {
  va_list values;
  va_start(values, format);
  write_message(stream, format, values);
  va_end(values);
}
