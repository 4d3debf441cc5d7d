#include "host/interface_news.h"

#include <linux/rtnetlink.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>
#include <cerrno>
#include <cstring>

#include "base/report.h"

// Room for the news of many loads and unloads while this process is busy.
static constexpr int kBufferSize = 1 << 20;

int links_open() {
  int fd = socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE);
  sockaddr_nl address = {};
  address.nl_family = AF_NETLINK;
  address.nl_groups = RTMGRP_LINK;
  int size = kBufferSize;
  if (fd >= 0 && bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0) {
    static_cast<void>(setsockopt(fd, SOL_SOCKET, SO_RCVBUF, &size, sizeof size));
    return fd;
  }
  report_errno(nullptr, "listen for changes of interfaces");
  if (fd >= 0) close(fd);
  return -1;
}

static std::string name_of(nlmsghdr* message) {
  ifinfomsg* link = static_cast<ifinfomsg*>(NLMSG_DATA(message));
  size_t left = IFLA_PAYLOAD(message);
  for (rtattr* part = IFLA_RTA(link); RTA_OK(part, left); part = RTA_NEXT(part, left)) {
    if (part->rta_type == IFLA_IFNAME) return static_cast<const char*>(RTA_DATA(part));
  }
  return "";
}

static void take_messages(nlmsghdr* first, size_t size, std::vector<links_change>& changes) {
  for (nlmsghdr* h = first; NLMSG_OK(h, size); h = NLMSG_NEXT(h, size)) {
    if (h->nlmsg_type != RTM_NEWLINK && h->nlmsg_type != RTM_DELLINK) continue;
    const ifinfomsg* link = static_cast<ifinfomsg*>(NLMSG_DATA(h));
    if (link->ifi_family != AF_UNSPEC) continue;  // a bridge's own view of its ports
    bool gone = h->nlmsg_type == RTM_DELLINK;
    changes.push_back({name_of(h), gone, !gone && (link->ifi_flags & IFF_UP)});
  }
}

std::vector<links_change> links_take(int fd, bool& lost) {
  alignas(nlmsghdr) char bytes[16384];
  std::vector<links_change> changes;
  lost = false;
  for (;;) {
    ssize_t got = recv(fd, bytes, sizeof bytes, 0);
    if (got < 0 && errno == ENOBUFS) {
      lost = true;
    } else if (got <= 0) {
      return changes;
    } else {
      take_messages(reinterpret_cast<nlmsghdr*>(bytes), static_cast<size_t>(got), changes);
    }
  }
}

bool links_is_up(int fd, const char* name) {
  ifreq request = {};
  strncpy(request.ifr_name, name, IFNAMSIZ - 1);
  return ioctl(fd, SIOCGIFFLAGS, &request) == 0 && (request.ifr_flags & IFF_UP);
}
