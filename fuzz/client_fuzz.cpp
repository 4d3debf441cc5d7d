#include <algorithm>
#include <bit>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "base/text.h"
#include "commands/options.h"
#include "show/json.h"
#include "show/record.h"
#include "show/schema.h"
#include "support/check.h"
#include "support/input.h"
#include "support/schema_check.h"
#include "values/argument_check.h"
#include "values/payload.h"
#include "values/redact.h"
#include "wire/lookup.h"
#include "wire/reply.h"
#include "wire/rpc.h"
#include "wire/search.h"

// What wificonf does with bytes that it does not trust: replies, their payloads, words
// of the command line, texts. The input is a byte for what to take them as, two for the
// procedure, then the bytes. Text that comes out is UTF-8 without control bytes; JSON is
// ASCII, parses and matches its schema.

static const procedure_row& procedure_of(uint16_t number) {
  const std::span<const procedure_row> all = table_procedures();
  return all[number % all.size()];
}

// Characters that a terminal acts on: controls, and those that change the direction of
// writing.
static bool acts(uint32_t character) {
  static constexpr uint32_t kRanges[][2] = {{0x00, 0x1F},     {0x7F, 0x9F},     {0x061C, 0x061C},
                                            {0x200E, 0x200F}, {0x2028, 0x202E}, {0x2066, 0x2069}};
  return std::any_of(std::begin(kRanges), std::end(kRanges), [=](const uint32_t(&range)[2]) {
    return character >= range[0] && character <= range[1];
  });
}

static std::string encoded(uint32_t character) {
  if (character < 0x80) return {static_cast<char>(character)};
  std::string behind;
  uint32_t first = 0x3F;  // what the first byte has room for
  uint32_t lead = 0x80;
  while (character > first) {
    behind.insert(behind.begin(), static_cast<char>(0x80 | (character & 0x3F)));
    character >>= 6;
    lead |= first + 1;
    first >>= 1;
  }
  return static_cast<char>(lead | character) + behind;
}

// The UTF-8 character that the text starts with; ~0 if there is none. Only the form that
// encoding gives is valid.
static uint32_t first_character(std::string_view text) {
  const auto lead = static_cast<uint8_t>(text[0]);
  const auto ones = static_cast<size_t>(std::countl_one(lead));
  uint32_t character = lead & 0xFFu >> (ones + 1);
  for (size_t i = 1; i < ones && i < text.size(); ++i)
    character = character << 6 | (static_cast<uint8_t>(text[i]) & 0x3F);
  const bool surrogate = character >= 0xD800 && character < 0xE000;
  if (ones > 4 || character > 0x10FFFF || surrogate) return ~0u;
  return text.starts_with(encoded(character)) ? character : ~0u;
}

// Text for a terminal, of any number of lines.
static void check_text(std::string_view text) {
  while (!text.empty()) {
    const uint32_t character = first_character(text);
    CHECK(character != ~0u && (character == '\n' || !acts(character)));
    text.remove_prefix(encoded(character).size());
  }
}

static void check_line(std::string_view text) {
  check_text(text);
  CHECK(text.find('\n') == text.npos);
}

static nlohmann::json checked_json(const std::string& line) {
  CHECK(line.ends_with('\n'));
  for (const char c : std::string_view(line).substr(0, line.size() - 1))
    CHECK(c >= 0x20 && c < 0x7F);
  nlohmann::json value = nlohmann::json::parse(line, nullptr, false);
  CHECK(!value.is_discarded());
  return value;
}

static const nlohmann::json& schema_for(const procedure_row& procedure) {
  static std::map<uint32_t, nlohmann::json> known;
  nlohmann::json& schema = known[procedure.number];
  if (schema.is_null()) schema = nlohmann::json::parse(schema_of(procedure));
  return schema;
}

// The record is its own predecessor, so nothing has grown.
static void show(const procedure_row& procedure, const decoded_reply& reply, bool as_lines) {
  const payload_layout* layout = payload_find(procedure);
  if (layout == nullptr || reply.data.empty()) return;
  const earlier_record earlier = {reply.data, 1.5};
  if (as_lines) {
    check_text(show_lines(*layout, reply.data, "1 ", {0, 9, &earlier}));
  } else {
    check_text(show_record(*layout, reply.data, {reply.data[0] & 0x7Fu, 1, &earlier}));
  }
}

static void check_json(const procedure_row& procedure, const decoded_reply& reply) {
  const nlohmann::json value = checked_json(json_reply(procedure, reply));
  const std::string objection = schema_objection(schema_for(procedure), value);
  if (!objection.empty()) broken("%s: %s", procedure.name, objection.c_str());
}

static void check_redacted(const procedure_row& procedure, const decoded_reply& reply) {
  const nlohmann::ordered_json answer = json_result(procedure, reply);
  nlohmann::ordered_json redacted = answer;
  redaction state;
  redact(procedure, redacted, state);
  CHECK(redacted["return_code"] == reply.code);
  if (procedure.payload != payload_kind::TEXT || reply.code < 0) return;
  // A text stays only if it is empty or declared free of secrets.
  const content holds = payload_value(procedure).holds;
  CHECK(redacted.contains("value") == (holds != content::kUnsaid));
  const bool same = redacted.value("value", "") == answer["value"];
  CHECK(same == (holds == content::kFree || answer["value"] == "") || holds == content::kAddress ||
        answer["value"] == "(redacted)" || answer["value"] == "name-1");
}

