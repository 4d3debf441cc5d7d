#include "values/argument_meanings.h"

#include <climits>

template <typename... Ranges>
static constexpr constraint of_ranges(constraint_kind kind, Ranges... ranges) {
  return {kind, {ranges...}, sizeof...(ranges)};
}

static constexpr constraint number(int64_t low, int64_t high) {
  return of_ranges(constraint_kind::kNumber, constraint_range{low, high, nullptr});
}

template <typename... Ranges>
static constexpr constraint choices(Ranges... ranges) {
  return of_ranges(constraint_kind::kNumber, ranges...);
}

using values = constraint_range;

static constexpr constraint word(const char* words) {
  return {.kind = constraint_kind::kWord, .words = words};
}

static constexpr constraint text(int64_t shortest, int64_t longest) {
  return of_ranges(constraint_kind::kText, constraint_range{shortest, longest, nullptr});
}

static constexpr constraint hex(int64_t fewest, int64_t most) {
  return of_ranges(constraint_kind::kHex, constraint_range{fewest, most, nullptr});
}

static constexpr constraint kSwitch = {constraint_kind::kSwitch};
static constexpr constraint kMac = {constraint_kind::kMac};
static constexpr constraint kIpv4 = {constraint_kind::kIpv4};
static constexpr constraint kBss = choices(values{1, 8, "2.4 GHz"}, values{9, 16, "5 GHz"});
static constexpr constraint kRadio = choices(values{1, 1, "2.4 GHz"}, values{9, 9, "5 GHz"});
// The daemon picks the radio by the band of the index, or by the interface that it names.
static constexpr constraint kRadioOfBss =
    choices(values{1, 1, "2.4 GHz"}, values{9, 9, "5 GHz"}, values{1, 16, "the radio of that BSS"});
static constexpr constraint kRestarted =
    choices(values{1, 1, "2.4 GHz"}, values{9, 9, "5 GHz"}, values{1, 16, "the radio of that BSS"},
            values{255, 255, "all radios"});
static constexpr constraint kSsid = text(1, 32);
static constexpr constraint kPassphrase =
    of_ranges(constraint_kind::kPassphrase, constraint_range{8, 63, nullptr});
static constexpr constraint kPin = of_ranges(
    constraint_kind::kDigits, constraint_range{4, 4, nullptr}, constraint_range{8, 8, nullptr});
static constexpr constraint kWepKey = of_ranges(
    constraint_kind::kHex, constraint_range{10, 10, nullptr}, constraint_range{26, 26, nullptr});
// The controller's messages cut longer texts.
static constexpr constraint kControllerText = text(0, 127);
static constexpr constraint kListField = {.kind = constraint_kind::kAnyText, .list_field = true};
static constexpr constraint kAccessCategory =
    choices(values{0, 0, "best effort"}, values{1, 1, "background"}, values{2, 2, "video"},
            values{3, 3, "voice"});

static constexpr const char* kInstance = "instance of the home network controller; 1 as a rule";
static constexpr const char* kUnused = "accepted and not used";

