#include "net.h"

#include <arpa/inet.h>
#include <errno.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>
#include <linux/veth.h>
#include <net/if.h>
#include <stddef.h>
#include <string.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <string>

#include "report.h"

// Requests are gathered and sent together: one system call for all interfaces of a board.
struct netlink_batch {
  std::string bytes;
  int requests;
};

static const char* const NO_HINT = nullptr;

static void append(netlink_batch& batch, const void* data, size_t size) {
  batch.bytes.append(static_cast<const char*>(data), size);
  batch.bytes.resize(NLMSG_ALIGN(batch.bytes.size()));
}

// A request begins at the returned offset and lasts until request_end.
static size_t request_begin(netlink_batch& batch, uint16_t type, uint16_t flags, const void* body,
                            size_t size) {
  size_t start = batch.bytes.size();
  nlmsghdr header = {};
  header.nlmsg_type = type;
  header.nlmsg_flags = static_cast<uint16_t>(NLM_F_REQUEST | NLM_F_ACK | flags);
  header.nlmsg_seq = static_cast<uint32_t>(++batch.requests);
  append(batch, &header, sizeof header);
  append(batch, body, size);
  return start;
}

static void request_end(netlink_batch& batch, size_t start) {
  uint32_t length = static_cast<uint32_t>(batch.bytes.size() - start);
  memcpy(&batch.bytes[start + offsetof(nlmsghdr, nlmsg_len)], &length, sizeof length);
}

static size_t attribute_begin(netlink_batch& batch, uint16_t type) {
  size_t start = batch.bytes.size();
  rtattr header = {0, type};
  append(batch, &header, sizeof header);
  return start;
}

static void attribute_end(netlink_batch& batch, size_t start) {
  uint16_t length = static_cast<uint16_t>(batch.bytes.size() - start);
  memcpy(&batch.bytes[start + offsetof(rtattr, rta_len)], &length, sizeof length);
}

static void attribute(netlink_batch& batch, uint16_t type, const void* data, size_t size) {
  size_t start = attribute_begin(batch, type);
  batch.bytes.append(static_cast<const char*>(data), size);
  attribute_end(batch, start);
  batch.bytes.resize(NLMSG_ALIGN(batch.bytes.size()));
}

static void attribute_text(netlink_batch& batch, uint16_t type, const char* text) {
  attribute(batch, type, text, strlen(text) + 1);
}

// Addresses are the same in every box, so that output can be compared between runs.
static void attribute_mac(netlink_batch& batch, uint8_t kind, uint8_t number) {
  uint8_t mac[6] = {0x02, 0x0c, 0x43, 0x26, kind, number};
  attribute(batch, IFLA_ADDRESS, mac, sizeof mac);
}

static void bring_up(netlink_batch& batch, const char* name) {
  ifinfomsg link = {};
  link.ifi_flags = link.ifi_change = IFF_UP;
  size_t request = request_begin(batch, RTM_NEWLINK, 0, &link, sizeof link);
  attribute_text(batch, IFLA_IFNAME, name);
  request_end(batch, request);
}

// A pair of Ethernet ends: NAME is the interface of the gateway, PEER the cable or the air, up
// from the start so that NAME has a carrier once it is up. The kernel refuses to bring PEER up
// in the same request.
static void add_pair(netlink_batch& batch, const char* name, const char* peer, uint8_t kind,
                     uint8_t number, unsigned flags) {
  ifinfomsg link = {};
  link.ifi_flags = link.ifi_change = flags;
  size_t request = request_begin(batch, RTM_NEWLINK, NLM_F_CREATE | NLM_F_EXCL, &link, sizeof link);
  attribute_text(batch, IFLA_IFNAME, name);
  attribute_mac(batch, kind, number);
  size_t info = attribute_begin(batch, IFLA_LINKINFO);
  attribute_text(batch, IFLA_INFO_KIND, "veth");
  size_t data = attribute_begin(batch, IFLA_INFO_DATA);
  size_t other = attribute_begin(batch, VETH_INFO_PEER);
  link.ifi_flags = link.ifi_change = 0;
  append(batch, &link, sizeof link);
  attribute_text(batch, IFLA_IFNAME, peer);
  attribute_mac(batch, static_cast<uint8_t>(kind + 0x80), number);
  attribute_end(batch, other);
  attribute_end(batch, data);
  attribute_end(batch, info);
  request_end(batch, request);
  bring_up(batch, peer);
}

