#include "payload.h"

// The layouts. Offsets of the driver's own records are those of its 32-bit
// little-endian structures; what a result type of wlan_config.x names has the
// same names here.

namespace {

using enum field_type;

// The driver keeps byte counters before packet counters and what it sent before
// what it received.
constexpr payload_field kBasicStats[] = {
    {"bytes_sent", kCounter32, 0, 0, "B", "", ""},
    {"bytes_received", kCounter32, 4, 0, "B", "", ""},
    {"packets_sent", kCounter32, 8, 0, "", "", ""},
    {"packets_received", kCounter32, 12, 0, "", "", ""},
    {"associations", kU32, 16, 0, "", "", "stations associated with the BSS"},
};

constexpr payload_field kStats[] = {
    {"errors_sent", kCounter32, 0, 0, "", "", "packets that could not be sent"},
    {"errors_received", kCounter32, 4, 0, "", "", "packets received with errors"},
    {"unicast_packets_sent", kCounter32, 8, 0, "", "", "to one station; 0 of a radio"},
    {"unicast_packets_received", kCounter32, 12, 0, "", "", "for one station; 0 of a radio"},
    {"discard_packets_sent", kCounter32, 16, 0, "", "", "packets to send that were dropped"},
    {"discard_packets_received", kCounter32, 20, 0, "", "", "received packets that were dropped"},
    {"multicast_packets_sent", kCounter32, 24, 0, "", "", "to a group; 0 of a radio"},
    {"multicast_packets_received", kCounter32, 28, 0, "", "", "for a group; 0 of a radio"},
    {"broadcast_packets_sent", kCounter32, 32, 0, "", "", "to all; 0 of a radio"},
    {"broadcast_packets_received", kCounter32, 36, 0, "", "", "for all; 0 of a radio"},
    {"unknown_protocol_packets_received", kCounter32, 40, 0, "", "", "always 0"},
    {"bytes_sent", kCounter32, 44, 0, "B", "", "sent by a radio; 0 of a BSS"},
    {"bytes_received", kCounter32, 48, 0, "B", "", "received by a radio; 0 of a BSS"},
    {"packets_sent", kCounter32, 52, 0, "", "", "sent by a radio; 0 of a BSS"},
    {"packets_received", kCounter32, 56, 0, "", "", "received by a radio; 0 of a BSS"},
    {"reserved", kU32, 60, 0, "", "", "always 0"},
};

constexpr payload_field kBytesSent[] = {{"bytes_sent", kCounter64, 0, 0, "B", "", "sent so far"}};
constexpr payload_field kBytesReceived[] = {
    {"bytes_received", kCounter64, 0, 0, "B", "", "received so far"}};
constexpr payload_field kTxPackets[] = {{"packets_sent", kCounterI64, 0, 0, "", "", "sent so far"}};
constexpr payload_field kRxPackets[] = {
    {"packets_received", kCounterI64, 0, 0, "", "", "received so far"}};

constexpr payload_field kChannelStatistics[] = {
    {"channel_busy", kI32, 0, 0, "%", "", "share of time that the channel is busy; -1: unknown"},
    {"ap_activity", kI32, 4, 0, "%", "", "share of time that this AP is active; -1: unknown"},
    {"busy_time", kI32, 8, 0, "%", "", "-1: unknown"},
};

constexpr payload_field kNoiseFloor[] = {
    {"minimum", kI32, 0, 0, "dBm", "", "-1: unknown"},
    {"maximum", kI32, 4, 0, "dBm", "", "-1: unknown"},
    {"median", kI32, 8, 0, "dBm", "", "-1: unknown"},
    {"average", kI32, 12, 0, "dBm", "", "-1: unknown"},
};

constexpr payload_field kRssiEntry[] = {
    {"rssi", kI64, 0, 0, "", "RSSI", "as the statistics daemon counts it; -1: unknown"}};
constexpr payload_rows kRssiTable = {"entries", kAllRows, 0, 8, 37, kRssiEntry};

constexpr payload_field kBssidPort[] = {
    {"bssid", kMac, 0, 0, "", "", ""},
    {"port", kU16, 6, 0, "", "", ""},
};

constexpr payload_field kDot11u[] = {
    {"access_network_type", kI32, 0, 0, "", "", "hotspot: type of the access network"},
    {"internet", kFlag, 4, 0, "", "", "hotspot: leads to the internet"},
    {"asra", kFlag, 8, 0, "", "", "hotspot: additional step required for access"},
    {"esr", kFlag, 12, 0, "", "", "hotspot: emergency services reachable"},
    {"uesa", kFlag, 16, 0, "", "", "hotspot: unauthenticated emergency service accessible"},
};

constexpr payload_field kAssocDevice[] = {
    {"mac_address", kText, 0, 18, "", "", ""},
    {"host_name", kText, 18, 64, "", "", ""},
    {"ip_address", kText, 82, 45, "", "", ""},
    {"standard", kText, 127, 17, "", "", "802.11 standard"},
    {"authenticated", kFlag, 144, 0, "", "", ""},
    {"associated_seconds", kU32, 148, 0, "s", "", "time since the association"},
    {"tx_rate", kU32, 152, 0, "", "", "transmit rate"},
    {"rx_rate", kU32, 156, 0, "", "", "receive rate"},
    {"max_rate", kU32, 160, 0, "", "", "highest rate"},
    {"rssi", kI32, 164, 0, "dBm", "", "signal"},
    {"packets_sent", kCounter32, 168, 0, "", "", ""},
    {"packets_received", kCounter32, 172, 0, "", "", ""},
    {"association_id", kU16, 176, 0, "", "", ""},
    {"bytes_sent", kCounter32, 180, 0, "B", "", ""},
    {"bytes_received", kCounter32, 184, 0, "B", "", ""},
    {"retries", kU32, 188, 0, "", "", "retransmissions"},
    {"power_save", kU8, 192, 0, "", "", ""},
    {"noise", kI32, 196, 0, "dBm", "", ""},
    {"ssid", kText, 200, 32, "", "", ""},
};

// An entry of the driver's station table.
constexpr payload_field kStation[] = {
    {"bss_position", kU8, 0, 0, "", "BSS", "position of its BSS within the radio, from 0"},
    {"mac_address", kMac, 1, 0, "", "STATION", ""},
    {"association_id", kU8, 7, 0, "", "AID", ""},
    {"power_save", kU8, 8, 0, "", "PS", "1: in power save"},
    {"mimo_power_save", kU8, 9, 0, "", "", "MIMO power save mode"},
    {"rssi_0", kI8, 10, 0, "dBm", "RSSI", "signal on the first chain"},
    {"rssi_1", kI8, 11, 0, "dBm", "", "signal on the second chain"},
    {"rssi_2", kI8, 12, 0, "dBm", "", "signal on the third chain"},
    {"rssi_3", kI8, 13, 0, "dBm", "", "signal on the fourth chain"},
    {"connected_seconds", kU32, 16, 0, "s", "ASSOC", "time since the association"},
    {"tx_rate", kRate, 20, 0, "Mbit/s", "TX", "rate of the last packet to it"},
    {"rx_rate", kRate, 24, 0, "Mbit/s", "RX", "rate of the last packet from it"},
    {"packets_sent", kCounter32, 32, 0, "", "PACKETS", "packets sent to it"},
    {"failures", kCounter32, 36, 0, "", "FAILED", "packets to it that failed"},
};
constexpr payload_rows kStations = {"stations", 0, 4, 40, 128, kStation};

// As wlan_get_btm_associated_device packs it.
constexpr payload_field kBtmStation[] = {
    {"mac_address", kText, 40, 17, "", "STATION", ""},
    {"rssi", kI32, 0, 0, "dBm", "RSSI", "strongest of its chains; -127: none is plausible"},
    {"downlink_rate", kRate1024, 4, 0, "kbit/s", "DOWN",
     "rate of the last packet to it; 1024 a Mbit"},
    {"uplink_rate", kRate1024, 8, 0, "kbit/s", "UP",
     "rate of the last packet from it; 1024 a Mbit; without an MT7615 the downlink's"},
    {"tx_mcs", kI32, 12, 0, "", "MCS", "MCS or rate index of the last packet to it"},
    {"rx_mcs", kI32, 16, 0, "", "", "that of the last packet from it; without an MT7615 tx_mcs"},
    {"bytes_sent", kCounter64, 20, 0, "B", "SENT", "bytes sent to it"},
    {"bytes_received", kCounter64, 28, 0, "B", "RECEIVED", "bytes received from it"},
    {"backhaul", kFlag, 36, 0, "", "", "its BSS is a backhaul BSS"},
    {"btm", kU8, 59, 0, "", "BTM",
     "802.11v BSS transition capability times 8; without an MT7615 0, for unknown"},
    {"is_ht", kFlag, 68, 0, "", "", "802.11n or later"},
    {"is_vht", kFlag, 72, 0, "", "", "802.11ac"},
};
constexpr payload_rows kBtmStations = {"stations", 0, 4, 76, 32, kBtmStation};

// The driver's own entries, passed on as they are. The layout is that of the
// simulated driver: to be held against hardware here, and only here.
constexpr payload_field kNeighbour[] = {
    {"bssid", kMac, 0, 0, "", "BSSID", ""},
    {"channel", kU8, 6, 0, "", "CH", ""},
    {"rssi", kI8, 7, 0, "dBm", "RSSI", "signal"},
    {"ssid", kText, 8, 33, "", "SSID", "network name"},
    {"security", kText, 41, 23, "", "SECURITY", "authentication and encryption"},
    {"mode", kText, 64, 15, "", "MODE", "802.11 mode"},
};
constexpr payload_rows kNeighbours = {"networks", 0, 4, 100, 64, kNeighbour};
constexpr payload_field kSurvey[] = {
    {"driver_data", kBytes, 6404, 360, "", "", "the driver's own, behind its entries"}};

constexpr payload_field kMacText[] = {{"mac_address", kText, 0, 18, "", "", ""}};

constexpr payload_field kNonAssoc[] = {
    {"valid", kFlag, 0, 0, "", "", "0: the station was not seen"},
    {"rssi", kI32, 4, 0, "dBm", "", "signal of its last probe request"},
    {"time", kTime, 8, 0, "", "", "of that probe request"},
    {"mac_address", kText, 12, 17, "", "", "the station"},
};

constexpr payload_field kSteerEvent[] = {
    {"time", kTime, 24, 0, "", "TIME", "when it happened"},
    {"type", kU32, 0, 0, "", "TYPE", "event type of the control daemon"},
    {"mac_address", kText, 4, 17, "", "STATION", "the station"},
    {"code", kText, 28, 8, "", "CODE", "code of the event"},
};
constexpr payload_rows kSteerEvents = {"events", 1152, 0, 36, 32, kSteerEvent};

// Others know the size of the record and where last_sync_attempt stands; the
// widths of the texts are those of the simulated controller: to be held against
// the real one here, and only here.
constexpr payload_field kExtender[] = {
    {"index", kU32, 0, 0, "", "", "row of the table"},
    {"mac_address", kText, 4, 24, "", "", "of the extender"},
    {"device_name", kText, 28, 240, "", "", "for people; hnc_set_hne_device_name sets it"},
    {"status", kU32, 268, 0, "", "", "as the controller counts it"},
    {"active", kFlag, 272, 0, "", "", ""},
    {"manufacturer", kText, 276, 160, "", "", ""},
    {"model_name", kText, 436, 160, "", "", ""},
    {"model_number", kText, 596, 160, "", "", ""},
    {"serial_number", kText, 756, 160, "", "", ""},
    {"last_sync_attempt", kTime, 916, 0, "", "", "last attempt to synchronise it"},
    {"software_version", kText, 920, 128, "", "", ""},
    {"uplink_type", kI32, 1048, 0, "", "", "as the controller counts it"},
    {"uplink_rate", kI32, 1052, 0, "Mbit/s", "", ""},
    {"upgrade_available", kFlag, 1056, 0, "", "", "newer firmware is there"},
    {"ip_address", kText, 1060, 16, "", "", ""},
    {"uplink_mac_address", kText, 1076, 24, "", "", "of what it is connected to"},
    {"rssi", kI32, 1100, 0, "dBm", "", "signal of its uplink"},
    {"last_error", kText, 1104, 132, "", "", ""},
    {"description", kText, 1236, 256, "", "", ""},
};

constexpr payload_field kSupported[] = {
    {"index", kI32, 0, 0, "", "", "row of the table"},
    {"row_status", kI32, 4, 0, "", "", "as the controller counts it"},
    {"manufacturer", kText, 8, 64, "", "", ""},
    {"model_name", kText, 72, 64, "", "", ""},
    {"model_number", kText, 136, 64, "", "", ""},
    {"firmware_url", kText, 200, 256, "", "", "where its firmware is"},
    {"firmware_file_name", kText, 456, 256, "", "", ""},
    {"firmware_user_name", kText, 712, 256, "", "", "user name for it"},
    {"firmware_password", kText, 968, 256, "", "", "password for it"},
    {"update_time", kTime, 1224, 0, "", "", "when to update"},
    {"config_on_demand", kFlag, 1228, 0, "", "", "configure it on demand"},
};

constexpr payload_layout kLayouts[] = {
    {"WLAN_GET_BSSID_PORT", kBssidPort, nullptr},
    {"WLAN_GET_BASIC_STATS", kBasicStats, nullptr},
    {"WLAN_GET_STATS", kStats, nullptr},
    {"WLAN_GET_ASSOC_DEVICE", kAssocDevice, nullptr},
    {"WLAN_GET_AP_SCAN_RESULT", kSurvey, &kNeighbours},
    {"WLAN_GET_ASSOC_DEVICES_TABLE", {}, &kStations},
    {"WLAN_GET_CHANNEL_STATISTICS", kChannelStatistics, nullptr},
    {"WLAN_GET_CHANNEL_NOISE_FLOOR", kNoiseFloor, nullptr},
    {"WLAN_GET_RADIO_TX_PACKETS", kTxPackets, nullptr},
    {"WLAN_GET_RADIO_RX_PACKETS", kRxPackets, nullptr},
    {"WLAN_GET_RSSI_TABLE", {}, &kRssiTable},
    {"WLAN_GET_HNC_STEER_STA_MAC_ADDRESS", kMacText, nullptr},
    {"WLAN_GET_HNC_ACTION_FRAME_MAC_ADDRESS", kMacText, nullptr},
    {"WLAN_GET_NA_STA_REQUEST_MAC_ADDRESS", kMacText, nullptr},
    {"WLAN_GET_NA_STA_REPORT", kNonAssoc, nullptr},
    {"WLAN_GET_BTM_ASSOCIATED_DEVICE", {}, &kBtmStations},
    {"WLAN_GET_RADIO_BYTES_SENT", kBytesSent, nullptr},
    {"WLAN_GET_RADIO_BYTES_RECEIVED", kBytesReceived, nullptr},
    {"WLAN_GET_SSID_BYTES_SENT", kBytesSent, nullptr},
    {"WLAN_GET_SSID_BYTES_RECEIVED", kBytesReceived, nullptr},
    {"WLAN_GET_STEER_EVENT_REPORT", {}, &kSteerEvents},
    {"WLAN_GET_DOT11U_ATTRIBUTE", kDot11u, nullptr},
    {"HNC_GET_HNE_TABLE_ENTRY", kExtender, nullptr},
    {"HNC_GET_SUPPORTED_HNE_TABLE_ENTRY", kSupported, nullptr},
};

constexpr value_meaning kValues[] = {
    {"WLAN_GET_ASSOC_DEVICES_NUM", "", "stations associated with the BSS"},
    {"WLAN_GET_CURRENT_CHANNEL", "", "channel number"},
    {"WLAN_GET_AP_SCAN_STATUS", "", "0: none asked for, 1: running, 2: failed, 3: finished"},
    {"WLAN_GET_RETRANSMISSION_METRIC", "%", "share of packets sent again; -1: unknown"},
    {"WLAN_GET_BTM_CAPABLE", "", "1: 802.11v BSS transition management can be used"},
    {"WLAN_GET_BTM_ENABLE", "", "1: 802.11v BSS transition management is on"},
    {"WLAN_GET_CHANNEL_UTILIZATION_ENABLE", "", "1: the channel's utilization is measured"},
    {"WLAN_GET_CHANNEL_UTILIZATION", "%", "share of time that the channel is busy"},
    {"WLAN_GET_OPERATING_CLASS", "", "operating class of the channel, IEEE 802.11 annex E"},
    {"WLAN_GET_HT_SUPPORT", "", "1: the wireless mode has 802.11n"},
    {"WLAN_GET_VHT_SUPPORT", "", "1: the wireless mode has 802.11ac"},
    {"WLAN_GET_HNC_STEER_STA_TYPE", "", "0: blacklist, 1: BSS transition request, 3: disconnect"},
    {"WLAN_GET_HNC_STEER_BLACKLIST_ACTION", "", "0, 1, or 2: for the blacklist timer"},
    {"WLAN_GET_HNC_STEER_BLACKLIST_TIMER", "s", "time of blacklist action 2"},
    {"WLAN_GET_RADIO_MAX_BIT_RATE", "Mbit/s", "bit rate of the radio"},
    {"WLAN_GET_ON_CHANNEL_MAX_TX_POWER_DBM", "dBm", "limit of the current channel"},
    {"WLAN_GET_RADIO_MAX_TX_POWER_DBM", "dBm", "highest limit of all channels"},
    {"WLAN_GET_BSS_HNC_SERVICE", "", "service of the BSS for the home network; 7: backhaul"},
    {"WLAN_GET_PREK_STATUS", "",
     "0: calibrated, 2: calibrated, with a backup, 3: not calibrated, -1: incomplete"},
    {"HNC_GET_HNE_CONFIG_ATTEMPTS", "", "attempts to configure an extender"},
    {"HNC_GET_HNE_CONFIG_DURATION", "", "duration of the attempts, as the controller counts it"},
};

// Setters that answer what became of the profile's update.
constexpr const char* kUpdates[] = {
    "WLAN_SET_BASIC_ENCRYPTION_MODES", "WLAN_SET_BASIC_AUTHENTICATION_MODES",
    "WLAN_SET_WPA_ENCRYPTION_MODES",   "WLAN_SET_WPA_AUTHENTICATION_MODES",
    "WLAN_SET_RADIUS_SERVER_ADDRESS",  "WLAN_SET_BSS_HNC_SERVICE",
};

bool answers_update(const procedure_row& procedure) {
  for (const char* name : kUpdates) {
    if (std::string_view(name) == procedure.name) return true;
  }
  return false;
}

constexpr value_meaning kNoMeaning = {"", "", ""};

}  // namespace

const payload_layout* payload_find(const procedure_row& procedure) {
  for (const payload_layout& layout : kLayouts) {
    if (std::string_view(layout.procedure) == procedure.name) return &layout;
  }
  return nullptr;
}

const value_meaning& payload_value(const procedure_row& procedure) {
  for (const value_meaning& value : kValues) {
    if (std::string_view(value.procedure) == procedure.name) return value;
  }
  return kNoMeaning;
}

const char* payload_codes(const procedure_row& procedure) {
  return answers_update(procedure) ? "1: written, 2: no change, 0: the call failed"
                                   : "negative: the call failed";
}

bool payload_failed(const procedure_row& procedure, int32_t code) {
  return code < 0 || (code == 0 && answers_update(procedure));
}
