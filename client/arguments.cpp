#include "arguments.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>

#include "lookup.h"
#include "text.h"

namespace {

// Decimal or, after 0x, hexadecimal; digits alone, no blanks. An octal form
// does not exist: 010 is ten.
bool parse_integer(std::string_view text, long long low, long long high, long long* value) {
  bool negative = text.starts_with('-');
  std::string_view digits = text.substr(negative ? 1 : 0);
  uint32_t magnitude = 0;
  if (!lookup_parse_number(digits, &magnitude)) return false;
  *value = negative ? -static_cast<long long>(magnitude) : magnitude;
  return *value >= low && *value <= high;
}

bool parse_bool(std::string_view text, uint32_t* value) {
  std::string word = text_lower(text);
  if (word == "1" || word == "true" || word == "on" || word == "yes") {
    *value = 1;
    return true;
  }
  *value = 0;
  return word == "0" || word == "false" || word == "off" || word == "no";
}

bool put_integer(byte_string& bytes, std::string_view text, long long low, long long high) {
  long long value = 0;
  if (!parse_integer(text, low, high, &value)) return false;
  wire_put_word(bytes, static_cast<uint32_t>(value));
  return true;
}

bool put_bool(byte_string& bytes, std::string_view text) {
  uint32_t value = 0;
  if (!parse_bool(text, &value)) return false;
  wire_put_word(bytes, value);
  return true;
}

// Each char of the field takes a word, with its sign as a signed char has it.
bool put_text(byte_string& bytes, std::string_view text, uint32_t characters) {
  if (text.size() >= characters) return false;
  for (uint32_t i = 0; i < characters; i++) {
    int c = i < text.size() ? static_cast<signed char>(text[i]) : 0;
    wire_put_word(bytes, static_cast<uint32_t>(c));
  }
  return true;
}

bool put(byte_string& bytes, const argument_spec& argument, std::string_view text) {
  switch (argument.type) {
    case argument_type::kInt:
      return put_integer(bytes, text, INT_MIN, INT_MAX);
    case argument_type::kUnsigned:
      return put_integer(bytes, text, 0, UINT_MAX);
    case argument_type::kShort:
      return put_integer(bytes, text, 0, USHRT_MAX);
    case argument_type::kBool:
      return put_bool(bytes, text);
    case argument_type::kText:
      return put_text(bytes, text, argument.characters);
    case argument_type::kString:
      wire_put_opaque(bytes, text);
      return true;
    case argument_type::kSupportedHne:
      break;  // comes as its fields
  }
  return false;
}

bool is_option(const std::string& word) {
  return word.starts_with("--");
}

std::string option_hint(bool is_there) {
  return is_there ? " (options go before the procedure)" : "";
}

std::string wrong_count(const procedure_row& procedure, const std::vector<argument_spec>& arguments,
                        const std::vector<std::string>& given) {
  std::string name = lookup_display_name(procedure);
  size_t expected = arguments.size();
  std::string takes = expected == 0
                          ? "takes no arguments"
                          : text_format("takes %zu argument%s", expected, expected == 1 ? "" : "s");
  std::string error = text_format("%s %s, %zu given", name.c_str(), takes.c_str(), given.size());
  const auto option = std::find_if(given.begin(), given.end(), is_option);
  const bool has_option = option != given.end();
  if (given.size() < expected) {
    const argument_spec& missing = arguments[given.size()];
    return error + ": '" + missing.name + "' is missing, " + arguments_form(missing) +
           option_hint(has_option);
  }
  const std::string& extra = has_option ? *option : given[expected];
  return error + ": " + text_quote(extra) + " is too many" + option_hint(has_option);
}

}  // namespace

bool arguments_encode(const procedure_row& procedure, const std::vector<std::string>& given,
                      byte_string& bytes, std::string& error) {
  std::vector<argument_spec> arguments = table_arguments(procedure);
  if (given.size() != arguments.size()) {
    error = wrong_count(procedure, arguments, given);
    return false;
  }
  for (size_t i = 0; i < given.size(); i++) {
    const argument_spec& argument = arguments[i];
    if (put(bytes, argument, given[i])) continue;
    error = lookup_display_name(procedure) + ": argument '" + argument.name + "' takes " +
            arguments_form(argument) + ", not " + text_quote(given[i]) +
            option_hint(is_option(given[i]));
    return false;
  }
  return true;
}

std::string arguments_form(const argument_spec& argument) {
  switch (argument.type) {
    case argument_type::kInt:
      return "an integer, decimal or 0x..., -2147483648 to 2147483647";
    case argument_type::kUnsigned:
      return "an integer, decimal or 0x..., 0 to 4294967295";
    case argument_type::kShort:
      return "an integer, decimal or 0x..., 0 to 65535";
    case argument_type::kBool:
      return "a switch: 0, 1, off, on, no, yes, false or true";
    case argument_type::kString:
      return "a text";
    case argument_type::kText:
      return text_format("a text of at most %u bytes", argument.characters - 1);
    case argument_type::kSupportedHne:
      break;
  }
  return "a record";
}

std::string arguments_usage(const procedure_row& procedure) {
  std::string usage = "wificonf " + lookup_display_name(procedure);
  for (const argument_spec& argument : table_arguments(procedure))
    usage.append(" ").append(text_upper(argument.name));
  return usage;
}
