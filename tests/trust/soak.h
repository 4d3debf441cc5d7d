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

// The soak: several clients call the real daemon at the same time without a pause, a
// disturber changes its surroundings, and a watcher checks the service child and the
// profiles. Every broken promise is a finding.

// The kind of a call, for the statistics.
enum class call_kind { kInert, kGetter, kSetter, kController, kLifecycle, kWrong };
constexpr int kCallKinds = 6;
const char* call_kind_name(call_kind kind);

enum class expected {
  kResult,       // of the row's shape
  kGarbage,      // "garbage arguments"
  kNoProcedure,  // one of the three refusals of a header
  kOtherVersion,
  kOtherProgram,
  kSilence,  // no reply at all
};

struct soak_call {
  const procedure_row* row;  // null for an unknown procedure number
  call_kind kind;
  expected answer;
  uint32_t program;
  uint32_t version;
  uint32_t procedure;
  std::string arguments;  // encoded
  size_t length;          // bytes of the datagram to send; 0: all of it
};

// Counts a finding and prints the first 40.
void finding(const char* format, ...) __attribute__((format(printf, 1, 2)));
int findings();

double seconds_now();

// soak_calls: the mix of calls.

// Makes the calls to draw from.
void prepare_calls(unsigned seed);

// The n-th call: each procedure once, then any at random. `controller` says whether it
// may ask the controller; each such request costs the daemon a descriptor.
const soak_call& draw_call(int64_t n, std::mt19937& random, bool controller);
const soak_call& call_of(const std::string& procedure, const std::string& word = "");
int64_t procedures_never_called();

std::string message_of(const soak_call& call, uint32_t xid);

// What is wrong with a reply; empty when nothing is.
std::string objection(const soak_call& call, uint32_t xid, const std::string& reply);

// soak_client: one caller with its own socket.

struct soak_waiting {
  uint32_t xid;
  const soak_call* call;
  double sent;
  std::string ssid;  // the one that it sets; empty for other calls
};

struct soak_client {
  uint32_t number;
  size_t window;  // how many calls it may have outstanding
  int sock;
  std::mt19937 random;
  uint32_t next_xid;
  std::vector<soak_waiting> waiting;  // in the order in which they were sent
  std::string ssid;                   // the last one whose write was confirmed
  std::vector<float> times[kCallKinds];
  int64_t replies;
};

soak_client make_client(uint32_t number, size_t window, unsigned seed);

// Makes calls until take() returns kNoMore. take() returns the number of the next call,
// or kNotYet to wait a little.
constexpr int64_t kNotYet = -1;
constexpr int64_t kNoMore = -2;
void run_client(soak_client* client, const std::function<int64_t()>& take,
                const std::function<bool()>& controller_free);

// Makes one call and waits for its reply.
void call_and_check(soak_client* client, const soak_call& call);

// Calls that kept the daemon busy for about a second or more, by procedure. The clients
// fill it; read it after they have ended.
struct long_service {
  int64_t times;
  double longest;  // seconds
};
extern std::map<std::string, long_service> long_services;

// Called after the last reply: any further datagram is a finding.
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
  int64_t silent;  // requests that the controller left unanswered
};

// Changes something every tenth of a second until *stop. `client` makes a lifecycle
// request every `pace` ticks. `long_run`: now and then companions fall silent, so that
// calls wait for them.
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

// Remembers the profiles' keys as the whole set.
void remember_profiles();
void check_profiles();
// How often the profiles were checked.
int64_t profile_checks();

// Datagrams dropped because the socket of the service or of a client was full.
int64_t dropped_datagrams();
