#pragma once

// Settings of a BSS that are stored as a field of a per-BSS list in its profile. Messages
// name `caller`.

// Whether the index is 1 to 16; reported when it is not.
[[nodiscard]] bool bss_in_range(const char* caller, int bss);

// Writes the BSS's field of `key` and traces the outcome. Returns the result of the
// update (see profile/store.h).
unsigned write_traced_field(const char* caller, const char* key, int bss, const char* value);
