#include "gateway/rpc_calls.h"

#include <arpa/inet.h>
#include <linux/filter.h>
#include <linux/if_ether.h>
#include <linux/if_packet.h>
#include <netinet/ip.h>
#include <sys/socket.h>
#include <unistd.h>
#include <cstring>

#include <algorithm>
#include <cstdio>
#include <sstream>

#include "base/files.h"
#include "client/wire/lookup.h"

static constexpr uint16_t kPort = 60001;
static constexpr uint16_t kControllerPort = 4567;
static constexpr uint32_t kProgram = 0x20131337;
static constexpr int kBuffer = 4 << 20;  // bytes: what a burst of calls may fill between two looks
static constexpr uint32_t kSnap = 128;   // bytes of a packet that are kept: its headers
static constexpr size_t kUdpHeader = 8;
static constexpr size_t kOpenMax = 1024;  // calls that nobody answers do not pile up

// Keeps what leaves through the interface, which everything on loopback does once, and comes from
// or goes to the daemon's port, or goes to the controller's.
static bool attach_filter(int fd) {
  constexpr uint32_t kPacketType = static_cast<uint32_t>(SKF_AD_OFF + SKF_AD_PKTTYPE);
  constexpr uint32_t kProtocol = static_cast<uint32_t>(SKF_AD_OFF + SKF_AD_PROTOCOL);
  sock_filter code[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, kPacketType),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, PACKET_OUTGOING, 0, 11),
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, kProtocol),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, ETH_P_IP, 0, 9),
      BPF_STMT(BPF_LD | BPF_B | BPF_ABS, offsetof(iphdr, protocol)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, IPPROTO_UDP, 0, 7),
      BPF_STMT(BPF_LDX | BPF_B | BPF_MSH, 0),  // length of the IP header
      BPF_STMT(BPF_LD | BPF_H | BPF_IND, 0),   // source port
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, kPort, 3, 0),
      BPF_STMT(BPF_LD | BPF_H | BPF_IND, 2),  // destination port
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, kPort, 1, 0),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, kControllerPort, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, kSnap),
      BPF_STMT(BPF_RET | BPF_K, 0),
  };
  sock_fprog program = {static_cast<unsigned short>(std::size(code)), code};
  return setsockopt(fd, SOL_SOCKET, SO_ATTACH_FILTER, &program, sizeof program) == 0;
}

