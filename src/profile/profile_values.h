#pragma once

// Values of the profiles that the operations read most.

// Longest value of a switch, such as "RadioOn".
constexpr int kSwitchLimit = 2;

// A key as a number; 0 when it is missing or has more than `max_len` characters.
[[nodiscard]] int profile_number(const char* path, const char* key, int max_len);

// The field of a BSS as a number; 0 when it is missing.
[[nodiscard]] int bss_number(int bss, const char* key, int max_len);
