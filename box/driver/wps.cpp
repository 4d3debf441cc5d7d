// Wi-Fi Protected Setup: one session per radio. Every interface of the radio reports its codes.
//
// A session goes through the states of a registrar, evenly over the time that the scenario gives
// it (wps.seconds), and ends with the scenario's outcome. One that nobody answers waits until it
// times out (wps.timeout). scenario/read.cpp has the times of a scenario that gives none.
#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include <algorithm>

#include "driver/parts.h"

enum { kStateOff = 0, kStateStart = 2, kStateConfigured = 3, kStateWaitStart = 7 };
enum { kStatusNone = 0, kStatusBusy = 1, kStatusFailed = 2, kStatusDone = 34 };

// Started; waiting for the station's EAPOL start, its identity, its M1, M3, M5, M7 and its done
// message, and for the EAP failure that ends a session.
static constexpr int32_t kSteps[] = {kStateStart, kStateWaitStart, 9, 12, 18, 20, 22, 24, 26};
static constexpr int kStepCount = sizeof kSteps / sizeof *kSteps;

static constexpr int kModePin = 1;

static std::string setting(const driver_state& state, int bss, const char* key) {
  auto found = state.bss[bss].settings.find(key);
  return found == state.bss[bss].settings.end() ? "" : found->second;
}

static int64_t session_us(const driver_state& state, int radio) {
  const scenario_wps& plan = state.around.radios[radio].wps;
  double seconds = plan.outcome == kScenarioTimeout ? plan.timeout : plan.seconds;
  return static_cast<int64_t>(seconds * 1e6);
}

// A configuration mode of 0 switches WPS off.
void driver_wps_start(driver_state& state, int bss) {
  if (atoi(setting(state, bss, "WscConfMode").c_str()) == 0) return;
  int radio = driver_radio_of(bss);
  const std::string& right_pin = state.around.radios[radio].wps.pin;
  driver_wps& wps = state.radios[radio].wps;
  wps = {};
  wps.running = true;
  wps.bss = bss;
  wps.by_pin = atoi(setting(state, bss, "WscMode").c_str()) == kModePin;
  wps.pin_right = right_pin.empty() || right_pin == setting(state, bss, "WscPinCode");
  wps.start_us = state.now_us;
}

void driver_wps_stop(driver_state& state, int radio) {
  state.radios[radio].wps = {};
}

static int64_t end_us(const driver_state& state, int radio) {
  const driver_wps& wps = state.radios[radio].wps;
  return wps.running ? wps.start_us + session_us(state, radio) : kDriverNever;
}

// A session whose time has passed already ends at the next step.
int64_t driver_wps_next_us(const driver_state& state, int radio) {
  return std::max(end_us(state, radio), state.now_us + 1);
}

static scenario_outcome outcome_of(const driver_state& state, int radio) {
  const driver_wps& wps = state.radios[radio].wps;
  scenario_outcome planned = state.around.radios[radio].wps.outcome;
  return planned == kScenarioSuccess && wps.by_pin && !wps.pin_right ? kScenarioFailure : planned;
}

static void let_in(driver_state& state, int bss) {
  for (driver_station& station : state.stations) {
    if (station.is.by_wps && station.is.bss == bss) station.joined_by_wps = true;
  }
}

void driver_wps_advance(driver_state& state, int radio) {
  driver_wps& wps = state.radios[radio].wps;
  if (!wps.running || end_us(state, radio) > state.now_us) return;
  wps.running = false;
  switch (outcome_of(state, radio)) {
    case kScenarioSuccess:
      wps.state = kStateConfigured;
      wps.status = kStatusDone;
      return let_in(state, wps.bss);
    case kScenarioFailure:
      wps.state = kStateConfigured;
      wps.status = kStatusFailed;
      return;
    case kScenarioTimeout:
      wps.state = kStateOff;
      wps.status = kStatusFailed;
      return;
  }
}

static int32_t state_now(const driver_state& state, int radio) {
  const driver_wps& wps = state.radios[radio].wps;
  if (!wps.running) return wps.state;
  bool answered = state.around.radios[radio].wps.outcome != kScenarioTimeout;
  int64_t spent = state.now_us - wps.start_us, whole = session_us(state, radio);
  int64_t step = whole > 0 ? spent * kStepCount / whole : 0;
  if (!answered && step > 1) step = 1;
  return kSteps[step < kStepCount ? step : kStepCount - 1];
}

// Callers read these codes as whole numbers, so they must have room for all bytes.
static int answer_code(driver_request& r, int32_t code) {
  return r.length < sizeof code ? -EMSGSIZE : driver_answer(r, &code, sizeof code, sizeof code);
}

int driver_query_wps_state(driver_state& state, driver_request& r) {
  int32_t code = state_now(state, driver_radio_of(r.bss));
  driver_decode(r, "state", std::to_string(code));
  return answer_code(r, code);
}

int driver_query_wps_status(driver_state& state, driver_request& r) {
  const driver_wps& wps = state.radios[driver_radio_of(r.bss)].wps;
  int32_t code = wps.running ? static_cast<int32_t>(kStatusBusy) : wps.status;
  driver_decode(r, "status", std::to_string(code));
  return answer_code(r, code);
}

int driver_query_uuid(driver_state&, driver_request& r) {
  char record[121] = "";
  int used = snprintf(record, sizeof record, "28802880-2880-1880-a880-000c4326%02x%02x",
                      driver_radio_of(r.bss), r.bss);
  driver_decode(r, "uuid", record);
  return driver_answer(r, record, sizeof record, static_cast<size_t>(used) + 1);
}
