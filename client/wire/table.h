// The procedures as the client sees them: one record per row of
// rpc/procedures.def, in the order of their numbers. There is no second list;
// everything that the client knows of a procedure it derives from here.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "rpc/row_facts.h"

// How an argument is written on the command line and on the wire.
enum class argument_type {
  kInt,           // signed, 32 bits
  kUnsigned,      // unsigned, 32 bits
  kShort,         // unsigned, 16 bits in a word of 32
  kBool,          // 0 or 1 in a word of 32
  kString,        // length, bytes, padding
  kText,          // char[N]: each char takes a word of 32 bits
  kSupportedHne,  // structure hnc_supported_hne_table: its fields in order
};

// What comes back; spelled as in the table.
enum class payload_kind { CODE, INT, TEXT, WORDS, IMAGE, NONE };

struct member_spec {
  argument_type type;
  const char* name;
};

inline constexpr unsigned kMembersMax = 6;

struct member_list {
  member_spec at[kMembersMax];
  unsigned count;
};

struct procedure_row {
  uint32_t number;
  const char* name;  // as in the table, upper case
  member_list members;
  payload_kind payload;
  uint32_t size;       // bytes of what the back end fills, 0 where that is a code alone
  bool update;         // the code is a profile update's: 1 written, 2 no change, 0 failed
  bool inert;          // accepted, deliberately does nothing
  bool answer_is_all;  // inert, and who calls it wants no more than an answer
  topic about;
  asking effect;      // never kByAnswer
  const char* needs;  // procedures to call first, with blanks between
  const char* summary;
};

// One word of the command line. A member that is a structure gives one
// argument per field, named MEMBER.FIELD.
struct argument_spec {
  std::string name;
  argument_type type;   // never kSupportedHne
  uint32_t characters;  // kText: N of char[N], a NUL included; else 0
};

std::span<const procedure_row> table_procedures();

// Whether the procedure does not act.
bool table_reads(const procedure_row& procedure);

// The arguments that a caller gives, in order.
std::vector<argument_spec> table_arguments(const procedure_row& procedure);
