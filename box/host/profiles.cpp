#include "host/profiles.h"

#include <string>

#include "base/files.h"

// The files of box/share are embedded, so the program needs no other files.
// The build passes their paths and rebuilds this file when one changes.
#define EMBED(symbol, path)        \
  asm(".section .rodata\n" #symbol \
      "_begin:"                    \
      ".incbin \"" path "\"\n" #symbol "_end:\n.byte 0\n.text\n")

EMBED(profile_24, PROFILE_24_FILE);
EMBED(profile_5, PROFILE_5_FILE);

extern "C" const char profile_24_begin[], profile_24_end[], profile_5_begin[], profile_5_end[];

bool profiles_install(const board& b) {
  std::string low(profile_24_begin, profile_24_end), high(profile_5_begin, profile_5_end);
  return file_write(kProfile24, low) && (!b.dual_band || file_write(kProfile5, high));
}
