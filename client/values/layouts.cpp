#include "values/payload.h"

// The layouts. The driver's own records have the offsets of its 32-bit little-endian
// structures. Fields of wlan_config.x result types have the same names here.

using enum field_type;
using enum content;
using enum not_known;

// In the driver's records byte counters come before packet counters, and sent before received.
static constexpr payload_field kBasicStats[] = {
    {"bytes_sent", kCounter32, 0, 0, "B", "", "", kFree},
    {"bytes_received", kCounter32, 4, 0, "B", "", "", kFree},
    {"packets_sent", kCounter32, 8, 0, "", "", "", kFree},
    {"packets_received", kCounter32, 12, 0, "", "", "", kFree},
    {"associations", kU32, 16, 0, "", "", "stations associated with the BSS", kFree},
};

static constexpr payload_field kStats[] = {
    {"errors_sent", kCounter32, 0, 0, "", "", "packets that could not be sent", kFree},
    {"errors_received", kCounter32, 4, 0, "", "", "packets received with errors", kFree},
    {"unicast_packets_sent", kCounter32, 8, 0, "", "", "to one station; 0 of a radio", kFree},
    {"unicast_packets_received", kCounter32, 12, 0, "", "", "for one station; 0 of a radio", kFree},
    {"discard_packets_sent", kCounter32, 16, 0, "", "", "packets to send that were dropped", kFree},
    {"discard_packets_received", kCounter32, 20, 0, "", "", "received packets that were dropped",
     kFree},
    {"multicast_packets_sent", kCounter32, 24, 0, "", "", "to a group; 0 of a radio", kFree},
    {"multicast_packets_received", kCounter32, 28, 0, "", "", "for a group; 0 of a radio", kFree},
    {"broadcast_packets_sent", kCounter32, 32, 0, "", "", "to all; 0 of a radio", kFree},
    {"broadcast_packets_received", kCounter32, 36, 0, "", "", "for all; 0 of a radio", kFree},
    {"unknown_protocol_packets_received", kCounter32, 40, 0, "", "", "always 0", kFree},
    {"bytes_sent", kCounter32, 44, 0, "B", "", "sent by a radio; 0 of a BSS", kFree},
    {"bytes_received", kCounter32, 48, 0, "B", "", "received by a radio; 0 of a BSS", kFree},
    {"packets_sent", kCounter32, 52, 0, "", "", "sent by a radio; 0 of a BSS", kFree},
    {"packets_received", kCounter32, 56, 0, "", "", "received by a radio; 0 of a BSS", kFree},
    {"reserved", kU32, 60, 0, "", "", "always 0", kFree},
};

static constexpr payload_field kBytesSent[] = {
    {"bytes_sent", kCounter64, 0, 0, "B", "", "sent so far", kFree}};
static constexpr payload_field kBytesReceived[] = {
    {"bytes_received", kCounter64, 0, 0, "B", "", "received so far", kFree}};
static constexpr payload_field kTxPackets[] = {
    {"packets_sent", kCounterI64, 0, 0, "", "", "sent so far", kFree, kMinusOne}};
static constexpr payload_field kRxPackets[] = {
    {"packets_received", kCounterI64, 0, 0, "", "", "received so far", kFree, kMinusOne}};

static constexpr payload_field kChannelStatistics[] = {
    {"channel_busy", kI32, 0, 0, "%", "", "share of time that the channel is busy", kFree,
     kMinusOne},
    {"ap_activity", kI32, 4, 0, "%", "", "share of time that this AP is active", kFree, kMinusOne},
    {"busy_time", kI32, 8, 0, "%", "", "", kFree, kMinusOne},
};

static constexpr payload_field kNoiseFloor[] = {
    {"minimum", kI32, 0, 0, "dBm", "", "", kFree, kMinusOne},
    {"maximum", kI32, 4, 0, "dBm", "", "", kFree, kMinusOne},
    {"median", kI32, 8, 0, "dBm", "", "", kFree, kMinusOne},
    {"average", kI32, 12, 0, "dBm", "", "", kFree, kMinusOne},
};

