#pragma once

#include <cstddef>
#include <type_traits>

#include "rpc/column_types.h"
#include "rpc/operation_types.h"
#include "rpc/row_facts.h"

// The columns of procedures.def as types, from which handlers and stubs follow.

// A name as a template argument.
template <size_t Size>
struct fixed_text {
  char text[Size];
  consteval fixed_text(const char (&from)[Size]) {
    for (size_t i = 0; i < Size; ++i)
      text[i] = from[i];
  }
};

// A member passed to the handler. `Shown`: setters show it in their trace, except a
// leading index.
template <typename Type, fixed_text Name, bool Shown>
struct member {
  using type = Type;
  static constexpr auto kName = Name;
  static constexpr bool kShown = Shown;
};

// Expansion of a row's members: `void`, then one type per member.
template <typename Nothing, typename... Members>
struct member_list;

// The answer. Except for a code, `value` is what the back end fills: its last parameter
// is a pointer to it, or a reference for a text.
struct code_answer {
  using result = wlan_config_return_code_e;
};
struct no_answer {
  using result = wlan_config_result_data_t;
};
template <fixed_text Label>
struct int_answer {
  using result = wlan_config_result_data_t;
  using value = int;
  static constexpr auto kLabel = Label;
};
template <fixed_text Label>
struct text_answer {
  using result = wlan_config_result_data_t;
  static constexpr auto kLabel = Label;
};
template <typename Record>
struct words_answer {
  using result = wlan_config_result_data_t;
  using value = Record;
  static_assert(sizeof(Record) % sizeof(u_int) == 0, "travels as words of 32 bits");
};
template <typename Record>
struct image_answer {
  using result = wlan_config_result_data_t;
  using value = Record;
};

// A row's types. Its handler is a function of type `handler`.
template <typename Members, typename Answer>
struct row_types;
template <typename... Members, typename Answer>
struct row_types<member_list<void, Members...>, Answer> {
  using members = member_list<void, Members...>;
  using answer = Answer;
  using result = typename Answer::result;
  using handler = int(typename Members::type..., result*, svc_req*);
  static constexpr bool kLeadsWithIndex = (!Members::kShown || ...);
};

// ---- Checks of a back end's type against its row.

// Whether `Operation` can be called with the members and `Output`, with exactly that type
// for the latter.
template <typename Operation, typename Members, typename Output>
inline constexpr bool kTakes = false;
template <typename Operation, typename... Members, typename Output>
inline constexpr bool kTakes<Operation, member_list<void, Members...>, Output> =
    std::is_invocable_r_v<int, Operation, typename Members::type..., Output>&&
        std::is_same_v<typename last_parameter<Operation>::type, Output>;
template <typename Operation, typename... Members>
inline constexpr bool kTakes<Operation, member_list<void, Members...>, void> =
    std::is_invocable_r_v<int, Operation, typename Members::type...>;

template <typename Row, typename Operation, typename Answer = typename Row::answer>
inline constexpr bool kFits = kTakes<Operation, typename Row::members, void>;
template <typename Row, typename Operation, typename Answer>
requires requires {
  typename Answer::value;
}
inline constexpr bool kFits<Row, Operation, Answer> =
    kTakes<Operation, typename Row::members, typename Answer::value*>;
template <typename Row, typename Operation, fixed_text Label>
inline constexpr bool kFits<Row, Operation, text_answer<Label>> =
    std::is_lvalue_reference_v<typename last_parameter<Operation>::type>&&
        kTakes<Operation, typename Row::members, typename last_parameter<Operation>::type>;
