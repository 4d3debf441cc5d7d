#include "wlan/wps.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "diag/trace.h"
#include "profile/values.h"
#include "sys/board.h"
#include "sys/command.h"
#include "sys/quoting.h"
#include "sys/wext.h"

// Bits of "WscConfMethods", as numbered by the WPS standard.
static constexpr unsigned kMethodLabel = 0x0004;
static constexpr unsigned kMethodDisplay = 0x0008;
static constexpr unsigned kMethodPushButton = 0x0080;

struct wps_method {
  const char* name;
  unsigned permitted_by;  // any of these bits
  int driver_mode;        // of "WscMode"
};
static constexpr wps_method kPushButton = {"PBC", kMethodPushButton, 2};
static constexpr wps_method kPin = {"PIN", kMethodLabel | kMethodDisplay, 1};

static constexpr size_t kCommandSize = 64;

static void set_driver(const char* caller, int bss, const char* setting) {
  char command[kCommandSize];
  snprintf(command, sizeof command, "iwpriv %s set %s", bss_interface(bss).text, setting);
  ex_cmd(caller, command, nullptr);
}

// If the command does not fit, the PIN is cut inside its quotes.
static void set_pin(const char* caller, int bss, const char* pin) {
  char command[kCommandSize];
  const int length =
      snprintf(command, sizeof command, "iwpriv %s set WscPinCode=", bss_interface(bss).text);
  quote_for_shell(pin, command + length, sizeof command - static_cast<size_t>(length));
  ex_cmd(caller, command, nullptr);
}

static void start_session(const char* caller, int bss, int driver_mode) {
  char mode[16];
  snprintf(mode, sizeof mode, "WscMode=%d", driver_mode);
  const char* const settings[] = {"WscConfMode=7", "WscConfStatus=2", mode, "WscGetConf=1"};
  for (const char* setting : settings) {
    set_driver(caller, bss, setting);
  }
}

static bool wps_enabled(int bss) {
  return bss_number(bss, "WscEnable", kSwitchLimit) != 0;
}

struct wps_switches {
  bool on;  // radio, BSS and WPS
  unsigned methods;
};

static unsigned configuration_methods(int bss) {
  static constexpr int kMethodsLimit = 64;
  char field[kProfileFieldBuffer] = {};
  const int found = read_bss_field(bss, "WscConfMethods", field, kMethodsLimit);
  return found != 0 ? static_cast<uint16_t>(strtol(field, nullptr, 16)) : 0;
}

// Reads all keys, even after one that is off.
static wps_switches read_switches(int bss) {
  const bool radio = profile_number(bss_profile(bss), "RadioOn", kSwitchLimit) != 0;
  const bool enabled = bss_number(bss, "BssEnabled", kSwitchLimit) != 0;
  const bool wps = wps_enabled(bss);
  return {radio && enabled && wps, configuration_methods(bss)};
}

// Reports a method that the profile does not permit.
static bool permitted(const char* caller, int bss, const wps_method& method, unsigned methods) {
  if ((methods & method.permitted_by) != 0) return true;
  trace_rev_error(caller, "IF(%s) WPS %s disabled, WscConfigMethods 0x%04X\n",
                  bss_interface(bss).text, method.name, methods);
  return false;
}

int wlan_setWpsPbcTrigger(int bss) {
  const wps_switches switches = read_switches(bss);
  if (!switches.on) return 0;
  if (!permitted(__func__, bss, kPushButton, switches.methods)) return -1;
  REV_TRACE("Starting WPS PBC mode on %s\n", bss_interface(bss).text);
  start_session(__func__, bss, kPushButton.driver_mode);
  return 0;
}

int wlan_setWpsPushButton(int bss) {
  return wlan_setWpsPbcTrigger(bss);
}

