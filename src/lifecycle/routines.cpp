#include "lifecycle/routines.h"

#include "companions/processes.h"
#include "diag/trace.h"
#include "lifecycle/load.h"
#include "lifecycle/sequences.h"
#include "lifecycle/state.h"
#include "lifecycle/turn.h"
#include "sys/board.h"

void* load_handler_func(const uint8_t*) {
  lifecycle.last_result = 0;
  set_running(&lifecycle.load_running, true);
  if (wifi_load() == 1) {
    lifecycle.wlan_loaded = true;
    REV_TRACE("wlan loaded.\n");
  } else {
    REV_ERROR("load_handler_func failed !!!\n");
    lifecycle.last_result = -1;
  }
  set_running(&lifecycle.load_running, false);
  return &lifecycle.last_result;
}

void* init_handler_func(const uint8_t*) {
  lifecycle.last_result = 0;
  if (!lifecycle.wlan_loaded) {
    REV_TRACE("WLAN driver(s) has not been loaded\n");
    lifecycle.last_result = -1;
    return &lifecycle.last_result;
  }
  set_running(&lifecycle.init_running, true);
  if (wifi_init() == 1) {
    lifecycle.wlan_initialized = true;
    REV_TRACE("wlan init - traffic is now passing.\n");
  } else {
    REV_ERROR("init_handler_func failed!!!\n");
    lifecycle.last_result = -1;
  }
  set_running(&lifecycle.init_running, false);
  return &lifecycle.last_result;
}

void forget_drivers() {
  set_running(&lifecycle.reset_running, false);
  lifecycle.wlan_loaded = false;
  lifecycle.wlan_initialized = false;
}

void* reset_handler_func(const uint8_t*) {
  lifecycle.last_result = 0;
  REV_TRACE("resetting wlan -->\n");
  if (lifecycle.init_running) {
    REV_ERROR("init process is running !!!\n");
    lifecycle.last_result = -1;
  }
  if (lifecycle.restart_running) {
    REV_ERROR("restart process is running !!!\n");
    lifecycle.last_result = -1;
  }
  if (wifi_reset() == 1) {
    REV_TRACE("wlan reset complete.\n");
    lifecycle.last_result = 0;
  } else {
    REV_ERROR("reset_handler_func failed !!!\n");
    lifecycle.last_result = -1;
  }
  forget_drivers();
  return &lifecycle.last_result;
}

static void restart_radio(int radio) {
  if (wifi_restart(radio) == 1) return;
  trace_rev_error("restart_handler_func", radio == kRadio24 ? "Failed to restart MTK 2.4G Radio\n"
                                                            : "Failed to restart MTK 5.0G Radio\n");
}

static void restart_radios(uint8_t mask) {
  static constexpr char kName[] = "restart_handler_func";
  if (mask == kMaskAll) {
    restart_radio(kRadio24);
    if (isSingleBand() != 0) return;
    restart_radio(kRadio5);
    trace_rev(kName, "All radio(s) have been restarted\n");
    return;
  }
  if ((mask & 0x0F) != 0) {
    restart_radio(kRadio24);
    trace_rev(kName, "2.4GHz radio restarted\n");
  }
  if (mask > 0x0F) {
    restart_radio(kRadio5);
    trace_rev(kName, "5GHz radio restarted\n");
  }
}

// Takes the radios of all pending restarts and marks the restart as running: a restart
// asked for from now on is another request.
static uint8_t begin_restart() {
  pthread_mutex_lock(&lifecycle.lock);
  const uint8_t mask = lifecycle.pending_restart;
  lifecycle.pending_restart = 0;
  lifecycle.queue_head->state = &lifecycle.restart_running;
  lifecycle.queue_head->started = true;
  pthread_mutex_unlock(&lifecycle.lock);
  set_running(&lifecycle.restart_running, true);
  return mask;
}

void* restart_handler_func(const uint8_t*) {
  lifecycle.last_result = 0;
  if (!lifecycle.wlan_initialized) {
    REV_TRACE("Driver(s) have not been initialized\n");
    lifecycle.last_result = -1;
    return &lifecycle.last_result;
  }
  const uint8_t mask = begin_restart();
  if (mask == 0) {
    REV_TRACE("Nothing to do\n");
  } else {
    REV_TRACE("Restarting radio with mask: %02x\n", mask);
    bndstrgStart(0);
    restart_radios(mask);
    bndstrgStart(1);
  }
  set_running(&lifecycle.restart_running, false);
  return &lifecycle.last_result;
}
