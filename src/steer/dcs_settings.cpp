#include "steer/dcs_settings.h"

#include <cstdio>
#include <cstring>

#include "companions/processes.h"
#include "diag/trace.h"
#include "profile/values.h"
#include "steer/dcs_wire.h"
#include "sys/unix_datagram.h"

static constexpr char kDaemonPath[] = "/var/run/dcsD";

static int send_to_daemon(int sock, const void* datagram) {
  // It is no error if the daemon is not running.
  if (unix_datagram_connect(sock, kDaemonPath) != 0) return 0;
  if (unix_datagram_send(sock, datagram, sizeof(dcs_message), kRoomTimeoutMs) == 0) return 0;
  static constexpr const char* kCaller = "notifyDCSSettingChanges";
  const char* text = static_cast<const char*>(datagram) + offsetof(dcs_message, payload);
  trace_rev_error(kCaller, "%s: failed to send message %.*s\n", kCaller,
                  static_cast<int>(sizeof(dcs_message::payload)), text);
  return -1;
}

int notifyDCSSettingChanges(int /*index*/, const void* datagram) {
  const int sock = unix_datagram_socket();
  if (sock < 0) return -1;
  REV_TRACE("%s:socket %d is created\n", __func__, sock);
  const int status = send_to_daemon(sock, datagram);
  unix_datagram_close(sock, nullptr);
  return status;
}

static void note_setting(const char* caller, const char* word, int index, const char* key,
                         const char* value) {
  const unsigned written = write_value(index, key, value);
  if (written == kProfileFailed)
    trace_rev(caller, "%s:failed to update wifi profile %s%s ret:%u\n ", caller, word, key,
              written);
}

int dcsSetNoitfyF(int index, const char* key, unsigned value) {
  const int number = static_cast<int>(value);
  note_setting(__func__, "for ", index, key, decimal(number).text);
  if (strcmp(key, "MSODCSOn") == 0 || strcmp(key, "USERDCSOn") == 0) {
    dcsStart(number);
    return 0;
  }
  dcs_message message = {};
  if (strcmp(key, "DCSDebugLevel") == 0) {
    message.type = kDcsDebugLevel;
    memcpy(message.payload, &number, sizeof number);
  } else {
    message.type = kDcsSetting;
    snprintf(message.payload, sizeof message.payload, "%s=%d", key, number);
    message.length = static_cast<uint32_t>(strlen(message.payload) + 1);
  }
  return notifyDCSSettingChanges(index, &message);
}

#define DCS_SETTING(operation, key)                                 \
  int operation(int index, int value) {                             \
    return dcsSetNoitfyF(index, key, static_cast<unsigned>(value)); \
  }
#include "steer/dcs_settings.def"

int wlan_setDCSRSSIWeight(int index, const char* weight) {
  note_setting(__func__, "", index, "DCSRSSIWeight", weight);
  // The datagram is just the text, without type and length: kept on purpose.
  static constexpr size_t kTextSize = 96;
  char datagram[sizeof(dcs_message)] = {};
  snprintf(datagram, kTextSize, "DCSRSSIWeight=%s", weight);
  return notifyDCSSettingChanges(index, datagram);
}
