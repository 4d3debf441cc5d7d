#include <arpa/inet.h>
#include <linux/if_vlan.h>
#include <linux/sockios.h>
#include <linux/wireless.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/un.h>

#include <cerrno>
#include <cstdarg>
#include <cstring>

#include "support/check.h"
#include "support/outside.h"
#include "support/sim_calls.h"

// Sockets: the driver's requests, companions with UNIX sockets, the controller's
// listener, and the service's own socket.

service_socket service = {-1, nullptr, nullptr};

static int fail_with(int error) {
  errno = error;
  return -1;
}

// ---- The driver.

static constexpr unsigned long kObject = 0x8BE1;
static constexpr unsigned long kText = 0x8BE2;
static constexpr unsigned long kStationTable = 0x8BEF;
static constexpr unsigned kSetBit = 0x8000;

static constexpr int kDriverErrors[] = {0, EFAULT, EAGAIN, EOPNOTSUPP, ENODEV, EINVAL, ENOTTY, EIO};

// Writes the driver's answer to the caller's buffer, at most as many bytes as were
// announced, all of which must be there.
static void write_answer(const iwreq& frame, std::string_view bytes) {
  must_be_there(frame.u.data.pointer, frame.u.data.length);
  if (frame.u.data.length == 0) return;
  bytes.copy(static_cast<char*>(frame.u.data.pointer), frame.u.data.length);
}

// A text must have its terminator.
static void read_text(const iwreq& frame) {
  if (frame.u.data.pointer == nullptr) return;
  const std::string_view text(static_cast<const char*>(frame.u.data.pointer), frame.u.data.length);
  CHECK(frame.u.data.flags != 0 || text.find('\0') == text.size() - 1);
}

static int ask_driver(unsigned long request, iwreq* frame) {
  CHECK(memchr(frame->ifr_name, 0, sizeof frame->ifr_name) != nullptr);
  CHECK(strncmp(frame->ifr_name, "ra", 2) == 0);
  outside_answer answer = next_answer(&simulated->driver);
  const int error = kDriverErrors[answer.outcome % std::size(kDriverErrors)];
  if (error != 0) return fail_with(error);
  const bool sets = request == kObject && (frame->u.data.flags & kSetBit) != 0;
  if (sets) {
    must_be_there(frame->u.data.pointer, frame->u.data.length);
  } else if (request == kText) {
    read_text(*frame);
  } else if (request == kObject || request == kStationTable) {
    write_answer(*frame, answer.bytes);
    frame->u.data.length = static_cast<uint16_t>(answer.bytes.size());
  } else if (request == SIOCGIWRATE) {
    frame->u.bitrate.value = static_cast<int>(take_u32(&answer.bytes));
  } else {
    CHECK(request == SIOCGIWFREQ);
    frame->u.freq.m = static_cast<int>(take_u32(&answer.bytes));
    frame->u.freq.e = static_cast<int16_t>(take_u16(&answer.bytes));
  }
  return 0;
}

// ---- Interfaces, bridges and VLANs.

static void read_name(const char* name) {
  CHECK(memchr(name, 0, IFNAMSIZ) != nullptr);
}

static int change_interfaces(unsigned long request, void* argument) {
  const auto* record = static_cast<const ifreq*>(argument);
  const auto* words = static_cast<const unsigned long*>(argument);
  if (request == SIOCSIFBR) {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the kernel's interface.
    read_name(reinterpret_cast<const char*>(words[1]));
  } else if (request == SIOCSIFVLAN) {
    read_name(static_cast<const vlan_ioctl_args*>(argument)->device1);
  } else {
    read_name(record->ifr_name);
  }
  uint8_t how = 0;
  return strike(&how) ? -1 : 0;
}

static void* va_pointer(va_list* list) {
  return va_arg(*list, void*);
}

int sim_ioctl(int fd, unsigned long request, ...) {
  va_list list;
  va_start(list, request);
  void* argument = va_pointer(&list);
  va_end(list);
  if (fd == service.fd) {
    CHECK(request == FIONREAD);
    *static_cast<int*>(argument) = service.length();
    return 0;
  }
  CHECK(descriptor_of(fd)->kind == descriptor_kind::kInet);
  switch (request) {
    case kObject:
    case kText:
    case kStationTable:
    case SIOCGIWRATE:
    case SIOCGIWFREQ:
      return ask_driver(request, static_cast<iwreq*>(argument));
    case SIOCSIFFLAGS:
    case SIOCSIFADDR:
    case SIOCSIFNETMASK:
    case SIOCSIFBR:
    case SIOCSIFVLAN:
    case SIOCDEVPRIVATE:
      return change_interfaces(request, argument);
    default:
      broken("unknown request 0x%lx", request);
  }
}

unsigned sim_if_nametoindex(const char* name) {
  uint8_t how = 0;
  CHECK(strlen(name) < IFNAMSIZ);
  return strike(&how) ? 0 : 7;
}

// ---- Companions.

namespace {

// What a companion does when it is asked. Other numbers: it answers.
enum peer_outcome : uint8_t {
  kAnswers,
  kRefuses,
  kPathInUse,
  kCannotBind,
  kFull,
  kSilent,
  kReceiveFails,
  kLateAnswers,
  kPeerOutcomes = 10,
};

}  // namespace

static uint8_t outcome_of(const outside_descriptor& socket) {
  return socket.peer.outcome % kPeerOutcomes;
}

int sim_socket(int domain, int type, int protocol) {
  CHECK((type & SOCK_CLOEXEC) != 0 && protocol == 0);
  uint8_t how = 0;
  if (strike(&how)) {
    simulated->no_socket = true;
    return -1;
  }
  const bool companion = domain == AF_UNIX;
  CHECK(companion || domain == AF_INET);
  const int fd = new_descriptor(companion ? descriptor_kind::kCompanion : descriptor_kind::kInet);
  outside_descriptor* made = descriptor_of(fd);
  if (companion) made->peer = next_answer(&simulated->peers);
  if (outcome_of(*made) == kLateAnswers) made->stale = 100;
  return fd;
}

