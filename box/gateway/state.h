// The state of a running gateway, and the trapped calls of all its processes: read from the
// caller's memory, carried out by the driver model, the modules or the VLANs, and answered.
#pragma once

#include <cstdint>

#include <map>
#include <string>
#include <vector>

#include "base/journal.h"
#include "driver/model.h"
#include "gateway/file_watch.h"
#include "gateway/processes.h"
#include "gateway/rpc_calls.h"
#include "host/interface_news.h"
#include "host/modules.h"
#include "host/sysfs.h"
#include "host/vlan_interfaces.h"
#include "trap/caller.h"
#include "trap/faults.h"

constexpr int kTrapArguments = 4;  // as many arguments as any trapped call needs

// A call that a delay rule holds back; the caller sleeps in it meanwhile.
struct trap_delayed {
  uint64_t id;
  int64_t since_us, due_us;  // monotonic
  int32_t tid;
  uint32_t arch;
  int number;  // of the system call
  uint64_t arguments[kTrapArguments];
  fault_rule rule;
};

struct trap_state {
  int listener;                  // of the filter
  int socket;                    // a socket of the box's network, to ask about interfaces
  int links;                     // news of interfaces
  bool up[kBoardMaxInterfaces];  // what the driver model was told
  driver_state driver;
  modules_state modules;
  vlan_state vlans;
  sysfs_state sysfs;
  caller_known caller;
  rpc_calls calls;
  process_table processes;
  file_watch files;
  std::map<std::string, bool> interfaces;                 // up or not, as last told
  std::map<std::string, process_actor> interface_actors;  // who last set one up or down
  journal log;
  std::vector<fault_rule> faults;
  std::vector<trap_delayed> delayed;
};

// Loads all modules that the board has a card for. Reports what failed.
[[nodiscard]] bool trap_load_modules(trap_state& trap);

// Takes what its interfaces are now as what they are at the start.
void trap_begin(trap_state& trap);

// Takes in what happened around the driver: interfaces that went up or down, writes to the files of
// /sys and /proc. Every trapped call does so first. Also to be called when trap.links or
// trap.sysfs.notify is readable.
void trap_catch_up(trap_state& trap);

// Takes one trapped call. To be called when the listener is readable.
void trap_take(trap_state& trap);

// Handles the delayed calls that are due; returns milliseconds until the next one, -1: none waits.
int trap_run_delayed(trap_state& trap);
