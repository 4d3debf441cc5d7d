#include "lifecycle/restart.h"

#include "companions/processes.h"
#include "diag/trace.h"
#include "lifecycle/interfaces.h"
#include "lifecycle/state.h"
#include "lifecycle/steps.h"
#include "lifecycle/turn.h"
#include "statistics/channel_utilization.h"
#include "sys/board.h"
#include "sys/command.h"
#include "sys/planted.h"
#include "sys/whole_file.h"
#include "wlan/driver_gate.h"

// In the order of a restart: its radios, band steering around all of them, the steps of
// each one.

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

// Leaves the marker that a radio has been restarted since the box started. It is the last
// step but one, and comes even if no interface did. Any user's marker counts; a link that
// leads nowhere does not.
static void mark_restart() {
  static constexpr char kMarker[] = "/tmp/wifi_restart";
  if (path_exists(kMarker) || !planted_make_way(kMarker, false)) return;
  ex_cmd("wifi_restart", "touch /tmp/wifi_restart", nullptr);
}

int wifi_restart(int radio) {
  if (!modules_inserted(__func__)) return 1;
  notify_hnc(0);
  RPC_TRACE("Restarting WLAN\n");
  dcsStart(0);
  MtkCtrlStart(0);
  rtdot1x_start(radio, 0);
  drivers_inited = 0;
  wifi_interfacesDown(radio);
  wifi_interfacesUp(radio);
  drivers_inited = 1;
  rtdot1x_start(radio, 1);
  dcsStart(1);
  MtkCtrlStart(1);
  if (hnc_running(__func__)) static_cast<void>(wlan_setChannelUtilizationEnable(radio, 1));
  mark_restart();
  notify_hnc(1);
  return 1;
}
