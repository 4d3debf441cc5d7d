#include "show/describe.h"

#include <algorithm>

#include "base/text.h"
#include "values/argument_check.h"
#include "values/argument_meanings.h"
#include "values/notes.h"
#include "values/payload.h"
#include "wire/lookup.h"
#include "wire/search.h"
#include "wire/topic.h"

static constexpr size_t kWidth = 80;
static constexpr size_t kNameColumnMax = 36;  // longer names overflow the column
static constexpr int kTypeColumn = 10;
static constexpr size_t kSummaryMin = 24;  // a narrower column is not worth having

static std::string pad(std::string text, size_t width) {
  if (text.size() < width) text.append(width - text.size(), ' ');
  return text;
}

static std::string list_line(const procedure_row& procedure, size_t number_width, size_t name_width,
                             size_t width) {
  std::string number = lookup_display_number(procedure.number);
  std::string line = std::string(number_width - number.size(), ' ') + number + "  " +
                     pad(lookup_display_name(procedure), name_width) + "  ";
  size_t indent = number_width + name_width + 4;
  if (width != 0 && line.size() > indent) {  // a long name gets its own line
    line = line.substr(0, line.size() - 2) + "\n" + std::string(indent, ' ');
  }
  const std::string mark = procedure.inert ? " (does nothing)" : "";
  return line + text_wrap(procedure.summary + mark, width, indent, indent) + "\n";
}

static std::string section(const char* title, std::string_view text) {
  return text_format("\n%s\n  ", title) + text_wrap(text, kWidth, 2, 2) + "\n";
}

static std::string argument_lines(const procedure_row& procedure) {
  size_t name_width = 0, type_width = 0;
  std::vector<argument_spec> arguments = table_arguments(procedure);
  for (const argument_spec& argument : arguments) {
    name_width = std::max(name_width, argument.name.size());
    type_width = std::max(type_width, describe_type(argument).size());
  }
  std::string out = "\nArguments\n";
  size_t indent = name_width + type_width + 6;
  for (const argument_spec& argument : arguments) {
    out += "  " + pad(argument.name, name_width) + "  " + pad(describe_type(argument), type_width) +
           "  ";
    out += text_wrap(meanings_text(procedure, argument), kWidth, indent, indent) + "\n";
  }
  return arguments.empty() ? "\nArguments\n  none\n" : out;
}

static size_t name_width(std::span<const payload_field> fields) {
  size_t width = 0;
  for (const payload_field& field : fields)
    width = std::max(width, std::string_view(field.name).size());
  return width;
}

static std::string field_lines(std::span<const payload_field> fields, size_t margin) {
  std::string out;
  const size_t indent = margin + 6 + kTypeColumn + name_width(fields) + 2;
  for (const payload_field& field : fields) {
    const std::string place =
        text_format("%4u  %-*s", field.offset, kTypeColumn, describe_field(field).c_str());
    const std::string meaning =
        describe_meaning(payload_meaning(field.meaning, field.unknown), field.unit);
    const std::string head = std::string(margin, ' ') + place;
    out += meaning.empty()
               ? head + field.name + "\n"
               : pad(head + field.name, indent) + text_wrap(meaning, kWidth, indent, indent) + "\n";
  }
  return out;
}

// The fields of a record, a line each.
static std::string result_lines(const procedure_row& procedure) {
  const payload_layout* layout = payload_find(procedure);
  if (layout == nullptr) return "";
  std::string out = field_lines(layout->fields, 4);
  if (layout->rows == nullptr) return out;
  const payload_rows& rows = *layout->rows;
  out += text_format("    %s, up to %u of %u bytes, from byte %u on, each:\n", rows.name,
                     rows.capacity, rows.stride, rows.first);
  return out + field_lines(layout->rows->fields, 6);
}

static std::string shell_quote(std::string_view word) {
  const char* plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-.,:/";
  bool is_plain = word.find_first_not_of(plain) == std::string_view::npos;
  if (is_plain && !word.empty()) return std::string(word);
  return std::string("'").append(word).append("'");  // no example contains a quote
}

std::string describe_list(const std::vector<const procedure_row*>& procedures, size_t width) {
  size_t number_width = 0, name_width = 0;
  for (const procedure_row* procedure : procedures) {
    number_width = std::max(number_width, lookup_display_number(procedure->number).size());
    name_width = std::max(name_width, std::string_view(procedure->name).size());
  }
  name_width = std::min(name_width, kNameColumnMax);
  size_t indent = number_width + name_width + 4;
  if (width < indent + kSummaryMin) width = 0;
  std::string out;
  for (const procedure_row* procedure : procedures)
    out += list_line(*procedure, number_width, name_width, width);
  return out;
}

