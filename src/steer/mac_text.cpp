#include "steer/mac_text.h"

#include <cstdio>

void parse_mac(const char* text, uint8_t (&mac)[6]) {
  unsigned groups[6] = {};
  static_cast<void>(sscanf(text, MAC_FORMAT, &groups[0], &groups[1], &groups[2], &groups[3],
                           &groups[4], &groups[5]));
  for (int i = 0; i < 6; ++i)
    mac[i] = static_cast<uint8_t>(groups[i]);
}
