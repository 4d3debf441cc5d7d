// The driver's profile files, as a gateway has them in /tmp after its first start.
#pragma once

#include "base/board.h"

// Writes /tmp/mt76xx_24.dat and, on a dual-band board, /tmp/mt76xx_5.dat inside the box.
[[nodiscard]] bool profiles_install(const board& b);
