#pragma once

#include <cstddef>

// What the type of a back-end operation tells: its last parameter is what it fills.

template <typename Operation>
struct last_parameter {
  using type = void;
};
template <typename Last>
struct last_parameter<int(Last)> {
  using type = Last;
};
template <typename First, typename... Rest>
requires(sizeof...(Rest) > 0) struct last_parameter<int(First, Rest...)>
    : last_parameter<int(Rest...)> {
};

// Bytes of the text buffer that a back end fills: Size of its last parameter, a
// char (&)[Size]; 1, for the NUL alone, where it fills none.
template <typename Parameter>
inline constexpr size_t kTextRoom = 1;
template <size_t Size>
inline constexpr size_t kTextRoom<char (&)[Size]> = Size;
template <typename Operation>
inline constexpr size_t kTextSize = kTextRoom<typename last_parameter<Operation>::type>;
