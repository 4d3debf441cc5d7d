#include "base/text.h"
#include "reference/pages.h"
#include "show/describe.h"
#include "values/payload.h"
#include "wire/lookup.h"

static constexpr char kLuaHead[] =
    "-- The procedures as wlan_config.lua reads them. On its own this file does nothing.\n"
    "-- Generated from src/rpc/procedures.def by scripts/generate; do not edit.\n"
    "--\n"
    "-- Each procedure: name, arguments, kind of its result, layout of a record.\n"
    "-- Arguments and fields: name, type, and for fields offset, width and what stands for a "
    "value\n"
    "-- that is not known.\n"
    "return {\n";

static char argument_letter(argument_type type) {
  switch (type) {
    case argument_type::kInt:
      return 'i';
    case argument_type::kUnsigned:
    case argument_type::kShort:
      return 'u';
    case argument_type::kBool:
      return 'b';
    case argument_type::kString:
      return 's';
    case argument_type::kText:
    case argument_type::kSupportedHne:
      break;
  }
  return 'c';
}

static char field_letter(field_type type) {
  switch (type) {
    case field_type::kFlag:
      return 'f';
    case field_type::kText:
      return 't';
    case field_type::kMac:
      return 'm';
    case field_type::kRate:
      return 'r';
    case field_type::kTime:
      return 'e';
    case field_type::kBytes:
      return 'x';
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
  return payload_is_signed(type) ? 'i' : 'u';
}

static std::string arguments_lua(const procedure_row& procedure) {
  std::string out;
  for (const argument_spec& argument : table_arguments(procedure)) {
    out += text_format("{\"%s\", \"%c\"", argument.name.c_str(), argument_letter(argument.type));
    out += argument.characters == 0 ? "}, " : text_format(", %u}, ", argument.characters);
  }
  return "{" + out + "}";
}

// The values that mean "not known", as the keys of a Lua table; "" if there are none.
static std::string unknown_lua(not_known unknown, const char* start) {
  std::string out;
  for (const int value : payload_unknown(unknown))
    out += text_format("%s[\"%d\"] = true", out.empty() ? "{" : ", ", value);
  return out.empty() ? "" : start + out + "}";
}

static std::string fields_lua(std::span<const payload_field> fields, const char* indent) {
  std::string out = "{\n";
  for (const payload_field& field : fields)
    out += text_format("%s  {\"%s\", \"%c\", %u, %u%s},\n", indent, field.name,
                       field_letter(field.type), field.offset, payload_width(field),
                       unknown_lua(field.unknown, ", ").c_str());
  return out + indent + "}";
}

static std::string layout_lua(const payload_layout& layout) {
  std::string out = ",\n    fields = " + fields_lua(layout.fields, "    ");
  if (layout.rows == nullptr) return out;
  const payload_rows& rows = *layout.rows;
  out += text_format(",\n    rows = {name = \"%s\", ", rows.name);
  if (rows.count_at != kAllRows) out += text_format("count_at = %u, ", rows.count_at);
  out += text_format("first = %u, stride = %u, capacity = %u,\n      fields = ", rows.first,
                     rows.stride, rows.capacity);
  return out + fields_lua(rows.fields, "      ") + "}";
}

static const char* kind_name(payload_kind kind) {
  switch (kind) {
    case payload_kind::CODE:
      return "CODE";
    case payload_kind::INT:
      return "INT";
    case payload_kind::TEXT:
      return "TEXT";
    case payload_kind::WORDS:
      return "WORDS";
    case payload_kind::IMAGE:
      return "IMAGE";
    case payload_kind::NONE:
      break;
  }
  return "NONE";
}

static std::string procedure_lua(const procedure_row& procedure) {
  std::string out =
      text_format("  [%u] = {name = \"%s\", kind = \"%s\", size = %u, arguments = %s",
                  procedure.number, lookup_display_name(procedure).c_str(),
                  kind_name(procedure.payload), procedure.size, arguments_lua(procedure).c_str());
  out += unknown_lua(payload_value(procedure).unknown, ", unknown = ");
  const payload_layout* layout = payload_find(procedure);
  if (layout != nullptr) out += layout_lua(*layout);
  return out + "},\n";
}

std::string reference_dissector() {
  std::string out = kLuaHead;
  for (const procedure_row& procedure : table_procedures())
    out += procedure_lua(procedure);
  return out + "}\n";
}