int wlan_setWpsPinStart(int bss, const char* pin) {
  const wps_switches switches = read_switches(bss);
  if (!switches.on) return 0;
  if (!permitted(__func__, bss, kPin, switches.methods)) return -1;
  REV_TRACE("Starting WPS PIN mode on %s\n", bss_interface(bss).text);
  set_pin(__func__, bss, pin);
  start_session(__func__, bss, kPin.driver_mode);
  return 0;
}

int wlan_setWpsOOB(int bss) {
  if (!wps_enabled(bss)) return 0;
  REV_TRACE("Resetting AP to WPS OOB configuration on %s\n", bss_interface(bss).text);
  set_driver(__func__, bss, "WscConfStatus=1");
  return 0;
}

int wlan_setWpsCancel(int bss) {
  if (wps_enabled(bss)) set_driver(__func__, bss, "WscStop");
  return 0;
}

static constexpr unsigned kObjectWpsStatus = 0x0751;
static constexpr unsigned kObjectWpsUuid = 0x0753;
static constexpr unsigned kObjectWpsState = 0x0AA0;

int wlan_getWpsUuid(int bss, char (&uuid)[kWpsUuidSize]) {
  memset(uuid, 0, kWpsUuidSize);
  static_cast<void>(rtpriv_get_ioctl(bss, kRtprivObject, kObjectWpsUuid, uuid, kWpsUuidSize));
  return 0;
}

// The driver's state and status codes of a session.
static constexpr int32_t kStatusFailed = 2;
static constexpr int32_t kStatusDone = 34;

static constexpr char kUnknown[] = "Unknown result";

// Texts of the states; null where the status decides.
static constexpr const char* kStates[] = {
    nullptr,
    "Init",
    "Start",
    nullptr,
    nullptr,
    "Link Up",
    "Send EAPOL start",
    "Wait EAPOL start",
    "Wait upnp start",
    "Wait request ID",
    "Wait response ID",
    "Wait wps start",
    "Wait M1",
    "Sent M1",
    "Sent M2D",
    "Wait M2",
    "received M2D",
    "Wait Pincode",
    "Wait M3",
    "Wait M4",
    "Wait M5",
    "Wait M6",
    "Wait M7",
    "Wait M8",
    "Wait done",
    "Wait ack",
    "Wait EAP fail",
    "Wait disconnect",
};

struct decided_state {
  int32_t state;
  const char* idle;    // status 0 or 1
  const char* failed;  // status 2
  const char* done;    // status 34
};
static constexpr decided_state kDecidedStates[] = {
    {0, "Idle", "Failed", kUnknown},
    {3, kUnknown, "Failed", "Success"},
    // The one state without a failure text: kept on purpose.
    {4, kUnknown, kUnknown, "Success"},
};
static constexpr decided_state kOtherState = {-1, kUnknown, "Failed", kUnknown};

static const decided_state& decided_state_of(int32_t state) {
  for (const decided_state& row : kDecidedStates) {
    if (row.state == state) return row;
  }
  return kOtherState;
}

static const char* result_text(int32_t state, int32_t status) {
  const bool listed = state >= 0 && state < static_cast<int32_t>(std::size(kStates));
  if (listed && kStates[state] != nullptr) return kStates[state];
  const decided_state& texts = decided_state_of(state);
  switch (status) {
    case 0:
    case 1:
      return texts.idle;
    case kStatusFailed:
      return texts.failed;
    case kStatusDone:
      return texts.done;
    default:
      return kUnknown;
  }
}

int wlan_getWpsResultStatus(int radio, char (&status)[kWpsResultStatusSize]) {
  if (radio != kRadio24 && radio != kRadio5) {
    REV_TRACE("Bad index\n");
    return -1;
  }
  // Without an answer, report a radio without a session.
  int32_t state = 0;
  int32_t code = 1;
  static_cast<void>(rtpriv_get_int_ioctl(radio, kRtprivObject, kObjectWpsState, &state));
  static_cast<void>(rtpriv_get_int_ioctl(radio, kRtprivObject, kObjectWpsStatus, &code));
  strcpy(status, result_text(state, code));
  return 0;
}
