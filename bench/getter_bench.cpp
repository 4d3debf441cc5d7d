// Getters that ask the driver, beside what they cannot do without, in one run:
// each round times the daemon's getter and a bare libtirpc call with an answer of
// the same size and the bare ioctls, each on a socket of its own, as the daemon
// promises; the medians are compared. The ratio to ioctls on a socket that is kept
// open is shown too. And the list of a full radio's stations, of which the driver's
// time for its queries of single stations is taken off. Inside the simulated
// gateway, the daemon running, ra0 up and full.

#include <arpa/inet.h>
#include <linux/wireless.h>
#include <rpc/rpc.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

static constexpr char kAddress[] = "192.168.254.254";
static constexpr unsigned long kProgram = 0x20131337;
static constexpr uint16_t kPort = 60001;
static constexpr unsigned long kBareProgram = 0x20000001;
static constexpr uint16_t kBarePort = 60002;
static constexpr unsigned long kListStations = 293;
static constexpr int kRounds = 2000;
static constexpr int kListed = 32;
static constexpr timeval kTimeout = {10, 0};

struct query {
  unsigned request;
  uint16_t sub;
  uint16_t length;
};
static constexpr query kStationTable = {0x8BEF, 0, 5123};
static constexpr query kCounters = {0x8BE1, 0x067D, 55};
static constexpr query kSsidBytes = {0x8BE1, 0x069A, 771};
static constexpr query kStationBtm = {0x8BE1, 0x494A, 9};

struct getter {
  const char* name;
  unsigned long procedure;
  u_int reply_bytes;  // what the answer takes as XDR
  std::vector<query> queries;
};

static u_int reply_bytes;

static bool_t xdr_answer(XDR* stream, char* bytes) {
  return xdr_opaque(stream, bytes, reply_bytes);
}

static xdrproc_t filter(bool_t (*function)(XDR*, char*)) {
  return reinterpret_cast<xdrproc_t>(reinterpret_cast<void (*)()>(function));
}

static bool_t xdr_index(XDR* stream, char* index) {
  return xdr_int(stream, reinterpret_cast<int*>(index));
}

static int open_socket() {
  return socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
}

static sockaddr_in address(uint16_t port) {
  sockaddr_in at = {};
  at.sin_family = AF_INET;
  at.sin_port = htons(port);
  inet_aton(kAddress, &at.sin_addr);
  return at;
}

// The bare server: an answer of as many bytes as the argument says.
static void serve(svc_req*, SVCXPRT* transport) {
  static char bytes[8192];
  int wanted = 0;
  if (!svc_getargs(transport, filter(xdr_index), reinterpret_cast<char*>(&wanted))) return;
  reply_bytes = static_cast<u_int>(wanted);
  svc_sendreply(transport, filter(xdr_answer), bytes);
}

static pid_t start_bare_server() {
  const int sock = open_socket();
  const sockaddr_in at = address(kBarePort);
  if (bind(sock, reinterpret_cast<const sockaddr*>(&at), sizeof at) != 0) abort();
  const pid_t child = fork();
  if (child != 0) return child;
  SVCXPRT* transport = svcudp_create(sock);
  if (transport == nullptr || !svc_register(transport, kBareProgram, 1, serve, 0)) abort();
  svc_run();
  abort();
}

static CLIENT* client_of(unsigned long program, uint16_t port) {
  sockaddr_in at = address(port);
  int sock = RPC_ANYSOCK;
  CLIENT* client = clntudp_create(&at, program, 1, timeval{1, 0}, &sock);
  if (client == nullptr) {
    clnt_pcreateerror("getter_bench");
    exit(1);
  }
  return client;
}

static char answer[8192];

static void call(CLIENT* client, unsigned long procedure, int argument, u_int size) {
  reply_bytes = size;
  if (clnt_call(client, procedure, filter(xdr_index), reinterpret_cast<char*>(&argument),
                filter(xdr_answer), answer, kTimeout) != RPC_SUCCESS) {
    clnt_perror(client, "getter_bench");
    exit(1);
  }
}

static void ask(int sock, const query& q, const char* input = nullptr) {
  static char buffer[8192];
  if (input != nullptr) memcpy(buffer, input, q.length);
  iwreq frame = {};
  strcpy(frame.ifr_name, "ra0");
  frame.u.data.pointer = buffer;
  frame.u.data.length = q.length;
  frame.u.data.flags = q.sub;
  if (ioctl(sock, q.request, &frame) != 0) {
    perror("getter_bench: ioctl");
    exit(1);
  }
}

