#include "daemon/registration.h"

#include <netinet/in.h>
#include <rpc/pmap_clnt.h>
#include <rpc/rpcb_prot.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdio>
#include <ctime>

#include "rpc/dispatch.h"

// XDR filters have different signatures.
#define FILTER(filter) reinterpret_cast<xdrproc_t>(reinterpret_cast<void (*)()>(filter))

void unregister_service() {
  pmap_unset(kProgram, kVersion);
}

// Does not wait when `result` is null.
static void call_portmapper(CLIENT* portmapper, rpcproc_t procedure, rpcb* row, bool_t* result) {
  const timeval patience = {result != nullptr ? 1 : 0, 0};
  const xdrproc_t encoder = FILTER(xdr_rpcb);
  const xdrproc_t decoder = result != nullptr ? FILTER(xdr_bool) : nullptr;
  clnt_call(portmapper, procedure, encoder, row, decoder, result, patience);
}

// The library sends a call that does not wait together with the next one, so another
// caller can hardly get in between removal and registration.
static bool replace_registration(CLIENT* portmapper, u_short port) {
  char empty[] = "";
  char udp[] = "udp";
  char address[32];
  snprintf(address, sizeof address, "0.0.0.0.%d.%d", port >> 8, port & 0xFF);
  rpcb everywhere = {kProgram, kVersion, empty, empty, empty};
  rpcb own = {kProgram, kVersion, udp, address, empty};
  bool_t registered = FALSE;
  call_portmapper(portmapper, RPCBPROC_UNSET, &everywhere, nullptr);
  call_portmapper(portmapper, RPCBPROC_SET, &own, &registered);
  return registered;
}

static bool try_to_replace(int sock, u_short port) {
  sockaddr_un local = {AF_LOCAL, _PATH_RPCBINDSOCK};
  netbuf address = {sizeof local, sizeof local, &local};
  CLIENT* portmapper = clnt_vc_create(sock, &address, RPCBPROG, RPCBVERS, 0, 0);
  if (portmapper == nullptr) return false;
  const bool replaced = replace_registration(portmapper, port);
  clnt_destroy(portmapper);
  return replaced;
}

static double seconds_since(const timespec& start) {
  timespec now;
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<double>(now.tv_sec - start.tv_sec) +
         static_cast<double>(now.tv_nsec - start.tv_nsec) / 1e9;
}

// Any user of the box may register the program once it has been removed.
static bool replace_others(u_short port) {
  static constexpr int kTries = 100;
  static constexpr double kSeconds = 1;
  timespec start;
  clock_gettime(CLOCK_MONOTONIC, &start);
  bool replaced = false;
  for (int tries = 1; !replaced && tries <= kTries && seconds_since(start) < kSeconds; ++tries) {
    const int sock = socket(AF_LOCAL, SOCK_STREAM | SOCK_CLOEXEC, 0);
    replaced = sock >= 0 && try_to_replace(sock, port);
    if (sock >= 0) close(sock);
  }
  return replaced;
}

bool register_service(SVCXPRT* transport) {
  if (svc_register(transport, kProgram, kVersion, wlan_config_rpc_prog_1, IPPROTO_UDP)) return true;
  return replace_others(transport->xp_port) &&
         svc_register(transport, kProgram, kVersion, wlan_config_rpc_prog_1, 0);
}
