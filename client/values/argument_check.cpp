#include "values/argument_check.h"

#include <algorithm>
#include <climits>

#include "base/text.h"
#include "values/argument_meanings.h"
#include "values/constraint.h"
#include "wire/lookup.h"

static bool put_integer(byte_string& bytes, std::string_view text, int64_t low, int64_t high) {
  int64_t value = 0;
  if (!constraint_parse_integer(text, &value) || value < low || value > high) return false;
  xdr_put_word(bytes, static_cast<uint32_t>(value));
  return true;
}

static bool put_switch(byte_string& bytes, std::string_view text) {
  bool on = false;
  if (!constraint_parse_switch(text, &on)) return false;
  xdr_put_word(bytes, on ? 1 : 0);
  return true;
}

// Each char takes a word on the wire, sign-extended like a signed char.
static bool put_text(byte_string& bytes, std::string_view text, uint32_t characters) {
  if (text.size() >= characters) return false;
  for (uint32_t i = 0; i < characters; ++i) {
    int c = i < text.size() ? static_cast<signed char>(text[i]) : 0;
    xdr_put_word(bytes, static_cast<uint32_t>(c));
  }
  return true;
}

static bool put(byte_string& bytes, const argument_spec& argument, const constraint& limits,
                std::string_view text) {
  // An integer argument that is a switch also takes words such as "on".
  if (limits.kind == constraint_kind::kSwitch && put_switch(bytes, text)) return true;
  switch (argument.type) {
    case argument_type::kInt:
      return put_integer(bytes, text, INT_MIN, INT_MAX);
    case argument_type::kUnsigned:
      return put_integer(bytes, text, 0, UINT_MAX);
    case argument_type::kShort:
      return put_integer(bytes, text, 0, USHRT_MAX);
    case argument_type::kBool:
      return put_switch(bytes, text);
    case argument_type::kText:
      return put_text(bytes, text, argument.characters);
    case argument_type::kString:
      xdr_put_opaque(bytes, text);
      return true;
    case argument_type::kSupportedHne:
      break;  // given field by field
  }
  return false;
}

static std::string form_of(const procedure_row& procedure, const argument_spec& argument) {
  return constraint_form(meanings_limits(procedure, argument));
}

// "12 bytes", or "a text whose byte 5 is a line end" if that is the fault.
static std::string shown_as_bytes(const constraint& limits, const std::string& given) {
  const char* what = nullptr;
  const size_t place = constraint_misfit(limits, given, &what);
  if (place == 0) return text_format("%zu byte%s", given.size(), given.size() == 1 ? "" : "s");
  return text_format("a text whose byte %zu is %s", place, what);
}

// The given value as a message shows it. A possible secret is not shown.
static std::string shown(const constraint& limits, const std::string& given) {
  switch (limits.kind) {
    case constraint_kind::kAnyText:
    case constraint_kind::kText:
    case constraint_kind::kHex:
    case constraint_kind::kDigits:
    case constraint_kind::kPassphrase:
      return shown_as_bytes(limits, given);
    case constraint_kind::kByType:
    case constraint_kind::kInteger:
    case constraint_kind::kSwitch:
    case constraint_kind::kNumber:
    case constraint_kind::kWord:
    case constraint_kind::kMac:
    case constraint_kind::kIpv4:
      break;
  }
  return text_quote(given);
}

// "NAME: argument 'bss' takes an integer, 1 to 16, not '17'"
static std::string refusal(const procedure_row& procedure, const argument_spec& argument,
                           const std::string& given) {
  return lookup_display_name(procedure) + ": argument '" + argument.name + "' takes " +
         form_of(procedure, argument) + ", not " +
         shown(meanings_limits(procedure, argument), given);
}

static bool is_option(const std::string& word) {
  return word.starts_with("--");
}

static std::string option_hint(bool is_there) {
  return is_there ? " (options go before the procedure)" : "";
}

static std::string wrong_count(const procedure_row& procedure,
                               const std::vector<argument_spec>& arguments,
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
    return error + ": '" + missing.name + "' is missing, " + form_of(procedure, missing) +
           option_hint(has_option);
  }
  const std::string& extra = has_option ? *option : given[expected];
  return error + ": unexpected " + text_quote(extra) + option_hint(has_option);
}

bool arguments_encode(const procedure_row& procedure, const std::vector<std::string>& given,
                      byte_string& bytes, std::string& error) {
  std::vector<argument_spec> arguments = table_arguments(procedure);
  if (given.size() != arguments.size()) {
    error = wrong_count(procedure, arguments, given);
    return false;
  }
  for (size_t i = 0; i < given.size(); ++i) {
    const argument_spec& argument = arguments[i];
    if (put(bytes, argument, meanings_limits(procedure, argument), given[i])) continue;
    error = refusal(procedure, argument, given[i]) + option_hint(is_option(given[i]));
    return false;
  }
  return true;
}

bool arguments_check(const procedure_row& procedure, const std::vector<std::string>& given,
                     std::string& error) {
  const std::vector<argument_spec> arguments = table_arguments(procedure);
  for (size_t i = 0; i < given.size(); ++i) {
    const constraint limits = meanings_limits(procedure, arguments[i]);
    if (constraint_holds(limits, given[i])) continue;
    const std::string nearest = constraint_nearest(limits, given[i]);
    error = refusal(procedure, arguments[i], given[i]) +
            (nearest.empty() ? "" : "; did you mean " + nearest + "?");
    return false;
  }
  return true;
}

std::string arguments_usage(const procedure_row& procedure) {
  std::string usage = "wificonf " + lookup_display_name(procedure);
  for (const argument_spec& argument : table_arguments(procedure))
    usage.append(" ").append(text_upper(argument.name));
  return usage;
}
