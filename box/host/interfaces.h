// The network of a box: loopback, the LAN side and the radios' interfaces, created through
// rtnetlink in the calling process's network namespace.
#pragma once

#include <cstdint>

#include <string>

constexpr const char* kNetLanAddress = "192.168.254.254";  // of eth0, /24

// Brings lo up and creates eth0, up and with its address. Reports what failed and returns false.
[[nodiscard]] bool net_start();

// Creates COUNT interfaces from ra<FIRST> on, down as after a driver load. Reports what failed.
[[nodiscard]] bool net_make_radios(int first, int count);

// Removes what net_make_radios(FIRST, ...) created. Reports what failed.
[[nodiscard]] bool net_remove_radios(int first);

// Creates UPPER on top of LOWER, with its address and down. FD: any socket. On failure errno is the
// kernel's.
[[nodiscard]] bool net_make_upper(int fd, const std::string& lower, const std::string& upper);

// Removes that interface. On failure errno is the kernel's.
[[nodiscard]] bool net_remove(const std::string& name);

// Hardware address of the interface. FD: any socket. On failure errno is the kernel's.
[[nodiscard]] bool net_address(int fd, const char* name, uint8_t (&address)[6]);

// True when the calling process's network namespace has that interface. FD: any socket.
bool net_interface_exists(int fd, const char* name);
