#include "trust/traced_daemon.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <map>

#include "support/daemon.h"
#include "support/files.h"
#include "support/gateway.h"
#include "support/lifecycle.h"
#include "support/wire.h"
#include "trust/heap_page.h"

// Sequences run dozens of shell commands.
static constexpr double kQuietPatience = 20;

static constexpr char kHncMarker[] = "/nvram/hnc_enable";
static constexpr uint32_t kSetRadStatEnable = 243;

static int make_socket() {
  const int sock = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  sockaddr_in service = {};
  service.sin_family = AF_INET;
  service.sin_port = htons(60001);
  inet_aton("192.168.254.254", &service.sin_addr);
  if (connect(sock, reinterpret_cast<sockaddr*>(&service), sizeof service) != 0) perror("connect");
  return sock;
}

static int service_socket() {
  static const int kSock = make_socket();
  return kSock;
}

static answer read_answer(uint32_t xid) {
  answer result = {};
  char bytes[65536];
  ssize_t length;
  while ((length = recv(service_socket(), bytes, sizeof bytes, 0)) >= 0) {
    const std::string reply(bytes, static_cast<size_t>(length));
    if (reply.size() < 24 || word_at(reply, 0) != xid) continue;
    result.came = true;
    result.accepted = word_at(reply, 20);
    result.code = static_cast<int32_t>(word_at(reply, 24));
  }
  return result;
}

// Whether a datagram waits in the service's socket, from /proc/net/udp.
static bool request_waits() {
  const std::string table = read_file("/proc/net/udp");
  const size_t at = table.find(":EA61 00000000:0000");
  if (at == table.npos) return false;
  const size_t queue = table.find(':', at + 20);
  return queue != table.npos && strtoul(table.c_str() + queue + 1, nullptr, 16) != 0;
}

answer serve(const request& wanted) {
  static uint32_t xid = 1;
  ++xid;
  const std::string datagram = call_message(wanted.procedure, wanted.arguments, xid);
  if (send(service_socket(), datagram.data(), datagram.size(), 0) < 0)
    // The error was an earlier datagram's, which found no service; this one was not sent.
    static_cast<void>(send(service_socket(), datagram.data(), datagram.size(), 0));
  stand how;
  do {
    wake();
    how = run_until_quiet(kQuietPatience);
  } while (how == stand::kQuiet && request_waits());
  answer result = read_answer(xid);
  result.how = how;
  return result;
}

answer serve_undisturbed(const request& wanted) {
  arm({});
  arm_heap(0, 0);
  arm_kill({});
  return serve(wanted);
}

bool answers_null() {
  const answer null = serve_undisturbed({0, ""});
  return null.how == stand::kQuiet && null.came && null.accepted == kAcceptSuccess;
}

void start_daemon_process() {
  mkdir("/tmp/fast", 0755);
  write_file("/tmp/fast/sleep", "#!/bin/sh\n");
  chmod("/tmp/fast/sleep", 0755);
  start_traced(daemon_path(), {"PATH=/tmp/fast:/usr/sbin:/usr/bin:/sbin:/bin", "LC_ALL=C",
                               heap_page_setting(), heap_preload_setting()});
}

bool start_daemon_traced() {
  arm({});
  arm_heap(0, 0);
  start_daemon_process();
  if (run_until_quiet(kQuietPatience) == stand::kQuiet) return true;
  fprintf(stderr, "the daemon does not come up: %s\n", daemon_errors().c_str());
  return false;
}

static bool radstat_runs(const char* path) {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  snprintf(address.sun_path, sizeof address.sun_path, "%s", path);
  const int sock = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  const bool runs = connect(sock, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
  close(sock);
  return runs;
}

static void start_radstat(uint32_t radio, const char* path) {
  if (radstat_runs(path)) return;
  const std::string numbers = xdr_word(radio) + xdr_word(1) + xdr_word(1) + xdr_word(1);
  serve_undisturbed({kSetRadStatEnable, numbers});
  if (!wait_until([&] { return radstat_runs(path); })) fprintf(stderr, "no %s\n", path);
}

void bring_up() {
  static int brought_up;
  if (brought_up != service_children()) {
    serve_undisturbed({kLoad, xdr_word(1)});
    serve_undisturbed({kInit, ""});
    brought_up = service_children();
  }
  start_radstat(1, "/var/run/radstat/ra0");
  if (board() != "mt7603") start_radstat(9, "/var/run/radstat/ra8");
}

static std::map<std::string, std::string> kept_files;

void keep_gateway() {
  kept_files.clear();
  for (const char* band : {"24", "5"}) {
    const std::string profile = std::string("/tmp/mt76xx_") + band + ".dat";
    if (!exists(profile)) continue;
    kept_files[profile] = read_file(profile);
    kept_files[profile + ".hnc"] = kept_files[profile];
  }
  kept_files[kHncMarker] = "";
}

void restore_gateway() {
  for (const auto& [path, content] : kept_files) {
    if (!exists(path) || read_file(path) != content) write_file(path, content);
  }
}

// A station to steer, a frame to send, and a backhaul to announce to the host.
static void furnish_steering(const std::string& profile) {
  if (!exists(profile)) return;
  set_profile_value(profile, "HNCSteerSTAMac", "02:00:5e:00:00:01");
  set_profile_value(profile, "HNCActionFrameMac", "02:00:5e:00:00:01");
  set_profile_value(profile, "HNCActionFramePayload", "0a07");
  set_profile_value(profile, "HNCSteerBlackListAction", "2");
  set_profile_value(profile, "HNCSteerBlackListTimer", "9");
  set_profile_value(profile, "BSSHNCBHEnable", "0;0;1;0;0;0;0;0");
}

void furnish_profiles() {
  switch_everything_on();
  furnish_steering("/tmp/mt76xx_24.dat");
  furnish_steering("/tmp/mt76xx_5.dat");
  mkdir("/nvram", 0755);
  write_file(kHncMarker, "");
}

void set_traces(bool on) {
  mkdir("/tmp/auto_debug", 0755);
  for (const char* path : {"/tmp/wlandbg", "/tmp/auto_debug/rpc_dbg_en"}) {
    if (on)
      write_file(path, "");
    else
      unlink(path);
  }
}
