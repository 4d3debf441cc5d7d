// The network of a box: loopback, the LAN side and the radios' interfaces, made through rtnetlink
// in the calling process's network namespace.
#pragma once

#include "board.h"

constexpr const char* NET_LAN_ADDRESS = "192.168.254.254";  // of eth0, /24

// Brings lo up and makes eth0, up and with its address. Reports what failed and returns false.
[[nodiscard]] bool net_start();

// Makes the board's ra interfaces, down as after a driver load.
[[nodiscard]] bool net_make_radios(const board& b);

// True when the calling process's network namespace has that interface. FD: any socket.
bool net_interface_exists(int fd, const char* name);
