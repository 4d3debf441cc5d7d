// Checks procedures.def against wlan_config.x at compile time. Each message names the
// procedure and what to write.

#include <cstddef>
#include <iterator>
#include <type_traits>

#include "rpc/row_argument.h"
#include "rpc/wlan_config_program.h"

using string_t = char*;

// ---- Every row belongs to a procedure of wlan_config.x. A name looked up in `contract`
// is found there or else in `listed`.

namespace listed {
#define PROCEDURE(number, name, ...) constexpr bool declares_##name = false;
#include "rpc/procedures.def"
}  // namespace listed

namespace contract {
using namespace listed;
#define PROGRAM_PROCEDURE(name) constexpr bool declares_##name = true;
#include "rpc/program_procedures.h"
#undef PROGRAM_PROCEDURE
}  // namespace contract

#define PROCEDURE(number, name, ...)             \
  static_assert(contract::declares_##name, #name \
                " has a row and is not in wlan_config.x: declare it there, with number " #number);
#include "rpc/procedures.def"

// ---- Number, argument and answer, taken from the client stub that rpcgen declares.

// Declares every structure, so that a missing one is merely a different argument and not
// a separate error.
#define PROCEDURE(number, name, stem, ...) struct stem##_1_argument;
#include "rpc/procedures.def"

template <typename Stub>
struct declared;
template <typename Argument, typename Result>
struct declared<clnt_stat(Argument*, Result*, CLIENT*)> {
  using argument = Argument;
  using result = Result;
};

#define CODE wlan_config_return_code_e
#define UPDATE wlan_config_return_code_e
#define INT(label) wlan_config_result_data_t
#define TEXT(label) wlan_config_result_data_t
#define WORDS(type) wlan_config_result_data_t
#define IMAGE(type) wlan_config_result_data_t
#define NONE wlan_config_result_data_t
#define PROCEDURE(number, name, stem, topic, members, answer, ...)                             \
  static_assert(name == number, #name ": write the number that wlan_config.x has");            \
  static_assert(                                                                               \
      std::is_same_v<declared<decltype(stem##_1)>::argument, ARGUMENT(stem, FIRST_##members)>, \
      #name                                                                                    \
      ": wlan_config.x declares another argument; ONLY_INDEX and ONLY are "                    \
      "for one that is no structure, SHARED for another one's structure");                     \
  static_assert(std::is_same_v<declared<decltype(stem##_1)>::result, answer>, #name            \
                ": wlan_config.x declares another result; CODE and UPDATE are for a "          \
                "wlan_config_return_code_e, all others for a record");
#include "rpc/procedures.def"

// ---- The members: a record of them as listed in the row ...

#define NOTHING
#define SHARED(stem)
#define INDEX(name) int name;
#define FIELD(type, name) type name;
#define ONLY_INDEX(name)
#define ONLY(type, name)
#define PROCEDURE(number, name, stem, topic, members, ...) \
  struct listed_##stem {                                   \
    members                                                \
  };
#include "rpc/procedures.def"

// ... has the layout of the argument, member by member. In templates, so that a missing
// member is not a separate error.

template <typename Listed, typename In>
constexpr bool kAllListed = true;
template <typename Listed, typename In>
requires std::is_class_v<In> && requires {
  sizeof(In);
}
constexpr bool kAllListed<Listed, In> = sizeof(Listed) == sizeof(In);

#define SAME(type, member)                                      \
  &&requires {                                                  \
    requires(std::is_same_v<decltype(In::member), type> &&      \
             offsetof(Listed, member) == offsetof(In, member)); \
  }
#define NOTHING
#define SHARED(stem)
#define INDEX(name) SAME(int, name)
#define FIELD(type, name) SAME(type, name)
#define ONLY_INDEX(name)
#define ONLY(type, name)
#define PROCEDURE(number, name, stem, topic, members, ...)                                     \
  template <typename Listed, typename In>                                                      \
  constexpr bool members_of_##stem = kAllListed<Listed, In> members;                           \
  static_assert(members_of_##stem<listed_##stem, ARGUMENT(stem, FIRST_##members)>, #name       \
                ": the row has " #members                                                      \
                "; write the members that its argument has in "                                \
                "wlan_config.x, in their order: INDEX for a leading int, FIELD with its type " \
                "for all others");
#include "rpc/procedures.def"

// ---- The order, and that every procedure has a row.

constexpr unsigned kNumbers[] = {
#define PROCEDURE(number, ...) number##u,
#include "rpc/procedures.def"
};

constexpr bool in_order(unsigned number) {
  unsigned before = 0;
  for (const unsigned other : kNumbers) {
    if (other == number) return before < number;
    before = other;
  }
  return false;
}

constexpr unsigned times(unsigned number) {
  unsigned count = 0;
  for (const unsigned other : kNumbers)
    count += other == number;
  return count;
}

#define PROCEDURE(number, name, ...)                                                  \
  static_assert(in_order(number), #name ": put the row in the order of the numbers"); \
  static_assert(times(number) == 1, #name ": another row has its number");
#include "rpc/procedures.def"

// A name looked up in `rows` is found there or else in `program`.
namespace program {
#define PROGRAM_PROCEDURE(name) constexpr bool has_row_##name = false;
#include "rpc/program_procedures.h"
#undef PROGRAM_PROCEDURE
}  // namespace program

namespace rows {
using namespace program;
#define PROCEDURE(number, name, ...) constexpr bool has_row_##name = true;
#include "rpc/procedures.def"
}  // namespace rows

#define PROGRAM_PROCEDURE(name)             \
  static_assert(rows::has_row_##name, #name \
                " is declared in wlan_config.x and has no row: write one in procedures.def");
#include "rpc/program_procedures.h"
