-- Dissector of the Wi-Fi configuration program, UDP port 60001.
-- Generated from src/rpc/procedures.def by scripts/reference; do not edit.
--
--   tshark -X lua_script:wlan_config.lua ...
--   Wireshark: copy it into the personal plugins directory
--
-- Each procedure: name, arguments, kind of its result, layout of a record.
-- Arguments and fields: name, type, and for fields offset, width and what stands for a value
-- that is not known.
local procedures = {
  [1] = {name = "wlan_load", kind = "CODE", size = 0, arguments = {{"mode", "i"}, }},
  [2] = {name = "wlan_init", kind = "CODE", size = 0, arguments = {}},
  [3] = {name = "wlan_reset", kind = "CODE", size = 0, arguments = {}},
  [4] = {name = "wlan_get_number_of_entries", kind = "INT", size = 4, arguments = {}},
  [5] = {name = "wlan_add_entry", kind = "INT", size = 4, arguments = {}},
  [6] = {name = "wlan_del_entry", kind = "NONE", size = 0, arguments = {{"bss", "i"}, }},
  [7] = {name = "wlan_get_bssid_port", kind = "WORDS", size = 8, arguments = {{"interface_name", "s"}, },
    fields = {
      {"bssid", "m", 0, 6},
      {"port", "u", 6, 2},
    }},
  [8] = {name = "wlan_associate_vlan", kind = "CODE", size = 0, arguments = {{"interface_name", "s"}, {"vlan_id", "u"}, }},
  [9] = {name = "wlan_get_enable", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [10] = {name = "wlan_set_enable", kind = "CODE", size = 0, arguments = {{"index", "i"}, {"enable", "b"}, }},
  [11] = {name = "wlan_get_status", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, }},
  [12] = {name = "wlan_get_name", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, }},
  [13] = {name = "wlan_get_bssid", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, }},
  [14] = {name = "wlan_get_max_bitrate", kind = "TEXT", size = 1, arguments = {{"radio", "i"}, }},
  [15] = {name = "wlan_set_max_bitrate", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"max_bitrate", "s"}, }},
  [16] = {name = "wlan_get_channel", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [17] = {name = "wlan_set_channel", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"channel", "u"}, }},
  [18] = {name = "wlan_get_auto_channel_enable", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [19] = {name = "wlan_set_auto_channel_enable", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"enable", "b"}, }},
  [21] = {name = "wlan_get_ssid", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, }},
  [22] = {name = "wlan_set_ssid", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"ssid", "s"}, }},
  [23] = {name = "wlan_get_beacon_type", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, }},
  [24] = {name = "wlan_set_beacon_type", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"beacon_type", "s"}, }},
  [25] = {name = "wlan_get_mac_address_control_enabled", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [26] = {name = "wlan_set_mac_address_control_enabled", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"policy", "i"}, }},
  [27] = {name = "wlan_get_standard", kind = "TEXT", size = 1, arguments = {{"radio", "i"}, }},
  [28] = {name = "wlan_get_wep_key_index", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [29] = {name = "wlan_set_wep_key_index", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"wep_key_index", "u"}, }},
  [30] = {name = "wlan_get_wep_key_passphrase", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, }},
  [31] = {name = "wlan_set_wep_key_passphrase", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"wep_key_passphrase", "s"}, }},
  [32] = {name = "wlan_get_encryption_level", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, }},
  [33] = {name = "wlan_get_basic_encryption_modes", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, }},
  [34] = {name = "wlan_set_basic_encryption_modes", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"basic_encryption_modes", "s"}, }},
  [35] = {name = "wlan_get_basic_authentication_modes", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, }},
  [36] = {name = "wlan_set_basic_authentication_modes", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"basic_authentication_modes", "s"}, }},
  [37] = {name = "wlan_get_wpa_encryption_modes", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, }},
  [38] = {name = "wlan_set_wpa_encryption_modes", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"wpa_encryption_modes", "s"}, }},
  [39] = {name = "wlan_get_wpa_authentication_modes", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, }},
  [40] = {name = "wlan_set_wpa_authentication_modes", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"wpa_authentication_modes", "s"}, }},
  [41] = {name = "wlan_get_possible_channels", kind = "TEXT", size = 1, arguments = {{"radio", "i"}, }},
  [42] = {name = "wlan_get_basic_data_transmit_rates", kind = "TEXT", size = 1, arguments = {{"radio", "i"}, }},
  [43] = {name = "wlan_set_basic_data_transmit_rates", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"basic_data_transmit_rates", "s"}, }},
  [44] = {name = "wlan_get_operational_data_transmit_rates", kind = "TEXT", size = 1, arguments = {{"radio", "i"}, }},
  [45] = {name = "wlan_set_operational_data_transmit_rates", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"operational_data_transmit_rates", "s"}, }},
  [46] = {name = "wlan_get_possible_data_transmit_rates", kind = "TEXT", size = 1, arguments = {{"radio", "i"}, }},
  [47] = {name = "wlan_get_ssid_advertisement_enabled", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [48] = {name = "wlan_set_ssid_advertisement_enabled", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"enable", "b"}, }},
  [49] = {name = "wlan_get_radio_enabled", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [50] = {name = "wlan_set_radio_enabled", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"enable", "b"}, }},
  [51] = {name = "wlan_get_transmit_power_supported", kind = "TEXT", size = 1, arguments = {{"radio", "i"}, }},
  [52] = {name = "wlan_get_transmit_power", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [53] = {name = "wlan_set_transmit_power", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"transmit_power", "u"}, }},
  [54] = {name = "wlan_get_auto_rate_fallback_enable", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [55] = {name = "wlan_set_auto_rate_fallback_enable", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"enable", "b"}, }},
  [56] = {name = "wlan_get_basic_stats", kind = "WORDS", size = 20, arguments = {{"bss", "i"}, },
    fields = {
      {"bytes_sent", "u", 0, 4},
      {"bytes_received", "u", 4, 4},
      {"packets_sent", "u", 8, 4},
      {"packets_received", "u", 12, 4},
      {"associations", "u", 16, 4},
    }},
  [57] = {name = "wlan_get_stats", kind = "WORDS", size = 64, arguments = {{"bss", "i"}, {"type", "u"}, },
    fields = {
      {"errors_sent", "u", 0, 4},
      {"errors_received", "u", 4, 4},
      {"unicast_packets_sent", "u", 8, 4},
      {"unicast_packets_received", "u", 12, 4},
      {"discard_packets_sent", "u", 16, 4},
      {"discard_packets_received", "u", 20, 4},
      {"multicast_packets_sent", "u", 24, 4},
      {"multicast_packets_received", "u", 28, 4},
      {"broadcast_packets_sent", "u", 32, 4},
      {"broadcast_packets_received", "u", 36, 4},
      {"unknown_protocol_packets_received", "u", 40, 4},
      {"bytes_sent", "u", 44, 4},
      {"bytes_received", "u", 48, 4},
      {"packets_sent", "u", 52, 4},
      {"packets_received", "u", 56, 4},
      {"reserved", "u", 60, 4},
    }},
  [58] = {name = "wlan_get_assoc_devices_num", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [59] = {name = "wlan_get_assoc_device", kind = "IMAGE", size = 236, arguments = {{"bss", "i"}, {"device", "i"}, },
    fields = {
      {"mac_address", "t", 0, 18},
      {"host_name", "t", 18, 64},
      {"ip_address", "t", 82, 45},
      {"standard", "t", 127, 17},
      {"authenticated", "f", 144, 4},
      {"associated_seconds", "u", 148, 4},
      {"tx_rate", "u", 152, 4},
      {"rx_rate", "u", 156, 4},
      {"max_rate", "u", 160, 4},
      {"rssi", "i", 164, 4},
      {"packets_sent", "u", 168, 4},
      {"packets_received", "u", 172, 4},
      {"association_id", "u", 176, 2},
      {"bytes_sent", "u", 180, 4},
      {"bytes_received", "u", 184, 4},
      {"retries", "u", 188, 4},
      {"power_save", "u", 192, 1},
      {"noise", "i", 196, 4},
      {"ssid", "t", 200, 32},
    }},
  [60] = {name = "wlan_get_wep_key", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, {"key_index", "i"}, }},
  [61] = {name = "wlan_set_wep_key", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"key_index", "i"}, {"wep_key", "s"}, }},
  [62] = {name = "wlan_get_pre_shared_key", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, {"key_index", "i"}, }},
  [63] = {name = "wlan_set_pre_shared_key", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"key_index", "i"}, {"pre_shared_key", "s"}, }},
  [64] = {name = "wlan_get_key_passphrase", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, {"key_index", "i"}, }},
  [65] = {name = "wlan_set_key_passphrase", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"key_index", "i"}, {"passphrase", "s"}, }},
  [66] = {name = "wlan_get_wmm_supported", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [67] = {name = "wlan_get_wmm_uaspd_supported", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [68] = {name = "wlan_get_wmm_enable", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [69] = {name = "wlan_set_wmm_enable", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"enable", "b"}, }},
  [70] = {name = "wlan_get_wmm_uaspd_enable", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [71] = {name = "wlan_set_wmm_uaspd_enable", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"enable", "b"}, }},
  [72] = {name = "wlan_get_og_aifsn", kind = "INT", size = 4, arguments = {{"bss", "i"}, {"access_category", "i"}, }},
  [73] = {name = "wlan_set_og_aifsn", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"access_category", "i"}, {"aifsn", "u"}, }},
  [74] = {name = "wlan_get_og_ecw_min", kind = "INT", size = 4, arguments = {{"bss", "i"}, {"access_category", "i"}, }},
  [75] = {name = "wlan_set_og_ecw_min", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"access_category", "i"}, {"ecw_min", "u"}, }},
  [76] = {name = "wlan_get_og_ecw_max", kind = "INT", size = 4, arguments = {{"bss", "i"}, {"access_category", "i"}, }},
  [77] = {name = "wlan_set_og_ecw_max", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"access_category", "i"}, {"ecw_max", "u"}, }},
  [78] = {name = "wlan_get_og_tx_op", kind = "INT", size = 4, arguments = {{"bss", "i"}, {"access_category", "i"}, }},
  [79] = {name = "wlan_set_og_tx_op", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"access_category", "i"}, {"tx_op", "u"}, }},
  [80] = {name = "wlan_get_og_ack_policy", kind = "INT", size = 4, arguments = {{"bss", "i"}, {"access_category", "i"}, }},
  [81] = {name = "wlan_set_og_ack_policy", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"access_category", "i"}, {"ack_policy", "b"}, }},
  [82] = {name = "wlan_get_ic_aifsn", kind = "INT", size = 4, arguments = {{"bss", "i"}, {"access_category", "i"}, }},
  [83] = {name = "wlan_set_ic_aifsn", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"access_category", "i"}, {"aifsn", "u"}, }},
  [84] = {name = "wlan_get_ic_ecw_min", kind = "INT", size = 4, arguments = {{"bss", "i"}, {"access_category", "i"}, }},
  [85] = {name = "wlan_set_ic_ecw_min", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"access_category", "i"}, {"ecw_min", "u"}, }},
  [86] = {name = "wlan_get_ic_ecw_max", kind = "INT", size = 4, arguments = {{"bss", "i"}, {"access_category", "i"}, }},
  [87] = {name = "wlan_set_ic_ecw_max", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"access_category", "i"}, {"ecw_max", "u"}, }},
  [88] = {name = "wlan_get_wps_enable", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [89] = {name = "wlan_set_wps_enable", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"enable", "b"}, }},
  [90] = {name = "wlan_get_wps_device_name", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, }},
  [91] = {name = "wlan_get_wps_device_password", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, }},
  [92] = {name = "wlan_set_wps_device_password", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"device_password", "s"}, }},
  [93] = {name = "wlan_get_wps_uuid", kind = "TEXT", size = 121, arguments = {{"bss", "i"}, }},
  [94] = {name = "wlan_get_wps_version", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [95] = {name = "wlan_get_wps_config_methods_supported", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, }},
  [96] = {name = "wlan_get_wps_config_methods_enabled", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, }},
  [97] = {name = "wlan_set_wps_config_methods_enabled", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"config_methods", "s"}, }},
  [98] = {name = "wlan_get_wps_setup_locked_state", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, }},
  [99] = {name = "wlan_get_wps_setup_lock", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [100] = {name = "wlan_set_wps_setup_lock", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"wps_setup_lock", "b"}, }},
  [101] = {name = "wlan_get_wps_configuration_state", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, }},
  [102] = {name = "wlan_get_wps_last_configuration_error", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, }},
  [103] = {name = "wlan_get_wps_registrar_entries_num", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [104] = {name = "wlan_get_wps_registrar_established", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [105] = {name = "wlan_get_wps_registrar_enabled", kind = "INT", size = 4, arguments = {{"bss", "i"}, {"registrar", "i"}, }},
  [106] = {name = "wlan_set_wps_registrar_enabled", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"registrar", "i"}, {"enable", "b"}, }},
  [107] = {name = "wlan_get_wps_registrar_uuid", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, {"registrar", "i"}, }},
  [108] = {name = "wlan_get_wps_registrar_device_name", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, {"registrar", "i"}, }},
  [109] = {name = "wlan_set_mac_address_control_clear", kind = "CODE", size = 0, arguments = {{"bss", "i"}, }},
  [110] = {name = "wlan_set_mac_address_control_add", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"mac_address", "s"}, {"name", "s"}, }},
  [111] = {name = "wlan_set_mac_address_control_delete", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"mac_address", "s"}, }},
  [112] = {name = "wlan_get_mac_address_control_list", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, }},
  [113] = {name = "wlan_get_mac_address_control_count", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [114] = {name = "wlan_set_standard", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"standard", "s"}, }},
  [115] = {name = "wlan_set_wep_encryption_level", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"encryption_level", "s"}, }},
  [116] = {name = "wlan_get_wmm_ic_tx_op", kind = "INT", size = 4, arguments = {{"bss", "i"}, {"access_category", "i"}, }},
  [117] = {name = "wlan_set_wmm_ic_tx_op", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"access_category", "i"}, {"tx_op", "u"}, }},
  [118] = {name = "wlan_get_wmm_ic_ack_policy", kind = "INT", size = 4, arguments = {{"bss", "i"}, {"access_category", "i"}, }},
  [119] = {name = "wlan_set_wmm_ic_ack_policy", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"access_category", "i"}, {"ack_policy", "b"}, }},
  [120] = {name = "wlan_set_wps_cancel", kind = "CODE", size = 0, arguments = {{"bss", "i"}, }},
  [121] = {name = "wlan_set_wps_uuid", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"wps_uuid", "s"}, }},
  [122] = {name = "wlan_get_country_code", kind = "TEXT", size = 1, arguments = {{"radio", "i"}, }},
  [123] = {name = "wlan_set_country_code", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"country_code", "s"}, }},
  [124] = {name = "wlan_get_bg_protection", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [125] = {name = "wlan_set_bg_protection", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"bg_protection", "b"}, }},
  [126] = {name = "wlan_get_beacon_interval", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [127] = {name = "wlan_set_beacon_interval", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"beacon_interval", "u"}, }},
  [128] = {name = "wlan_get_dtim_period", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [129] = {name = "wlan_set_dtim_period", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"dtim_period", "u"}, }},
  [130] = {name = "wlan_get_tx_preamble", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [131] = {name = "wlan_set_tx_preamble", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"tx_preamble", "b"}, }},
  [132] = {name = "wlan_get_rts_threshold", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [133] = {name = "wlan_set_rts_threshold", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"rts_threshold", "u"}, }},
  [134] = {name = "wlan_get_frag_threshold", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [135] = {name = "wlan_set_frag_threshold", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"frag_threshold", "u"}, }},
  [136] = {name = "wlan_get_short_slot", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [137] = {name = "wlan_set_short_slot", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"short_slot", "b"}, }},
  [138] = {name = "wlan_get_tx_burst", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [139] = {name = "wlan_set_tx_burst", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"tx_burst", "b"}, }},
  [140] = {name = "wlan_get_short_retry_limit", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [141] = {name = "wlan_set_short_retry_limit", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"short_retry_limit", "u"}, }},
  [142] = {name = "wlan_get_long_retry_limit", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [143] = {name = "wlan_set_long_retry_limit", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"long_retry_limit", "u"}, }},
  [144] = {name = "wlan_get_ht_mcs", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [145] = {name = "wlan_set_ht_mcs", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"ht_mcs", "u"}, }},
  [146] = {name = "wlan_get_channel_bw", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [147] = {name = "wlan_set_channel_bw", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"channel_bw", "i"}, }},
  [148] = {name = "wlan_get_ht_mode", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [149] = {name = "wlan_set_ht_mode", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"ht_mode", "b"}, }},
  [150] = {name = "wlan_get_guard_interval", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [151] = {name = "wlan_set_guard_interval", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"guard_interval", "i"}, }},
  [152] = {name = "wlan_get_ams_du", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [153] = {name = "wlan_set_ams_du", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"ams_du", "i"}, }},
  [154] = {name = "wlan_get_ba_decline", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [155] = {name = "wlan_set_ba_decline", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"ba_decline", "b"}, }},
  [156] = {name = "wlan_get_block_ack", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [157] = {name = "wlan_set_block_ack", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"block_ack", "b"}, }},
  [158] = {name = "wlan_get_n_protection", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [159] = {name = "wlan_set_n_protection", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"n_protection", "b"}, }},
  [160] = {name = "wlan_get_wpa_group_reauth_interval", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [161] = {name = "wlan_set_wpa_group_reauth_interval", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"wpa_group_reauth_interval", "u"}, }},
  [162] = {name = "wlan_get_wpa_reauth_interval", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [163] = {name = "wlan_set_wpa_reauth_interval", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"wpa_reauth_interval", "u"}, }},
  [164] = {name = "wlan_get_wpa_preauth", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [165] = {name = "wlan_set_wpa_preauth", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"wpa_preauth", "b"}, }},
  [166] = {name = "wlan_get_wmm_apsd", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [167] = {name = "wlan_set_wmm_apsd", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"wmm_apsd", "b"}, }},
  [168] = {name = "wlan_get_wps_mode", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [169] = {name = "wlan_set_wps_mode", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"wps_mode", "b"}, }},
  [170] = {name = "wlan_get_wps_model_name", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, }},
  [171] = {name = "wlan_set_wps_model_name", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"wps_model_name", "s"}, }},
  [172] = {name = "wlan_get_wps_result_status", kind = "TEXT", size = 17, arguments = {{"bss", "i"}, }},
  [173] = {name = "wlan_get_wps_status", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [174] = {name = "wlan_get_wps_config_timeout", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [175] = {name = "wlan_set_wps_config_timeout", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"wps_config_timeout", "u"}, }},
  [176] = {name = "wlan_set_wps_pushbutton", kind = "CODE", size = 0, arguments = {{"bss", "i"}, }},
  [177] = {name = "wlan_set_wps_pinstart", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"pin", "s"}, }},
  [178] = {name = "wlan_set_restore_defaults", kind = "CODE", size = 0, arguments = {{"bss", "i"}, }},
  [179] = {name = "wlan_get_custom_ssid_str", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, }},
  [180] = {name = "wlan_set_custom_ssid_str", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"ssid", "s"}, }},
  [181] = {name = "wlan_set_wps_oob", kind = "CODE", size = 0, arguments = {{"bss", "i"}, }},
  [182] = {name = "wlan_set_bss_isolate", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"bss_isolate", "b"}, }},
  [183] = {name = "wlan_get_bss_isolate", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [184] = {name = "wlan_set_station_isolate", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"station_isolate", "b"}, }},
  [185] = {name = "wlan_get_station_isolate", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [186] = {name = "wlan_get_side_band", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [187] = {name = "wlan_set_side_band", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"side_band", "b"}, }},
  [188] = {name = "wlan_get_radius_server_address", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, }},
  [189] = {name = "wlan_set_radius_server_address", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"radius_server_address", "s"}, }},
  [190] = {name = "wlan_get_radius_server_port", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [191] = {name = "wlan_set_radius_server_port", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"radius_server_port", "i"}, }},
  [192] = {name = "wlan_get_radius_server_key", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, }},
  [193] = {name = "wlan_set_radius_server_key", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"radius_server_key", "s"}, }},
  [194] = {name = "wlan_get_radius_reauth_interval", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [195] = {name = "wlan_set_radius_reauth_interval", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"radius_reauth_interval", "i"}, }},
  [196] = {name = "wlan_get_ht_tx_stream", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [197] = {name = "wlan_set_ht_tx_stream", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"ht_tx_stream", "i"}, }},
  [198] = {name = "wlan_get_ht_rx_stream", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [199] = {name = "wlan_set_ht_rx_stream", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"ht_rx_stream", "i"}, }},
  [200] = {name = "wlan_get_ht_stbc", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [201] = {name = "wlan_set_ht_stbc", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"ht_stbc", "i"}, }},
  [202] = {name = "wlan_get_ht_rdg", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [203] = {name = "wlan_set_ht_rdg", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"ht_rdg", "i"}, }},
  [204] = {name = "wlan_get_extension_channel", kind = "INT", size = 4, arguments = {{"radio", "i"}, {"channel", "i"}, }},
  [205] = {name = "wlan_set_extension_channel", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"channel", "i"}, {"extension_channel", "i"}, }},
  [206] = {name = "wlan_restart_all", kind = "CODE", size = 0, arguments = {}},
  [207] = {name = "wlan_restart", kind = "CODE", size = 0, arguments = {{"radio", "i"}, }},
  [208] = {name = "wlan_get_ieee80211h_enable", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [209] = {name = "wlan_set_ieee80211h_enable", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"enable", "b"}, }},
  [210] = {name = "wlan_get_igmp_snooping", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [211] = {name = "wlan_set_igmp_snooping", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"igmp_snooping", "b"}, }},
  [212] = {name = "wlan_get_max_station_num", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [213] = {name = "wlan_set_max_station_num", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"max_stations", "i"}, }},
  [214] = {name = "wlan_get_implicit_beamforming_enable", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [215] = {name = "wlan_set_implicit_beamforming_enable", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"enable", "b"}, }},
  [216] = {name = "wlan_get_current_channel", kind = "INT", size = 4, arguments = {{"radio", "i"}, }, unknown = {["0"] = true}},
  [217] = {name = "wlan_get_ap_scan_num_of_entries", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [218] = {name = "wlan_get_ap_scan_result", kind = "IMAGE", size = 6764, arguments = {{"radio", "i"}, },
    fields = {
      {"driver_data", "x", 6404, 360},
    },
    rows = {name = "networks", count_at = 0, first = 4, stride = 100, capacity = 64,
      fields = {
        {"bssid", "m", 0, 6},
        {"channel", "u", 6, 1},
        {"rssi", "i", 7, 1},
        {"ssid", "t", 8, 33},
        {"security", "t", 41, 23},
        {"mode", "t", 64, 15},
      }}},
  [219] = {name = "wlan_ap_scan", kind = "NONE", size = 0, arguments = {{"radio", "i"}, }},
  [220] = {name = "wlan_ap_auto_channel_select", kind = "NONE", size = 0, arguments = {{"radio", "i"}, }},
  [221] = {name = "wlan_get_assoc_devices_table", kind = "IMAGE", size = 5124, arguments = {{"bss", "i"}, },
    fields = {
    },
    rows = {name = "stations", count_at = 0, first = 4, stride = 40, capacity = 128,
      fields = {
        {"bss_position", "u", 0, 1},
        {"mac_address", "m", 1, 6},
        {"association_id", "u", 7, 1},
        {"power_save", "u", 8, 1},
        {"mimo_power_save", "u", 9, 1},
        {"rssi_0", "i", 10, 1, {["0"] = true, ["-127"] = true}},
        {"rssi_1", "i", 11, 1, {["0"] = true, ["-127"] = true}},
        {"rssi_2", "i", 12, 1, {["0"] = true, ["-127"] = true}},
        {"rssi_3", "i", 13, 1, {["0"] = true, ["-127"] = true}},
        {"connected_seconds", "u", 16, 4},
        {"tx_rate", "r", 20, 2},
        {"rx_rate", "r", 24, 2},
        {"packets_sent", "u", 32, 4},
        {"failures", "u", 36, 4},
      }}},
  [222] = {name = "wlan_get_assoc_devices_table_num_of_entries", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [223] = {name = "wlan_get_ap_scan_status", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [227] = {name = "wlan_set_bss_weight", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"bss_weight", "i"}, }},
  [228] = {name = "wlan_get_bss_weight", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [238] = {name = "wlan_get_channel_statistics", kind = "WORDS", size = 12, arguments = {{"radio", "i"}, },
    fields = {
      {"channel_busy", "i", 0, 4, {["-1"] = true}},
      {"ap_activity", "i", 4, 4, {["-1"] = true}},
      {"busy_time", "i", 8, 4, {["-1"] = true}},
    }},
  [239] = {name = "wlan_get_channel_noise_floor", kind = "WORDS", size = 16, arguments = {{"radio", "i"}, },
    fields = {
      {"minimum", "i", 0, 4, {["-1"] = true}},
      {"maximum", "i", 4, 4, {["-1"] = true}},
      {"median", "i", 8, 4, {["-1"] = true}},
      {"average", "i", 12, 4, {["-1"] = true}},
    }},
  [240] = {name = "wlan_get_radio_tx_packets", kind = "WORDS", size = 8, arguments = {{"radio", "i"}, },
    fields = {
      {"packets_sent", "i", 0, 8, {["-1"] = true}},
    }},
  [241] = {name = "wlan_get_radio_rx_packets", kind = "WORDS", size = 8, arguments = {{"radio", "i"}, },
    fields = {
      {"packets_received", "i", 0, 8, {["-1"] = true}},
    }},
  [242] = {name = "wlan_get_retransmission_metric", kind = "INT", size = 4, arguments = {{"radio", "i"}, }, unknown = {["-1"] = true}},
  [243] = {name = "wlan_set_rad_stat_enable", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"enable", "i"}, {"report_period", "i"}, {"measure_period", "i"}, }},
  [244] = {name = "wlan_get_rssi_table", kind = "WORDS", size = 296, arguments = {{"radio", "i"}, },
    fields = {
    },
    rows = {name = "entries", first = 0, stride = 8, capacity = 37,
      fields = {
        {"rssi", "i", 0, 8, {["-1"] = true}},
      }}},
  [246] = {name = "wlan_get_acct_server_address", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, }},
  [247] = {name = "wlan_set_acct_server_address", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"acct_server_address", "s"}, }},
  [248] = {name = "wlan_get_acct_server_port", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [249] = {name = "wlan_set_acct_server_port", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"acct_server_port", "i"}, }},
  [250] = {name = "wlan_get_acct_server_key", kind = "TEXT", size = 1, arguments = {{"bss", "i"}, }},
  [251] = {name = "wlan_set_acct_server_key", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"acct_server_key", "s"}, }},
  [256] = {name = "wlan_get_btm_capable", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [257] = {name = "wlan_set_btm_enable", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"enable", "i"}, }},
  [258] = {name = "wlan_get_btm_enable", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [259] = {name = "wlan_set_channel_utilization_enable", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"enable", "i"}, }},
  [260] = {name = "wlan_get_channel_utilization_enable", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [261] = {name = "wlan_get_operating_class", kind = "INT", size = 4, arguments = {{"radio", "i"}, }, unknown = {["0"] = true}},
  [262] = {name = "wlan_get_ht_support", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [263] = {name = "wlan_get_vht_support", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [264] = {name = "wlan_set_hnc_steer_sta_mac_address", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"mac_address", "s"}, }},
  [265] = {name = "wlan_get_hnc_steer_sta_mac_address", kind = "IMAGE", size = 18, arguments = {{"bss", "i"}, },
    fields = {
      {"mac_address", "t", 0, 18},
    }},
  [266] = {name = "wlan_set_hnc_steer_sta_type", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"steer_type", "i"}, }},
  [267] = {name = "wlan_get_hnc_steer_sta_type", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [268] = {name = "wlan_set_hnc_steer_blacklist_action", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"action", "u"}, }},
  [269] = {name = "wlan_get_hnc_steer_blacklist_action", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [270] = {name = "wlan_set_hnc_steer_blacklist_timer", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"seconds", "u"}, }},
  [271] = {name = "wlan_get_hnc_steer_blacklist_timer", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [280] = {name = "wlan_set_hnc_action_frame_category_type", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"category_type", "s"}, }},
  [281] = {name = "wlan_get_hnc_action_frame_category_type", kind = "TEXT", size = 257, arguments = {{"bss", "i"}, }},
  [282] = {name = "wlan_set_hnc_action_frame_mac_address", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"mac_address", "s"}, }},
  [283] = {name = "wlan_get_hnc_action_frame_mac_address", kind = "IMAGE", size = 18, arguments = {{"bss", "i"}, },
    fields = {
      {"mac_address", "t", 0, 18},
    }},
  [284] = {name = "wlan_set_hnc_action_frame_payload", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"payload", "s"}, }},
  [285] = {name = "wlan_get_hnc_action_frame_payload", kind = "TEXT", size = 1026, arguments = {{"bss", "i"}, }},
  [286] = {name = "wlan_get_nonassoc_sta_report_capable", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [287] = {name = "wlan_set_nonassoc_sta__enable", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"enable", "b"}, }},
  [288] = {name = "wlan_get_nonassoc_sta__enable", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [289] = {name = "wlan_set_na_sta_request_mac_address", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"mac_address", "s"}, }},
  [290] = {name = "wlan_get_na_sta_request_mac_address", kind = "IMAGE", size = 18, arguments = {{"bss", "i"}, },
    fields = {
      {"mac_address", "t", 0, 18},
    }},
  [292] = {name = "wlan_get_na_sta_report", kind = "IMAGE", size = 900, arguments = {{"bss", "i"}, },
    fields = {
      {"valid", "f", 0, 4},
      {"rssi", "i", 4, 4, {["0"] = true}},
      {"time", "e", 8, 4},
      {"mac_address", "t", 12, 17},
    }},
  [293] = {name = "wlan_get_btm_associated_device", kind = "IMAGE", size = 2436, arguments = {{"bss", "i"}, },
    fields = {
    },
    rows = {name = "stations", count_at = 0, first = 4, stride = 76, capacity = 32,
      fields = {
        {"mac_address", "t", 40, 17},
        {"rssi", "i", 0, 4, {["0"] = true, ["-127"] = true}},
        {"downlink_rate", "i", 4, 4},
        {"uplink_rate", "i", 8, 4},
        {"tx_mcs", "i", 12, 4},
        {"rx_mcs", "i", 16, 4},
        {"bytes_sent", "u", 20, 8},
        {"bytes_received", "u", 28, 8},
        {"backhaul", "f", 36, 4},
        {"btm", "u", 59, 1},
        {"is_ht", "f", 68, 4},
        {"is_vht", "f", 72, 4},
      }}},
  [294] = {name = "wlan_get_channel_utilization", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [295] = {name = "wlan_get_radio_bytes_sent", kind = "WORDS", size = 8, arguments = {{"radio", "i"}, },
    fields = {
      {"bytes_sent", "u", 0, 8},
    }},
  [296] = {name = "wlan_get_radio_bytes_received", kind = "WORDS", size = 8, arguments = {{"radio", "i"}, },
    fields = {
      {"bytes_received", "u", 0, 8},
    }},
  [297] = {name = "wlan_get_ssid_bytes_sent", kind = "WORDS", size = 8, arguments = {{"bss", "i"}, },
    fields = {
      {"bytes_sent", "u", 0, 8},
    }},
  [298] = {name = "wlan_get_ssid_bytes_received", kind = "WORDS", size = 8, arguments = {{"bss", "i"}, },
    fields = {
      {"bytes_received", "u", 0, 8},
    }},
  [299] = {name = "wlan_get_radio_max_bit_rate", kind = "INT", size = 4, arguments = {{"radio", "i"}, }, unknown = {["0"] = true}},
  [300] = {name = "wlan_get_radio_upstream", kind = "NONE", size = 0, arguments = {{"radio", "i"}, }},
  [301] = {name = "wlan_get_steer_event_report", kind = "IMAGE", size = 1156, arguments = {{"bss", "i"}, },
    fields = {
    },
    rows = {name = "events", count_at = 1152, first = 0, stride = 36, capacity = 32,
      fields = {
        {"time", "e", 24, 4},
        {"type", "u", 0, 4},
        {"mac_address", "t", 4, 17},
        {"code", "t", 28, 8},
      }}},
  [16777217] = {name = "wlan_get_max_bandwidth", kind = "INT", size = 4, arguments = {{"radio", "i"}, {"channel", "i"}, }},
  [16777218] = {name = "wlan_check_thread_queue", kind = "CODE", size = 0, arguments = {}},
  [16777229] = {name = "wlan_get_sta_assoc_rssi_thresh", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [16777230] = {name = "wlan_set_sta_assoc_rssi_thresh", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"sta_assoc_rssi_thresh", "i"}, }},
  [16777232] = {name = "wlan_get_dot11u_enable", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [16777233] = {name = "wlan_set_dot11u_enable", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"enable", "b"}, }},
  [16777234] = {name = "wlan_get_dot11u_attribute", kind = "WORDS", size = 20, arguments = {{"bss", "i"}, },
    fields = {
      {"access_network_type", "i", 0, 4},
      {"internet", "f", 4, 4},
      {"asra", "f", 8, 4},
      {"esr", "f", 12, 4},
      {"uesa", "f", 16, 4},
    }},
  [16777235] = {name = "wlan_set_dot11u_attribute", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"access_network_type", "i"}, {"internet", "b"}, {"asra", "b"}, {"esr", "b"}, {"uesa", "b"}, }},
  [16777236] = {name = "wlan_set_airtime_enable", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"enable", "b"}, }},
  [16777237] = {name = "wlan_get_airtime_enable", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [16777240] = {name = "wlan_set_bs_enable", kind = "CODE", size = 0, arguments = {{"enable", "i"}, }},
  [16777241] = {name = "wlan_get_bs_enable", kind = "INT", size = 4, arguments = {}},
  [16777294] = {name = "hnc_get_enable", kind = "INT", size = 4, arguments = {{"instance", "i"}, }},
  [16777295] = {name = "hnc_set_enable", kind = "CODE", size = 0, arguments = {{"index", "i"}, {"enable", "b"}, }},
  [16777296] = {name = "hnc_get_acmenable", kind = "INT", size = 4, arguments = {{"instance", "i"}, }},
  [16777297] = {name = "hnc_set_acmenable", kind = "CODE", size = 0, arguments = {{"index", "i"}, {"enable", "b"}, }},
  [16777298] = {name = "hnc_get_updatefw_enable", kind = "INT", size = 4, arguments = {{"instance", "i"}, }},
  [16777299] = {name = "hnc_set_updatefw_enable", kind = "CODE", size = 0, arguments = {{"index", "i"}, {"enable", "b"}, }},
  [16777300] = {name = "hnc_get_updatefw_url", kind = "TEXT", size = 132, arguments = {{"instance", "i"}, }},
  [16777301] = {name = "hnc_set_updatefw_url", kind = "CODE", size = 0, arguments = {{"instance", "i"}, {"url", "s"}, }},
  [16777302] = {name = "hnc_get_updatefw_filename", kind = "TEXT", size = 132, arguments = {{"instance", "i"}, }},
  [16777303] = {name = "hnc_set_updatefw_filename", kind = "CODE", size = 0, arguments = {{"instance", "i"}, {"filename", "s"}, }},
  [16777304] = {name = "hnc_get_updatefw_username", kind = "TEXT", size = 132, arguments = {{"instance", "i"}, }},
  [16777305] = {name = "hnc_set_updatefw_username", kind = "CODE", size = 0, arguments = {{"instance", "i"}, {"username", "s"}, }},
  [16777306] = {name = "hnc_get_updatefw_password", kind = "TEXT", size = 132, arguments = {{"instance", "i"}, }},
  [16777307] = {name = "hnc_set_updatefw_password", kind = "CODE", size = 0, arguments = {{"instance", "i"}, {"password", "s"}, }},
  [16777308] = {name = "hnc_get_updatefw_time", kind = "TEXT", size = 132, arguments = {{"instance", "i"}, }},
  [16777309] = {name = "hnc_set_updatefw_time", kind = "CODE", size = 0, arguments = {{"instance", "i"}, {"time", "s"}, }},
  [16777310] = {name = "hnc_get_topologyenable", kind = "INT", size = 4, arguments = {{"instance", "i"}, }},
  [16777311] = {name = "hnc_set_topologyenable", kind = "CODE", size = 0, arguments = {{"index", "i"}, {"enable", "b"}, }},
  [16777312] = {name = "hnc_get_supportedhnenumberofentries", kind = "INT", size = 4, arguments = {{"instance", "i"}, }},
  [16777313] = {name = "hnc_set_supportedhnenumberofentries", kind = "CODE", size = 0, arguments = {{"instance", "i"}, {"no_of_entries", "i"}, }},
  [16777314] = {name = "hnc_get_supportedhneconfigondemand", kind = "INT", size = 4, arguments = {{"instance", "i"}, }},
  [16777315] = {name = "hnc_set_supportedhneconfigondemand", kind = "CODE", size = 0, arguments = {{"index", "i"}, {"enable", "b"}, }},
  [16777316] = {name = "hnc_get_supportedhnemanufacturer", kind = "TEXT", size = 132, arguments = {{"instance", "i"}, }},
  [16777317] = {name = "hnc_set_supportedhnemanufacturer", kind = "CODE", size = 0, arguments = {{"instance", "i"}, {"manufacturer", "s"}, }},
  [16777318] = {name = "hnc_get_supportedhnemodelname", kind = "TEXT", size = 132, arguments = {{"instance", "i"}, }},
  [16777319] = {name = "hnc_set_supportedhnemodelname", kind = "CODE", size = 0, arguments = {{"instance", "i"}, {"model_name", "s"}, }},
  [16777320] = {name = "hnc_get_supportedhnemodelnumber", kind = "TEXT", size = 132, arguments = {{"instance", "i"}, }},
  [16777321] = {name = "hnc_set_supportedhnemodelnumber", kind = "CODE", size = 0, arguments = {{"instance", "i"}, {"model_number", "s"}, }},
  [16777322] = {name = "hnc_get_client_steering_enable", kind = "INT", size = 4, arguments = {}},
  [16777323] = {name = "hnc_set_client_steering_enable", kind = "CODE", size = 0, arguments = {{"enable", "b"}, }},
  [16777324] = {name = "hnc_get_rrm_enable", kind = "INT", size = 4, arguments = {}},
  [16777325] = {name = "hnc_set_rrm_enable", kind = "CODE", size = 0, arguments = {{"enable", "b"}, }},
  [16777326] = {name = "hnc_get_msearch_enable", kind = "INT", size = 4, arguments = {}},
  [16777327] = {name = "hnc_set_msearch_enable", kind = "CODE", size = 0, arguments = {{"enable", "b"}, }},
  [16777328] = {name = "hnc_get_hne_config_attempts", kind = "INT", size = 4, arguments = {}},
  [16777329] = {name = "hnc_set_hne_config_attempts", kind = "CODE", size = 0, arguments = {{"attempts", "u"}, }},
  [16777330] = {name = "hnc_get_hne_config_duration", kind = "INT", size = 4, arguments = {}},
  [16777331] = {name = "hnc_set_hne_config_duration", kind = "CODE", size = 0, arguments = {{"duration", "u"}, }},
  [16777332] = {name = "hnc_get_hne_security_enable", kind = "INT", size = 4, arguments = {}},
  [16777333] = {name = "hnc_set_hne_security_enable", kind = "CODE", size = 0, arguments = {{"enable", "b"}, }},
  [16777334] = {name = "hnc_get_hne_table_entry", kind = "IMAGE", size = 1492, arguments = {{"row", "u"}, },
    fields = {
      {"index", "u", 0, 4},
      {"mac_address", "t", 4, 24},
      {"device_name", "t", 28, 240},
      {"status", "u", 268, 4},
      {"active", "f", 272, 4},
      {"manufacturer", "t", 276, 160},
      {"model_name", "t", 436, 160},
      {"model_number", "t", 596, 160},
      {"serial_number", "t", 756, 160},
      {"last_sync_attempt", "e", 916, 4},
      {"software_version", "t", 920, 128},
      {"uplink_type", "i", 1048, 4},
      {"uplink_rate", "i", 1052, 4},
      {"upgrade_available", "f", 1056, 4},
      {"ip_address", "t", 1060, 16},
      {"uplink_mac_address", "t", 1076, 24},
      {"rssi", "i", 1100, 4},
      {"last_error", "t", 1104, 132},
      {"description", "t", 1236, 256},
    }},
  [16777335] = {name = "hnc_set_hne_device_name", kind = "CODE", size = 0, arguments = {{"row", "u"}, {"device_name", "s"}, }},
  [16777336] = {name = "hnc_get_supported_hne_table_entry", kind = "IMAGE", size = 1232, arguments = {{"row", "u"}, },
    fields = {
      {"index", "i", 0, 4},
      {"row_status", "i", 4, 4},
      {"manufacturer", "t", 8, 64},
      {"model_name", "t", 72, 64},
      {"model_number", "t", 136, 64},
      {"firmware_url", "t", 200, 256},
      {"firmware_file_name", "t", 456, 256},
      {"firmware_user_name", "t", 712, 256},
      {"firmware_password", "t", 968, 256},
      {"update_time", "e", 1224, 4},
      {"config_on_demand", "f", 1228, 4},
    }},
  [16777337] = {name = "hnc_set_supported_hne_row_status", kind = "CODE", size = 0, arguments = {{"row", "u"}, {"row_status", "u"}, }},
  [16777338] = {name = "hnc_set_hne_table_entry", kind = "CODE", size = 0, arguments = {{"row", "u"}, {"entry.index", "u"}, {"entry.row_status", "u"}, {"entry.manufacturer", "c", 64}, {"entry.model_name", "c", 64}, {"entry.model_number", "c", 64}, {"entry.firmware_url", "c", 256}, {"entry.firmware_file_name", "c", 256}, {"entry.firmware_user_name", "c", 256}, {"entry.firmware_password", "c", 256}, {"entry.update_time", "u"}, {"entry.config_on_demand", "i"}, }},
  [16777339] = {name = "wlan_get_on_channel_max_tx_power_dbm", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
  [16777340] = {name = "wlan_get_radio_max_tx_power_dbm", kind = "INT", size = 4, arguments = {{"radio", "i"}, }, unknown = {["0"] = true}},
  [16777346] = {name = "wlan_set_led_enable", kind = "CODE", size = 0, arguments = {{"enable", "i"}, }},
  [16777348] = {name = "wlan_set_mso_dcs_on", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"on", "i"}, }},
  [16777350] = {name = "wlan_set_user_dcs_on", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"on", "i"}, }},
  [16777352] = {name = "wlan_set_dcs_serving_channel_sample_time", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"serving_channel_sample_time", "i"}, }},
  [16777354] = {name = "wlan_set_dcs_serving_channel_sample_num", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"serving_channel_sample_num", "i"}, }},
  [16777356] = {name = "wlan_set_dcs_medium_utilization_threshold", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"medium_utilization_threshold", "i"}, }},
  [16777358] = {name = "wlan_set_dcs_off_channel_scan_period", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"off_channel_scan_period", "i"}, }},
  [16777360] = {name = "wlan_set_dcs_off_channel_scan_sample_num", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"off_channel_scan_sample_num", "i"}, }},
  [16777362] = {name = "wlan_set_dcs_channel_switch_time_window", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"channel_switch_time_window", "i"}, }},
  [16777364] = {name = "wlan_set_dcs_channel_switch_limited_num", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"channel_switch_limited_num", "i"}, }},
  [16777366] = {name = "wlan_set_dcs_medium_utilization_weight", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"medium_utilization_weight", "i"}, }},
  [16777368] = {name = "wlan_set_dcs_medium_utilization_latest_sample_weight", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"medium_utilization_latest_sample_weight", "i"}, }},
  [16777370] = {name = "wlan_set_dcs_radio_channel_power_ajuster", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"power_adjuster", "i"}, }},
  [16777372] = {name = "wlan_set_dcs_rssi_weight", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"rssi_weight", "s"}, }},
  [16777373] = {name = "wlan_set_dcs_debug_level", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"level", "i"}, }},
  [16777374] = {name = "wlan_get_bss_hnc_service", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [16777375] = {name = "wlan_set_bss_hnc_service", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"service", "i"}, }},
  [16777376] = {name = "wlan_set_bh_enable", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"enable", "b"}, }},
  [16777377] = {name = "wlan_get_bh_enable", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [16777378] = {name = "wlan_set_hnc_replicate", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"replicate", "b"}, }},
  [16777379] = {name = "wlan_get_hnc_replicate", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [16777380] = {name = "wlan_set_hnc_replicate_radio", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"replicate_radio", "s"}, }},
  [16777381] = {name = "wlan_get_hnc_replicate_radio", kind = "TEXT", size = 256, arguments = {{"bss", "i"}, }},
  [16777382] = {name = "wlan_set_hnc_wds_mode", kind = "CODE", size = 0, arguments = {{"bss", "i"}, {"wds_mode", "i"}, }},
  [16777383] = {name = "wlan_get_hnc_wds_mode", kind = "INT", size = 4, arguments = {{"bss", "i"}, }},
  [16777384] = {name = "wlan_check_rpc_alive", kind = "CODE", size = 0, arguments = {}},
  [16777385] = {name = "wlan_set_prek_operation", kind = "CODE", size = 0, arguments = {{"radio", "i"}, {"enable", "b"}, }},
  [16777386] = {name = "wlan_undo_prek_operation", kind = "NONE", size = 0, arguments = {{"radio", "i"}, }},
  [16777387] = {name = "wlan_get_prek_status", kind = "INT", size = 4, arguments = {{"radio", "i"}, }},
}

