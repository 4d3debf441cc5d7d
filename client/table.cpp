#include "table.h"

namespace {

constexpr ArgumentType type_int = ArgumentType::kInt;
constexpr ArgumentType type_u_int = ArgumentType::kUnsigned;
constexpr ArgumentType type_u_short = ArgumentType::kShort;
constexpr ArgumentType type_bool_t = ArgumentType::kBool;
constexpr ArgumentType type_string_t = ArgumentType::kString;
constexpr ArgumentType type_hnc_supported_hne_table = ArgumentType::kSupportedHne;

constexpr MemberList operator+(MemberList list, Member member) {
  list.at[list.count] = member;  // a seventh member does not compile
  list.count++;
  return list;
}

// The kinds of rows that the table derives from PROCEDURE hand their columns
// through a second macro, where a comma of an expanded member would count as
// another column: hence a sum, not a list.
#define INDEX(name) +Member(type_int, #name)
#define ONLY_INDEX(name) +Member(type_int, #name)
#define FIELD(type, name) +Member(type_##type, #name)
#define ONLY(type, name) +Member(type_##type, #name)
#define PROCEDURE(number, name, stub, argument, members, payload, size, handler, back_end, \
                  summary)                                                                 \
  {number, #name, MemberList{} members, Payload::payload, size, false, summary},
#define INERT(number, name, stub, argument, members, payload, size, handler, back_end, summary) \
  {number, #name, MemberList{} members, Payload::payload, size, true, summary},

constexpr Procedure kProcedures[] = {
#include "rpc/procedures.def"
};

struct Field {
  ArgumentType type;
  const char* name;
  uint32_t characters;
};

// struct hnc_supported_hne_table of wlan_config.x
constexpr Field kSupportedHneFields[] = {
    {ArgumentType::kUnsigned, "index", 0},
    {ArgumentType::kUnsigned, "row_status", 0},
    {ArgumentType::kText, "manufacturer", 64},
    {ArgumentType::kText, "model_name", 64},
    {ArgumentType::kText, "model_number", 64},
    {ArgumentType::kText, "firmware_url", 256},
    {ArgumentType::kText, "firmware_file_name", 256},
    {ArgumentType::kText, "firmware_user_name", 256},
    {ArgumentType::kText, "firmware_password", 256},
    {ArgumentType::kUnsigned, "update_time", 0},
    {ArgumentType::kInt, "config_on_demand", 0},
};

}  // namespace

std::span<const Procedure> table_procedures() {
  return kProcedures;
}

std::vector<Argument> table_arguments(const Procedure& procedure) {
  std::vector<Argument> arguments;
  for (unsigned i = 0; i < procedure.members.count; i++) {
    const Member& member = procedure.members.at[i];
    if (member.type != ArgumentType::kSupportedHne) {
      arguments.push_back({member.name, member.type, 0});
      continue;
    }
    for (const Field& field : kSupportedHneFields)
      arguments.push_back(
          {std::string(member.name) + "." + field.name, field.type, field.characters});
  }
  return arguments;
}
