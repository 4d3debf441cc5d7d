// Wi-Fi Protected Setup: one session per radio, whose codes every interface of the radio tells.
//
// A session goes through the states of a registrar, evenly over the time that the scenario gives
// it, and comes to the scenario's outcome. One that nobody answers waits until it times out.
#include <errno.h>
#include <stdio.h>
#include <stdlib.h>

#include "driver_parts.h"

enum { STATE_OFF = 0, STATE_START = 2, STATE_CONFIGURED = 3, STATE_WAIT_START = 7 };
enum { STATUS_NONE = 0, STATUS_BUSY = 1, STATUS_FAILED = 2, STATUS_DONE = 34 };

// Waiting for its request, its M1, M3, M5, M7, its done message and the end of the link.
static constexpr int32_t STEPS[] = {STATE_START, STATE_WAIT_START, 9, 12, 18, 20, 22, 24, 26};
static constexpr int STEP_COUNT = sizeof STEPS / sizeof *STEPS;

static constexpr int MODE_PIN = 1;

static std::string setting(const driver_state& state, int bss, const char* key) {
  auto found = state.bss[bss].settings.find(key);
  return found == state.bss[bss].settings.end() ? "" : found->second;
}

static int64_t session_us(const driver_state& state, int radio) {
  const scenario_wps& plan = state.around.radios[radio].wps;
  double seconds = plan.outcome == SCENARIO_TIMEOUT ? plan.timeout : plan.seconds;
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
  wps.by_pin = atoi(setting(state, bss, "WscMode").c_str()) == MODE_PIN;
  wps.pin_right = right_pin.empty() || right_pin == setting(state, bss, "WscPinCode");
  wps.start_us = state.now_us;
}

void driver_wps_stop(driver_state& state, int radio) {
  state.radios[radio].wps = {};
}

int64_t driver_wps_next_us(const driver_state& state, int radio) {
  const driver_wps& wps = state.radios[radio].wps;
  return wps.running ? wps.start_us + session_us(state, radio) : DRIVER_NEVER;
}

static scenario_outcome outcome_of(const driver_state& state, int radio) {
  const driver_wps& wps = state.radios[radio].wps;
  scenario_outcome planned = state.around.radios[radio].wps.outcome;
  return planned == SCENARIO_SUCCESS && wps.by_pin && !wps.pin_right ? SCENARIO_FAILURE : planned;
}

static void let_in(driver_state& state, int bss) {
  for (driver_station& station : state.stations) {
    if (station.is.by_wps && station.is.bss == bss) station.joined_by_wps = true;
  }
}

void driver_wps_advance(driver_state& state, int radio) {
  driver_wps& wps = state.radios[radio].wps;
  if (!wps.running || driver_wps_next_us(state, radio) > state.now_us) return;
  wps.running = false;
  switch (outcome_of(state, radio)) {
    case SCENARIO_SUCCESS:
      wps.state = STATE_CONFIGURED;
      wps.status = STATUS_DONE;
      return let_in(state, wps.bss);
    case SCENARIO_FAILURE:
      wps.state = STATE_CONFIGURED;
      wps.status = STATUS_FAILED;
      return;
    case SCENARIO_TIMEOUT:
      wps.state = STATE_OFF;
      wps.status = STATUS_FAILED;
      return;
  }
}

static int32_t state_now(const driver_state& state, int radio) {
  const driver_wps& wps = state.radios[radio].wps;
  if (!wps.running) return wps.state;
  bool answered = state.around.radios[radio].wps.outcome != SCENARIO_TIMEOUT;
  int64_t spent = state.now_us - wps.start_us, whole = session_us(state, radio);
  int64_t step = whole > 0 ? spent * STEP_COUNT / whole : 0;
  if (!answered && step > 1) step = 1;
  return STEPS[step < STEP_COUNT ? step : STEP_COUNT - 1];
}

int driver_query_wps_state(driver_state& state, driver_request& r) {
  int32_t code = state_now(state, driver_radio_of(r.bss));
  driver_decode(r, "state", std::to_string(code));
  return driver_answer(r, &code, sizeof code, sizeof code);
}

int driver_query_wps_status(driver_state& state, driver_request& r) {
  const driver_wps& wps = state.radios[driver_radio_of(r.bss)].wps;
  int32_t code = wps.running ? static_cast<int32_t>(STATUS_BUSY) : wps.status;
  driver_decode(r, "status", std::to_string(code));
  // These codes are whole numbers to their callers: no byte of them can be left out.
  return r.length < sizeof code ? -EMSGSIZE : driver_answer(r, &code, sizeof code, sizeof code);
}

// Made from the address of the radio, as the driver makes it.
int driver_query_uuid(driver_state&, driver_request& r) {
  char record[121] = "";
  int used = snprintf(record, sizeof record, "28802880-2880-1880-a880-000c4326%02x%02x",
                      driver_radio_of(r.bss), r.bss);
  driver_decode(r, "uuid", record);
  return driver_answer(r, record, sizeof record, static_cast<size_t>(used) + 1);
}
