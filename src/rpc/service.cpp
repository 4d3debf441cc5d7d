#include "rpc/service.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <rpc/pmap_clnt.h>
#include <sys/socket.h>

#include <cstdio>
#include <cstdlib>

#include "diag/trace.h"
#include "rpc/dispatch.h"
#include "rpc/transport.h"
#include "sys/limits.h"

// The end of the internal link that the management stack talks to.
static constexpr char kAddress[] = "192.168.254.254";
static constexpr int kPort = 60001;

int build_rpc_sockt(const char* address) {
  const int sock = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, IPPROTO_UDP);
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
  if (bind(sock, reinterpret_cast<sockaddr*>(&local), sizeof local) != 0) {
    perror("bind");
    exit(1);
  }
  RPC_TRACE("MTK WLAN RPC server bind successfully to %s:%d\n", address, kPort);
  return sock;
}

void unregister_service() {
  pmap_unset(kProgram, kVersion);
}

void run_service() {
  unregister_service();
  SVCXPRT* transport = svcudp_create(build_rpc_sockt(kAddress));
  if (transport == nullptr) {
    fputs("cannot create udp service.\n", stderr);
    exit(1);
  }
  bound_transport(transport);
  if (!svc_register(transport, kProgram, kVersion, wlan_config_rpc_prog_1, IPPROTO_UDP)) {
    fputs("unable to register (WLAN_CONFIG_RPC_PROG, WLAN_CONFIG_API_VERSION, udp).\n", stderr);
    exit(0);
  }
  // The controller's exchanges keep their sockets. Only now, since the library
  // has sized its tables by the limit that it found.
  set_descriptor_limit();
  svc_run();
  fputs("svc_run returned\n", stderr);
  exit(0);
}
