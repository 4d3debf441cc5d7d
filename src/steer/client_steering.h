#pragma once

#include <cstddef>
#include <cstdint>

// Steers a client station away from an access point. The parameters come from the
// profile, where the setters of keys.def store them; setting the type triggers the steer.

constexpr int kSteerTypeBlacklist = 0;
constexpr int kSteerTypeBtmRequest = 1;
constexpr int kSteerTypeDisconnect = 3;

// Stores the type in the profile and steers. 0 or -1, reported. The type stays stored
// when it is refused or fails; nothing is stored while the driver may not be queried.
int wlan_setHncSteerStaType(int index, int type);

// Sends a station an action frame with `length` bytes of body, at most 1024, and informs
// the driver that the station is steered. 0 or -1, reported.
int send_btm_action_frame_request(int index, uint32_t category, const uint8_t (&mac)[6],
                                  const uint8_t* body, size_t length);
