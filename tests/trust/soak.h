#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <random>
#include <string>
#include <vector>

#include "wire/table.h"

// The soak: clients call the real daemon at once and without a pause, a disturber
// changes what is around it, and a watcher looks at the service child and at the
// profiles. Whatever is not as promised is a finding.

// What a call is, for the figures.
enum class call_kind { inert, getter, setter, controller, lifecycle, wrong };
constexpr int kCallKinds = 6;
const char* call_kind_name(call_kind kind);

enum class expected {
  result,        // of the row's shape
  garbage,       // "garbage arguments"
  no_procedure,  // the three refusals of a header
  other_version,
  other_program,
  silence,  // no reply at all
};

struct soak_call {
  const procedure_row* row;  // null where the number is nobody's
  call_kind kind;
  expected answer;
  uint32_t program;
  uint32_t version;
  uint32_t procedure;
  std::string arguments;  // encoded
  size_t length;          // of the datagram that is sent; 0: all of it
};

// Notes and prints a finding; the first 40 are printed.
void finding(const char* format, ...) __attribute__((format(printf, 1, 2)));
int findings();

double seconds_now();

// soak_calls: the calls of the mix.

// Makes the calls that are drawn from.
void prepare_calls(unsigned seed);

// The n-th call: each procedure once first, then any. `controller` says whether
// it may ask the controller, which costs the daemon a descriptor.
const soak_call& draw_call(int64_t n, std::mt19937& random, bool controller);
const soak_call& call_of(const std::string& procedure, const std::string& word = "");
int64_t procedures_never_called();

std::string message_of(const soak_call& call, uint32_t xid);

// What is wrong with a reply's bytes; empty when nothing is.
std::string objection(const soak_call& call, uint32_t xid, const std::string& reply);

// soak_client: one caller with a socket of its own.

struct soak_waiting {
  uint32_t xid;
  const soak_call* call;
  double sent;
  std::string ssid;  // that it sets; empty for other calls
};

struct soak_client {
  uint32_t number;
  size_t window;  // calls that it has outstanding at most
  int sock;
  std::mt19937 random;
  uint32_t next_xid;
  std::vector<soak_waiting> waiting;  // in the order of their sending
  std::string ssid;                   // the last one that was answered as written
  std::vector<float> times[kCallKinds];
  int64_t replies;
};

soak_client make_client(uint32_t number, size_t window, unsigned seed);

// Calls until take() has no number left: a number is that of a call, -1 says wait
// a little, -2 that there are no more.
constexpr int64_t kNotYet = -1;
constexpr int64_t kNoMore = -2;
void run_client(soak_client* client, const std::function<int64_t()>& take,
                const std::function<bool()>& controller_free);

// One call, and its reply waited for.
void call_and_check(soak_client* client, const soak_call& call);

// Calls that the daemon was at for about a second or more, by procedure. Filled by
// the clients; read when they are done.
struct long_service {
  int64_t times;
  double longest;  // seconds
};
extern std::map<std::string, long_service> long_services;

// After the last reply: a datagram that still comes is a finding.
void expect_silence(soak_client* client);

// soak_trouble: the controller, the companions, marker files, the log.

void start_controller();
int64_t controller_requests();
void controller_short(int count);
void controller_silent(int count);

struct soak_trouble {
  int64_t killed;  // companions
  int64_t lifecycle_requests;
  int64_t rotations;
  int64_t largest_log;
  int64_t silent;  // requests that the controller did not answer
};

// Changes something every tenth of a second until *stop. `client` makes the
// lifecycle requests; they come every `pace` ticks. `long_run`: companions that
// wait by design are made to, now and then.
void run_trouble(soak_client* client, int pace, bool long_run, const std::atomic<bool>* stop,
                 soak_trouble* trouble);

// soak_watch: the service child and the profiles.

struct child_sample {
  pid_t pid;
  long rss;  // kB
  long pss;
  int sockets;  // descriptors
  int others;
  int threads;
  int zombies;
};
child_sample sample_child(pid_t child);

// Takes the profiles as they are for whole.
void remember_profiles();
void check_profiles();
// How often they were looked at.
int64_t profile_checks();

// By the sockets of the service and of its clients, because they were full.
int64_t dropped_datagrams();
