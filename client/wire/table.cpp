#include "wire/table.h"

#include <string_view>

#include "rpc/back_ends.h"
#include "rpc/operation_types.h"

static constexpr argument_type type_int = argument_type::kInt;
static constexpr argument_type type_u_int = argument_type::kUnsigned;
static constexpr argument_type type_u_short = argument_type::kShort;
static constexpr argument_type type_bool_t = argument_type::kBool;
static constexpr argument_type type_string_t = argument_type::kString;
static constexpr argument_type type_hnc_supported_hne_table = argument_type::kSupportedHne;

static constexpr member_spec member(argument_type type, const char* name) {
  return {type, name};
}

static constexpr member_list operator+(member_list list, member_spec next) {
  list.at[list.count] = next;  // a seventh member does not compile
  ++list.count;
  return list;
}

static constexpr asking effect_of(payload_kind answer, row_facts facts) {
  if (facts.effect != asking::kByAnswer) return facts.effect;
  const bool acts = answer == payload_kind::CODE || answer == payload_kind::NONE;
  return acts ? asking::kActs : asking::kReads;
}

namespace {

struct answer_spec {
  payload_kind kind;
  uint32_t size;
  bool update = false;
};

}  // namespace

static constexpr member_list kNoMembers = {};

static constexpr answer_spec answering(payload_kind kind, uint32_t size, bool update = false) {
  return {kind, size, update};
}

// Constants, because the macro CODE below hides payload_kind::CODE.
static constexpr answer_spec kCode = answering(payload_kind::CODE, 0);
static constexpr answer_spec kUpdate = answering(payload_kind::CODE, 0, true);

static constexpr procedure_row columns(uint32_t number, const char* name, topic about,
                                       member_list members, const char* summary, bool inert) {
  procedure_row row = {};
  row.number = number;
  row.name = name;
  row.about = about;
  row.members = members;
  row.summary = summary;
  row.inert = inert;
  return row;
}

static constexpr procedure_row make_row(procedure_row row, answer_spec answer, uint32_t text_size,
                                        row_facts facts = {}) {
  row.payload = answer.kind;
  row.size = answer.kind == payload_kind::TEXT ? text_size : answer.size;
  row.update = answer.update;
  row.effect = effect_of(answer.kind, facts);
  row.needs = facts.needs;
  row.answer_is_all = facts.answer_is_all;
  row.queued = facts.queued;
  return row;
}

#define NOTHING
#define SHARED(stem)
#define INDEX(name) +member(type_int, #name)
#define ONLY_INDEX(name) +member(type_int, #name)
#define FIELD(type, name) +member(type_##type, #name)
#define ONLY(type, name) +member(type_##type, #name)
#define CODE kCode
#define UPDATE kUpdate
#define INT(label) answering(payload_kind::INT, sizeof(int32_t))
#define TEXT(label) answering(payload_kind::TEXT, 0)
#define WORDS(type) answering(payload_kind::WORDS, sizeof(type))
#define IMAGE(type) answering(payload_kind::IMAGE, sizeof(type))
#define NONE answering(payload_kind::NONE, 0)
// The room for a text is what its back end has. Without a back end the text is empty, and the
// back end of an OWN row need not be declared here.
#define PROCEDURE(number, name, stem, about, members, answer, back_end, summary, ...) \
  make_row(columns(number, #name, about, kNoMembers members, summary, false), answer, \
           kTextSize<decltype(back_end)>, {__VA_ARGS__}),
#define INERT(number, name, stem, about, members, answer, back_end, summary, ...)    \
  make_row(columns(number, #name, about, kNoMembers members, summary, true), answer, \
           kTextSize<void>, {__VA_ARGS__}),
#define OWN(number, name, stem, about, members, answer, back_end, summary, ...) \
  make_row(columns(number, #name, about, kNoMembers members, summary,           \
                   std::string_view(#back_end) == "none"),                      \
           answer, kTextSize<void>, {__VA_ARGS__}),

static constexpr procedure_row kProcedures[] = {
#include "rpc/procedures.def"
};

namespace {

struct record_field {
  argument_type type;
  const char* name;
  uint32_t characters;
};

}  // namespace

// struct hnc_supported_hne_table in wlan_config.x
static constexpr record_field kSupportedHneFields[] = {
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

std::span<const procedure_row> table_procedures() {
  return kProcedures;
}

bool table_reads(const procedure_row& procedure) {
  return procedure.effect != asking::kActs;
}

std::vector<argument_spec> table_arguments(const procedure_row& procedure) {
  std::vector<argument_spec> arguments;
  for (unsigned i = 0; i < procedure.members.count; ++i) {
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