// clang-format off
static constexpr meaning_entry kMeanings[] = {
    // Meanings specific to one procedure come first, because the first match wins.
    {"WLAN_SET_ENABLE", "index", "BSS index", "3", kBss},
    {"WLAN_SET_BS_ENABLE", "enable", "band steering", "1", kSwitch},
    {"WLAN_SET_LED_ENABLE", "enable", "LEDs of both radios", "0", kSwitch},
    {"WLAN_SET_RAD_STAT_ENABLE", "enable", "statistics daemon of the radio, started anew or stopped", "1", kSwitch},
    {"WLAN_SET_BTM_ENABLE", "enable", "802.11v BSS transition management (BTM)", "1", kSwitch},
    {"WLAN_SET_CHANNEL_UTILIZATION_ENABLE", "enable", "measuring of the channel's utilization", "1", kSwitch},
    {"WLAN_SET_HNC_STEER_STA_MAC_ADDRESS", "mac_address", "station to steer", "00:11:22:33:44:55", kMac},
    {"WLAN_SET_HNC_ACTION_FRAME_MAC_ADDRESS", "mac_address", "station that the action frame goes to", "00:11:22:33:44:55", kMac},
    {"WLAN_SET_CUSTOM_SSID_STR", "ssid", "custom network name", "Guest", kSsid},
    {"WLAN_GET_WPS_RESULT_STATUS", "bss", "radio", "1", kRadio},
    {"WLAN_SET_MAC_ADDRESS_CONTROL_ADD", "name", "accepted, shown in traces and not used", "phone"},
    {"WLAN_SET_RAD_STAT_ENABLE", "radio", "radio", "9", kRadio},
    {"WLAN_GET_CHANNEL_STATISTICS", "radio", "radio", "9", kRadio},
    {"WLAN_GET_CHANNEL_NOISE_FLOOR", "radio", "radio", "9", kRadio},
    {"WLAN_GET_RADIO_TX_PACKETS", "radio", "radio", "9", kRadio},
    {"WLAN_GET_RADIO_RX_PACKETS", "radio", "radio", "9", kRadio},
    {"WLAN_GET_RETRANSMISSION_METRIC", "radio", "radio", "9", kRadio},
    {"WLAN_GET_RSSI_TABLE", "radio", "radio", "9", kRadio},
    {"WLAN_RESTART", "radio", "radio", "9", kRestarted},
    {"WLAN_SET_KEY_PASSPHRASE", "key_index", kUnused, "1"},
    {"WLAN_SET_PREK_OPERATION", "radio", kUnused, "9"},
    {"WLAN_SET_PREK_OPERATION", "enable", kUnused, "on"},
    {"WLAN_UNDO_PREK_OPERATION", "radio", kUnused, "9"},
    {"WLAN_GET_PREK_STATUS", "radio", kUnused, "9"},

    {nullptr, "bss", "BSS index", "3", kBss},
    {nullptr, "radio", "radio", "9", kRadioOfBss},
    {nullptr, "instance", kInstance, "1"},
    {nullptr, "index", kInstance, "1"},
    {nullptr, "row", "row of the controller's table; the first is 1", "1"},
    {nullptr, "device", "number of the associated station", "0", number(0, INT_MAX)},
    {nullptr, "registrar", "number of the WPS registrar", "0", number(0, INT_MAX)},
    {nullptr, "key_index", "number of the key", "1", number(1, 4)},
    {nullptr, "access_category", "WMM access category", "2", kAccessCategory},
    {nullptr, "interface_name", "network interface of the gateway", "ra0"},
    {nullptr, "mode", "accepted and not used: the board decides what is loaded", "0"},
    {nullptr, "type", "whose counters", "0", choices(values{0, 0, "of the BSS"}, values{1, 1, "of its radio"})},

    // Switches.
    {nullptr, "enable", "", "on"},
    {nullptr, "on", "", "1", kSwitch},
    {nullptr, "asra", "hotspot: additional step required for access", "off"},
    {nullptr, "esr", "hotspot: emergency services reachable", "off"},
    {nullptr, "uesa", "hotspot: unauthenticated emergency service accessible", "off"},
    {nullptr, "internet", "hotspot: leads to the internet", "on"},
    {nullptr, "ack_policy", "frames of the category are not acknowledged", "off"},
    {nullptr, "ba_decline", "block acknowledgement is declined", "off"},
    {nullptr, "block_ack", "block acknowledgement", "on"},
    {nullptr, "bg_protection", "protection of frames from 802.11b stations", "on"},
    {nullptr, "bss_isolate", "stations of different BSSs do not reach each other", "on"},
    {nullptr, "station_isolate", "stations of this BSS do not reach each other", "on"},
    {nullptr, "ht_mode", "802.11n mode", "on"},
    {nullptr, "igmp_snooping", "IGMP snooping", "on"},
    {nullptr, "n_protection", "802.11n protection", "on"},
    {nullptr, "replicate", "replicate this BSS on the extenders", "on"},
    {nullptr, "short_slot", "short slot time", "on"},
    {nullptr, "side_band", "side band of a 40 MHz channel is above it", "on"},
    {nullptr, "tx_burst", "transmit bursts", "on"},
    {nullptr, "tx_preamble", "short preamble", "on"},
    {nullptr, "wmm_apsd", "automatic power save delivery", "on"},
    {nullptr, "wpa_preauth", "WPA2 pre-authentication", "off"},
    {nullptr, "wps_mode", "WPS", "on"},
    {nullptr, "wps_setup_lock", "WPS set-up is locked", "off"},

    // Names, keys and modes.
    {nullptr, "ssid", "network name", "Living room", kSsid},
    {nullptr, "passphrase", "pass phrase or key", "correct horse battery", kPassphrase},
    {nullptr, "pre_shared_key", "key", "0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef", hex(64, 64)},
    {nullptr, "wep_key", "WEP key", "0123456789", kWepKey},
    {nullptr, "wep_key_index", "number of the WEP key in use", "1", number(1, 4)},
    {nullptr, "wep_key_passphrase", "text that the WEP keys are made from", "secret"},
    {nullptr, "encryption_level", "WEP encryption level", "40-bit"},
    {nullptr, "beacon_type", "security that beacons announce", "11i", word("None Basic WPA 11i WPAand11i")},
    {nullptr, "basic_encryption_modes", "encryption without WPA", "None", word("None")},
    {nullptr, "basic_authentication_modes", "authentication without WPA", "None", word("None")},
    {nullptr, "wpa_encryption_modes", "encryption", "AESEncryption", word("None AESEncryption TKIPEncryption TKIPandAESEncryption")},
    {nullptr, "wpa_authentication_modes", "authentication", "WPA2PSK", word("WPAPSK WPA2PSK WPA WPA2 WPAPSKWPA2PSK WPA1WPA2")},
    {nullptr, "wpa_group_reauth_interval", "seconds between changes of the group key", "3600"},
    {nullptr, "wpa_reauth_interval", "seconds between authentications of a station", "3600"},
    {nullptr, "mac_address", "station", "00:11:22:33:44:55", kMac},
    {nullptr, "name", "name of the station, for people", "phone"},
    {nullptr, "policy", "access policy of the driver, passed on as given; 0: no list", "1"},

    // Authentication and accounting servers.
    {nullptr, "radius_server_address", "RADIUS server", "192.168.1.10", kIpv4},
    {nullptr, "radius_server_key", "secret shared with the RADIUS server", "secret"},
    {nullptr, "radius_server_port", "UDP port of the RADIUS server", "1812", number(1, 65535)},
    {nullptr, "radius_reauth_interval", "seconds between authentications of a station", "3600"},
    {nullptr, "acct_server_address", "accounting server", "192.168.1.10", kIpv4},
    {nullptr, "acct_server_key", "secret shared with the accounting server", "secret"},
    {nullptr, "acct_server_port", "UDP port of the accounting server", "1813", number(1, 65535)},

    // WPS.
    {nullptr, "config_methods", "WPS methods, names joined by commas", "PushButton,PIN"},
    {nullptr, "device_password", "WPS device password (PIN)", "12345670", kPin},
    {nullptr, "pin", "PIN of the station", "12345670", kPin},
    {nullptr, "wps_config_timeout", "seconds that a WPS set-up may take", "120"},
    {nullptr, "wps_model_name", "model name that WPS announces", "Gateway"},
    {nullptr, "wps_uuid", "UUID of the WPS device", "12345678-1234-1234-1234-123456789abc"},

    // Radio.
    {nullptr, "channel", "channel number", "36", choices(values{1, 14, "2.4 GHz"}, values{36, 165, "5 GHz"})},
    {nullptr, "extension_channel", "second channel of a 40 MHz channel", "1", choices(values{-1, -1, "below"}, values{0, 0, "none"}, values{1, 1, "above"})},
    {nullptr, "channel_bw", "width of the channel, as the driver numbers it", "1"},
    {nullptr, "country_code", "ISO 3166 country code", "DE", text(2, 2)},
    {nullptr, "standard", "802.11 standards, letters joined by commas", "g,n"},
    {nullptr, "guard_interval", "guard interval", "1", choices(values{0, 0, "long, 800 ns"}, values{1, 1, "short, 400 ns"})},
    {nullptr, "transmit_power", "transmit power in percent", "100", number(0, 100)},
    {nullptr, "max_bitrate", "rate in Mbit/s, or Auto", "Auto"},
    {nullptr, "basic_data_transmit_rates", "rates in Mbit/s, joined by commas", "1,2,5.5,11"},
    {nullptr, "operational_data_transmit_rates", "rates in Mbit/s, joined by commas", "6,12,24"},
    {nullptr, "beacon_interval", "time between beacons in time units of 1.024 ms", "100"},
    {nullptr, "dtim_period", "beacons from one DTIM to the next", "1", number(1, 255)},
    {nullptr, "rts_threshold", "bytes from which a frame is announced by RTS", "2347", number(0, 2347)},
    {nullptr, "frag_threshold", "bytes from which a frame is split", "2346", number(256, 2346)},
    {nullptr, "short_retry_limit", "attempts to send a short frame", "7"},
    {nullptr, "long_retry_limit", "attempts to send a long frame", "4"},
    {nullptr, "ams_du", "aggregation of service data units", "1", kSwitch},
    {nullptr, "ht_mcs", "802.11n rate index (MCS); 33: automatic", "33"},
    {nullptr, "ht_rdg", "reverse direction grant", "0", kSwitch},
    {nullptr, "ht_rx_stream", "receive streams", "2", number(1, 4)},
    {nullptr, "ht_tx_stream", "transmit streams", "2", number(1, 4)},
    {nullptr, "ht_stbc", "space-time block coding", "1", kSwitch},
    {nullptr, "aifsn", "arbitration space in slots", "3", number(2, 15)},
    {nullptr, "ecw_min", "exponent of the smallest contention window", "4", number(0, 15)},
    {nullptr, "ecw_max", "exponent of the largest contention window", "10", number(0, 15)},
    {nullptr, "tx_op", "transmit opportunity in units of 32 us", "47"},
    {nullptr, "max_stations", "most stations on the BSS", "32"},
    {nullptr, "sta_assoc_rssi_thresh", "weakest signal that may associate, in dBm", "-85"},
    {nullptr, "bss_weight", "share of the air time, against the other BSSs", "50"},
    {nullptr, "access_network_type", "hotspot: access network type", "2", number(0, 15)},
    {nullptr, "vlan_id", "VLAN id", "100", number(1, 4094)},
    {nullptr, "report_period", "period of the reports, passed to the statistics daemon as given", "10", number(0, INT_MAX)},
    {nullptr, "measure_period", "period of the measurements, passed to the statistics daemon as given", "1", number(0, INT_MAX)},

    // Dynamic channel selection. The values go to its daemon unchanged.
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
    {nullptr, "rssi_weight", "weights of the signal strengths, for the channel selection daemon", "50", text(0, 81)},
    {nullptr, "level", "debug level of the channel selection daemon", "1"},

    // Home network controller and its extenders.
    {nullptr, "service", "service of the BSS in the home network; 7: backhaul", "7"},
    {nullptr, "wds_mode", "WDS mode, stored as given", "0"},
    {nullptr, "replicate_radio", "radio to replicate, stored as given", "1", kListField},
    {nullptr, "steer_type", "how to steer", "1", choices(values{0, 0, "blacklist"}, values{1, 1, "BTM request"}, values{3, 3, "disconnect"})},
    {nullptr, "action", "blacklist action", "2", choices(values{0, 0, "let it in again"}, values{1, 1, "keep it out"}, values{2, 2, "keep it out for the time of the blacklist timer"})},
    {nullptr, "seconds", "how long a station stays on the blacklist, in seconds", "30", number(0, INT_MAX)},
    {nullptr, "category_type", "type of the action frame, stored only", "10", text(0, 256)},
    {nullptr, "payload", "body of the action frame, two digits a byte", "0a1b", hex(2, 1024)},
    {nullptr, "attempts", "attempts to configure an extender", "3", number(0, INT_MAX)},
    {nullptr, "duration", "how long an extender is configured, passed to the controller as given", "60", number(0, INT_MAX)},
    {nullptr, "device_name", "name of the extender, for people", "Attic", kControllerText},
    {nullptr, "row_status", "status of the row, passed to the controller as given", "1", number(0, INT_MAX)},
    {nullptr, "no_of_entries", "number of supported extender models", "2", number(0, INT_MAX)},
    {nullptr, "manufacturer", "manufacturer of the extender", "Example", kControllerText},
    {nullptr, "model_name", "model name of the extender", "Extender", kControllerText},
    {nullptr, "model_number", "model number of the extender", "E100", kControllerText},
    {nullptr, "url", "where extenders load firmware from", "http://192.168.1.20/firmware", kControllerText},
    {nullptr, "filename", "file name of the firmware", "extender.bin", kControllerText},
    {nullptr, "username", "user name for loading the firmware", "update", kControllerText},
    {nullptr, "password", "password for loading the firmware", "secret", kControllerText},
    {nullptr, "time", "when to update, for the controller", "03:00", kControllerText},
    {nullptr, "entry.index", "row that the record names", "1"},
    {nullptr, "entry.row_status", "status of the row", "1"},
    {nullptr, "entry.manufacturer", "manufacturer", "Example"},
    {nullptr, "entry.model_name", "model name", "Extender"},
    {nullptr, "entry.model_number", "model number", "E100"},
    {nullptr, "entry.firmware_url", "where its firmware is", "http://192.168.1.20/firmware"},
    {nullptr, "entry.firmware_file_name", "file name of the firmware", "extender.bin"},
    {nullptr, "entry.firmware_user_name", "user name for loading it", "update"},
    {nullptr, "entry.firmware_password", "password for loading it", "secret"},
    {nullptr, "entry.update_time", "time of the update, seconds since 1970", "1700000000"},
    {nullptr, "entry.config_on_demand", "configuration on demand", "1", kSwitch},
};
// clang-format on

