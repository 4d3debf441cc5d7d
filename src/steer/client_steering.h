#pragma once

#include <cstddef>
#include <cstdint>

// Steering a client station away from an access point. The parameters of a
// steer come from the profile, where the setters of keys.def put them;
// the type triggers it.

constexpr int kSteerTypeBlacklist = 0;
constexpr int kSteerTypeBtmRequest = 1;
constexpr int kSteerTypeDisconnect = 3;

// Notes the type in the profile and steers. 0 or -1, reported; a type that is
// refused or fails stays noted, and while the driver may not be queried
// nothing is.
int wlan_setHncSteerStaType(int index, int type);

// Sends a station an action frame with `length` bytes of body, at most 1024,
// and tells the driver that it is steered. 0 or -1, reported.
int send_btm_action_frame_request(int index, uint32_t category, const uint8_t (&mac)[6],
                                  const uint8_t* body, size_t length);
