#include "daemon/service.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <cstdio>
#include <cstdlib>

#include "daemon/registration.h"
#include "daemon/transport.h"
#include "diag/trace.h"
#include "sys/limits.h"

// Our end of the internal link to the management stack.
static constexpr char kAddress[] = "192.168.254.254";
static constexpr int kPort = 60001;

int make_service_socket() {
  return socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, IPPROTO_UDP);
}

static bool is_bound(int sock) {
  sockaddr_in local = {};
  socklen_t size = sizeof local;
  return getsockname(sock, reinterpret_cast<sockaddr*>(&local), &size) == 0 && local.sin_port != 0;
}

int build_rpc_sockt(int kept, const char* address) {
  const int sock = kept >= 0 ? kept : make_service_socket();
  if (sock < 0) {
    perror("socket");
    exit(1);
  }
  sockaddr_in local = {};
  local.sin_family = AF_INET;
  local.sin_port = htons(kPort);
  if (inet_aton(address, &local.sin_addr) == 0) {
    RPC_TRACE("inet_aton failed with IPv4 %s\n", address);
    exit(1);
  }
  if (!is_bound(sock) && bind(sock, reinterpret_cast<sockaddr*>(&local), sizeof local) != 0) {
    perror("bind");
    exit(1);
  }
  RPC_TRACE("MTK WLAN RPC server bind successfully to %s:%d\n", address, kPort);
  return sock;
}

void run_service(int kept) {
  const bool replaces = is_bound(kept);
  unregister_service();
  SVCXPRT* transport = svcudp_create(build_rpc_sockt(kept, kAddress));
  if (transport == nullptr) {
    fputs("cannot create udp service.\n", stderr);
    exit(1);
  }
  bound_transport(transport);
  if (!register_service(transport)) {
    fputs("unable to register (WLAN_CONFIG_RPC_PROG, WLAN_CONFIG_API_VERSION, udp).\n", stderr);
    exit(0);
  }
  // The controller's exchanges keep their sockets. Raise the limit only after libtirpc
  // has sized its tables from it.
  set_descriptor_limit();
  if (replaces)
    RPC_ERROR(
        "the service child was replaced: the new one does not know what was loaded. For a known "
        "state: wlan_load 1, wlan_init, wlan_reset, wlan_load 1, wlan_init, each when the one "
        "before is done\n");
  svc_run();
  fputs("svc_run returned\n", stderr);
  exit(0);
}