static constraint of_type(const argument_spec& argument) {
  switch (argument.type) {
    case argument_type::kInt:
      return of_ranges(constraint_kind::kInteger, constraint_range{INT_MIN, INT_MAX, nullptr});
    case argument_type::kUnsigned:
      return of_ranges(constraint_kind::kInteger, constraint_range{0, UINT_MAX, nullptr});
    case argument_type::kShort:
      return of_ranges(constraint_kind::kInteger, constraint_range{0, USHRT_MAX, nullptr});
    case argument_type::kBool:
      return kSwitch;
    case argument_type::kText:
      return text(0, argument.characters - 1);
    case argument_type::kString:
    case argument_type::kSupportedHne:
      break;
  }
  return {constraint_kind::kAnyText};
}

const meaning_entry* meanings_find(const procedure_row& procedure, std::string_view argument) {
  for (const meaning_entry& meaning : kMeanings) {
    bool applies =
        meaning.procedure == nullptr || std::string_view(meaning.procedure) == procedure.name;
    if (applies && argument == meaning.argument) return &meaning;
  }
  return nullptr;
}

constraint meanings_limits(const procedure_row& procedure, const argument_spec& argument) {
  const meaning_entry* meaning = meanings_find(procedure, argument.name);
  const bool narrowed = meaning != nullptr && meaning->limits.kind != constraint_kind::kByType;
  return narrowed ? meaning->limits : of_type(argument);
}

std::string meanings_text(const procedure_row& procedure, const argument_spec& argument) {
  const meaning_entry* meaning = meanings_find(procedure, argument.name);
  const std::string words = constraint_words(meanings_limits(procedure, argument));
  const std::string text = meaning == nullptr ? "" : meaning->text;
  return text + (text.empty() || words.empty() ? "" : ", ") + words;
}
