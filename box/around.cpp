#include "around.h"

#include <limits.h>
#include <stdio.h>

#include "files.h"
#include "journal.h"
#include "report.h"

bool around_publish(const scenario& s) {
  std::string fresh = std::string(kScenarioPath) + ".new";
  if (!file_write(fresh, s.text)) return false;
  return rename(fresh.c_str(), kScenarioPath) == 0 ||
         report_errno(nullptr, "replace %s", kScenarioPath);
}

void around_go_on(driver_state& state) {
  driver_advance(state, driver_now_us(state));
  if (state.scenario_changed) (void)around_publish(state.around);
  state.scenario_changed = false;
}

void around_write_files(driver_state& state) {
  for (const auto& [path, text] : state.files)
    (void)file_write(path, text);
  state.files.clear();
}

int around_timeout_ms(const driver_state& state) {
  int64_t next = driver_next_us(state);
  if (next == kDriverNever || state.clock.speed <= 0) return -1;
  double left_us = static_cast<double>(next - driver_now_us(state)) / state.clock.speed;
  if (left_us <= 0) return 0;
  return left_us >= INT_MAX ? INT_MAX / 1000 : static_cast<int>(left_us / 1000) + 1;
}
