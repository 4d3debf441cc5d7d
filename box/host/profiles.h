// The driver's profile files, as a gateway has them in /tmp after its first start.
#pragma once

#include <string>

#include "base/board.h"

// Inside the box.
constexpr const char* kProfile24 = "/tmp/mt76xx_24.dat";
constexpr const char* kProfile5 = "/tmp/mt76xx_5.dat";

// The text of one of them. Whatever lies there instead is read no further than a profile can go.
std::string profile_file_read(const std::string& path);

// Writes the first and, on a dual-band board, the second inside the box.
[[nodiscard]] bool profiles_install(const board& b);