local statuses = {
  [0] = "success", [1] = "program unavailable", [2] = "version mismatch",
  [3] = "procedure unavailable", [4] = "garbage arguments", [5] = "system error"}

local wlan_config = Proto("wlan_config", "Wi-Fi configuration")
local f = {
  xid = ProtoField.uint32("wlan_config.xid", "Transaction", base.HEX),
  type = ProtoField.uint32("wlan_config.type", "Message", base.DEC, {[0] = "Call", [1] = "Reply"}),
  number = ProtoField.uint32("wlan_config.number", "Number", base.DEC_HEX),
  procedure = ProtoField.string("wlan_config.procedure", "Procedure"),
  argument = ProtoField.string("wlan_config.argument", "Argument"),
  accepted = ProtoField.uint32("wlan_config.accepted", "Accepted", base.DEC, statuses),
  code = ProtoField.int32("wlan_config.code", "Return code"),
  value = ProtoField.string("wlan_config.value", "Value"),
  field = ProtoField.string("wlan_config.field", "Field"),
  row = ProtoField.string("wlan_config.row", "Row"),
}
wlan_config.fields = {f.xid, f.type, f.number, f.procedure, f.argument, f.accepted, f.code,
                      f.value, f.field, f.row}
local malformed = ProtoExpert.new("wlan_config.malformed", "cut off or malformed",
                                  expert.group.MALFORMED, expert.severity.ERROR)