static void ask_on_its_own(const query& q) {
  const int sock = open_socket();
  ask(sock, q);
  close(sock);
}

static int kept_open;

template <typename Function>
static double microseconds(Function function) {
  const auto start = std::chrono::steady_clock::now();
  function();
  return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start)
      .count();
}

static double median(std::vector<double> times) {
  std::nth_element(times.begin(), times.begin() + times.size() / 2, times.end());
  return times[times.size() / 2];
}

static constexpr double kBudget = 1.3;

static bool compare(CLIENT* daemon, CLIENT* bare, const getter& g) {
  const auto bare_call = [&] { call(bare, 1, static_cast<int>(g.reply_bytes), g.reply_bytes); };
  const auto our_call = [&] { call(daemon, g.procedure, 1, g.reply_bytes); };
  const auto on_own_sockets = [&] {
    bare_call();
    for (const query& q : g.queries)
      ask_on_its_own(q);
  };
  const auto on_kept_socket = [&] {
    bare_call();
    for (const query& q : g.queries)
      ask(kept_open, q);
  };
  std::vector<double> ours;
  std::vector<double> own;
  std::vector<double> kept;
  // Ours in between, so that no side profits from the other's warm caches.
  for (int round = 0; round < kRounds; ++round) {
    ours.push_back(microseconds(our_call));
    own.push_back(microseconds(on_own_sockets));
    ours.push_back(microseconds(our_call));
    kept.push_back(microseconds(on_kept_socket));
  }
  const double ratio = median(ours) / median(own);
  printf("%-19s ours %6.1f us  bare %6.1f us  ratio %.2f  budget %.1f  %s  (socket kept: %.2f)\n",
         g.name, median(ours), median(own), ratio, kBudget, ratio <= kBudget ? "kept" : "BROKEN",
         median(ours) / median(kept));
  return ratio <= kBudget;
}

static constexpr double kListBudget = 1000;

// The driver is asked about every station that is listed, or about none.
static bool time_list(CLIENT* daemon, bool asks) {
  static constexpr u_int kListBytes = 12 + 2436;
  static constexpr char kFirst[9] = {4, 0, 2, 0, 0x5e, 0, 1, 1};
  std::vector<double> whole;
  std::vector<double> driver;
  for (int round = 0; round < kRounds / 4; ++round) {
    whole.push_back(microseconds([&] { call(daemon, kListStations, 1, kListBytes); }));
    driver.push_back(microseconds([&] {
      for (int i = 0; asks && i < kListed; ++i)
        ask(kept_open, kStationBtm, kFirst);
    }));
  }
  if (memcmp(answer, "\0\0\0\0\0\0\0\0\0\0\x09\x84\x20\0\0\0", 16) != 0) {
    fprintf(stderr, "getter_bench: the list is no list of %d stations\n", kListed);
    exit(1);
  }
  const double rest = median(whole) - median(driver);
  printf("%-19s ours %6.1f us  queries of stations %.1f us  rest %.1f us  budget %.0f us  %s\n",
         "station list", median(whole), median(driver), rest, kListBudget,
         rest <= kListBudget ? "kept" : "BROKEN");
  return rest <= kListBudget;
}

int main(int argc, char** argv) {
  kept_open = open_socket();
  const bool asks = argc > 1 && strcmp(argv[1], "mt7615") == 0;
  const pid_t server = start_bare_server();
  CLIENT* daemon = client_of(kProgram, kPort);
  CLIENT* bare = client_of(kBareProgram, kBarePort);
  const getter getters[] = {
      {"number of stations", 58, 28, {kStationTable}},
      {"basic counters", 56, 92, {kCounters, kStationTable}},
      {"station table", 221, 12 + 5124, {kStationTable}},
      {"bytes sent", 297, 44, {kSsidBytes}},
  };
  bool kept = true;
  for (const getter& g : getters)
    kept = compare(daemon, bare, g) && kept;
  kept = time_list(daemon, asks) && kept;
  kill(server, SIGKILL);
  waitpid(server, nullptr, 0);
  return kept ? 0 : 1;
}
