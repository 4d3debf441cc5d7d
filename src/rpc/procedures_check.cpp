// Holds procedures.def against wlan_config.x at compile time: every row is a
// procedure of the program with that number, argument and result, the members
// column lists the argument's members by type, name and order, the numbers are
// unique and ordered, and the program has no procedure without a row.

#include <cstddef>
#include <iterator>
#include <type_traits>

#include "rpc/wlan_config_program.h"
// After the types that it names.
#include "rpc/column_aliases.h"

// The client stub that rpcgen declares tells a procedure's argument and result.
#define PROCEDURE(number, name, stub, argument, members, payload, ...) \
  static_assert(name == number);                                       \
  static_assert(                                                       \
      std::is_same_v<decltype(&stub), clnt_stat (*)(argument*, result_##payload*, CLIENT*)>);
#include "rpc/procedures.def"

// A record of a row's members as the row lists them ...
#define INDEX(name) int name;
#define FIELD(type, name) type name;
#define ONLY_INDEX(name) int name;
#define ONLY(type, name) type name;
#define PROCEDURE(number, name, stub, argument, members, ...) \
  struct stub##_row {                                         \
    members                                                   \
  };
#include "rpc/procedures.def"

// ... has the layout of the argument, member by member.
#define SAME(type, name)                                    \
  static_assert(offsetof(row, name) == offsetof(in, name)); \
  static_assert(std::is_same_v<decltype(in::name), type>);
#define INDEX(name) SAME(int, name)
#define FIELD(type, name) SAME(type, name)
#define ONLY_INDEX(name) static_assert(std::is_same_v<in, int>);
#define ONLY(type, name) static_assert(std::is_same_v<in, type>);
#define PROCEDURE(number, name, stub, argument, members, ...)                                      \
  [[maybe_unused]] static void check_##stub() {                                                    \
    using row [[maybe_unused]] = stub##_row;                                                       \
    using in [[maybe_unused]] = argument;                                                          \
    members static_assert(std::is_void_v<in> ||                                                    \
                          sizeof(row) == sizeof(std::conditional_t<std::is_void_v<in>, row, in>)); \
  }
#include "rpc/procedures.def"

constexpr unsigned kNumbers[] = {
#define PROCEDURE(number, ...) number##u,
#include "rpc/procedures.def"
};

constexpr bool strictly_ascending() {
  for (size_t i = 1; i < std::size(kNumbers); ++i) {
    if (kNumbers[i - 1] >= kNumbers[i]) return false;
  }
  return true;
}

static_assert(strictly_ascending());
static_assert(std::size(kNumbers) == PROGRAM_PROCEDURES);
