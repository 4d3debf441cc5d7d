// How a restart disturbs the callers: latencies of an inert call at an idle
// daemon, then at the same daemon while its worker restarts the radios over and
// over, with the same CPUs. Inside the simulated gateway, the daemon running.

#include <rpc/rpc.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

static constexpr unsigned long kProgram = 0x20131337;
static constexpr unsigned long kVersion = 1;
static constexpr unsigned long kInertSetter = 0x010000A8;  // WLAN_CHECK_RPC_ALIVE
static constexpr unsigned long kRestartAll = 206;
static constexpr timeval kTimeout = {10, 0};

static void call(CLIENT* client, unsigned long procedure) {
  int code = 0;
  const auto nothing = reinterpret_cast<xdrproc_t>(reinterpret_cast<void (*)()>(xdr_void));
  const auto integer = reinterpret_cast<xdrproc_t>(reinterpret_cast<void (*)()>(xdr_int));
  if (clnt_call(client, procedure, nothing, nullptr, integer, reinterpret_cast<char*>(&code),
                kTimeout) != RPC_SUCCESS) {
    clnt_perror(client, "restart_bench");
    exit(1);
  }
}

// The p-th percentile in microseconds of inert calls for `seconds`, a restart
// asked for every tenth of a second when `restarting`.
static double percentile(CLIENT* client, double seconds, bool restarting, double p) {
  using clock = std::chrono::steady_clock;
  std::vector<double> times;
  const auto end = clock::now() + std::chrono::duration<double>(seconds);
  auto next_restart = clock::now();
  while (clock::now() < end) {
    if (restarting && clock::now() >= next_restart) {
      call(client, kRestartAll);
      next_restart = clock::now() + std::chrono::milliseconds(100);
    }
    const auto start = clock::now();
    call(client, kInertSetter);
    times.push_back(std::chrono::duration<double, std::micro>(clock::now() - start).count());
  }
  const auto place = times.begin() + static_cast<long>(static_cast<double>(times.size() - 1) * p);
  std::nth_element(times.begin(), place, times.end());
  return *place;
}

int main() {
  CLIENT* client = clnt_create("192.168.254.254", kProgram, kVersion, "udp");
  if (client == nullptr) {
    clnt_pcreateerror("restart_bench");
    return 1;
  }
  const double idle = percentile(client, 4, false, 0.99);
  const double busy = percentile(client, 8, true, 0.99);
  const double idle_again = percentile(client, 4, false, 0.99);
  const double base = std::max(idle, idle_again);
  printf("inert call, p99: idle %.1f and %.1f us, while restarting %.1f us, ratio %.2f, budget 2\n",
         idle, idle_again, busy, busy / base);
  clnt_destroy(client);
  return busy / base <= 2 ? 0 : 1;
}