static constexpr payload_field kRssiEntry[] = {
    {"rssi", kI64, 0, 0, "", "RSSI", "as the statistics daemon counts it", kFree, kMinusOne}};
static constexpr payload_rows kRssiTable = {"entries", kAllRows, 0, 8, 37, kRssiEntry};

static constexpr payload_field kBssidPort[] = {
    {"bssid", kMac, 0, 0, "", "", "", kAddress},
    {"port", kU16, 6, 0, "", "", "", kFree},
};

static constexpr payload_field kDot11u[] = {
    {"access_network_type", kI32, 0, 0, "", "", "hotspot: type of the access network", kFree},
    {"internet", kFlag, 4, 0, "", "", "hotspot: leads to the internet", kFree},
    {"asra", kFlag, 8, 0, "", "", "hotspot: additional step required for access", kFree},
    {"esr", kFlag, 12, 0, "", "", "hotspot: emergency services reachable", kFree},
    {"uesa", kFlag, 16, 0, "", "", "hotspot: unauthenticated emergency service accessible", kFree},
};

static constexpr payload_field kAssocDevice[] = {
    {"mac_address", kText, 0, 18, "", "", "", kAddress},
    {"host_name", kText, 18, 64, "", "", "", kName},
    {"ip_address", kText, 82, 45, "", "", "", kAddress},
    {"standard", kText, 127, 17, "", "", "802.11 standard", kName},
    {"authenticated", kFlag, 144, 0, "", "", "", kFree},
    {"associated_seconds", kU32, 148, 0, "s", "", "time since the association", kFree},
    {"tx_rate", kU32, 152, 0, "", "", "transmit rate", kFree},
    {"rx_rate", kU32, 156, 0, "", "", "receive rate", kFree},
    {"max_rate", kU32, 160, 0, "", "", "highest rate", kFree},
    {"rssi", kI32, 164, 0, "dBm", "", "signal", kFree},
    {"packets_sent", kCounter32, 168, 0, "", "", "", kFree},
    {"packets_received", kCounter32, 172, 0, "", "", "", kFree},
    {"association_id", kU16, 176, 0, "", "", "", kFree},
    {"bytes_sent", kCounter32, 180, 0, "B", "", "", kFree},
    {"bytes_received", kCounter32, 184, 0, "B", "", "", kFree},
    {"retries", kU32, 188, 0, "", "", "retransmissions", kFree},
    {"power_save", kU8, 192, 0, "", "", "", kFree},
    {"noise", kI32, 196, 0, "dBm", "", "", kFree},
    {"ssid", kText, 200, 32, "", "", "", kName},
};

static constexpr payload_field kStation[] = {
    {"bss_position", kBssPosition, 0, 0, "", "BSS", "position of its BSS within the radio, from 0",
     kFree},
    {"mac_address", kMac, 1, 0, "", "STATION", "", kAddress},
    {"association_id", kU8, 7, 0, "", "AID", "", kFree},
    {"power_save", kU8, 8, 0, "", "PS", "1: in power save", kFree},
    {"mimo_power_save", kU8, 9, 0, "", "", "MIMO power save mode", kFree},
    {"rssi_0", kI8, 10, 0, "dBm", "RSSI", "signal on the first chain", kFree, kNoSignal},
    {"rssi_1", kI8, 11, 0, "dBm", "", "signal on the second chain", kFree, kNoSignal},
    {"rssi_2", kI8, 12, 0, "dBm", "", "signal on the third chain", kFree, kNoSignal},
    {"rssi_3", kI8, 13, 0, "dBm", "", "signal on the fourth chain", kFree, kNoSignal},
    {"connected_seconds", kU32, 16, 0, "s", "ASSOC", "time since the association", kFree},
    {"tx_rate", kRate, 20, 0, "Mbit/s", "TX", "rate of the last packet to it", kFree},
    {"rx_rate", kRate, 24, 0, "Mbit/s", "RX", "rate of the last packet from it", kFree},
    {"packets_sent", kCounter32, 32, 0, "", "PACKETS", "packets sent to it", kFree},
    {"failures", kCounter32, 36, 0, "", "FAILED", "packets to it that failed", kFree},
};
static constexpr payload_rows kStations = {"stations", 0, 4, 40, 128, kStation};