wlan_config.experts = {malformed}

local PROGRAM = 0x20131337
local ACCEPTED, CALL = 0, 0
local called = {}  -- by ports and transaction: the number that was called

local function padded(length) return length + (4 - length % 4) % 4 end

-- Characters that are shown: printable ASCII and UTF-8, but for controls (C1) and marks
-- that change the direction of writing.
local CHARACTERS = {
  "[\32-\126]", "\194[\160-\191]", "[\195-\215\217-\223][\128-\191]", "\216[\128-\155\157-\191]",
  "\224[\160-\191][\128-\191]", "[\225\227-\236\238\239][\128-\191][\128-\191]",
  "\226\128[\128-\141\144-\167\175-\191]", "\226\129[\128-\165\170-\191]",
  "\226[\130-\191][\128-\191]", "\237[\128-\159][\128-\191]",
  "\240[\144-\191][\128-\191][\128-\191]", "[\241-\243][\128-\191][\128-\191][\128-\191]",
  "\244[\128-\143][\128-\191][\128-\191]"}

local function character_at(text, at)
  for _, pattern in ipairs(CHARACTERS) do
    local character = text:match("^" .. pattern, at)
    if character then return character end
  end
end

-- Characters as they are, with every other byte as \xNN.
local function safe(text)
  if not text:find("[^\32-\126]") then return text end
  local pieces, at = {}, 1
  while at <= #text do
    local character = character_at(text, at)
    pieces[#pieces + 1] = character or string.format("\\x%02x", text:byte(at))
    at = at + (character and #character or 1)
  end
  return table.concat(pieces)
end

local function until_nul(bytes)
  local text = bytes:raw()
  local nul = text:find("\0", 1, true)
  return safe(nul and text:sub(1, nul - 1) or text)
end

-- Counted bytes. A range of length -1 would be all to the end: never that.
local function counted(buffer, at)
  local length = buffer(at, 4):uint()
  if length > buffer:len() - at - 4 then error("cut off") end
  return buffer(at + 4, length), length
end

-- Readers of arguments: their text and where the next one begins.
local function xdr_text(buffer, at)
  local bytes, length = counted(buffer, at)
  return '"' .. safe(bytes:raw()) .. '"', at + 4 + padded(length)
end

local readers = {
  i = function(buffer, at) return tostring(buffer(at, 4):int()), at + 4 end,
  u = function(buffer, at) return tostring(buffer(at, 4):uint()), at + 4 end,
  b = function(buffer, at) return buffer(at, 4):uint() ~= 0 and "on" or "off", at + 4 end,
  s = xdr_text,
  -- char[N]: each takes four bytes
  c = function(buffer, at, count)
    local text = ""
    for i = 0, count - 1 do
      local byte = buffer(at + 4 * i + 3, 1):uint()
      if byte == 0 then break end
      text = text .. string.char(byte)
    end
    return '"' .. safe(text) .. '"', at + 4 * count
  end,
}

-- Values of record fields, little-endian.
local function number_of(bytes, signed)
  if bytes:len() == 8 then return tostring(signed and bytes:le_int64() or bytes:le_uint64()) end
  return tostring(signed and bytes:le_int() or bytes:le_uint())
end

-- The driver's rate word: bits 0-5 MCS, 7-8 bandwidth, 9 short guard interval, 13-15 PHY
-- mode; of VHT, the modes from 4 on, bits 0-3 MCS and 4-5 streams less one.
local CCK = {1000, 2000, 5500, 11000}
local OFDM = {6000, 9000, 12000, 18000, 24000, 36000, 48000, 54000}
local OFDM_OF_SIGNAL = {6, 4, 2, 0, 7, 5, 3, 1}
local SUBCARRIERS = {52, 108, 234, 468}
-- By MCS: coded bits, and the coding rate as a fraction.
local SCHEMES = {{1, 1, 2}, {2, 1, 2}, {2, 3, 4}, {4, 1, 2}, {4, 3, 4},
                 {6, 2, 3}, {6, 3, 4}, {6, 5, 6}, {8, 3, 4}, {8, 5, 6}}

local function bits_of(word, first, count) return math.floor(word / 2 ^ first) % 2 ^ count end

-- nil: there is no such rate
local function mimo_kilobits(word, streams, mcs)
  local scheme = SCHEMES[mcs + 1]
  if not scheme then return nil end
  local carried = SUBCARRIERS[bits_of(word, 7, 2) + 1] * streams * scheme[1]
  local symbol = math.floor(carried * scheme[2] / scheme[3])
  return bits_of(word, 9, 1) == 1 and math.floor(symbol * 2500 / 9) or symbol * 250
end

local function kilobits_of(word)
  local mode, code = bits_of(word, 13, 3), bits_of(word, 0, 6)
  if mode == 0 then return CCK[code % 4 + 1] end
  if mode == 1 then return OFDM[(code < 8 and code or OFDM_OF_SIGNAL[code % 8 + 1]) + 1] end
  if mode < 4 then return mimo_kilobits(word, math.floor(code / 8) + 1, code % 8) end
  return mimo_kilobits(word, math.floor(code / 16) + 1, code % 16)
end

local function rate_of(word)
  local kilobits = kilobits_of(word)
  if not kilobits then return string.format("0x%04x (no such rate)", word) end
  return string.format("0x%04x (%.1f Mbit/s)", word, math.floor((kilobits + 50) / 100) / 10)
end

local values = {
  u = function(bytes) return number_of(bytes, false) end,
  i = function(bytes) return number_of(bytes, true) end,
  f = function(bytes) return bytes:le_uint() ~= 0 and "yes" or "no" end,
  t = function(bytes) return '"' .. until_nul(bytes) .. '"' end,
  -- Never with a maker's name in place of bytes, as ether() has it.
  m = function(bytes) return bytes:bytes():tohex(true, ":") end,
  r = function(bytes) return rate_of(bytes:le_uint()) end,
  e = function(bytes)
    local seconds = bytes:le_uint()
    return seconds == 0 and "-" or os.date("!%Y-%m-%d %H:%M:%SZ", seconds)
  end,
  x = function(bytes)
    local most = 16
    if bytes:len() <= most then return bytes:bytes():tohex(true) end
    return string.format("%s... (%d bytes)", bytes(0, most):bytes():tohex(true), bytes:len())
  end,
}

local function marked(text, unknown)
  return unknown and unknown[text] and text .. " (not known)" or text
end

local function add_fields(tree, fields, buffer)
  for _, field in ipairs(fields) do
    local name, type, offset, width = field[1], field[2], field[3], field[4]
    local bytes = buffer(offset, width)
    local text = name .. ": " .. marked(values[type](bytes), field[5])
    tree:add(f.field, bytes, text):set_text(text)
  end
end

local function add_record(tree, layout, buffer)
  add_fields(tree, layout.fields, buffer)
  local rows = layout.rows
  if not rows then return end
  local count = rows.capacity
  if rows.count_at then count = math.min(buffer(rows.count_at, 4):le_uint(), count) end
  for i = 0, count - 1 do
    local bytes = buffer(rows.first + i * rows.stride, rows.stride)
    local text = rows.name .. " " .. i
    local branch = tree:add(f.row, bytes, text):set_text(text)
    add_fields(branch, rows.fields, bytes:tvb())
  end
end

-- Words of a record as the bytes that they are on the daemon's side.
local function words_to_bytes(buffer, at, size)
  local bytes = ByteArray.new()
  for i = 0, size / 4 - 1 do
    local word = buffer(at + 4 * i, 4):bytes()
    for j = 3, 0, -1 do bytes = bytes .. word:subset(j, 1) end
  end
  return bytes:tvb("Record")
end

-- The first arguments, or the value, stand in the Info column, too, and of a long one its
-- beginning.
local INFO_ARGUMENTS, INFO_CHARACTERS = 3, 40

local function beginning(text)
  local characters = 0
  for at in text:gmatch("()[^\128-\191]") do
    characters = characters + 1
    if characters > INFO_CHARACTERS then return text:sub(1, at - 1) .. "..." end
  end
  return text
end

-- A failure has no value that means something.
local function add_value(tree, bytes, text, pinfo, code)
  tree:add(f.value, bytes, text)
  if code >= 0 then pinfo.cols.info:append(": " .. beginning(text)) end
end

local function add_payload(tree, procedure, buffer, pinfo, at)
  local code = buffer(at - 4, 4):int()
  local words = buffer(at, 4):uint()
  local data_at = at + 4 + 4 * words
  local data, length = counted(buffer, data_at)
  if procedure.kind == "INT" and words > 0 then
    local text = marked(tostring(buffer(at + 4, 4):int()), procedure.unknown)
    add_value(tree, buffer(at + 4, 4), text, pinfo, code)
  elseif procedure.kind == "WORDS" and 4 * words >= procedure.size then
    add_record(tree, procedure, words_to_bytes(buffer, at + 4, procedure.size))
  elseif procedure.kind == "TEXT" and length > 0 then
    add_value(tree, data, values.t(data), pinfo, code)
  elseif procedure.kind == "IMAGE" and length >= procedure.size then
    add_record(tree, procedure, data:tvb())
  end
end

local function add_result(tree, procedure, buffer, pinfo, at)
  tree:add(f.code, buffer(at, 4))
  pinfo.cols.info:append(" -> " .. buffer(at, 4):int())
  if procedure.kind ~= "CODE" then add_payload(tree, procedure, buffer, pinfo, at + 4) end
end

local function info_of(index, text)
  if index > INFO_ARGUMENTS + 1 then return "" end
  if index > INFO_ARGUMENTS then return " ..." end
  return " " .. beginning(text)
end

local function add_arguments(tree, procedure, buffer, pinfo, at)
  for index, argument in ipairs(procedure.arguments) do
    local text, next_at = readers[argument[2]](buffer, at, argument[3])
    pinfo.cols.info:append(info_of(index, text))
    text = argument[1] .. ": " .. text
    tree:add(f.argument, buffer(at, next_at - at), text):set_text(text)
    at = next_at
  end
end

-- Behind the two authenticators of a call, the one of a reply.
local function skip_auth(buffer, at) return at + 8 + padded(buffer(at + 4, 4):uint()) end

-- Procedure 0, which does nothing, has the name of wificonf's command that calls it.
local function name_of(number)
  if number == 0 then return "ping" end
  return procedures[number] and procedures[number].name or string.format("procedure %u", number)
end

local function dissect_call(tree, buffer, pinfo, key)
  local number = buffer(20, 4):uint()
  called[key] = number
  tree:add(f.number, buffer(20, 4))
  tree:add(f.procedure, buffer(20, 4), name_of(number))
  pinfo.cols.info = "Call " .. name_of(number)
  local procedure = procedures[number]
  if not procedure then return end
  add_arguments(tree, procedure, buffer, pinfo, skip_auth(buffer, skip_auth(buffer, 24)))
end

local function dissect_reply(tree, buffer, pinfo, key)
  local number = called[key]
  local name = number and name_of(number) or "unknown procedure"
  pinfo.cols.info = "Reply " .. name
  tree:add(f.procedure, name):set_generated()
  if buffer(8, 4):uint() ~= ACCEPTED then
    pinfo.cols.info:append(": denied")
    return
  end
  local at = skip_auth(buffer, 12)
  tree:add(f.accepted, buffer(at, 4))
  local status = buffer(at, 4):uint()
  if status ~= 0 then pinfo.cols.info:append(": " .. (statuses[status] or "status " .. status)) end
  local procedure = number and procedures[number]
  if status == 0 and procedure then add_result(tree, procedure, buffer, pinfo, at + 4) end
end

local function is_ours(buffer)
  if buffer:len() < 12 then return false end
  if buffer(4, 4):uint() == CALL then
    return buffer:len() >= 24 and buffer(12, 4):uint() == PROGRAM
  end
  return buffer(4, 4):uint() == 1
end

-- Whatever comes to the port is taken: what is left to others would make their
-- dissectors keep the rest of the conversation.
function wlan_config.dissector(buffer, pinfo, root)
  pinfo.cols.protocol = "WLAN_CONFIG"
  if not is_ours(buffer) then
    root:add(wlan_config, buffer()):add_proto_expert_info(malformed)
    return buffer:len()
  end
  local is_call = buffer(4, 4):uint() == CALL
  local client = is_call and pinfo.src_port or pinfo.dst_port
  local key = client .. "/" .. buffer(0, 4):uint()
  local tree = root:add(wlan_config, buffer())
  tree:add(f.xid, buffer(0, 4))
  tree:add(f.type, buffer(4, 4))
  local dissect = is_call and dissect_call or dissect_reply
  local whole = pcall(dissect, tree, buffer, pinfo, key)
  if not whole then
    tree:add_proto_expert_info(malformed)
    pinfo.cols.info:append(" [cut off]")
  end
  return buffer:len()
end

DissectorTable.get("udp.port"):add(60001, wlan_config)
