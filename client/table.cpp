#include "table.h"

namespace {

constexpr argument_type type_int = argument_type::kInt;
constexpr argument_type type_u_int = argument_type::kUnsigned;
constexpr argument_type type_u_short = argument_type::kShort;
constexpr argument_type type_bool_t = argument_type::kBool;
constexpr argument_type type_string_t = argument_type::kString;
constexpr argument_type type_hnc_supported_hne_table = argument_type::kSupportedHne;

constexpr member_spec member(argument_type type, const char* name) {
  return {type, name};
}

constexpr member_list operator+(member_list list, member_spec next) {
  list.at[list.count] = next;  // a seventh member does not compile
  list.count++;
  return list;
}

// The kinds of rows that the table derives from PROCEDURE hand their columns
// through a second macro, where a comma of an expanded member would count as
// another column: hence a sum, not a list.
#define INDEX(name) +member(type_int, #name)
#define ONLY_INDEX(name) +member(type_int, #name)
#define FIELD(type, name) +member(type_##type, #name)
#define ONLY(type, name) +member(type_##type, #name)
#define PROCEDURE(number, name, stub, argument, members, payload, size, handler, back_end, \
                  summary)                                                                 \
  {number, #name, member_list{} members, payload_kind::payload, size, false, summary},
#define INERT(number, name, stub, argument, members, payload, size, handler, back_end, summary) \
  {number, #name, member_list{} members, payload_kind::payload, size, true, summary},

constexpr procedure_row kProcedures[] = {
#include "rpc/procedures.def"
};

struct record_field {
  argument_type type;
  const char* name;
  uint32_t characters;
};

// struct hnc_supported_hne_table of wlan_config.x
constexpr record_field kSupportedHneFields[] = {
    {argument_type::kUnsigned, "index", 0},
    {argument_type::kUnsigned, "row_status", 0},
    {argument_type::kText, "manufacturer", 64},
    {argument_type::kText, "model_name", 64},
    {argument_type::kText, "model_number", 64},
    {argument_type::kText, "firmware_url", 256},
    {argument_type::kText, "firmware_file_name", 256},
    {argument_type::kText, "firmware_user_name", 256},
    {argument_type::kText, "firmware_password", 256},
    {argument_type::kUnsigned, "update_time", 0},
    {argument_type::kInt, "config_on_demand", 0},
};

}  // namespace

std::span<const procedure_row> table_procedures() {
  return kProcedures;
}

bool table_reads(const procedure_row& procedure) {
  const bool answers =
      procedure.payload != payload_kind::CODE && procedure.payload != payload_kind::NONE;
  return answers || std::string_view(procedure.name).find("_GET_") != std::string_view::npos;
}

std::vector<argument_spec> table_arguments(const procedure_row& procedure) {
  std::vector<argument_spec> arguments;
  for (unsigned i = 0; i < procedure.members.count; i++) {
    const member_spec& member = procedure.members.at[i];
    if (member.type != argument_type::kSupportedHne) {
      arguments.push_back({member.name, member.type, 0});
      continue;
    }
    for (const record_field& field : kSupportedHneFields)
      arguments.push_back(
          {std::string(member.name) + "." + field.name, field.type, field.characters});
  }
  return arguments;
}
