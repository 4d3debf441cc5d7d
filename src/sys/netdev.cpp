#include "sys/netdev.h"

#include <arpa/inet.h>
#include <linux/if_vlan.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "diag/trace.h"

static int open_handle(const char* caller, int type) {
  const int sock = socket(AF_INET, type | SOCK_CLOEXEC, 0);
  if (sock < 0) trace_rpc_error(caller, "failed to grab socket\n");
  return sock;
}

static bool set_address(int sock, ifreq* record, const char* address, unsigned long request) {
  sockaddr_in value = {};
  value.sin_family = AF_INET;
  inet_aton(address, &value.sin_addr);
  memcpy(&record->ifr_addr, &value, sizeof value);
  return ioctl(sock, request, record) >= 0;
}

// Returns the name of the request that the kernel refused; null when none was refused, or
// the interface does not exist.
static const char* configure(int sock, ifreq* record, const char* address, const char* netmask,
                             int flags, int up) {
  // A flags word of 0 takes the interface down before the changes. A missing interface
  // counts as done: kept on purpose.
  if (ioctl(sock, SIOCSIFFLAGS, record) < 0) return nullptr;
  if (address != nullptr) {
    if (!set_address(sock, record, address, SIOCSIFADDR)) return "SIOCSIFADDR";
    const bool masked = netmask != nullptr && strcmp(address, "0.0.0.0") != 0;
    if (masked && !set_address(sock, record, netmask, SIOCSIFNETMASK)) return "SIOCSIFNETMASK";
  }
  // The flags share storage with the address set before, whose family remains in them:
  // kept on purpose.
  const int word = record->ifr_flags | flags;
  record->ifr_flags = static_cast<short>(up != 0 ? word | IFF_UP : word & ~IFF_UP);
  return ioctl(sock, SIOCSIFFLAGS, record) < 0 ? "SIOCSIFFLAGS" : nullptr;
}

unsigned if_ioctl(const char* ifname, const char* address, const char* netmask, int flags, int up) {
  if (ifname == nullptr) return 0;
  const int sock = open_handle(__func__, SOCK_DGRAM);
  if (sock < 0) return 0;
  ifreq record = {};
  snprintf(record.ifr_name, sizeof record.ifr_name, "%s", ifname);
  const char* refused = configure(sock, &record, address, netmask, flags, up);
  close(sock);
  if (refused == nullptr) return 1;
  RPC_ERROR("ioctl to socket failed - %s %s\n", ifname, refused);
  return 0;
}

static int bridge_request(int sock, const char* bridge, const char* ifname, int op) {
  if (op == kBridgeAdd || op == kBridgeDelete) {
    unsigned long words[3] = {static_cast<unsigned long>(op),
                              reinterpret_cast<unsigned long>(bridge), 0};
    return ioctl(sock, SIOCSIFBR, words);
  }
  if (op != kBridgeAddInterface && op != kBridgeDeleteInterface) return -1;
  const unsigned index = ifname != nullptr ? if_nametoindex(ifname) : 0;
  if (index == 0) return -1;
  unsigned long words[4] = {static_cast<unsigned long>(op), index, 0, 0};
  ifreq record = {};
  strncpy(record.ifr_name, bridge, sizeof record.ifr_name);
  record.ifr_data = reinterpret_cast<char*>(words);
  return ioctl(sock, SIOCDEVPRIVATE, &record);
}

unsigned bridge_ioctl(const char* bridge, const char* ifname, int op) {
  if (bridge == nullptr) return 0;
  const int sock = open_handle(__func__, SOCK_STREAM);
  if (sock < 0) return 0;
  const int result = bridge_request(sock, bridge, ifname, op);
  close(sock);
  return result >= 0;
}

unsigned vconfig_ioctl(const char* ifname, int value, int command) {
  const int sock = open_handle(__func__, SOCK_STREAM);
  if (sock < 0) return 0;
  vlan_ioctl_args request = {};
  request.cmd = command;
  snprintf(request.device1, sizeof request.device1, "%s", ifname);
  request.u.VID = value;
  const int result = ioctl(sock, SIOCSIFVLAN, &request);
  close(sock);
  return result >= 0;
}
