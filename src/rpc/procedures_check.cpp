// Holds procedures.def against wlan_config.x when it is compiled. Each message names
// the procedure and what to write.

#include <cstddef>
#include <iterator>
#include <type_traits>

#include "rpc/row_argument.h"
#include "rpc/wlan_config_program.h"

using string_t = char*;

// ---- Number, argument and answer. The client stub that rpcgen declares tells them.

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

// ---- The members: a record of them as the row lists them ...

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

// ... has the layout of the argument, member by member.

template <typename Listed, typename Argument>
constexpr bool kAllListed = true;
template <typename Listed, typename Argument>
requires std::is_class_v<Argument>
constexpr bool kAllListed<Listed, Argument> = sizeof(Listed) == sizeof(Argument);

#define SAME(type, member)                                            \
  static_assert(std::is_same_v<decltype(in::member), type> &&         \
                    offsetof(listed, member) == offsetof(in, member), \
                "member " #member ": wlan_config.x has another type or place for it");
#define NOTHING
#define SHARED(stem)
#define INDEX(name) SAME(int, name)
#define FIELD(type, name) SAME(type, name)
#define ONLY_INDEX(name)
#define ONLY(type, name)
#define PROCEDURE(number, name, stem, topic, members, ...)                              \
  [[maybe_unused]] static void members_of_##stem() {                                    \
    using in [[maybe_unused]] = ARGUMENT(stem, FIRST_##members);                        \
    using listed [[maybe_unused]] = listed_##stem;                                      \
    members static_assert(kAllListed<listed, in>,                                       \
                          #name ": wlan_config.x has more members than the row lists"); \
  }
#include "rpc/procedures.def"

// ---- The order, and that no procedure is without a row.

constexpr unsigned kNumbers[] = {
#define PROCEDURE(number, ...) number##u,
#include "rpc/procedures.def"
};

// Whether the numbers before it are smaller.
constexpr bool in_order(unsigned number) {
  for (const unsigned other : kNumbers) {
    if (other == number) return true;
    if (other > number) return false;
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

// What is looked up in `rows` is found there or else in `program`.
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
