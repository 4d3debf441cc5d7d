#pragma once

// Copies a file byte for byte; the target is created or truncated. Returns 1 when the
// whole file was copied, otherwise 0 with a message on standard error.
[[nodiscard]] int _file_copy(const char* source, const char* target);