// As packed by wlan_get_btm_associated_device.
static constexpr payload_field kBtmStation[] = {
    {"mac_address", kText, 40, 17, "", "STATION", "", kAddress},
    {"rssi", kI32, 0, 0, "dBm", "RSSI", "strongest of its chains", kFree, kNoSignal},
    {"downlink_rate", kRate1024, 4, 0, "kbit/s", "DOWN",
     "rate of the last packet to it; 1024 a Mbit", kFree},
    {"uplink_rate", kRate1024, 8, 0, "kbit/s", "UP",
     "rate of the last packet from it; 1024 a Mbit; without an MT7615 the downlink's", kFree},
    {"tx_mcs", kI32, 12, 0, "", "MCS", "MCS or rate index of the last packet to it", kFree},
    {"rx_mcs", kI32, 16, 0, "", "", "that of the last packet from it; without an MT7615 tx_mcs",
     kFree},
    {"bytes_sent", kCounter64, 20, 0, "B", "SENT", "bytes sent to it", kFree},
    {"bytes_received", kCounter64, 28, 0, "B", "RECEIVED", "bytes received from it", kFree},
    {"backhaul", kFlag, 36, 0, "", "", "its BSS is a backhaul BSS", kFree},
    {"btm", kU8, 59, 0, "", "BTM",
     "802.11v BSS transition capability times 8, of an MT7615; 0 of a station without it, too",
     kFree, kZero},
    {"is_ht", kFlag, 68, 0, "", "", "802.11n or later", kFree},
    {"is_vht", kFlag, 72, 0, "", "", "802.11ac", kFree},
};
static constexpr payload_rows kBtmStations = {"stations", 0, 4, 76, 32, kBtmStation};

// The driver's own entries, passed on unchanged. This layout is the simulated driver's. Check
// it against hardware; only this place needs changing.
static constexpr payload_field kNeighbour[] = {
    {"bssid", kMac, 0, 0, "", "BSSID", "", kAddress},
    {"channel", kU8, 6, 0, "", "CH", "", kFree},
    {"rssi", kI8, 7, 0, "dBm", "RSSI", "signal", kFree},
    {"ssid", kText, 8, 33, "", "SSID", "network name", kName},
    {"security", kText, 41, 23, "", "SECURITY", "authentication and encryption", kName},
    {"mode", kText, 64, 15, "", "MODE", "802.11 mode", kName},
};
static constexpr payload_rows kNeighbours = {"networks", 0, 4, 100, 64, kNeighbour};
static constexpr payload_field kSurvey[] = {
    {"driver_data", kBytes, 6404, 360, "", "", "the driver's own, after its entries"}};

static constexpr payload_field kMacText[] = {{"mac_address", kText, 0, 18, "", "", "", kAddress}};

static constexpr payload_field kNonAssoc[] = {
    {"valid", kFlag, 0, 0, "", "", "0: the station was not seen", kFree},
    {"rssi", kI32, 4, 0, "dBm", "", "signal of its last probe request", kFree, kZero},
    {"time", kTime, 8, 0, "", "", "of that probe request", kFree},
    {"mac_address", kText, 12, 17, "", "", "the station", kAddress},
};

