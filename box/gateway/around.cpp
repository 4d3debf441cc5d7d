#include "gateway/around.h"

#include <limits.h>
#include <cstdio>

#include "base/files.h"
#include "base/journal.h"
#include "base/report.h"
#include "gateway/effects.h"
#include "scenario/parts.h"

static bool replace(const std::string& path, const std::string& text) {
  std::string fresh = path + ".new";
  if (!file_write(fresh, text)) return false;
  return rename(fresh.c_str(), path.c_str()) == 0 ||
         report_errno(nullptr, "replace %s", path.c_str());
}

bool around_publish(const driver_state& state) {
  return replace(kClockPath, clock_text(state.clock)) && replace(kScenarioPath, state.around.text);
}

// Makes all delayed calls due; trap_run_delayed does them.
static void end_delays(trap_state& trap) {
  int64_t now = journal_now_us();
  for (trap_delayed& held : trap.delayed) {
    held.due_us = now;
    held.rule.delay_ms = static_cast<int>((now - held.since_us) / 1000);
  }
}

bool around_fail(trap_state& trap, const std::vector<std::string>& words, std::string& wrong) {
  if (words.size() == 1 && words[0] == kFaultClear) {
    trap.faults.clear();
    end_delays(trap);
    return true;
  }
  fault_rule rule;
  if (!fault_parse_words(words, rule, wrong)) return false;
  fault_add(trap.faults, rule);
  return true;
}

static void run_fails(trap_state& trap) {
  std::vector<std::string> fails;
  fails.swap(trap.driver.fails);
  for (const std::string& line : fails) {
    std::string wrong;
    if (!around_fail(trap, scenario_words(line), wrong)) report("event: %s", wrong.c_str());
  }
}

static void advance_to(trap_state& trap, int64_t us) {
  while (trap.driver.now_us < us)
    driver_advance(trap.driver, us);
}

static void do_what_is_asked(trap_state& trap) {
  if (trap.driver.scenario_changed) static_cast<void>(around_publish(trap.driver));
  trap.driver.scenario_changed = false;
  if (!trap.driver.fails.empty()) run_fails(trap);
}

void around_go_on(trap_state& trap) {
  double speed = 0;
  do {
    speed = trap.driver.clock.speed;
    driver_advance(trap.driver, driver_now_us(trap.driver));
  } while (trap.driver.clock.speed != speed);
  do_what_is_asked(trap);
  effect_tell_air(trap, nullptr);
}

void around_advance(trap_state& trap, int64_t us) {
  int64_t to = driver_now_us(trap.driver) + us;
  advance_to(trap, to);
  clock_set(trap.driver.clock, to, journal_now_us());
  static_cast<void>(around_publish(trap.driver));
  do_what_is_asked(trap);
  effect_tell_air(trap, nullptr);
}

void around_pause(trap_state& trap, bool paused) {
  clock_pause(trap.driver.clock, paused, journal_now_us());
  static_cast<void>(around_publish(trap.driver));
}

void around_write_files(driver_state& state) {
  for (const auto& [path, text] : state.files)
    static_cast<void>(file_write(path, text));
  state.files.clear();
}

int around_timeout_ms(const driver_state& state) {
  int64_t next = driver_next_us(state);
  if (next == kDriverNever || !clock_runs(state.clock)) return -1;
  double left_us = static_cast<double>(next - driver_now_us(state)) / state.clock.speed;
  if (left_us <= 0) return 0;
  return left_us >= INT_MAX ? INT_MAX / 1000 : static_cast<int>(left_us / 1000) + 1;
}
