#include "meanings.h"

namespace {

constexpr const char* kMac = "MAC address, six hexadecimal pairs joined by colons";
constexpr const char* kInstance = "instance of the home network controller; 1 as a rule";
constexpr const char* kSwitch = "on or off";
constexpr const char* kBsses = "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16";

// clang-format off
constexpr meaning_entry kMeanings[] = {
    // Meanings of a procedure's own come first: they are found first.
    {"WLAN_SET_ENABLE", "index", "BSS index, 1-8: 2.4 GHz, 9-16: 5 GHz", "3", kBsses},
    {"WLAN_SET_BS_ENABLE", "enable", "band steering, 0: off, 1: on; other values are refused", "1", "0 1"},
    {"WLAN_SET_LED_ENABLE", "enable", "LEDs of both radios, 0: off, 1: on", "0", "0 1"},
    {"WLAN_SET_RAD_STAT_ENABLE", "enable", "statistics daemon of the radio, 0: stop, 1: start anew", "1", "0 1"},
    {"WLAN_SET_BTM_ENABLE", "enable", "802.11v BSS transition management (BTM), 0: off, 1: on", "1", "0 1"},
    {"WLAN_SET_CHANNEL_UTILIZATION_ENABLE", "enable", "measuring of the channel's utilization, 0: off, 1: on", "1", "0 1"},
    {"WLAN_SET_HNC_STEER_STA_MAC_ADDRESS", "mac_address", "MAC address of the station to steer, six hexadecimal pairs joined by colons", "00:11:22:33:44:55"},
    {"WLAN_SET_HNC_ACTION_FRAME_MAC_ADDRESS", "mac_address", "MAC address that the action frame goes to, six hexadecimal pairs joined by colons", "00:11:22:33:44:55"},
    {"WLAN_SET_CUSTOM_SSID_STR", "ssid", "custom network name", "Guest"},
    {"WLAN_GET_WPS_RESULT_STATUS", "bss", "radio, 1: 2.4 GHz, 9: 5 GHz; other indexes fail", "1", "1 9"},
    {"WLAN_SET_MAC_ADDRESS_CONTROL_ADD", "name", "accepted, shown in traces and not used", "phone"},
    {"WLAN_SET_WPS_MODE", "wps_mode", "accepted and not used", "on"},

    // Which one.
    {nullptr, "bss", "BSS index, 1-8: 2.4 GHz, 9-16: 5 GHz", "3", kBsses},
    {nullptr, "radio", "radio, 1: 2.4 GHz, 9: 5 GHz", "9", "1 9"},
    {nullptr, "instance", kInstance, "1", "1"},
    {nullptr, "index", kInstance, "1", "1"},
    {nullptr, "row", "row of the controller's table, from 1", "1"},
    {nullptr, "device", "number of the associated station, from 0", "0"},
    {nullptr, "registrar", "number of the WPS registrar, from 0", "0"},
    {nullptr, "key_index", "number of the key, 1-4; a pass phrase ignores it", "1", "1 2 3 4"},
    {nullptr, "access_category", "WMM access category, 0: best effort, 1: background, 2: video, 3: voice", "2", "0 1 2 3"},
    {nullptr, "interface_name", "network interface of the gateway", "ra0"},
    {nullptr, "mode", "accepted and not used: the board decides what is loaded", "0"},
    {nullptr, "type", "counters, 0: of the BSS, 1: of its radio", "0", "0 1"},

    // Switches.
    {nullptr, "enable", kSwitch, "on"},
    {nullptr, "on", "0: off, 1: on", "1", "0 1"},
    {nullptr, "asra", "hotspot: additional step required for access, on or off", "off"},
    {nullptr, "esr", "hotspot: emergency services reachable, on or off", "off"},
    {nullptr, "uesa", "hotspot: unauthenticated emergency service accessible, on or off", "off"},
    {nullptr, "internet", "hotspot: leads to the internet, on or off", "on"},
    {nullptr, "ack_policy", "on: frames of the category are not acknowledged", "off"},
    {nullptr, "ba_decline", "on: block acknowledgement is declined", "off"},
    {nullptr, "block_ack", "block acknowledgement, on or off", "on"},
    {nullptr, "bg_protection", "protection of frames from 802.11b stations, on or off", "on"},
    {nullptr, "bss_isolate", "on: stations of different BSSs do not reach each other", "on"},
    {nullptr, "station_isolate", "on: stations of this BSS do not reach each other", "on"},
    {nullptr, "ht_mode", "802.11n mode, on or off", "on"},
    {nullptr, "igmp_snooping", "IGMP snooping, on or off", "on"},
    {nullptr, "n_protection", "802.11n protection, on or off", "on"},
    {nullptr, "replicate", "replicate this BSS on the extenders, on or off", "on"},
    {nullptr, "short_slot", "short slot time, on or off", "on"},
    {nullptr, "side_band", "side band of a 40 MHz channel, on: above, off: below", "on"},
    {nullptr, "tx_burst", "transmit bursts, on or off", "on"},
    {nullptr, "tx_preamble", "short preamble, on or off", "on"},
    {nullptr, "wmm_apsd", "automatic power save delivery, on or off", "on"},
    {nullptr, "wpa_preauth", "WPA2 pre-authentication, on or off", "off"},
    {nullptr, "wps_mode", "WPS, on or off", "on"},
    {nullptr, "wps_setup_lock", "on: WPS set-up is locked", "off"},

    // Names, keys and modes.
    {nullptr, "ssid", "network name, up to 32 bytes; the daemon stores longer ones as they are", "Living room"},
    {nullptr, "passphrase", "pass phrase, 8-63 characters, or 64 hexadecimal digits; the daemon stores others as they are", "correct horse battery"},
    {nullptr, "pre_shared_key", "key, 64 hexadecimal digits", "0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef"},
    {nullptr, "wep_key", "WEP key, 10 or 26 hexadecimal digits", "0123456789"},
    {nullptr, "wep_key_index", "number of the WEP key in use, 1-4", "1"},
    {nullptr, "wep_key_passphrase", "text that the WEP keys are made from", "secret"},
    {nullptr, "encryption_level", "WEP encryption level", "40-bit"},
    {nullptr, "beacon_type", "security that beacons announce: None, Basic, WPA, 11i, WPAand11i", "11i", "None Basic WPA 11i WPAand11i"},
    {nullptr, "basic_encryption_modes", "None; anything else clears the setting", "None", "None"},
    {nullptr, "basic_authentication_modes", "None; anything else clears the setting", "None", "None"},
    {nullptr, "wpa_encryption_modes", "None, AESEncryption, TKIPEncryption or TKIPandAESEncryption; anything else clears the setting", "AESEncryption", "None AESEncryption TKIPEncryption TKIPandAESEncryption"},
    {nullptr, "wpa_authentication_modes", "WPAPSK, WPA2PSK, WPA, WPA2, WPAPSKWPA2PSK or WPA1WPA2; anything else clears the setting", "WPA2PSK", "WPAPSK WPA2PSK WPA WPA2 WPAPSKWPA2PSK WPA1WPA2"},
    {nullptr, "wpa_group_reauth_interval", "seconds between changes of the group key", "3600"},
    {nullptr, "wpa_reauth_interval", "seconds between authentications of a station", "3600"},
    {nullptr, "mac_address", kMac, "00:11:22:33:44:55"},
    {nullptr, "name", "name of the station, for people", "phone"},
    {nullptr, "policy", "access policy of the driver, passed on as given; 0: no list", "1"},

    // Authentication and accounting servers.
    {nullptr, "radius_server_address", "IPv4 address of the RADIUS server", "192.168.1.10"},
    {nullptr, "radius_server_key", "secret shared with the RADIUS server", "secret"},
    {nullptr, "radius_server_port", "UDP port of the RADIUS server, 1-65535", "1812"},
    {nullptr, "radius_reauth_interval", "seconds between authentications of a station", "3600"},
    {nullptr, "acct_server_address", "IPv4 address of the accounting server", "192.168.1.10"},
    {nullptr, "acct_server_key", "secret shared with the accounting server", "secret"},
    {nullptr, "acct_server_port", "UDP port of the accounting server, 1-65535", "1813"},

    // WPS.
    {nullptr, "config_methods", "WPS methods, names joined by commas", "PushButton,PIN"},
    {nullptr, "device_password", "WPS device password (PIN), 4 or 8 digits", "12345670"},
    {nullptr, "pin", "PIN of the station, 4 or 8 digits; the daemon does not check it", "12345670"},
    {nullptr, "wps_config_timeout", "seconds that a WPS set-up may take", "120"},
    {nullptr, "wps_model_name", "model name that WPS announces", "Gateway"},
    {nullptr, "wps_uuid", "UUID of the WPS device", "12345678-1234-1234-1234-123456789abc"},

    // Radio.
    {nullptr, "channel", "channel number, 1-13: 2.4 GHz, 36-165: 5 GHz", "36"},
    {nullptr, "extension_channel", "second channel of a 40 MHz channel, 0: none, 1: above, -1: below", "1", "-1 0 1"},
    {nullptr, "channel_bw", "width of the channel, as the driver numbers it", "1"},
    {nullptr, "country_code", "ISO 3166 country code, two letters", "DE"},
    {nullptr, "standard", "802.11 standards, letters joined by commas", "g,n"},
    {nullptr, "guard_interval", "guard interval, 0: long (800 ns), 1: short (400 ns)", "1", "0 1"},
    {nullptr, "transmit_power", "transmit power in percent, 0-100", "100"},
    {nullptr, "max_bitrate", "rate in Mbit/s, or Auto", "Auto"},
    {nullptr, "basic_data_transmit_rates", "rates in Mbit/s, joined by commas", "1,2,5.5,11"},
    {nullptr, "operational_data_transmit_rates", "rates in Mbit/s, joined by commas", "6,12,24"},
    {nullptr, "beacon_interval", "time between beacons in time units of 1.024 ms", "100"},
    {nullptr, "dtim_period", "beacons from one DTIM to the next, 1-255", "1"},
    {nullptr, "rts_threshold", "bytes from which a frame is announced by RTS, 0-2347", "2347"},
    {nullptr, "frag_threshold", "bytes from which a frame is split, 256-2346", "2346"},
    {nullptr, "short_retry_limit", "attempts to send a short frame", "7"},
    {nullptr, "long_retry_limit", "attempts to send a long frame", "4"},
    {nullptr, "ams_du", "aggregation of service data units, 0: off, 1: on", "1", "0 1"},
    {nullptr, "ht_mcs", "802.11n rate index (MCS); 33: automatic", "33"},
    {nullptr, "ht_rdg", "reverse direction grant, 0: off, 1: on", "0", "0 1"},
    {nullptr, "ht_rx_stream", "receive streams, 1-4", "2"},
    {nullptr, "ht_tx_stream", "transmit streams, 1-4", "2"},
    {nullptr, "ht_stbc", "space-time block coding, 0: off, 1: on", "1", "0 1"},
    {nullptr, "aifsn", "arbitration space in slots, 2-15", "3"},
    {nullptr, "ecw_min", "exponent of the smallest contention window, 0-15", "4"},
    {nullptr, "ecw_max", "exponent of the largest contention window, 0-15", "10"},
    {nullptr, "tx_op", "transmit opportunity in units of 32 us", "47"},
    {nullptr, "max_stations", "most stations on the BSS", "32"},
    {nullptr, "sta_assoc_rssi_thresh", "weakest signal that may associate, in dBm", "-85"},
    {nullptr, "bss_weight", "share of the air time, against the other BSSs", "50"},
    {nullptr, "access_network_type", "hotspot: access network type, 0-15", "2"},
    {nullptr, "vlan_id", "VLAN id, 1-4094", "100"},
    {nullptr, "report_period", "period of the reports, passed to the statistics daemon as given", "10"},
    {nullptr, "measure_period", "period of the measurements, passed to the statistics daemon as given", "1"},

    // Dynamic channel selection; the values go to its daemon as given.
    {nullptr, "serving_channel_sample_time", "time of a sample on the serving channel, for the channel selection daemon", "50"},
    {nullptr, "serving_channel_sample_num", "samples on the serving channel, for the channel selection daemon", "10"},
    {nullptr, "medium_utilization_threshold", "utilization from which another channel is sought, for the channel selection daemon", "70"},
    {nullptr, "medium_utilization_weight", "weight of the utilization, for the channel selection daemon", "50"},
    {nullptr, "medium_utilization_latest_sample_weight", "weight of the latest sample, for the channel selection daemon", "50"},
    {nullptr, "off_channel_scan_period", "time between scans of other channels, for the channel selection daemon", "60"},
    {nullptr, "off_channel_scan_sample_num", "samples of a scan of other channels, for the channel selection daemon", "5"},
    {nullptr, "channel_switch_time_window", "time in which channel switches are counted, for the channel selection daemon", "3600"},
    {nullptr, "channel_switch_limited_num", "most channel switches in that time, for the channel selection daemon", "3"},
    {nullptr, "power_adjuster", "correction for the power of a channel, for the channel selection daemon", "0"},
    {nullptr, "rssi_weight", "weights of the signal strengths, text for the channel selection daemon", "50"},
    {nullptr, "level", "debug level of the channel selection daemon", "1"},

    // Home network controller and its extenders.
    {nullptr, "service", "service of the BSS in the home network; 7: backhaul", "7"},
    {nullptr, "wds_mode", "WDS mode, stored as given", "0"},
    {nullptr, "replicate_radio", "radio to replicate, stored as given", "1"},
    {nullptr, "steer_type", "how to steer, 0: blacklist, 1: BTM request, 3: disconnect", "1", "0 1 3"},
    {nullptr, "action", "blacklist action, 0-2; 2: for the time that the blacklist timer says", "2", "0 1 2"},
    {nullptr, "seconds", "how long a station stays on the blacklist, in seconds", "30"},
    {nullptr, "category_type", "type of the action frame, stored as given", "10"},
    {nullptr, "payload", "body of the action frame, two hexadecimal digits per byte, up to 512 bytes", "0a1b"},
    {nullptr, "attempts", "attempts to configure an extender", "3"},
    {nullptr, "duration", "how long an extender is configured, passed to the controller as given", "60"},
    {nullptr, "device_name", "name of the extender, for people", "Attic"},
    {nullptr, "row_status", "status of the row, passed to the controller as given", "1"},
    {nullptr, "no_of_entries", "number of supported extender models", "2"},
    {nullptr, "manufacturer", "manufacturer of the extender", "Example"},
    {nullptr, "model_name", "model name of the extender", "Extender"},
    {nullptr, "model_number", "model number of the extender", "E100"},
    {nullptr, "url", "where extenders load firmware from", "http://192.168.1.20/firmware"},
    {nullptr, "filename", "file name of the firmware", "extender.bin"},
    {nullptr, "username", "user name for loading the firmware", "update"},
    {nullptr, "password", "password for loading the firmware", "secret"},
    {nullptr, "time", "when to update, text for the controller", "03:00"},
    {nullptr, "entry.index", "row that the record names", "1"},
    {nullptr, "entry.row_status", "status of the row", "1"},
    {nullptr, "entry.manufacturer", "manufacturer, up to 63 bytes", "Example"},
    {nullptr, "entry.model_name", "model name, up to 63 bytes", "Extender"},
    {nullptr, "entry.model_number", "model number, up to 63 bytes", "E100"},
    {nullptr, "entry.firmware_url", "where its firmware is, up to 255 bytes", "http://192.168.1.20/firmware"},
    {nullptr, "entry.firmware_file_name", "file name of the firmware, up to 255 bytes", "extender.bin"},
    {nullptr, "entry.firmware_user_name", "user name for loading it, up to 255 bytes", "update"},
    {nullptr, "entry.firmware_password", "password for loading it, up to 255 bytes", "secret"},
    {nullptr, "entry.update_time", "time of the update, seconds since 1970", "1700000000"},
    {nullptr, "entry.config_on_demand", "configuration on demand, 0: off, 1: on", "1", "0 1"},
};
// clang-format on

}  // namespace

const meaning_entry* meanings_find(const procedure_row& procedure, std::string_view argument) {
  for (const meaning_entry& meaning : kMeanings) {
    bool applies =
        meaning.procedure == nullptr || std::string_view(meaning.procedure) == procedure.name;
    if (applies && argument == meaning.argument) return &meaning;
  }
  return nullptr;
}