static void add_address(netlink_batch& batch, unsigned index) {
  ifaddrmsg message = {};
  message.ifa_family = AF_INET;
  message.ifa_prefixlen = 24;
  message.ifa_index = index;
  in_addr address = {}, broadcast = {};
  inet_pton(AF_INET, NET_LAN_ADDRESS, &address);
  broadcast.s_addr = address.s_addr | htonl(0xff);
  size_t request = request_begin(batch, RTM_NEWADDR, NLM_F_CREATE, &message, sizeof message);
  attribute(batch, IFA_LOCAL, &address, sizeof address);
  attribute(batch, IFA_ADDRESS, &address, sizeof address);
  attribute(batch, IFA_BROADCAST, &broadcast, sizeof broadcast);
  request_end(batch, request);
}

// Reads answers until REQUESTS of them have come; errno is that of the first refusal.
static bool await_answers(int fd, int requests) {
  alignas(nlmsghdr) char answers[16384];
  while (requests > 0) {
    ssize_t got = recv(fd, answers, sizeof answers, 0);
    if (got < 0) return false;
    size_t left = static_cast<size_t>(got);
    for (nlmsghdr* h = reinterpret_cast<nlmsghdr*>(answers); NLMSG_OK(h, left);
         h = NLMSG_NEXT(h, left), requests--) {
      if (h->nlmsg_type != NLMSG_ERROR) continue;
      errno = -static_cast<nlmsgerr*>(NLMSG_DATA(h))->error;
      if (errno != 0) return false;
    }
  }
  return true;
}

static bool batch_send(const netlink_batch& batch) {
  int fd = socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE);
  if (fd < 0) return false;
  int on = 1;  // answers without a copy of the request
  setsockopt(fd, SOL_NETLINK, NETLINK_CAP_ACK, &on, sizeof on);
  bool done =
      send(fd, batch.bytes.data(), batch.bytes.size(), 0) >= 0 && await_answers(fd, batch.requests);
  int error = errno;
  close(fd);
  errno = error;
  return done;
}

static const char* link_hint() {
  return errno == EOPNOTSUPP ? "this kernel lacks veth: modprobe veth" : NO_HINT;
}

bool net_start() {
  netlink_batch links = {};
  bring_up(links, "lo");
  add_pair(links, "eth0", "lan0", 1, 0, IFF_UP);
  if (!batch_send(links)) return report_errno(link_hint(), "make the interfaces lo and eth0");
  netlink_batch addresses = {};
  add_address(addresses, if_nametoindex("eth0"));
  if (batch_send(addresses)) return true;
  return report_errno(NO_HINT, "give eth0 the address %s", NET_LAN_ADDRESS);
}

bool net_make_radios(const board& b) {
  netlink_batch links = {};
  for (int i = 0; i < b.interfaces; i++) {
    std::string number = std::to_string(i);
    add_pair(links, ("ra" + number).c_str(), ("air" + number).c_str(), 2, static_cast<uint8_t>(i),
             0);
  }
  if (batch_send(links)) return true;
  return report_errno(link_hint(), "make the interfaces ra0 to ra%d", b.interfaces - 1);
}

bool net_interface_exists(int fd, const char* name) {
  ifreq request = {};
  strncpy(request.ifr_name, name, IFNAMSIZ - 1);
  return ioctl(fd, SIOCGIFINDEX, &request) == 0;
}
