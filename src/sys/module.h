#pragma once

// Loads and unloads kernel modules.

// Loads the .ko file at `path` with the module parameters `params` (null: none). Returns
// the kernel's result of init_module, 0 or -1 with errno, or -1 with a message when the
// file cannot be mapped.
[[nodiscard]] int insert_module(const char* path, const char* params);

// Unloads a module at once, without waiting for its users. Returns the kernel's result of
// delete_module, 0 or -1 with errno. No retry, no message.
[[nodiscard]] int remove_module(const char* name);
