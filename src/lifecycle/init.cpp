#include "lifecycle/init.h"

#include <cstdio>

#include "companions/processes.h"
#include "diag/trace.h"
#include "lifecycle/interfaces.h"
#include "lifecycle/power_tables.h"
#include "lifecycle/state.h"
#include "lifecycle/steps.h"
#include "lifecycle/turn.h"
#include "lifecycle/vlan_bridges.h"
#include "statistics/channel_utilization.h"
#include "sys/board.h"
#include "sys/command.h"
#include "wlan/driver_gate.h"

static void set_affinity(int mask, int irq) {
  char command[64];
  snprintf(command, sizeof command, "echo %d > /proc/irq/%d/smp_affinity", mask, irq);
  ex_cmd("wifi_init", command, nullptr);
}

static void set_interrupt_affinities() {
  if (hasMTK7615() != 0) {
    set_affinity(1, 66);
    set_affinity(1, 30);
    set_affinity(1, 31);
    set_affinity(2, 65);
    return;
  }
  ex_cmd("wifi_init",
         "INTRPT=`awk -F':' '/udma1/{print $1}' /proc/interrupts | sed 's/ //g'`; "
         "echo 2 > /proc/irq/$INTRPT/smp_affinity",
         nullptr);
}

static void start_companions() {
  const bool dual = isSingleBand() == 0;
  rtdot1x_start(kRadio24, 1);
  if (dual) {
    rtdot1x_start(kRadio5, 1);
    bndstrgStart(1);
  }
  dcsStart(1);
  MtkCtrlStart(1);
}

int wifi_init() {
  if (!modules_inserted(__func__)) return 1;
  RPC_TRACE("Initializing WLAN\n");
  if (hasMTK7615() != 0) setup_single_sku();
  wifi_interfacesUp(kRadio24);
  if (isSingleBand() == 0) {
    wifi_interfacesUp(kRadio5);
    set_interrupt_affinities();
  }
  wifi_setupVlanBridges();
  start_companions();
  if (hnc_running(__func__)) {
    // Refused on a first init, since the driver may not be queried yet: kept on purpose.
    static_cast<void>(wlan_setChannelUtilizationEnable(kRadio24, 1));
    static_cast<void>(wlan_setChannelUtilizationEnable(kRadio5, 1));
  }
  drivers_inited = 1;
  notify_hnc(1);
  return 1;
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
