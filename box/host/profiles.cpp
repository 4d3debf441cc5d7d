#include "host/profiles.h"

#include <string>

#include "base/files.h"

// The files of box/share are embedded, so the program needs no other files.
// The build passes their paths and rebuilds this file when one changes.
#define EMBED(symbol, path)        \
  asm(".section .rodata\n" #symbol \
      "Begin:"                     \
      ".incbin \"" path "\"\n" #symbol "End:\n.byte 0\n.text\n")

EMBED(kShipped24, PROFILE_24_FILE);
EMBED(kShipped5, PROFILE_5_FILE);

extern "C" const char kShipped24Begin[], kShipped24End[], kShipped5Begin[], kShipped5End[];

bool profiles_install(const board& b) {
  std::string low(kShipped24Begin, kShipped24End), high(kShipped5Begin, kShipped5End);
  return file_write(kProfile24, low) && (!b.dual_band || file_write(kProfile5, high));
}

std::string profile_file_read(const std::string& path) {
  static constexpr size_t kProfileMax = 1 << 20;  // bytes; a profile has some 6,000
  return file_read_piece(path, kProfileMax);
}
