// The client's view of the procedures: one record per row of rpc/procedures.def, in numeric
// order. There is no second list; everything that the client knows of a procedure derives from
// it.
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
  kShort,         // unsigned, 16 bits sent as 32
  kBool,          // 0 or 1, sent as 32 bits
  kString,        // length, bytes, padding
  kText,          // char[N], each char sent as 32 bits
  kSupportedHne,  // structure hnc_supported_hne_table: its fields in order
};

// The kind of answer, spelled as in the table.
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
  uint32_t size;       // bytes that the back end fills; 0 if it returns only a code
  bool update;         // the code is a profile update's: 1 written, 2 no change, 0 failed
  bool inert;          // accepted, but deliberately does nothing
  bool answer_is_all;  // inert, and the caller only needs an answer
  bool queued;         // answered at once, and done later by the daemon's worker
  topic about;
  asking effect;      // never kByAnswer
  const char* needs;  // procedures to call first, separated by blanks
  const char* summary;
};

// One word of the command line. A structure member gives one argument per field, named
// MEMBER.FIELD.
struct argument_spec {
  std::string name;
  argument_type type;   // never kSupportedHne
  uint32_t characters;  // kText: N of char[N], including the NUL; otherwise 0
};

std::span<const procedure_row> table_procedures();

bool table_reads(const procedure_row& procedure);

std::vector<argument_spec> table_arguments(const procedure_row& procedure);
