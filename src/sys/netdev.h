#pragma once

// Network devices of the kernel: interfaces, bridges and VLAN devices, through socket
// ioctls. Every call opens its own socket, so any thread may call. All return 1 for
// success and 0 for failure, reported as an RPC error where stated below.

// Takes an interface down, sets the given address and mask (dotted IPv4 texts, null for
// none; address "0.0.0.0" takes no mask), then sets `flags` (IFF_ values) and raises it, or
// leaves it down when `up` is 0. An interface that does not exist counts as done, on
// purpose. Reported: no socket, or an address, mask or flags that the kernel refuses.
unsigned if_ioctl(const char* ifname, const char* address, const char* netmask, int flags, int up);

// The kernel's legacy bridge requests.
constexpr int kBridgeAdd = 2;
constexpr int kBridgeDelete = 3;
constexpr int kBridgeAddInterface = 4;
constexpr int kBridgeDeleteInterface = 5;

// Issues one of them; `ifname` is the member for the last two. Any other request does
// nothing and returns 0. Reported: no socket.
unsigned bridge_ioctl(const char* bridge, const char* ifname, int op);

// The kernel's VLAN requests.
constexpr int kVlanAdd = 0;     // value: the VLAN id; makes "<ifname>.<id>"
constexpr int kVlanDelete = 1;  // ifname: the VLAN device

// Issues one of them. Reported: no socket.
unsigned vconfig_ioctl(const char* ifname, int value, int command);
