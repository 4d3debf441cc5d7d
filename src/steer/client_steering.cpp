#include "steer/client_steering.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "diag/trace.h"
#include "profile/store.h"
#include "steer/driver_records.h"
#include "steer/keys.h"
#include "steer/mac_text.h"
#include "sys/board.h"
#include "sys/command.h"
#include "sys/quoting.h"
#include "sys/wext.h"
#include "wlan/driver_gate.h"

static constexpr char kSteerFunction[] = "wlan_setHncSteerStaType";
static constexpr int kActionWithTime = 2;

using mac_key_text = char[kMacKeyLength + 1];

static int digit_value(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  return -1;
}

// Two digits per byte, up to the first incomplete or invalid pair.
static size_t decode_payload(const char* text, uint8_t (&body)[kActionFrameBody]) {
  size_t length = 0;
  for (; length < sizeof body; ++length, text += 2) {
    const int high = digit_value(text[0]);
    const int low = high < 0 ? -1 : digit_value(text[1]);
    if (low < 0) break;
    body[length] = static_cast<uint8_t>(high * 16 + low);
  }
  return length;
}

static int request_transition(int index) {
  mac_key_text target = {};
  if (wifiprofile_getParam(bss_profile(index), "HNCActionFrameMac", target, kMacKeyLength) == 0) {
    trace_rev_error(kSteerFunction, "%s:failed to action frame STA, can't find STA mac\n ",
                    kSteerFunction);
    return -1;
  }
  char payload[kPayloadKeyLength + 1] = {};
  if (wifiprofile_getParam(bss_profile(index), "HNCActionFramePayload", payload,
                           kPayloadKeyLength) == 0) {
    trace_rev_error(kSteerFunction, "%s:failed to action frame payload\n ", kSteerFunction);
    return -1;
  }
  uint8_t mac[6];
  parse_mac(target, mac);
  uint8_t body[kActionFrameBody];
  const size_t length = decode_payload(payload, body);
  trace_rev(kSteerFunction, " STEER STA: mac address " MAC_FORMAT " \n ", MAC_BYTES(mac));
  trace_rev(kSteerFunction, " STEER STA: length = %zu\n ", length);
  return send_btm_action_frame_request(index, kCategoryWnm, mac, body, length);
}

// Reads the station for any steer but a transition request. False when there is none.
static bool read_station(int index, mac_key_text& station) {
  if (wifiprofile_getParam(bss_profile(index), "HNCSteerSTAMac", station, kMacKeyLength) != 0)
    return true;
  trace_rev_error(kSteerFunction, "failed to steer STA, can't find STA mac\n ");
  return false;
}

static void set_text(int index, const char* name, const char* value) {
  char command[160];
  const auto word = shell_word_of<4 * kMacKeyLength + 3>(value);
  snprintf(command, sizeof command, "iwpriv %s set %s=%s", bss_interface(index).text, name,
           word.text);
  run_command(command);
}

static int disconnect(int index) {
  mac_key_text station = {};
  if (!read_station(index, station)) return -1;
  set_text(index, "DisConnectSta", station);
  return 0;
}

// Without an action to perform, the access list keeps the station out.
static int add_to_access_list(int index, const char* station) {
  set_text(index, "AccessPolicy", "2");
  set_text(index, "ACLAddEntry", station);
  return 0;
}

static int blacklist_time(int index) {
  char value[kKeyLength + 1] = {};
  const int found =
      wifiprofile_getParam(bss_profile(index), "HNCSteerBlackListTimer", value, kKeyLength);
  return found != 0 ? atoi(value) : 0;
}

static int blacklist(int index) {
  mac_key_text station = {};
  if (!read_station(index, station)) return -1;
  char value[kKeyLength + 1] = {};
  const int found =
      wifiprofile_getParam(bss_profile(index), "HNCSteerBlackListAction", value, kKeyLength);
  if (found == 0) {
    trace_rev(kSteerFunction, "failed to get wifi HNCSteerBlackListAction, ret:%d\n ", found);
    return add_to_access_list(index, station);
  }
  steer_record record = {};
  parse_mac(station, record.mac);
  record.kind = kSteerBlacklist;
  record.action = atoi(value);
  trace_rev(kSteerFunction, "Steer STA type: %d\n ", record.action);
  if (record.action < 0 || record.action > kActionWithTime) {
    trace_rev_error(kSteerFunction, "Action type illegal. \n ");
    return -1;
  }
  if (record.action == kActionWithTime) record.seconds = blacklist_time(index);
  return rtpriv_set_ioctl_2(index, kRtprivObject, kObjectSteer, &record, sizeof record) == 1 ? 0
                                                                                             : -1;
}

int wlan_setHncSteerStaType(int index, int type) {
  if (!driver_is_inited(__func__)) return -1;
  // Stored before it is checked, even if invalid: kept on purpose.
  if (write_number_key(__func__, index, "HNCSteerSTAType", type) != 0) return -1;
  switch (type) {
    case kSteerTypeBtmRequest:
      return request_transition(index);
    case kSteerTypeDisconnect:
      return disconnect(index);
    case kSteerTypeBlacklist:
      return blacklist(index);
    default:
      REV_ERROR("Steer type illegal. \n ");
      return -1;
  }
}
