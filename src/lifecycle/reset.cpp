#include "lifecycle/reset.h"

#include "companions/processes.h"
#include "diag/trace.h"
#include "lifecycle/interfaces.h"
#include "lifecycle/state.h"
#include "lifecycle/steps.h"
#include "lifecycle/turn.h"
#include "lifecycle/vlan_bridges.h"
#include "statistics/channel_utilization.h"
#include "sys/board.h"
#include "sys/command.h"
#include "wlan/driver_gate.h"

static void remove_modules() {
  if (hasMTK7615() != 0) {
    trace_rpc("wifi_reset", "removing kernel module %s\n", "mt7615_ap.ko");
    ex_cmd("wifi_reset", "rmmod mt7615_ap.ko", nullptr);
    return;
  }
  ex_cmd("wifi_reset", "rmmod mt7603e_ap.ko", nullptr);
  ex_cmd("wifi_reset", "rmmod mt7612e_ap.ko", nullptr);
}

int wifi_reset() {
  if (!modules_inserted(__func__)) return 1;
  RPC_TRACE("Reseting WLAN\n");
  // 0 is no radio's index: kept on purpose.
  if (hnc_running(__func__)) static_cast<void>(wlan_setChannelUtilizationEnable(0, 0));
  notify_hnc(0);
  bndstrgStart(0);
  dcsStart(0);
  MtkCtrlStart(0);
  drivers_inited = 0;
  const bool dual = isSingleBand() == 0;
  wifi_interfacesDown(kRadio24);
  if (dual) wifi_interfacesDown(kRadio5);
  wifi_teardownVlanBridges();
  remove_modules();
  lifecycle.modules_loaded = false;
  rtdot1x_start(kRadio24, 0);
  if (dual) rtdot1x_start(kRadio5, 0);
  return 1;
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
