#include "lifecycle/requests.h"

#include "diag/trace.h"
#include "lifecycle/init.h"
#include "lifecycle/load.h"
#include "lifecycle/queue.h"
#include "lifecycle/reset.h"
#include "lifecycle/restart.h"
#include "lifecycle/state.h"
#include "lifecycle/turn.h"
#include "sys/board.h"

static constexpr int kAllRadios = 255;

int wlan_load() {
  return wlan_queueLifecycleRequest(load_handler_func, nullptr, "wlan_load",
                                    &lifecycle.load_running);
}

int wlan_init() {
  return wlan_queueLifecycleRequest(init_handler_func, nullptr, "wlan_init",
                                    &lifecycle.init_running);
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
  return wlan_queueLifecycleRequest(restart_handler_func, &mask, "wlan_restart",
                                    &lifecycle.restart_running);
}

int wlan_restart_all() {
  return wlan_restart(kAllRadios);
}

static int reset_now() {
  trace_rev("wlan_reset", "resetting wifi!!!\n");
  set_running(&lifecycle.reset_running, true);
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
