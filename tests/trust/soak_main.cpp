// soak [--calls N] [--minutes M] [--seed S] [--report SECONDS] [--lifecycle TENTHS]
//
// Run it inside the simulated gateway: eight clients call the real daemon without a
// pause, every procedure, with right and wrong calls, while radios go up and down,
// companions die, the log rotates and the controller fails. Prints a line now and then
// and a summary; exits with 1 when a promise was broken.
//
// Makes N calls and runs for at least M minutes. With --minutes the calls come in bursts
// at full speed, spread over that time. --report: how often a line is printed.
// --lifecycle: tenths of a second between lifecycle requests.

#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <thread>

#include "soak.h"
#include "support/daemon.h"
#include "support/files.h"
#include "support/gateway.h"

namespace {

struct soak_options {
  int64_t calls = 20000;
  double minutes = 0;
  unsigned seed = 1;
  double report = 2;   // seconds
  int lifecycle = 15;  // tenths of a second between lifecycle requests
};

struct soak_run {
  pid_t supervisor;
  pid_t child;
  int replacements;
  double start;
  double elapsed;
  child_sample first;
  child_sample tenth;
  child_sample last;
  std::vector<soak_client> clients;
  soak_trouble trouble;
};

}  // namespace

static constexpr uint32_t kClients = 8;

// As the unit and the init script set it. Each exchange with the controller keeps a
// descriptor, so the exchanges are rationed over the run.
static constexpr rlim_t kDescriptors = 16384;
static constexpr int64_t kExchanges = 12000;

static constexpr double kBurst = 5;  // seconds from one burst to the next

// How many kB the heap may grow from a tenth of the calls to the end: fragmentation takes
// far less than a byte per call in the long form. A sanitizer has threads of its own, and
// memory that grows with what it has seen.
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
static constexpr long kGrowthMax = 64 * 1024;
static constexpr int kThreadsMax = 4;
#else
static constexpr long kGrowthMax = 512;
static constexpr int kThreadsMax = 2;
#endif

static std::mutex findings_mutex;
static int finding_count;

int findings() {
  const std::lock_guard<std::mutex> guard(findings_mutex);
  return finding_count;
}

void finding(const char* format, ...) {
  const std::lock_guard<std::mutex> guard(findings_mutex);
  if (++finding_count > 40) return;
  va_list values;
  va_start(values, format);
  printf("FINDING: ");
  vprintf(format, values);
  printf("\n");
  fflush(stdout);
  va_end(values);
}

static bool parse(int argc, char** argv, soak_options* options) {
  for (int i = 1; i + 1 < argc; i += 2) {
    const std::string name = argv[i];
    if (name == "--calls") {
      options->calls = atoll(argv[i + 1]);
    } else if (name == "--minutes") {
      options->minutes = atof(argv[i + 1]);
    } else if (name == "--seed") {
      options->seed = static_cast<unsigned>(atoi(argv[i + 1]));
    } else if (name == "--report") {
      options->report = atof(argv[i + 1]);
    } else if (name == "--lifecycle") {
      options->lifecycle = atoi(argv[i + 1]);
    } else {
      return false;
    }
  }
  return argc % 2 == 1 && options->calls > 0 && options->minutes >= 0 && options->report > 0 &&
         options->lifecycle > 0;
}

// How many calls may have been made by now.
static int64_t allowed(const soak_options& options, double elapsed) {
  const double whole = options.minutes * 60;
  if (whole == 0) return options.calls;
  const double bursts = std::floor(elapsed / kBurst) + 1;
  const double part = std::min(1.0, bursts * kBurst / whole);
  return static_cast<int64_t>(static_cast<double>(options.calls) * part);
}

// The number of the next call, which the clients share.
static std::atomic<int64_t> given;
static int64_t most_calls;

static int64_t next_number(const soak_options& options, double start) {
  const double elapsed = seconds_now() - start;
  if (given >= options.calls) return elapsed >= options.minutes * 60 ? kNoMore : kNotYet;
  if (given >= allowed(options, elapsed)) return kNotYet;
  const int64_t n = given++;
  return n < options.calls ? n : kNotYet;
}

static bool controller_free(const soak_options& options) {
  const double done = static_cast<double>(given) / static_cast<double>(options.calls);
  return controller_requests() < static_cast<int64_t>(kExchanges * std::min(1.0, done + 0.01));
}

