// Requests to the kernel's rtnetlink, in the calling process's network namespace. They are
// collected in a batch and sent together: one system call for all interfaces of a board.
//
//   netlink_batch batch = {};
//   ifinfomsg link = {};
//   link.ifi_flags = link.ifi_change = IFF_UP;
//   size_t request = netlink_request_begin(batch, RTM_NEWLINK, 0, &link, sizeof link);
//   netlink_attribute_text(batch, IFLA_IFNAME, "lo");
//   netlink_request_end(batch, request);
//   bool done = netlink_send(batch);
#pragma once

#include <cstddef>
#include <cstdint>

#include <string>

struct netlink_batch {
  std::string bytes;
  int requests;
};

// A request starts at the returned offset and ends with netlink_request_end. FLAGS: NLM_F_... in
// addition to those of every request.
size_t netlink_request_begin(netlink_batch& batch, uint16_t type, uint16_t flags, const void* body,
                             size_t size);
void netlink_request_end(netlink_batch& batch, size_t start);

// Appends bytes to the request or attribute begun last.
void netlink_append(netlink_batch& batch, const void* data, size_t size);

// An attribute of several parts starts at the returned offset.
size_t netlink_attribute_begin(netlink_batch& batch, uint16_t type);
void netlink_attribute_end(netlink_batch& batch, size_t start);

void netlink_attribute(netlink_batch& batch, uint16_t type, const void* data, size_t size);
void netlink_attribute_text(netlink_batch& batch, uint16_t type, const char* text);

// Sends the batch and waits for the answers. False, with errno set, if a request is refused.
[[nodiscard]] bool netlink_send(const netlink_batch& batch);
