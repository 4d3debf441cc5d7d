#include "host/interfaces.h"

#include <arpa/inet.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>
#include <linux/veth.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>
#include <cerrno>
#include <cstddef>
#include <cstring>

#include <string>

#include "base/report.h"
#include "host/netlink.h"

static const char* const kNoHint = nullptr;

// Interfaces that come and go together form a group, so that one request removes them all.
static constexpr uint32_t kNoGroup = 0;
static constexpr uint32_t kRadioGroup = 0x7261;  // + number of the first interface

static constexpr size_t kPeerTail = 12;  // how much of an upper interface's name its peer's has

struct ethernet_pair {
  std::string name;  // the interface of the gateway
  std::string peer;  // its cable, or the air
  uint8_t mac[6];
  uint32_t group;
  unsigned flags;
};

// Addresses are the same in every box, so that output can be compared between runs.
static ethernet_pair make_pair(const std::string& name, const std::string& peer, uint8_t kind,
                               uint8_t number) {
  return {name, peer, {0x02, 0x0c, 0x43, 0x26, kind, number}, kNoGroup, 0};
}

static void bring_up(netlink_batch& batch, const char* name) {
  ifinfomsg link = {};
  link.ifi_flags = link.ifi_change = IFF_UP;
  size_t request = netlink_request_begin(batch, RTM_NEWLINK, 0, &link, sizeof link);
  netlink_attribute_text(batch, IFLA_IFNAME, name);
  netlink_request_end(batch, request);
}

static void add_peer(netlink_batch& batch, const ethernet_pair& pair) {
  size_t other = netlink_attribute_begin(batch, VETH_INFO_PEER);
  ifinfomsg link = {};
  netlink_append(batch, &link, sizeof link);
  netlink_attribute_text(batch, IFLA_IFNAME, pair.peer.c_str());
  uint8_t mac[6];
  memcpy(mac, pair.mac, sizeof mac);
  mac[4] ^= 0x80;
  netlink_attribute(batch, IFLA_ADDRESS, mac, sizeof mac);
  netlink_attribute_end(batch, other);
}

// The peer is up from the start so that the interface has a carrier once it is up. The kernel
// refuses to bring the peer up in the request that creates it.
static void add_pair(netlink_batch& batch, const ethernet_pair& pair) {
  ifinfomsg link = {};
  link.ifi_flags = link.ifi_change = pair.flags;
  size_t request =
      netlink_request_begin(batch, RTM_NEWLINK, NLM_F_CREATE | NLM_F_EXCL, &link, sizeof link);
  netlink_attribute_text(batch, IFLA_IFNAME, pair.name.c_str());
  netlink_attribute(batch, IFLA_ADDRESS, pair.mac, sizeof pair.mac);
  netlink_attribute(batch, IFLA_GROUP, &pair.group, sizeof pair.group);
  size_t info = netlink_attribute_begin(batch, IFLA_LINKINFO);
  netlink_attribute_text(batch, IFLA_INFO_KIND, "veth");
  size_t data = netlink_attribute_begin(batch, IFLA_INFO_DATA);
  add_peer(batch, pair);
  netlink_attribute_end(batch, data);
  netlink_attribute_end(batch, info);
  netlink_request_end(batch, request);
  bring_up(batch, pair.peer.c_str());
}

static void add_address(netlink_batch& batch, unsigned index) {
  ifaddrmsg message = {};
  message.ifa_family = AF_INET;
  message.ifa_prefixlen = 24;
  message.ifa_index = index;
  in_addr address = {}, broadcast = {};
  inet_pton(AF_INET, kNetLanAddress, &address);
  broadcast.s_addr = address.s_addr | htonl(0xff);
  size_t request =
      netlink_request_begin(batch, RTM_NEWADDR, NLM_F_CREATE, &message, sizeof message);
  netlink_attribute(batch, IFA_LOCAL, &address, sizeof address);
  netlink_attribute(batch, IFA_ADDRESS, &address, sizeof address);
  netlink_attribute(batch, IFA_BROADCAST, &broadcast, sizeof broadcast);
  netlink_request_end(batch, request);
}

static const char* link_hint() {
  return errno == EOPNOTSUPP ? "this kernel lacks veth: modprobe veth" : kNoHint;
}

bool net_start() {
  netlink_batch links = {};
  bring_up(links, "lo");
  ethernet_pair lan = make_pair("eth0", "lan0", 1, 0);
  lan.flags = IFF_UP;
  add_pair(links, lan);
  if (!netlink_send(links)) return report_errno(link_hint(), "make the interfaces lo and eth0");
  netlink_batch addresses = {};
  add_address(addresses, if_nametoindex("eth0"));
  if (netlink_send(addresses)) return true;
  return report_errno(kNoHint, "give eth0 the address %s", kNetLanAddress);
}

bool net_make_radios(int first, int count) {
  netlink_batch links = {};
  for (int i = first; i < first + count; ++i) {
    std::string number = std::to_string(i);
    ethernet_pair radio = make_pair("ra" + number, "air" + number, 2, static_cast<uint8_t>(i));
    radio.group = kRadioGroup + static_cast<uint32_t>(first);
    add_pair(links, radio);
  }
  if (netlink_send(links)) return true;
  return report_errno(link_hint(), "make the interfaces ra%d to ra%d", first, first + count - 1);
}

// ENODEV: nothing is left of the group.
bool net_remove_radios(int first) {
  netlink_batch links = {};
  ifinfomsg link = {};
  uint32_t group = kRadioGroup + static_cast<uint32_t>(first);
  size_t request = netlink_request_begin(links, RTM_DELLINK, 0, &link, sizeof link);
  netlink_attribute(links, IFLA_GROUP, &group, sizeof group);
  netlink_request_end(links, request);
  if (netlink_send(links) || errno == ENODEV) return true;
  return report_errno(kNoHint, "remove the interfaces from ra%d on", first);
}

bool net_address(int fd, const char* name, uint8_t (&address)[6]) {
  ifreq asked = {};
  strncpy(asked.ifr_name, name, IFNAMSIZ - 1);
  if (ioctl(fd, SIOCGIFHWADDR, &asked) < 0) return false;
  memcpy(address, asked.ifr_hwaddr.sa_data, sizeof address);
  return true;
}

// The upper interface is a veth pair like the others, so that the kernel need not know VLANs. What
// counts is that it exists, has the lower one's address and can be bridged.
bool net_make_upper(int fd, const std::string& lower, const std::string& upper) {
  uint8_t address[6];
  if (!net_address(fd, lower.c_str(), address)) return false;
  size_t skipped = upper.size() > kPeerTail ? upper.size() - kPeerTail : 0;
  ethernet_pair pair = make_pair(upper, "on." + upper.substr(skipped), 0, 0);
  memcpy(pair.mac, address, sizeof pair.mac);
  netlink_batch links = {};
  add_pair(links, pair);
  return netlink_send(links);
}

bool net_remove(const std::string& name) {
  netlink_batch links = {};
  ifinfomsg link = {};
  size_t request = netlink_request_begin(links, RTM_DELLINK, 0, &link, sizeof link);
  netlink_attribute_text(links, IFLA_IFNAME, name.c_str());
  netlink_request_end(links, request);
  return netlink_send(links);
}

bool net_interface_exists(int fd, const char* name) {
  ifreq request = {};
  strncpy(request.ifr_name, name, IFNAMSIZ - 1);
  return ioctl(fd, SIOCGIFINDEX, &request) == 0;
}
