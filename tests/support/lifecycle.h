#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

// The daemon's lifecycle requests, for tests.

constexpr uint32_t kLoad = 1;
constexpr uint32_t kInit = 2;
constexpr uint32_t kReset = 3;
constexpr uint32_t kRestartAll = 206;
constexpr uint32_t kRestart = 207;
constexpr uint32_t kSetPrek = 0x010000A9;
constexpr uint32_t kUndoPrek = 0x010000AA;

// What a request's end looks like on the console.
constexpr char kLoaded[] = "wlan loaded.\n";
constexpr char kInitialized[] = "wlan init - traffic is now passing.\n";
constexpr char kRestarted[] = "Restarting radio with mask: ";

// Starts the daemon with console traces on and the "sleep" of its commands cut
// short. Returns the service child.
pid_t start_lifecycle_daemon(const std::vector<std::string>& environment = {});

// Queues a request and waits for one more trace that has the text and for the
// request's removal from the queue.
void queue_and_wait(uint32_t procedure, const std::string& trace);

[[nodiscard]] bool wait_for_trace(const std::string& text);
int count_traces(const std::string& text);

// The same in what the daemon wrote to standard error, escape sequences left
// out.
int count_errors(const std::string& text);

// Voluntary and involuntary context switches of all threads of a process.
std::string context_switches(pid_t pid);

// The value that WLAN_GET_PREK_STATUS answers, which is also its status.
int prek_status();

// Steps whose transcripts are kept, by board: every shell command line of the
// daemon, every ioctl, every module file and every module call, in order.
struct lifecycle_step {
  std::string name;
  uint32_t procedure;
  std::string trace;  // of its end
};
std::vector<lifecycle_step> lifecycle_steps();
void start_traced_daemon();
void run_step(const lifecycle_step& step);
std::string transcript_of_step();
std::string committed_transcript(const std::string& step);

// Writes the last transcript where it can replace the committed one; its path.
std::string save_transcript(const std::string& step);
