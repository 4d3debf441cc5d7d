#include "sys/driver_frame.h"

#include <cstring>

#include "sys/board.h"

iwreq frame_of(int bss) {
  const interface_name name = bss_interface(bss);
  iwreq frame = {};
  static_assert(sizeof name.text <= sizeof frame.ifr_name);
  memcpy(frame.ifr_name, name.text, sizeof name.text);
  return frame;
}

iwreq frame_of(int bss, const void* record, uint16_t length, uint16_t flags) {
  iwreq frame = frame_of(bss);
  frame.u.data.pointer = const_cast<void*>(record);
  frame.u.data.length = length;
  frame.u.data.flags = flags;
  return frame;
}
