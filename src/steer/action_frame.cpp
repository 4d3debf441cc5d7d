#include <algorithm>
#include <cstring>

#include "diag/trace.h"
#include "steer/client_steering.h"
#include "steer/driver_records.h"
#include "steer/mac_text.h"
#include "sys/wext.h"
#include "sys/wireless.h"

int send_btm_action_frame_request(int index, uint32_t category, const uint8_t (&mac)[6],
                                  const uint8_t* body, size_t length) {
  action_frame_record frame = {};
  frame.category = category;
  memcpy(frame.mac, mac, sizeof frame.mac);
  memcpy(frame.body, body, std::min(length, sizeof frame.body));
  steer_record steer = {};
  memcpy(steer.mac, mac, sizeof steer.mac);
  steer.kind = kSteerAfterBtm;
  // The whole frame goes out, however long its body is.
  const wireless_object objects[] = {
      {.flags = kObjectActionFrame | kSetBit, .length = sizeof frame, .record = &frame},
      {.flags = kObjectSteer | kSetBit, .length = sizeof steer, .record = &steer},
  };
  REV_TRACE("sent btm action, length = %d, MacAddr = " MAC_FORMAT ", flags = %d \n",
            objects[0].length, MAC_BYTES(mac), objects[0].flags);
  switch (wireless_set_objects(index, objects, 2)) {
    case 2:
      return 0;
    case 1:
      // Named without its set bit: kept on purpose.
      REV_ERROR("ioctl failed (cmd=0x%X, sub_cmd=0x%X)\n", kRtprivObject, kObjectSteer);
      return -1;
    case 0:
      REV_ERROR("ioctl failed (cmd=0x%X, sub_cmd=0x%X)\n", kRtprivObject, objects[0].flags);
      return -1;
    default:
      // Without a line end: kept on purpose.
      REV_ERROR("socket failed");
      return -1;
  }
}
