#include "gateway/conditions.h"

#include <elf.h>
#include <cstdio>

#include "base/files.h"
#include "client/base/text.h"
#include "trap/caller.h"

enum class wants { kNothing, kInterface, kMac };

static constexpr struct {
  const char* name;
  condition_kind kind;
  wants argument;
} kConditions[] = {
    {"quiet", condition_kind::kQuiet, wants::kNothing},
    {"on", condition_kind::kOn, wants::kInterface},
    {"off", condition_kind::kOff, wants::kInterface},
    {"station", condition_kind::kStation, wants::kMac},
    {"gone", condition_kind::kGone, wants::kMac},
};

std::vector<std::string> condition_names() {
  std::vector<std::string> names;
  for (const auto& row : kConditions)
    names.push_back(row.name);
  return names;
}

static bool parse_argument(wants argument, const std::vector<std::string>& words, condition& wanted,
                           std::string& wrong) {
  if (words.size() != (argument == wants::kNothing ? 1u : 2u)) {
    wrong = words[0] + (argument == wants::kNothing ? " takes no more words" : " takes one word");
    return false;
  }
  switch (argument) {
    case wants::kNothing:
      return true;
    case wants::kInterface:
      wanted.interface = board_interface_number(words[1].c_str());
      if (wanted.interface < 0) wrong = text_quote(words[1]) + " is not an interface: ra0 to ra15";
      return wanted.interface >= 0;
    case wants::kMac:
      if (mac_parse(words[1], wanted.mac)) return true;
      wrong = text_quote(words[1]) + " is not a MAC address";
      return false;
  }
  return false;
}

bool condition_parse(const std::vector<std::string>& words, condition& wanted, std::string& wrong) {
  for (const auto& row : kConditions) {
    if (words.empty() || words[0] != row.name) continue;
    wanted = {};
    wanted.kind = row.kind;
    return parse_argument(row.argument, words, wanted, wrong);
  }
  wrong = "wait takes quiet, on, off, station, gone or journal";
  return false;
}

// System calls in which a thread waits to be given something to do, in 64-bit and 32-bit programs.
// A poll with a time limit waits for an answer, and whoever serves calls and waits for a process
// has started that to do its work.
static constexpr struct {
  int number_64, number_32;
  bool is_poll, is_wait;
} kIdleCalls[] = {
    {7, 168, true, false},     // poll
    {219, 0, true, false},     // restart_syscall: a poll that a signal has interrupted
    {202, 240, false, false},  // futex
    {61, 114, false, true},    // wait4
    {247, 284, false, true},   // waitid
};

static bool is_32_bit(pid_t pid) {
  std::string head = file_read_piece(caller_proc_path(pid, "exe"), EI_NIDENT);
  return head.size() == EI_NIDENT && head[EI_CLASS] == ELFCLASS32;
}

// A thread that runs, or is about to, is in no call.
static bool is_idle(int32_t tid, bool is_32, bool serves) {
  std::string call = file_read(caller_proc_path(tid, "syscall"));
  int number = -1;
  unsigned long long milliseconds = 0;
  if (sscanf(call.c_str(), "%d %*x %*x %llx", &number, &milliseconds) != 2) return false;
  for (const auto& row : kIdleCalls) {
    if (number != (is_32 ? row.number_32 : row.number_64)) continue;
    bool has_limit = row.is_poll && static_cast<int32_t>(milliseconds) != -1;
    return !has_limit && !(row.is_wait && serves);
  }
  return false;
}

static bool all_threads_idle(pid_t pid, bool serves) {
  bool is_32 = is_32_bit(pid);
  for (int32_t tid : caller_threads(pid)) {
    if (!is_idle(tid, is_32, serves)) return false;
  }
  return true;
}

// What a process is still doing; empty: nothing.
static std::string work_of(const trap_state& trap, pid_t pid, const process_known& process) {
  bool is_companion = !process.companion.empty();
  if (!process.command.empty() && !is_companion) {
    return "the daemon's command runs: " + process.command;
  }
  if ((!process.is_daemon && !is_companion) || all_threads_idle(pid, process.serves)) return "";
  if (is_companion) return process.companion + " is at work";
  const std::string& call = trap.calls.open.empty() ? trap.calls.worker.call : "";
  return "the daemon is at work" + (call.empty() ? "" : ", last on " + call);
}

// Time that stands still brings no radio up.
static std::string radio_that_comes_up(const trap_state& trap) {
  const driver_state& driver = trap.driver;
  for (int radio = 0; radio < kScenarioRadios && clock_runs(driver.clock); ++radio) {
    int first = radio == 0 ? 0 : kBoardFirst5ghz;
    if (driver.bss[first].up && driver.radios[radio].ready_us > driver.now_us) {
      return "ra" + std::to_string(first) + " comes up";
    }
  }
  return "";
}

static bool is_quiet(trap_state& trap, std::string& missing) {
  missing = trap.delayed.empty() ? "" : "a failure that was set holds back a request";
  rpc_calls_catch_up(trap.calls);
  process_learn_daemons(trap.processes, trap.calls);
  for (const auto& [pid, process] : trap.processes.known) {
    bool lives = process_find(trap.processes, pid) != nullptr;
    if (lives && missing.empty()) missing = work_of(trap, pid, process);
  }
  if (missing.empty() && rpc_calls_wait()) missing = "a call waits for the daemon";
  if (missing.empty()) missing = radio_that_comes_up(trap);
  if (missing.empty()) rpc_calls_settle(trap.calls);
  return missing.empty();
}

static bool beacons(const trap_state& trap, const condition& wanted, std::string& missing) {
  bool is_on = driver_beacons(trap.driver, wanted.interface);
  missing = "ra" + std::to_string(wanted.interface) + (is_on ? " is on air" : " is off air");
  return is_on;
}

static bool is_there(const trap_state& trap, const condition& wanted, std::string& missing) {
  missing = mac_text(wanted.mac) + " is not there";
  for (const driver_station& station : trap.driver.stations) {
    if (station.is.mac != wanted.mac || !station.associated) continue;
    missing = mac_text(wanted.mac) + " is at ra" + std::to_string(station.bss);
    return true;
  }
  return false;
}

bool condition_holds(trap_state& trap, const condition& wanted, std::string& missing) {
  switch (wanted.kind) {
    case condition_kind::kQuiet:
      return is_quiet(trap, missing);
    case condition_kind::kOn:
      return beacons(trap, wanted, missing);
    case condition_kind::kOff:
      return !beacons(trap, wanted, missing);
    case condition_kind::kStation:
      return is_there(trap, wanted, missing);
    case condition_kind::kGone:
      return !is_there(trap, wanted, missing);
  }
  return false;
}
