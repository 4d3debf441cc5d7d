#include "sys/wireless.h"

#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include "sys/driver_frame.h"
#include "sys/wext.h"

static_assert(kWirelessGetRate == SIOCGIWRATE);

int wireless_open() {
  return socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
}

void wireless_close(int sock) {
  close(sock);
}

// Asks for what the driver answers in the frame itself.
static wireless_result ask(unsigned request, iwreq* frame) {
  const int sock = wireless_open();
  if (sock < 0) return wireless_result::no_socket;
  const int result = ioctl(sock, request, frame);
  wireless_close(sock);
  return result < 0 ? wireless_result::refused : wireless_result::done;
}

wireless_result wireless_get_rate(int bss, int32_t* bits_per_second) {
  iwreq frame = frame_of(bss);
  const wireless_result result = ask(SIOCGIWRATE, &frame);
  if (result == wireless_result::done) *bits_per_second = frame.u.bitrate.value;
  return result;
}

wireless_result wireless_get_frequency(int bss, wireless_frequency* frequency) {
  iwreq frame = frame_of(bss);
  const wireless_result result = ask(SIOCGIWFREQ, &frame);
  if (result == wireless_result::done) *frequency = {frame.u.freq.m, frame.u.freq.e};
  return result;
}

int wireless_set_objects(int sock, int bss, const wireless_object* objects, int count) {
  for (int taken = 0; taken < count; ++taken) {
    const wireless_object& object = objects[taken];
    iwreq frame = frame_of(bss, object.record, object.length, object.flags);
    if (ioctl(sock, kRtprivObject, &frame) < 0) return taken;
  }
  return count;
}
