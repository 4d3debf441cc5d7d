#include <vector>

#include "base/text.h"
#include "reference/pages.h"
#include "show/describe.h"
#include "values/argument_meanings.h"
#include "values/payload.h"
#include "wire/lookup.h"
#include "wire/topic.h"

static constexpr char kHead[] =
    "# Procedures\n"
    "\n"
    "Generated from `src/rpc/procedures.def` by `scripts/generate`; do not edit.\n"
    "\n"
    "Program 0x20131337, version 1, UDP, 192.168.254.254 port 60001. `wificonf\n"
    "describe NAME` says the same as these pages, `wificonf schema NAME` what\n"
    "`--json` prints, `wificonf list --topic TOPIC` what a topic has. Wire types are\n"
    "in `src/rpc/wlan_config.x`.\n"
    "\n"
    "A procedure answers a bare return code, or a result record: a return code, an\n"
    "array of words and a byte string. A return code below 0 is a failure, 0 success;\n"
    "some answer 1 (written, found), 2 (no change) or 3 (try again).\n"
    "\n"
    "An integer is the first of four words. Other words count in bytes: a record of n\n"
    "bytes is announced as n words, and those beyond the record mean nothing. A text\n"
    "in the byte string ends with a NUL. Records are the daemon's memory:\n"
    "little-endian, whatever the byte order of XDR around them.\n"
    "\n"
    "Procedure 0 takes and answers nothing: `wificonf ping`.\n"
    "\n"
    "\"Does nothing\" marks a procedure that is accepted and answered, but deliberately\n"
    "reads and changes nothing.\n";

static std::string cell(const std::string& text) {
  std::string out;
  for (const char c : text)
    out += c == '|' ? std::string("\\|") : std::string(1, c);
  return out;
}

static std::vector<const procedure_row*> procedures_of(const char* topic, bool inert) {
  std::vector<const procedure_row*> found;
  for (const procedure_row& procedure : table_procedures()) {
    if (topic_of(procedure) == topic && procedure.inert == inert) found.push_back(&procedure);
  }
  return found;
}

static std::string arguments_table(const procedure_row& procedure) {
  std::string out;
  for (const argument_spec& argument : table_arguments(procedure)) {
    out += "| `" + argument.name + "` | " + describe_type(argument) + " | " +
           cell(meanings_text(procedure, argument)) + " |\n";
  }
  return out.empty() ? "" : "\n| argument | type | meaning |\n|---|---|---|\n" + out;
}

static const char* type_name(field_type type) {
  switch (type) {
    case field_type::kU8:
    case field_type::kBssPosition:
      return "u8";
    case field_type::kI8:
      return "i8";
    case field_type::kU16:
      return "u16";
    case field_type::kU32:
    case field_type::kCounter32:
      return "u32";
    case field_type::kI32:
    case field_type::kRate1024:
      return "i32";
    case field_type::kU64:
    case field_type::kCounter64:
      return "u64";
    case field_type::kI64:
    case field_type::kCounterI64:
      return "i64";
    case field_type::kFlag:
      return "u32, 0 or not";
    case field_type::kText:
      return "text";
    case field_type::kMac:
      return "MAC address";
    case field_type::kRate:
      return "u16, rate word";
    case field_type::kTime:
      return "u32, seconds since the epoch";
    case field_type::kBytes:
      return "bytes";
  }
  return "";
}

static std::string fields_table(std::span<const payload_field> fields) {
  if (fields.empty()) return "";
  std::string out = "\n| offset | bytes | field | type | meaning |\n|---|---|---|---|---|\n";
  for (const payload_field& field : fields) {
    const std::string said = payload_meaning(field.meaning, field.unknown);
    const bool both = !said.empty() && *field.unit != '\0';
    const std::string meaning = said + (both ? ", " : "") + field.unit;
    out += text_format("| %u | %u | `%s` | %s | %s |\n", field.offset, payload_width(field),
                       field.name, type_name(field.type), cell(meaning).c_str());
  }
  return out;
}

static std::string layout_tables(const payload_layout& layout) {
  std::string out = fields_table(layout.fields);
  if (layout.rows == nullptr) return out;
  const payload_rows& rows = *layout.rows;
  const std::string count = rows.count_at == kAllRows
                                ? "always all"
                                : text_format("as many as the u32 at %u says", rows.count_at);
  out += text_format("\nFrom offset %u up to %u rows `%s` of %u bytes, %s:\n", rows.first,
                     rows.capacity, rows.name, rows.stride, count.c_str());
  return out + fields_table(rows.fields);
}

static std::string entry(const procedure_row& procedure) {
  const std::string name = lookup_display_name(procedure);
  std::string out = text_format("\n### %s\n\nNumber %s. %s.\n", name.c_str(),
                                lookup_display_number(procedure.number).c_str(), procedure.summary);
  const std::string needs = describe_needs(procedure);
  if (!needs.empty()) out += text_format("\nFirst: %s.\n", needs.c_str());
  const std::string note = describe_note(procedure);
  if (!note.empty()) out += "\n" + note + "\n";
  out += arguments_table(procedure);
  std::string result = describe_result(procedure);
  if (result.back() != ':') result += '.';
  out += "\nAnswers " + result + "\n";
  const payload_layout* layout = payload_find(procedure);
  if (layout != nullptr) out += layout_tables(*layout);
  return out + "\n    " + describe_example(procedure) + "\n";
}

static std::string inert_table(const char* topic) {
  std::string out;
  for (const procedure_row* procedure : procedures_of(topic, true)) {
    std::string arguments;
    for (const argument_spec& argument : table_arguments(*procedure))
      arguments +=
          (arguments.empty() ? "`" : ", `") + argument.name + "` " + describe_type(argument);
    out +=
        text_format("| %s | `%s` | %s | %s |\n", lookup_display_number(procedure->number).c_str(),
                    lookup_display_name(*procedure).c_str(), arguments.c_str(), procedure->summary);
  }
  if (out.empty()) return "";
  return "\nDoes nothing:\n\n| number | procedure | arguments | what it is meant for |\n"
         "|---|---|---|---|\n" +
         out;
}

std::string reference_markdown() {
  std::string out = kHead;
  out += "\n";
  for (const char* topic : topics())
    out += text_format("- [%s](#%s)\n", topic, topic_word(topic).c_str());
  for (const char* topic : topics()) {
    out += text_format("\n## %s\n", topic);
    for (const procedure_row* procedure : procedures_of(topic, false))
      out += entry(*procedure);
    out += inert_table(topic);
  }
  return out;
}
