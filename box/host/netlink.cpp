#include "host/netlink.h"

#include <linux/rtnetlink.h>
#include <sys/socket.h>
#include <unistd.h>
#include <cerrno>
#include <cstring>

void netlink_append(netlink_batch& batch, const void* data, size_t size) {
  batch.bytes.append(static_cast<const char*>(data), size);
  batch.bytes.resize(NLMSG_ALIGN(batch.bytes.size()));
}

size_t netlink_request_begin(netlink_batch& batch, uint16_t type, uint16_t flags, const void* body,
                             size_t size) {
  size_t start = batch.bytes.size();
  nlmsghdr header = {};
  header.nlmsg_type = type;
  header.nlmsg_flags = static_cast<uint16_t>(NLM_F_REQUEST | NLM_F_ACK | flags);
  header.nlmsg_seq = static_cast<uint32_t>(++batch.requests);
  netlink_append(batch, &header, sizeof header);
  netlink_append(batch, body, size);
  return start;
}

void netlink_request_end(netlink_batch& batch, size_t start) {
  uint32_t length = static_cast<uint32_t>(batch.bytes.size() - start);
  memcpy(&batch.bytes[start + offsetof(nlmsghdr, nlmsg_len)], &length, sizeof length);
}

size_t netlink_attribute_begin(netlink_batch& batch, uint16_t type) {
  size_t start = batch.bytes.size();
  rtattr header = {0, type};
  netlink_append(batch, &header, sizeof header);
  return start;
}

void netlink_attribute_end(netlink_batch& batch, size_t start) {
  uint16_t length = static_cast<uint16_t>(batch.bytes.size() - start);
  memcpy(&batch.bytes[start + offsetof(rtattr, rta_len)], &length, sizeof length);
}

void netlink_attribute(netlink_batch& batch, uint16_t type, const void* data, size_t size) {
  size_t start = netlink_attribute_begin(batch, type);
  batch.bytes.append(static_cast<const char*>(data), size);
  netlink_attribute_end(batch, start);
  batch.bytes.resize(NLMSG_ALIGN(batch.bytes.size()));
}

void netlink_attribute_text(netlink_batch& batch, uint16_t type, const char* text) {
  netlink_attribute(batch, type, text, strlen(text) + 1);
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

bool netlink_send(const netlink_batch& batch) {
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