static outside_descriptor* companion_of(int fd) {
  outside_descriptor* found = descriptor_of(fd);
  CHECK(found->kind == descriptor_kind::kCompanion);
  return found;
}

static std::string path_of(const sockaddr* address, socklen_t size) {
  CHECK(address->sa_family == AF_UNIX && size == sizeof(sockaddr_un));
  const auto* named = reinterpret_cast<const sockaddr_un*>(address);
  return std::string(named->sun_path, strnlen(named->sun_path, sizeof named->sun_path));
}

int sim_bind(int fd, const sockaddr* address, socklen_t size) {
  outside_descriptor* bound = companion_of(fd);
  const std::string path = path_of(address, size);
  if (outcome_of(*bound) == kCannotBind) return fail_with(EACCES);
  if (outcome_of(*bound) == kPathInUse && bound->bound.empty()) {
    bound->bound = path;
    make_file(path);
    return fail_with(EADDRINUSE);
  }
  CHECK(find_file(path) == nullptr);
  make_file(path);
  bound->bound = path;
  return 0;
}

int sim_connect(int fd, const sockaddr* address, socklen_t size) {
  static_cast<void>(path_of(address, size));
  return outcome_of(*companion_of(fd)) == kRefuses ? fail_with(ECONNREFUSED) : 0;
}

ssize_t sim_send(int fd, const void* data, size_t size, int flags) {
  outside_descriptor* to = companion_of(fd);
  CHECK(flags == 0);
  must_be_there(data, size);
  uint8_t how = 0;
  if (outcome_of(*to) == kFull) return fail_with(EAGAIN);
  if (strike(&how)) return -1;
  to->sent = true;
  return static_cast<ssize_t>(size);
}

int sim_poll(pollfd* descriptors, nfds_t count, int timeout_ms) {
  CHECK(count == 1 && timeout_ms > 0 && timeout_ms <= 2000);
  uint8_t how = 0;
  if (strike(&how)) return -1;
  const uint8_t outcome = outcome_of(*companion_of(descriptors->fd));
  if (outcome == kSilent || outcome == kFull) return 0;
  descriptors->revents = descriptors->events;
  return 1;
}

int sim_poll_chk(pollfd* descriptors, nfds_t count, int timeout_ms, size_t room) {
  CHECK(count * sizeof *descriptors <= room);
  return sim_poll(descriptors, count, timeout_ms);
}

static ssize_t give(void* data, size_t size, std::string_view datagram) {
  must_be_there(data, size);
  return static_cast<ssize_t>(datagram.copy(static_cast<char*>(data), size));
}

ssize_t sim_recv(int fd, void* data, size_t size, int flags) {
  if (fd == service.fd) {
    CHECK((flags & MSG_DONTWAIT) != 0);
    service.drop();
    return give(data, size, "x");
  }
  outside_descriptor* from = companion_of(fd);
  if (!from->sent) {
    if (from->stale == 0) return fail_with(EAGAIN);
    --from->stale;
    return give(data, size, "late");
  }
  return outcome_of(*from) == kReceiveFails ? fail_with(ECONNREFUSED)
                                            : give(data, size, from->peer.bytes);
}

ssize_t sim_recv_chk(int fd, void* data, size_t size, size_t room, int flags) {
  CHECK(size <= room);
  return sim_recv(fd, data, size, flags);
}

// ---- The controller's listener. Its sockets are those with a receive time-out; they
// stay open.

int sim_setsockopt(int fd, int level, int option, const void* value, socklen_t size) {
  CHECK(level == SOL_SOCKET && option == SO_RCVTIMEO && size == sizeof(timeval));
  CHECK(static_cast<const timeval*>(value)->tv_sec == 1);
  outside_descriptor* socket = descriptor_of(fd);
  CHECK(socket->kind == descriptor_kind::kInet);
  socket->kept = true;
  socket->peer = next_answer(&simulated->peers);
  return outcome_of(*socket) == kCannotBind ? fail_with(EINVAL) : 0;
}

ssize_t sim_sendto(int fd, const void* data, size_t size, int flags, const sockaddr* address,
                   socklen_t address_size) {
  outside_descriptor* to = descriptor_of(fd);
  CHECK(to->kept && !to->sent && flags == 0 && address_size == sizeof(sockaddr_in));
  const auto* peer = reinterpret_cast<const sockaddr_in*>(address);
  CHECK(peer->sin_port == htons(4567) && peer->sin_addr.s_addr == inet_addr("192.168.254.254"));
  must_be_there(data, size);
  if (outcome_of(*to) == kRefuses) return fail_with(ENETUNREACH);
  to->sent = true;
  return static_cast<ssize_t>(size);
}

ssize_t sim_recvfrom(int fd, void* data, size_t size, int, sockaddr* address,
                     socklen_t* address_size) {
  const outside_descriptor* from = descriptor_of(fd);
  CHECK(from->kept && from->sent);
  memset(address, 0, *address_size);
  if (outcome_of(*from) == kSilent) return fail_with(EAGAIN);
  if (outcome_of(*from) == kReceiveFails) return fail_with(ECONNREFUSED);
  return give(data, size, from->peer.bytes);
}

ssize_t sim_recvfrom_chk(int fd, void* data, size_t size, size_t room, int flags, sockaddr* address,
                         socklen_t* address_size) {
  CHECK(size <= room);
  return sim_recvfrom(fd, data, size, flags, address, address_size);
}
