#include "lifecycle/handlers.h"

#include "companions/processes.h"
#include "diag/trace.h"
#include "lifecycle/load.h"
#include "lifecycle/queue.h"
#include "lifecycle/sequences.h"
#include "lifecycle/turn.h"
#include "sys/board.h"

// Both start true, so that an init or a restart is accepted before any load.
// Read and written in a turn only.
static bool wlan_loaded = true;
static bool wlan_initialized = true;

// Written by the handlers on the worker.
static int last_result;

static constexpr int kAllRadios = 255;

void* load_handler_func(const uint8_t*) {
  last_result = 0;
  set_running(&load_running, true);
  if (wifi_load() == 1) {
    wlan_loaded = true;
    REV_TRACE("wlan loaded.\n");
  } else {
    REV_ERROR("load_handler_func failed !!!\n");
    last_result = -1;
  }
  set_running(&load_running, false);
  return &last_result;
}

void* init_handler_func(const uint8_t*) {
  last_result = 0;
  if (!wlan_loaded) {
    REV_TRACE("WLAN driver(s) has not been loaded\n");
    last_result = -1;
    return &last_result;
  }
  set_running(&init_running, true);
  if (wifi_init() == 1) {
    wlan_initialized = true;
    REV_TRACE("wlan init - traffic is now passing.\n");
  } else {
    REV_ERROR("init_handler_func failed!!!\n");
    last_result = -1;
  }
  set_running(&init_running, false);
  return &last_result;
}

static void forget_drivers() {
  set_running(&reset_running, false);
  wlan_loaded = false;
  wlan_initialized = false;
}

void* reset_handler_func(const uint8_t*) {
  last_result = 0;
  REV_TRACE("resetting wlan -->\n");
  if (init_running) {
    REV_ERROR("init process is running !!!\n");
    last_result = -1;
  }
  if (restart_running) {
    REV_ERROR("restart process is running !!!\n");
    last_result = -1;
  }
  if (wifi_reset() == 1) {
    REV_TRACE("wlan reset complete.\n");
    last_result = 0;
  } else {
    REV_ERROR("reset_handler_func failed !!!\n");
    last_result = -1;
  }
  forget_drivers();
  return &last_result;
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

void* restart_handler_func(const uint8_t*) {
  last_result = 0;
  if (!wlan_initialized) {
    REV_TRACE("Driver(s) have not been initialized\n");
    last_result = -1;
    return &last_result;
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
  set_running(&restart_running, false);
  return &last_result;
}

int wlan_load() {
  return wlan_queueLifecycleRequest(load_handler_func, nullptr, "wlan_load", &load_running);
}

int wlan_init() {
  return wlan_queueLifecycleRequest(init_handler_func, nullptr, "wlan_init", &init_running);
}

int wlan_restart(int index) {
  const int radio = bss_to_radio_index(index);
  if (radio == -1 && index != kAllRadios) {
    REV_ERROR("Invalid radio index\n");
    return 0;
  }
  uint8_t mask = kMaskAll;
  if (radio == kRadio24) mask = kMask24;
  if (radio == kRadio5) mask = kMask5;
  return wlan_queueLifecycleRequest(restart_handler_func, &mask, "wlan_restart", &restart_running);
}

int wlan_restart_all() {
  return wlan_restart(kAllRadios);
}

static int reset_now() {
  trace_rev("wlan_reset", "resetting wifi!!!\n");
  set_running(&reset_running, true);
  if (wifi_reset() != 1) {
    trace_rev_error("wlan_reset", "failed!!!\n");
    return -1;
  }
  trace_rev("wlan_reset", "reset wifi done !!!\n");
  forget_drivers();
  return 0;
}

int wlan_reset() {
  const char* running = begin_reset_turn();
  if (running != nullptr) {
    REV_ERROR("%s %s process is running !!!\n", __func__, running);
    return -1;
  }
  const int status = reset_now();
  end_turn();
  return status;
}
