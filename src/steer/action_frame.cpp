#include <algorithm>
#include <cstring>

#include "diag/trace.h"
#include "steer/client_steering.h"
#include "steer/driver_records.h"
#include "steer/mac_text.h"
#include "sys/wext.h"

static constexpr char kName[] = "send_btm_action_frame_request";

static int set_frame_and_steer(int sock, int index, const action_frame_record& frame,
                               const steer_record& steer) {
  // The whole frame is sent, however short its body.
  const wireless_object objects[] = {
      {.flags = kObjectActionFrame | kRtprivSet, .length = sizeof frame, .record = &frame},
      {.flags = kObjectSteer | kRtprivSet, .length = sizeof steer, .record = &steer},
  };
  trace_rev(kName, "sent btm action, length = %d, MacAddr = " MAC_FORMAT ", flags = %d \n",
            objects[0].length, MAC_BYTES(frame.mac), objects[0].flags);
  const int taken = wireless_set_objects(sock, index, objects, 2);
  if (taken == 2) return 0;
  // The second is reported without its set bit: kept on purpose.
  const unsigned refused = taken == 0 ? objects[0].flags : kObjectSteer;
  trace_rev_error(kName, "ioctl failed (cmd=0x%X, sub_cmd=0x%X)\n", kRtprivObject, refused);
  return -1;
}

int send_btm_action_frame_request(int index, uint32_t category, const uint8_t (&mac)[6],
                                  const uint8_t* body, size_t length) {
  action_frame_record frame = {};
  frame.category = category;
  memcpy(frame.mac, mac, sizeof frame.mac);
  memcpy(frame.body, body, std::min(length, sizeof frame.body));
  steer_record steer = {};
  memcpy(steer.mac, mac, sizeof steer.mac);
  steer.kind = kSteerAfterBtm;
  const int sock = wireless_open();
  if (sock < 0) {
    // No newline: kept on purpose.
    REV_ERROR("socket failed");
    return -1;
  }
  const int status = set_frame_and_steer(sock, index, frame, steer);
  wireless_close(sock);
  return status;
}