static std::string fast_path() {
  mkdir("/tmp/fast", 0755);
  write_file("/tmp/fast/sleep", "#!/bin/sh\n");
  chmod("/tmp/fast/sleep", 0755);
  return std::string("PATH=/tmp/fast:") + getenv("PATH");
}

// Makes the daemon's sanitizers report to files, which check_leftovers() looks for.
static std::string sanitizer_options(const char* variable, const std::string& more) {
  const char* before = getenv(variable);
  return std::string(variable) + "=" + (before != nullptr ? std::string(before) + ":" : "") +
         "log_path=/tmp/sanitizer" + more;
}

static pid_t start_soaked_daemon() {
  rlimit limit = {kDescriptors, kDescriptors};
  if (setrlimit(RLIMIT_NOFILE, &limit) != 0) perror("soak: descriptor limit");
  switch_everything_on();
  mkdir("/nvram", 0755);
  write_file("/nvram/hnc_enable", "");
  const pid_t supervisor =
      start_supervisor({fast_path(), sanitizer_options("TSAN_OPTIONS", ""),
                        sanitizer_options("ASAN_OPTIONS", ":quarantine_size_mb=8")});
  if (!wait_until(daemon_answers, 20)) finding("the daemon does not start");
  return supervisor;
}

// A last request for the worker, which then reports that its queue is empty.
static void settle(soak_client* client) {
  write_file("/tmp/wlandbg", "");
  if (truncate("/tmp/daemon.out", 0) != 0) finding("no output of the daemon");
  call_and_check(client, call_of("WLAN_RESTART", "1"));
  if (!wait_until([] { return daemon_output().find("next_req=(nil)") != std::string::npos; }, 40))
    finding("the worker does not empty its queue");
}

static void report(const char* when, const child_sample& now, double elapsed) {
  printf(
      "%-6s %5.0f s %8lld calls  rss %ld kB  pss %ld kB  sockets %d  others %d  threads %d  "
      "controller asked %lld  profiles checked %lld\n",
      when, elapsed, static_cast<long long>(std::min<int64_t>(given, most_calls)), now.rss, now.pss,
      now.sockets, now.others, now.threads, static_cast<long long>(controller_requests()),
      static_cast<long long>(profile_checks()));
  fflush(stdout);
}

static bool replaced(soak_run* run) {
  const pid_t child = service_child(run->supervisor);
  if (child == run->child) return false;
  finding("the service child %d was replaced by %d", run->child, child);
  run->child = child;
  ++run->replacements;
  return true;
}