std::string describe_topics() {
  std::string out;
  for (const char* topic : topics())
    out +=
        text_format("%3zu  %s\n", search_procedures({"", topic}).size(), topic_word(topic).c_str());
  return out;
}

std::string describe_procedure(const procedure_row& procedure) {
  std::string out =
      lookup_display_number(procedure.number) + "  " + lookup_display_name(procedure) + "\n\n  ";
  out += text_wrap(procedure.summary, kWidth, 2, 2) + "\n";
  const std::string needs = describe_needs(procedure);
  if (!needs.empty()) out += section("First", needs);
  const std::string note = describe_note(procedure);
  if (!note.empty()) out += section("Note", note);
  out += argument_lines(procedure);
  out += section("Result", describe_result(procedure));
  out += result_lines(procedure);
  return out + "\nExample\n  " + describe_example(procedure) + "\n";
}

std::string describe_type(const argument_spec& argument) {
  switch (argument.type) {
    case argument_type::kInt:
      return "int";
    case argument_type::kUnsigned:
      return "unsigned";
    case argument_type::kShort:
      return "unsigned short";
    case argument_type::kBool:
      return "bool";
    case argument_type::kString:
      return "string";
    case argument_type::kText:
      return text_format("char[%u]", argument.characters);
    case argument_type::kSupportedHne:
      break;
  }
  return "record";
}

std::string describe_field(const payload_field& field) {
  switch (field.type) {
    case field_type::kFlag:
      return "flag";
    case field_type::kText:
      return text_format("text[%u]", field.width);
    case field_type::kBytes:
      return text_format("byte[%u]", field.width);
    case field_type::kMac:
      return "MAC";
    case field_type::kRate:
      return "rate";
    case field_type::kTime:
      return "time";
    case field_type::kU8:
    case field_type::kI8:
    case field_type::kU16:
    case field_type::kU32:
    case field_type::kI32:
    case field_type::kU64:
    case field_type::kI64:
    case field_type::kCounter32:
    case field_type::kCounter64:
    case field_type::kCounterI64:
    case field_type::kRate1024:
    case field_type::kBssPosition:
      break;
  }
  return text_format("%c%u", payload_is_signed(field.type) ? 'i' : 'u', payload_width(field) * 8);
}

std::string describe_meaning(const std::string& meaning, const char* unit) {
  if (*unit == '\0') return meaning;
  return meaning + (meaning.empty() ? "[" : " [") + unit + "]";
}

static std::string describe_value(const value_meaning& value) {
  std::string out = "a return code and an integer";
  const std::string said = payload_meaning(value.meaning, value.unknown);
  const std::string meaning = describe_meaning(said, value.unit);
  return meaning.empty() ? out : out + (said.empty() ? " " : ": ") + meaning;
}

std::string describe_result(const procedure_row& procedure) {
  switch (procedure.payload) {
    case payload_kind::CODE:
      return std::string("a return code; ") + payload_codes(procedure);
    case payload_kind::INT:
      return describe_value(payload_value(procedure));
    case payload_kind::TEXT:
      return text_format("a return code and a text of at most %u bytes", procedure.size);
    case payload_kind::WORDS:
      return text_format("a return code and %u words of 32 bits:", procedure.size / 4);
    case payload_kind::IMAGE:
      return text_format("a return code and a record of %u bytes, little-endian:", procedure.size);
    case payload_kind::NONE:
      return "a return code; nothing else is filled in";
  }
  return "";
}

std::string describe_example(const procedure_row& procedure) {
  std::string line = "wificonf " + lookup_display_name(procedure);
  for (const argument_spec& argument : table_arguments(procedure)) {
    const meaning_entry* meaning = meanings_find(procedure, argument.name);
    line.append(" ").append(shell_quote(meaning == nullptr ? "" : meaning->example));
  }
  return line;
}

std::string describe_needs(const procedure_row& procedure) {
  std::string out;
  for (const std::string& name : notes_needs(procedure))
    out += (out.empty() ? "" : ", ") + name;
  return out;
}

std::string describe_note(const procedure_row& procedure) {
  if (!procedure.inert) return notes_text(procedure);
  return procedure.payload == payload_kind::CODE
             ? "Accepted, but deliberately does nothing: nothing is changed, the answer is "
               "always the same."
             : "Accepted, but deliberately does nothing: nothing is read or changed, the answer "
               "is always the same and is no value of the gateway.";
}
