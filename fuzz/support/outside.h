#pragma once

#include <csetjmp>
#include <cstdint>
#include <cstdio>
#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "support/input.h"

// The outside of the daemon, simulated in this process: files, sockets, driver,
// companions, shell, clock, kernel modules and the host's library. The daemon's "open"
// is sim_open here, see the script "simulate". Nothing is waited for, started or
// written, and runs with the same input are the same. Answers come from the input;
// without any, requests succeed and answers are empty.
//
// It checks while it serves: descriptors, streams, children and mappings exist and are
// released, a buffer has the size that a request announces, only known files are
// written, only known commands are run, and a profile always holds, as a whole, the old
// content or one that the store meant to write.

struct outside_answer {
  uint8_t outcome;  // 0: as asked
  std::string_view bytes;
};

struct answer_queue {
  std::vector<outside_answer> answers;
  size_t used = 0;
};

struct outside_file {
  std::string path;
  std::string content;
  bool there = true;
  bool symlink = false;
  bool hard_linked = false;
  bool fifo = false;
  unsigned mode = 0644;
};

enum class descriptor_kind { kClosed, kFile, kInet, kCompanion };

struct outside_descriptor {
  descriptor_kind kind = descriptor_kind::kClosed;
  outside_file* file = nullptr;
  size_t offset = 0;
  bool append = false;
  bool locked = false;
  bool kept = false;  // the controller's exchanges keep their sockets
  bool sent = false;
  unsigned stale = 0;  // datagrams that arrived before any request
  outside_answer peer = {};
  std::string bound;
};

// A profile that the current call changes, and what it may hold at the end.
struct profile_watch {
  std::vector<std::string> allowed;  // the old content first; empty: not touched
  std::string candidate;             // the last temporary file that was flushed
  bool in_place = false;             // the profile itself is being written
  bool failed = false;               // a write to it has failed in this call
};

struct fault {
  uint8_t calls_before;
  uint8_t how;
};

struct outside {
  answer_queue driver, commands, peers;
  std::deque<fault> faults;
  std::deque<outside_file> files;
  std::deque<outside_descriptor> descriptors;
  std::map<FILE*, std::string> streams;
  std::vector<int> children;  // their outcomes
  std::vector<void*> mappings;
  uint64_t clock_us = 1'700'000'000'000'000;
  uint32_t there = 0;  // which files of kPresence exist, a bit each
  unsigned commands_run = 0;
  int libraries = 0;
  uint8_t board = 0;            // MT7603 and MT7612, MT7603, MT7615, no list of devices
  bool faults_struck = false;   // in the current call
  bool no_socket = false;       // a socket could not be opened in the current call
  bool any_key_forced = false;  // not only keys that operations force
  bool exit_allowed = false;
  // The lifecycle worker, which runs when the harness says so.
  bool worker_there = false;
  bool worker_runs = false;
  void* (*worker)(void*) = nullptr;
  jmp_buf worker_idle;
  // Where exit() jumps to, and what it calls first to clean up.
  jmp_buf ended;
  void (*at_exit)() = nullptr;
  profile_watch profiles[2];  // 2.4 GHz, 5 GHz
};

// The outside of this run; null between runs.
extern outside* simulated;

// Files whose presence the input decides, with a bit of `there`; all others are files of
// the store or do not exist. A "*" in a name stands for any text.
struct presence {
  const char* path;
  uint32_t bit;
};
enum : uint32_t {
  kConsoleOn = 1u << 0,
  kLogOn = 1u << 1,
  kControllerOn = 1u << 2,
  kFactoryMode = 1u << 3,
  kDrive = 1u << 4,
  kBandSteeringMarker = 1u << 5,
  kRestarted = 1u << 6,
  kEeprom = 1u << 7,
  kCalibration1 = 1u << 8,
  kCalibration2 = 1u << 9,
  kCalibrationBackup = 1u << 10,
  kRadstatLink = 1u << 11,
  kModules = 1u << 12,
  kPowerTables = 1u << 13,
  kHostLibrary = 1u << 14,
  kHostFunction = 1u << 15,
};
bool outside_has(std::string_view path);

// The first starts a run: it restores the daemon's state and gives the store's files
// their usual content. The second ends it and restores the output streams.
void outside_begin(outside* world);
void outside_end();

// Applies a record that is no call: answers, profile lines, presence, faults.
void outside_apply(const record& what);

// Around each call: the first clears what was noted about the last call. The second
// checks that everything opened was closed and that each profile that was changed holds
// one of the contents that the store meant.
void outside_before_call();
void outside_after_call();

// Runs the worker, if there is one, until its queue is empty. `last`: also one whose
// thread could not be created, so that what is queued is freed.
void outside_run_worker(bool last);

// How many descriptors are open, without those kept open on purpose.
unsigned outside_open_descriptors();

// What the parts share.

// Reads memory that the daemon names, so that a sanitizer reports it if not all is there.
void must_be_there(const void* start, size_t size);

constexpr int kFirstDescriptor = 1000;
outside_answer next_answer(answer_queue* queue);
bool strike(uint8_t* how);  // whether this call fails; then errno says why
int new_descriptor(descriptor_kind kind);
outside_descriptor* descriptor_of(int fd);
outside_file* find_file(std::string_view path);
outside_file* make_file(std::string_view path);
int profile_number_of(std::string_view path);  // 0, 1; -1: no profile
bool is_temporary(std::string_view path);
