#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

// The daemon's lifecycle requests.

constexpr uint32_t kLoad = 1;
constexpr uint32_t kInit = 2;
constexpr uint32_t kReset = 3;
constexpr uint32_t kRestartAll = 206;
constexpr uint32_t kRestart = 207;
constexpr uint32_t kSetPrek = 0x010000A9;
constexpr uint32_t kUndoPrek = 0x010000AA;

// Console output at the end of a request.
constexpr char kLoaded[] = "wlan loaded.\n";
constexpr char kInitialized[] = "wlan init - traffic is now passing.\n";
constexpr char kRestarted[] = "Restarting radio with mask: ";

// Starts the daemon with console traces on and the "sleep" in its commands shortened. Returns
// the service child.
pid_t start_lifecycle_daemon(const std::vector<std::string>& environment = {});

// Queues a request. Waits for one more trace with the text, and until the request has left the
// queue.
void queue_and_wait(uint32_t procedure, const std::string& trace);

[[nodiscard]] bool wait_for_trace(const std::string& text);
int count_traces(const std::string& text);

// The same in the daemon's standard error, without escape sequences.
int count_errors(const std::string& text);

// Voluntary and involuntary context switches of all threads of a process.
std::string context_switches(pid_t pid);

// The value of WLAN_GET_PREK_STATUS, which is also its status.
int prek_status();

// Steps whose transcripts are kept for each board. A transcript has all shell command lines,
// ioctls, module files and module calls of the daemon, in order.
struct lifecycle_step {
  std::string name;
  uint32_t procedure;
  std::string trace;  // printed at its end
};
std::vector<lifecycle_step> lifecycle_steps();
void start_traced_daemon();
void run_step(const lifecycle_step& step);
std::string transcript_of_step();
std::string committed_transcript(const std::string& step);

// Writes the last transcript to a place from which it can replace the committed one. Returns
// its path.
std::string save_transcript(const std::string& step);