// Large records take time, so each run looks at them in one way only.
static void check_reply(const procedure_row& procedure, const decoded_reply& reply, uint8_t way) {
  if (way % 4 == 0) show(procedure, reply, true);
  if (way % 4 == 1) show(procedure, reply, false);
  if (way % 4 == 2) check_redacted(procedure, reply);
  if (way % 4 == 3) check_json(procedure, reply);
}

static unread_bytes unread(std::string_view bytes) {
  return {reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()};
}

static void take_reply(const procedure_row& procedure, std::string_view bytes) {
  decoded_reply reply = {};
  std::string error;
  if (!reply_decode(procedure, unread(bytes), reply, error)) {
    check_line(error);
    return;
  }
  check_reply(procedure, reply, static_cast<uint8_t>(reply.code));
  static_cast<void>(checked_json(json_raw(procedure.number, bytes)));
}

// A payload as it is after decoding, where records have their full size.
static void take_payload(const procedure_row& procedure, std::string_view bytes) {
  decoded_reply reply = {};
  const uint8_t way = take_byte(&bytes);
  reply.value = static_cast<int32_t>(take_u32(&bytes));
  reply.text = bytes.substr(0, bytes.find('\0'));
  const bool record =
      procedure.payload == payload_kind::WORDS || procedure.payload == payload_kind::IMAGE;
  if (record) {
    reply.data = bytes.substr(0, procedure.size);
    reply.data.resize(procedure.payload == payload_kind::WORDS ? procedure.size / 4 * 4
                                                               : procedure.size);
  }
  check_reply(procedure, reply, way);
}

static std::vector<std::string> words_of(std::string_view bytes) {
  std::vector<std::string> words;
  while (!bytes.empty() && words.size() < 32) {
    const size_t end = std::min(bytes.find('\0'), bytes.size());
    words.emplace_back(bytes.substr(0, end));
    bytes.remove_prefix(std::min(end + 1, bytes.size()));
  }
  return words;
}

static void take_words(const procedure_row& procedure, std::string_view bytes) {
  const std::vector<std::string> words = words_of(bytes);
  byte_string encoded;
  std::string error;
  if (!arguments_encode(procedure, words, encoded, error)) {
    check_line(error);
    return;
  }
  CHECK(encoded.size() % 4 == 0 && encoded.size() >= 4 * words.size());
}

static void take_options(const procedure_row&, std::string_view bytes) {
  client_options options;
  std::string error;
  switch (options_parse(words_of(bytes), options, error)) {
    case options_outcome::kRun:
      CHECK(error.empty() && !options.words.empty() && options.port != 0);
      CHECK(options.timeout >= 0.001 && options.timeout <= 86400);
      return;
    case options_outcome::kError:
      CHECK(!error.empty());
      check_line(error);
      return;
    case options_outcome::kHelp:
    case options_outcome::kVersion:
      return;
  }
}

// What an escaped text stands for.
static std::string unescaped(std::string_view text) {
  std::string out;
  while (!text.empty()) {
    size_t length = 1;
    char byte = text[0];
    if (text.starts_with("\\\\")) {
      length = 2;
    } else if (text.starts_with("\\x")) {
      length = 4;
      byte = static_cast<char>(std::stoi(std::string(text.substr(2, 2)), nullptr, 16));
    }
    out += byte;
    text.remove_prefix(length);
  }
  return out;
}

static void take_text(const procedure_row& procedure, std::string_view bytes) {
  const std::string escaped = text_escape(bytes);
  check_line(escaped);
  CHECK(unescaped(escaped) == bytes);
  check_line(text_quote(bytes));
  check_text(text_dump_bytes(bytes));
  bool marked = false;
  const std::string for_json = text_for_json(bytes, &marked);
  CHECK(text_is_utf8(for_json) && marked != text_is_utf8(bytes));
  CHECK(marked ? unescaped(for_json) == bytes : for_json == bytes);
  static_cast<void>(lookup_procedure(bytes));
  // This compares with every name, letter by letter, so the text is kept short.
  static_cast<void>(lookup_near(bytes.substr(0, 8)));
  static_cast<void>(search_matches(procedure, bytes.substr(0, 64)));
}

static void take_rpc(const procedure_row&, std::string_view bytes) {
  static constexpr uint32_t kXid = 0x01020304;
  const unread_bytes message = unread(bytes);
  const rpc_reply reply = rpc_read_reply(kXid, message);
  if (reply.status != rpc_status::kSuccess) return;
  // At least six words come before it.
  CHECK(reply.result.size() + 24 <= message.size());
  CHECK(reply.result.empty() ||
        reply.result.data() + reply.result.size() == message.data() + message.size());
}

using taker = void (*)(const procedure_row& procedure, std::string_view bytes);
static constexpr taker kTakers[] = {take_reply,   take_payload, take_words,
                                    take_options, take_text,    take_rpc};

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const taker take = kTakers[take_byte(&bytes) % std::size(kTakers)];
  const procedure_row& procedure = procedure_of(take_u16(&bytes));
  take(procedure, bytes);
  return 0;
}
