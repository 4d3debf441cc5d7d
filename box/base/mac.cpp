#include "base/mac.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>

bool mac_parse(const std::string& text, mac_address& mac) {
  if (text.size() != mac.size() * 3 - 1) return false;
  for (size_t i = 0; i < text.size(); ++i) {
    unsigned char byte = static_cast<unsigned char>(text[i]);
    if (i % 3 == 2 ? byte != ':' : !isxdigit(byte)) return false;
  }
  for (size_t i = 0; i < mac.size(); ++i)
    mac[i] = static_cast<uint8_t>(strtoul(text.c_str() + i * 3, nullptr, 16));
  return true;
}

std::string mac_text(const mac_address& mac) {
  char text[18];
  snprintf(text, sizeof text, "%02x:%02x:%02x:%02x:%02x:%02x", mac[0], mac[1], mac[2], mac[3],
           mac[4], mac[5]);
  return text;
}

mac_address mac_at(const void* bytes) {
  mac_address mac;
  memcpy(mac.data(), bytes, mac.size());
  return mac;
}
