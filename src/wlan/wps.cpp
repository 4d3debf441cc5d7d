#include "wlan/wps.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "diag/trace.h"
#include "profile/profile.h"
#include "profile/profile_values.h"
#include "sys/board.h"
#include "sys/command.h"
#include "sys/wext.h"
#include "wlan/inert.h"

// Bits of "WscConfMethods", as the WPS standard numbers its configuration
// methods.
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
  snprintf(command, sizeof command, "iwpriv ra%d set %s", bss - 1, setting);
  run_captured(caller, command);
}

// What does not fit the command is cut inside the PIN's quotes.
static void set_pin(const char* caller, int bss, const char* pin) {
  char command[kCommandSize];
  const int length = snprintf(command, sizeof command, "iwpriv ra%d set WscPinCode=", bss - 1);
  quote_for_shell(pin, command + length, sizeof command - static_cast<size_t>(length));
  run_captured(caller, command);
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

static bool session_possible(int bss) {
  return profile_number(bss_profile(bss), "RadioOn", kSwitchLimit) != 0 &&
         bss_number(bss, "BssEnabled", kSwitchLimit) != 0 && wps_enabled(bss);
}

// Whether the profile permits the method; a refusal is reported.
static bool permitted(const char* caller, int bss, const wps_method& method) {
  static constexpr int kMethodsLimit = 64;
  char field[kProfileFieldBuffer] = {};
  unsigned methods = 0;
  if (wifiprofile_getParam_with_index(bss_profile(bss), "WscConfMethods", bss_list_position(bss),
                                      field, kMethodsLimit) != 0) {
    methods = static_cast<uint16_t>(strtol(field, nullptr, 16));
  }
  if ((methods & method.permitted_by) != 0) return true;
  trace_rev_error(caller, "IF(ra%d) WPS %s disabled, WscConfigMethods 0x%04X\n", bss - 1,
                  method.name, methods);
  return false;
}

int wlan_setWpsPbcTrigger(int bss) {
  if (!session_possible(bss)) return 0;
  if (!permitted(__func__, bss, kPushButton)) return -1;
  REV_TRACE("Starting WPS PBC mode on ra%d\n", bss - 1);
  start_session(__func__, bss, kPushButton.driver_mode);
  return 0;
}

int wlan_setWpsPushButton(int bss) {
  return wlan_setWpsPbcTrigger(bss);
}

int wlan_setWpsPinStart(int bss, const char* pin) {
  if (!session_possible(bss)) return 0;
  if (!permitted(__func__, bss, kPin)) return -1;
  REV_TRACE("Starting WPS PIN mode on ra%d\n", bss - 1);
  set_pin(__func__, bss, pin);
  start_session(__func__, bss, kPin.driver_mode);
  return 0;
}

int wlan_setWpsOOB(int bss) {
  if (!wps_enabled(bss)) return 0;
  REV_TRACE("Resetting AP to WPS OOB configuration on ra%d\n", bss - 1);
  set_driver(__func__, bss, "WscConfStatus=1");
  return 0;
}

int wlan_setWpsCancel(int bss) {
  if (wps_enabled(bss)) set_driver(__func__, bss, "WscStop");
  return 0;
}

int wlan_setWpsMode(int bss, int mode) {
  return wlan_setWpsEnable(bss, mode);
}

static constexpr unsigned kObjectWpsStatus = 0x0751;
static constexpr unsigned kObjectWpsUuid = 0x0753;
static constexpr unsigned kObjectWpsState = 0x0AA0;

int wlan_getWpsUuid(int bss, char* uuid) {
  memset(uuid, 0, kWpsUuidSize);
  // A failure is reported by the request and leaves the text empty.
  static_cast<void>(rtpriv_get_ioctl(bss, kRtprivObject, kObjectWpsUuid, uuid, kWpsUuidSize));
  return 0;
}

// The driver's state and status codes of a session, and what they mean together.
static constexpr int32_t kStatusFailed = 2;
static constexpr int32_t kStatusDone = 34;

struct wps_texts {
  const char* idle;    // status 0 or 1
  const char* failed;  // status 2
  const char* done;    // status 34
  const char* other;
};

static constexpr wps_texts whatever_the_status(const char* text) {
  return {text, text, text, text};
}

static constexpr char kUnknown[] = "Unknown result";

static constexpr wps_texts kStates[] = {
    {"Idle", "Failed", kUnknown, kUnknown},
    whatever_the_status("Init"),
    whatever_the_status("Start"),
    {kUnknown, "Failed", "Success", kUnknown},
    // The one state that does not know a failure: kept on purpose.
    {kUnknown, kUnknown, "Success", kUnknown},
    whatever_the_status("Link Up"),
    whatever_the_status("Send EAPOL start"),
    whatever_the_status("Wait EAPOL start"),
    whatever_the_status("Wait upnp start"),
    whatever_the_status("Wait request ID"),
    whatever_the_status("Wait response ID"),
    whatever_the_status("Wait wps start"),
    whatever_the_status("Wait M1"),
    whatever_the_status("Sent M1"),
    whatever_the_status("Sent M2D"),
    whatever_the_status("Wait M2"),
    whatever_the_status("received M2D"),
    whatever_the_status("Wait Pincode"),
    whatever_the_status("Wait M3"),
    whatever_the_status("Wait M4"),
    whatever_the_status("Wait M5"),
    whatever_the_status("Wait M6"),
    whatever_the_status("Wait M7"),
    whatever_the_status("Wait M8"),
    whatever_the_status("Wait done"),
    whatever_the_status("Wait ack"),
    whatever_the_status("Wait EAP fail"),
    whatever_the_status("Wait disconnect"),
};
static constexpr wps_texts kOtherState = {kUnknown, "Failed", kUnknown, kUnknown};

static const char* result_text(int32_t state, int32_t status) {
  const bool listed = state >= 0 && state < static_cast<int32_t>(std::size(kStates));
  const wps_texts& texts = listed ? kStates[state] : kOtherState;
  switch (status) {
    case 0:
    case 1:
      return texts.idle;
    case kStatusFailed:
      return texts.failed;
    case kStatusDone:
      return texts.done;
    default:
      return texts.other;
  }
}

int wlan_getWpsResultStatus(int radio, char* status) {
  if (radio != kRadio24 && radio != kRadio5) {
    REV_TRACE("Bad index\n");
    return -1;
  }
  // What the driver does not tell stands for a radio without a session.
  int32_t state = 0;
  int32_t code = 1;
  static_cast<void>(rtpriv_get_int_ioctl(radio, kRtprivObject, kObjectWpsState, &state));
  static_cast<void>(rtpriv_get_int_ioctl(radio, kRtprivObject, kObjectWpsStatus, &code));
  strcpy(status, result_text(state, code));
  return 0;
}