void rpc_calls_open(rpc_calls& calls) {
  calls.fd = socket(AF_PACKET, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (calls.fd < 0) return;
  sockaddr_ll everywhere = {};
  everywhere.sll_family = AF_PACKET;
  everywhere.sll_protocol = htons(ETH_P_ALL);
  if (setsockopt(calls.fd, SOL_SOCKET, SO_RCVBUFFORCE, &kBuffer, sizeof kBuffer) < 0) {
    static_cast<void>(setsockopt(calls.fd, SOL_SOCKET, SO_RCVBUF, &kBuffer, sizeof kBuffer));
  }
  // The filter comes first, so that nothing else is ever received.
  if (attach_filter(calls.fd) &&
      bind(calls.fd, reinterpret_cast<sockaddr*>(&everywhere), sizeof everywhere) == 0) {
    return;
  }
  close(calls.fd);
  calls.fd = -1;
}

static void take_call(rpc_calls& calls, const uint32_t* words) {
  enum { kXid, kType, kRpcVersion, kProgramAt, kVersion, kProcedure };
  if (ntohl(words[kProgramAt]) != kProgram) return;
  uint32_t procedure = ntohl(words[kProcedure]);
  rpc_call call = {ntohl(words[kXid]), procedure, lookup_number(procedure)};
  if (calls.open.size() == kOpenMax) calls.open.pop_front();
  calls.open.push_back(call);
  if (!call.row || !call.row->queued) return;
  calls.queued = call;
  calls.has_queued = true;
}

// Calls are answered in order: what is older than an answered one never will be.
static void take_answer(rpc_calls& calls, uint32_t xid) {
  auto answered = std::find_if(calls.open.begin(), calls.open.end(),
                               [&](const rpc_call& call) { return call.xid == xid; });
  if (answered != calls.open.end()) calls.open.erase(calls.open.begin(), answered + 1);
}

static journal_cause cause_of(const rpc_call& call, bool queued) {
  std::string name =
      call.row ? lookup_display_name(*call.row) : lookup_display_number(call.procedure);
  return {name, call.xid, queued};
}

static void take_message(rpc_calls& calls) {
  if (calls.to_controller.size() == kOpenMax) calls.to_controller.pop_front();
  calls.to_controller.push_back(calls.open.empty() ? calls.worker
                                                   : cause_of(calls.open.front(), false));
}

static void take_packet(rpc_calls& calls, const char* packet, size_t size) {
  constexpr uint32_t kIsCall = 0;
  uint32_t words[6];
  uint16_t ports[2];  // of the source and of the destination
  if (size < sizeof(iphdr)) return;
  size_t at = (static_cast<uint8_t>(packet[0]) & 0xF) * 4u + kUdpHeader;
  if (size < at + 2 * sizeof *words) return;
  memcpy(ports, packet + at - kUdpHeader, sizeof ports);
  if (ntohs(ports[1]) == kControllerPort) return take_message(calls);
  memset(words, 0, sizeof words);
  memcpy(words, packet + at, std::min(sizeof words, size - at));
  if (ntohl(words[1]) != kIsCall) return take_answer(calls, ntohl(words[0]));
  if (size >= at + sizeof words) take_call(calls, words);
}

void rpc_calls_catch_up(rpc_calls& calls) {
  alignas(uint32_t) char packet[kSnap];
  if (calls.fd < 0) return;
  for (ssize_t got; (got = recv(calls.fd, packet, sizeof packet, 0)) > 0;) {
    take_packet(calls, packet, static_cast<size_t>(got));
  }
}

// Lines of the kernel's table: "  123: FEFEA8C0:EA61 00000000:0000 07 00000000:00000000 ...", with
// the bytes that wait to be sent and to be received last.
bool rpc_calls_wait() {
  std::istringstream sockets(file_read("/proc/self/net/udp"));
  for (std::string line; std::getline(sockets, line);) {
    unsigned port = 0, waiting = 0;
    if (sscanf(line.c_str(), " %*d: %*x:%x %*x:%*x %*x %*x:%x", &port, &waiting) == 2 &&
        port == kPort && waiting != 0) {
      return true;
    }
  }
  return false;
}

journal_cause rpc_calls_current(rpc_calls& calls) {
  rpc_calls_catch_up(calls);
  // If none waits, the daemon has received the last one.
  if (calls.open.size() > 1 && !rpc_calls_wait()) {
    calls.open.erase(calls.open.begin(), calls.open.end() - 1);
  }
  return calls.open.empty() ? journal_cause{} : cause_of(calls.open.front(), false);
}

journal_cause rpc_calls_controller(rpc_calls& calls) {
  rpc_calls_catch_up(calls);
  if (calls.to_controller.empty()) return {};
  journal_cause cause = calls.to_controller.front();
  calls.to_controller.pop_front();
  return cause;
}

// A worker that begins was given something since it last began, or goes on with what it had.
void rpc_calls_worker_begins(rpc_calls& calls) {
  rpc_calls_catch_up(calls);
  if (!calls.has_queued) return;
  calls.worker = cause_of(calls.queued, true);
  calls.has_queued = false;
}

void rpc_calls_settle(rpc_calls& calls) {
  calls.open.clear();
}

void rpc_calls_forget(rpc_calls& calls) {
  rpc_calls_catch_up(calls);
  calls.open.clear();
  calls.has_queued = false;
  calls.worker = {};
}
