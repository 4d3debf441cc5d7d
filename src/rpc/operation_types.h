#pragma once

#include <cstddef>

// What follows from a back-end operation's type: its last parameter is what it fills.

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

// Size of the text buffer that a back end fills, if its last parameter is a char
// (&)[Size]; otherwise 1, for the NUL alone.
template <typename Parameter>
inline constexpr size_t kTextRoom = 1;
template <size_t Size>
inline constexpr size_t kTextRoom<char (&)[Size]> = Size;
template <typename Operation>
inline constexpr size_t kTextSize = kTextRoom<typename last_parameter<Operation>::type>;
