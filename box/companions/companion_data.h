// The member "companions" of /run/gwbox/scenario.json says what the companions answer and do. It is
// read again at every request, so a change takes effect at once. Every member is optional, and so
// is the file.
//
//   {
//     "speed": 1,                       box seconds per second
//     "companions": {
//       "bndstrg_1": {
//         "marker_after": 0.2           seconds until its marker file is there; below 0: never
//       },
//       "mtk_ctrl": {
//         "behaviour": "normal",        or "silent", "short", "late"
//         "status": 0,                  of its answers; 4: it could not deliver the events
//         "events": [                   the newest last; beyond 32 they are only counted
//           {"type": 1, "code": -3, "mac": "02:0c:43:00:00:01",
//            "age": 12.5,               seconds ago
//            "radio": 0}                0 or 8, as in the request; missing: every radio
//         ]
//       },
//       "radstat": {
//         "ra0": {                      and "ra8"
//           "behaviour": "normal",      or "zeros", "short", "late", "silent"
//           "cst": 40, "ap_act": 12, "busy": 31,             percent; these vary if not given
//           "nf_max": -84, "nf_min": -95, "nf_med": -91, "nf_avg": -90,
//           "retry": 3,                 percent
//           "tx": 1000, "tx_rate": 10,  packets at the box's start, and per second after that
//           "rx": 2000, "rx_rate": 20,
//           "rssi": [-90, ...]          up to 37 numbers, the rest is 0
//         }
//       },
//       "hnc": {
//         "behaviour": "normal",        or "silent", "empty", "short", "huge", "late",
//                                       "unterminated"
//         "settings": {"TopologyEnable": "1", "UpdateFwUrl/3": "..."},     KEY or KEY/INDEX
//         "hne": [                      the table of extenders; "index" defaults to 1, 2, ...
//           {"index": 1, "mac": "...", "name": "...", "status": 1, "active": true,
//            "manufacturer": "...", "model_name": "...", "model_number": "...",
//            "serial_number": "...", "last_sync_attempt": 1700000000,
//            "software_version": "...", "uplink_type": 1, "uplink_rate": 866,
//            "upgrade_available": false, "ip_address": "...", "uplink_mac": "...",
//            "rssi": -60, "last_error": "...", "description": "..."}
//         ],
//         "supported_hne": [            the table of extender models that are accepted
//           {"index": 1, "row_status": 1, "manufacturer": "...", "model_name": "...",
//            "model_number": "...", "firmware_url": "...", "firmware_file_name": "...",
//            "firmware_user_name": "...", "firmware_password": "...", "update_time": 0,
//            "config_on_demand": 1}
//         ]
//       }
//     }
//   }
//
// The listener keeps what requests set; a value in the file takes effect again once it changes
// there.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

// The companion's object; empty when there is none.
nlohmann::json companion_data(const char* name);

// Box seconds per second; 1 if the scenario's speed is 0.
double companion_speed();

// A member of an object, or OTHERWISE when it is missing or of another type.
double companion_number(const nlohmann::json& object, const char* member, double otherwise);
std::string companion_text(const nlohmann::json& object, const char* member,
                           const std::string& otherwise);

// The member "behaviour", or "normal" without it.
std::string companion_behaviour(const nlohmann::json& object);

// The six bytes of "02:0c:43:00:00:01"; zeros for a text that is not an address.
std::string companion_mac(const std::string& text);
