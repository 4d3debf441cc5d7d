// The bare alternative: a libtirpc server with the daemon's types, address and registration.
// For each procedure it makes only the system calls that the task needs.

#include <arpa/inet.h>
#include <rpc/pmap_clnt.h>
#include <rpc/rpc.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "bare.h"
#include "rpc/wlan_config.h"

enum { kPort = 60002, kProgram = 0x20000001 };

#define FILTER(filter) ((xdrproc_t)(filter))

static void answer_code(SVCXPRT* transport, int code) {
  svc_sendreply(transport, FILTER(xdr_int), &code);
}

static void answer_words(SVCXPRT* transport, u_int* words, u_int count) {
  wlan_config_result_data_t result = {.return_words = {count, words}};
  svc_sendreply(transport, FILTER(xdr_wlan_config_result_data_t), &result);
}

static void answer_image(SVCXPRT* transport, char* bytes, u_int length) {
  wlan_config_result_data_t result = {.return_data = {length, bytes}};
  svc_sendreply(transport, FILTER(xdr_wlan_config_result_data_t), &result);
}

static void answer_int(SVCXPRT* transport, int value) {
  u_int words[4] = {(u_int)value};
  answer_words(transport, words, 4);
}

static void serve_text(SVCXPRT* transport, int (*work)(const char* key, const char* value)) {
  wlan_set_ssid_1_argument in = {0};
  if (!svc_getargs(transport, FILTER(xdr_wlan_set_ssid_1_argument), &in)) {
    svcerr_decode(transport);
    return;
  }
  char key[32];
  snprintf(key, sizeof key, "SSID%d", in.bss);
  answer_code(transport, work(key, in.ssid));
  svc_freeargs(transport, FILTER(xdr_wlan_set_ssid_1_argument), &in);
}

static void serve_setter(SVCXPRT* transport) {
  wlan_set_channel_1_argument in = {0};
  if (svc_getargs(transport, FILTER(xdr_wlan_set_channel_1_argument), &in)) {
    answer_code(transport, 0);
  } else {
    svcerr_decode(transport);
  }
}

static void serve_command(SVCXPRT* transport) {
  wlan_set_channel_utilization_enable_1_argument in = {0};
  const xdrproc_t filter = FILTER(xdr_wlan_set_channel_utilization_enable_1_argument);
  if (svc_getargs(transport, filter, &in)) {
    answer_code(transport, bare_command(in.enable));
  } else {
    svcerr_decode(transport);
  }
}

// BSS getters: a value in memory, a number from the profile, or a driver query.
static void serve_getter(unsigned long procedure, SVCXPRT* transport) {
  static char bytes[8192];
  int bss = 0;
  if (!svc_getargs(transport, FILTER(xdr_int), &bss)) {
    svcerr_decode(transport);
    return;
  }
  switch (procedure) {
    case kBareGetter:
      answer_int(transport, 0);
      break;
    case kBareProfileGetter:
      answer_int(transport, bare_profile_number("BSSHNCService"));
      break;
    case kBareStationCount:
      bare_query(kStationTable, bytes);
      answer_int(transport, 0);
      break;
    case kBareCounters:
      bare_query(kCounters, bytes);
      bare_query(kStationTable, bytes);
      answer_words(transport, (u_int*)bytes, 20);
      break;
    case kBareBytesSent:
      bare_query(kSsidBytes, bytes);
      answer_words(transport, (u_int*)bytes, 8);
      break;
    case kBareStationTable:
      bare_query(kStationTable, bytes);
      answer_image(transport, bytes, 5124);
      break;
    case kBareStationList:
    case kBareStationListAsked:
      bare_station_list(procedure == kBareStationListAsked, bytes);
      bare_profile_number("BSSHNCService");
      answer_image(transport, bytes, 2436);
      break;
    default:
      svcerr_noproc(transport);
  }
}

static void serve(struct svc_req* request, SVCXPRT* transport) {
  unsigned long procedure = request->rq_proc;
  if (procedure > kBareWithDuties) {
    procedure -= kBareWithDuties;
    bare_duties((unsigned)procedure);
  }
  switch (procedure) {
    case NULLPROC:
      svc_sendreply(transport, (xdrproc_t)(void (*)(void))xdr_void, NULL);
      break;
    case kBareSetter:
      serve_setter(transport);
      break;
    case kBareTextChanging:
      serve_text(transport, bare_update);
      break;
    case kBareTextSame:
      serve_text(transport, bare_compare);
      break;
    case kBareCommand:
      serve_command(transport);
      break;
    default:
      serve_getter(procedure, transport);
  }
}

int main(void) {
  struct sockaddr_in at = {.sin_family = AF_INET, .sin_port = htons(kPort)};
  inet_aton("192.168.254.254", &at.sin_addr);
  const int sock = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, IPPROTO_UDP);
  if (sock < 0 || bind(sock, (struct sockaddr*)&at, sizeof at) != 0) {
    perror("bare_server");
    return 1;
  }
  pmap_unset(kProgram, 1);
  SVCXPRT* transport = svcudp_create(sock);
  if (transport == NULL || !svc_register(transport, kProgram, 1, serve, IPPROTO_UDP)) {
    fputs("bare_server: no service\n", stderr);
    return 1;
  }
  svc_run();
  return 1;
}