static constexpr payload_field kSteerEvent[] = {
    {"time", kTime, 24, 0, "", "TIME", "when it happened", kFree},
    {"type", kU32, 0, 0, "", "TYPE", "event type of the control daemon", kFree},
    {"mac_address", kText, 4, 17, "", "STATION", "the station", kAddress},
    {"code", kText, 28, 8, "", "CODE", "code of the event", kFree},
};
static constexpr payload_rows kSteerEvents = {"events", 1152, 0, 36, 32, kSteerEvent};

// The record's size and the offset of last_sync_attempt are certain. The text widths are those
// of the simulated controller. Check them against a real one; only this place needs changing.
static constexpr payload_field kExtender[] = {
    {"index", kU32, 0, 0, "", "", "row of the table", kFree},
    {"mac_address", kText, 4, 24, "", "", "of the extender", kAddress},
    {"device_name", kText, 28, 240, "", "", "for people; hnc_set_hne_device_name sets it", kName},
    {"status", kU32, 268, 0, "", "", "as the controller counts it", kFree},
    {"active", kFlag, 272, 0, "", "", "", kFree},
    {"manufacturer", kText, 276, 160, "", "", "", kName},
    {"model_name", kText, 436, 160, "", "", "", kName},
    {"model_number", kText, 596, 160, "", "", "", kName},
    {"serial_number", kText, 756, 160, "", "", "", kSecret},
    {"last_sync_attempt", kTime, 916, 0, "", "", "last attempt to synchronise it", kFree},
    {"software_version", kText, 920, 128, "", "", "", kNumber},
    {"uplink_type", kI32, 1048, 0, "", "", "as the controller counts it", kFree},
    {"uplink_rate", kI32, 1052, 0, "Mbit/s", "", "", kFree},
    {"upgrade_available", kFlag, 1056, 0, "", "", "newer firmware is there", kFree},
    {"ip_address", kText, 1060, 16, "", "", "", kAddress},
    {"uplink_mac_address", kText, 1076, 24, "", "", "of what it is connected to", kAddress},
    {"rssi", kI32, 1100, 0, "dBm", "", "signal of its uplink", kFree},
    {"last_error", kText, 1104, 132, "", "", "", kName},
    {"description", kText, 1236, 256, "", "", "", kName},
};

static constexpr payload_field kSupported[] = {
    {"index", kI32, 0, 0, "", "", "row of the table", kFree},
    {"row_status", kI32, 4, 0, "", "", "as the controller counts it", kFree},
    {"manufacturer", kText, 8, 64, "", "", "", kName},
    {"model_name", kText, 72, 64, "", "", "", kName},
    {"model_number", kText, 136, 64, "", "", "", kName},
    {"firmware_url", kText, 200, 256, "", "", "where its firmware is", kSecret},
    {"firmware_file_name", kText, 456, 256, "", "", "", kName},
    {"firmware_user_name", kText, 712, 256, "", "", "user name for it", kSecret},
    {"firmware_password", kText, 968, 256, "", "", "password for it", kSecret},
    {"update_time", kTime, 1224, 0, "", "", "when to update", kFree},
    {"config_on_demand", kFlag, 1228, 0, "", "", "configure it on demand", kFree},
};

static constexpr payload_layout kLayouts[] = {
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

// Every record must have a layout, or nobody could read the answer.
static constexpr bool has_layout(std::string_view procedure) {
  for (const payload_layout& layout : kLayouts) {
    if (procedure == layout.procedure) return true;
  }
  return false;
}

#define CODE true
#define UPDATE true
#define INT(label) true
#define TEXT(label) true
#define NONE true
#define WORDS(type) false
#define IMAGE(type) false
#define PROCEDURE(number, name, stem, about, members, no_record, ...) \
  static_assert((no_record) || has_layout(#name), #name ": write the layout of its record here");
#include "rpc/procedures.def"

const payload_layout* payload_find(const procedure_row& procedure) {
  for (const payload_layout& layout : kLayouts) {
    if (std::string_view(layout.procedure) == procedure.name) return &layout;
  }
  return nullptr;
}