// Checks profiles and child until the clients are done.
static void look_on(const soak_options& options, soak_run* run,
                    const std::atomic<uint32_t>& running) {
  double next = run->start;
  while (running > 0) {
    check_profiles();
    replaced(run);
    const double elapsed = seconds_now() - run->start;
    if (run->tenth.pid == 0 && given >= options.calls / 10) {
      run->tenth = sample_child(run->child);
      report("at 10%", run->tenth, elapsed);
    }
    if (seconds_now() >= next) {
      report("", sample_child(run->child), elapsed);
      next += options.report;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
}

static void run_clients(const soak_options& options, soak_run* run) {
  std::atomic<uint32_t> running = kClients;
  std::atomic<bool> stop = false;
  run->start = seconds_now();
  std::thread disturber([&] {
    run_trouble(&run->clients[kClients], options.lifecycle, options.minutes > 0, &stop,
                &run->trouble);
  });
  std::vector<std::thread> threads;
  for (uint32_t i = 0; i < kClients; ++i) {
    threads.emplace_back([&, i] {
      run_client(
          &run->clients[i], [&] { return next_number(options, run->start); },
          [&] { return controller_free(options); });
      --running;
    });
  }
  look_on(options, run, running);
  for (std::thread& thread : threads)
    thread.join();
  run->elapsed = seconds_now() - run->start;
  stop = true;
  disturber.join();
}

static void print_times(const std::vector<soak_client>& clients) {
  printf("%-10s %9s %9s %9s %9s\n", "class", "calls", "p50 us", "p99 us", "max us");
  for (int kind = 0; kind < kCallKinds; ++kind) {
    std::vector<float> all;
    for (const soak_client& client : clients)
      all.insert(all.end(), client.times[kind].begin(), client.times[kind].end());
    if (all.empty()) continue;
    std::sort(all.begin(), all.end());
    const float p50 = all[all.size() / 2];
    const float p99 = all[all.size() * 99 / 100];
    printf("%-10s %9zu %9.0f %9.0f %9.0f\n", call_kind_name(static_cast<call_kind>(kind)),
           all.size(), 1e6 * p50, 1e6 * p99, 1e6 * all.back());
  }
}

// All is as before the first call, except for one socket per exchange with the
// controller.
static void compare_ends(const soak_run& run) {
  const long long exchanges = controller_requests();
  if (run.last.sockets != run.first.sockets + exchanges)
    finding("%d sockets, %d at first, after %lld exchanges with the controller", run.last.sockets,
            run.first.sockets, exchanges);
  if (run.last.others != run.first.others)
    finding("%d other descriptors, %d at first", run.last.others, run.first.others);
  if (run.last.threads > kThreadsMax) finding("%d threads", run.last.threads);
  if (run.last.zombies > 0) finding("%d children that were not waited for", run.last.zombies);
  if (run.last.rss - run.tenth.rss > kGrowthMax)
    finding("%ld kB more than at a tenth of the calls", run.last.rss - run.tenth.rss);
}

static void check_leftovers() {
  const std::string files = ::run("ls /tmp/wifitemp* 2>/dev/null");
  if (!files.empty()) finding("files are left over: %s", files.c_str());
  const std::string reports = ::run("cat /tmp/sanitizer* 2>/dev/null");
  if (!reports.empty()) finding("a sanitizer said:\n%s", reports.c_str());
}

// Checks the daemon at rest, then its end.
static void check_end(soak_run* run) {
  settle(&run->clients[kClients]);
  for (soak_client& client : run->clients)
    expect_silence(&client);
  run->last = sample_child(run->child);
  report("at end", run->last, run->elapsed);
  compare_ends(*run);
  check_profiles();
  replaced(run);
  const long long never = procedures_never_called();
  if (never > 0) finding("%lld procedures were never called", never);
  const long long dropped = dropped_datagrams();
  if (dropped > 0) finding("%lld datagrams were dropped by a full socket", dropped);
  if (end_process(run->supervisor, SIGTERM) != 0) finding("the daemon does not end");
  check_leftovers();
}

static void print_summary(const soak_options& options, const soak_run& run) {
  print_times(run.clients);
  for (const auto& [name, service] : long_services)
    printf("%s took about a second or more %lld times, at most %.1f s\n", name.c_str(),
           static_cast<long long>(service.times), service.longest);
  const soak_trouble& trouble = run.trouble;
  printf(
      "companions killed %lld, lifecycle requests beside the clients' %lld, "
      "log rotations %lld (largest log %lld bytes), silences of the controller %lld\n",
      static_cast<long long>(trouble.killed), static_cast<long long>(trouble.lifecycle_requests),
      static_cast<long long>(trouble.rotations), static_cast<long long>(trouble.largest_log),
      static_cast<long long>(trouble.silent));
  int64_t replies = 0;
  for (const soak_client& client : run.clients)
    replies += client.replies;
  const int64_t calls = options.calls + trouble.lifecycle_requests + 1;
  printf(
      "soak: %lld calls, %lld replies, %u clients, %.0f s, %.0f calls/s, rss %ld -> %ld kB, "
      "%d sockets for %lld exchanges, %d replacements, %d findings\n",
      static_cast<long long>(calls), static_cast<long long>(replies), kClients, run.elapsed,
      static_cast<double>(calls) / run.elapsed, run.tenth.rss, run.last.rss,
      run.last.sockets - run.first.sockets, static_cast<long long>(controller_requests()),
      run.replacements, findings());
}

static int soak(const soak_options& options) {
  most_calls = options.calls;
  prepare_calls(options.seed);
  soak_run run = {};
  run.supervisor = start_soaked_daemon();
  run.child = service_child(run.supervisor);
  start_controller();
  remember_profiles();
  run.first = sample_child(run.child);
  for (uint32_t i = 0; i <= kClients; ++i)  // the last one is the disturber's
    run.clients.push_back(make_client(i, i % 4 == 3 ? 3 : 1, options.seed));
  run_clients(options, &run);
  check_end(&run);
  print_summary(options, run);
  return findings() == 0 ? 0 : 1;
}

int main(int argc, char** argv) {
  soak_options options;
  if (!parse(argc, argv, &options)) {
    fprintf(stderr,
            "usage: soak [--calls N] [--minutes M] [--seed S] [--report SECONDS] [--lifecycle "
            "TENTHS]\n");
    return 2;
  }
  return soak(options);
}
