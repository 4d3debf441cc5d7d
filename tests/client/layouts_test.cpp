// The content of each record, byte by byte: written as the back end lays it out, read as JSON
// and as text.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "show/json.h"
#include "show/record.h"
#include "wire/lookup.h"

namespace {

struct image {
  std::string bytes;

  image& word(size_t at, uint64_t value, size_t width = 4) {
    for (size_t i = 0; i < width; ++i)
      bytes.at(at + i) = static_cast<char>(value >> (8 * i));
    return *this;
  }
  image& text(size_t at, std::string_view value) {
    bytes.replace(at, value.size(), value);
    return *this;
  }
};

}  // namespace

static image blank(const char* procedure) {
  return {std::string(lookup_name(procedure)->size, '\0')};
}

static nlohmann::json value_of(const char* procedure, const image& from) {
  decoded_reply reply{};
  reply.data = from.bytes;
  return nlohmann::json(json_result(*lookup_name(procedure), reply)["value"]);
}

static nlohmann::json parsed(const char* text) {
  return nlohmann::json::parse(text);
}

static uint64_t as_word(int64_t value) {
  return static_cast<uint64_t>(value);
}

TEST(Layouts, CountersOfABss) {
  image stats = blank("wlan_get_stats");
  for (size_t i = 0; i < 16; ++i)
    stats.word(4 * i, 0xF0000001 + i);
  EXPECT_EQ(value_of("wlan_get_stats", stats), parsed(R"({
    "errors_sent": 4026531841, "errors_received": 4026531842,
    "unicast_packets_sent": 4026531843, "unicast_packets_received": 4026531844,
    "discard_packets_sent": 4026531845, "discard_packets_received": 4026531846,
    "multicast_packets_sent": 4026531847, "multicast_packets_received": 4026531848,
    "broadcast_packets_sent": 4026531849, "broadcast_packets_received": 4026531850,
    "unknown_protocol_packets_received": 4026531851,
    "bytes_sent": 4026531852, "bytes_received": 4026531853,
    "packets_sent": 4026531854, "packets_received": 4026531855,
    "reserved": 4026531856})"));
  image basic = blank("wlan_get_basic_stats");
  for (size_t i = 0; i < 5; ++i)
    basic.word(4 * i, 0xF0000001 + i);
  EXPECT_EQ(value_of("wlan_get_basic_stats", basic), parsed(R"({
    "bytes_sent": 4026531841, "bytes_received": 4026531842, "packets_sent": 4026531843,
    "packets_received": 4026531844, "associations": 4026531845})"));
}

TEST(Layouts, CountersOfSixtyFourBits) {
  for (const char* getter : {"wlan_get_radio_bytes_sent", "wlan_get_ssid_bytes_sent"})
    EXPECT_EQ(value_of(getter, blank(getter).word(0, 0xFEDCBA9876543210, 8)),
              parsed(R"({"bytes_sent": 18364758544493064720})"));
  for (const char* getter : {"wlan_get_radio_bytes_received", "wlan_get_ssid_bytes_received"})
    EXPECT_EQ(value_of(getter, blank(getter).word(0, 0xFEDCBA9876543210, 8)),
              parsed(R"({"bytes_received": 18364758544493064720})"));
  EXPECT_EQ(value_of("wlan_get_radio_tx_packets", image{std::string(8, '\xff')}),
            parsed(R"({"packets_sent": null})"));
  EXPECT_EQ(value_of("wlan_get_radio_rx_packets", image{std::string(8, '\xff')}),
            parsed(R"({"packets_received": null})"));
}

TEST(Layouts, MeasurementsAreSigned) {
  EXPECT_EQ(
      value_of("wlan_get_channel_statistics",
               blank("wlan_get_channel_statistics").word(0, 40).word(4, 2).word(8, as_word(-1))),
      parsed(R"({"channel_busy": 40, "ap_activity": 2, "busy_time": null})"));
  EXPECT_EQ(value_of("wlan_get_channel_noise_floor", blank("wlan_get_channel_noise_floor")
                                                         .word(0, as_word(-97))
                                                         .word(4, as_word(-90))
                                                         .word(8, as_word(-95))
                                                         .word(12, as_word(-94))),
            parsed(R"({"minimum": -97, "maximum": -90, "median": -95, "average": -94})"));
  image table = blank("wlan_get_rssi_table");
  for (size_t i = 0; i < 37; ++i)
    table.word(8 * i, as_word(-1 - static_cast<int64_t>(i)), 8);
  const auto entries = value_of("wlan_get_rssi_table", table)["entries"];
  ASSERT_EQ(entries.size(), 37u);
  EXPECT_EQ(entries[0], parsed(R"({"rssi": null})")) << "what stands for one that is not known";
  EXPECT_EQ(entries[36], parsed(R"({"rssi": -37})"));
}

TEST(Layouts, StationsOfABss) {
  image list = blank("wlan_get_btm_associated_device").word(0, 2);
  list.word(80, as_word(-71)).word(84, 887398).word(88, 147456).word(92, 9).word(96, 7);
  list.word(100, 0x100000002, 8).word(108, 0x300000004, 8).word(116, 1);
  list.text(120, "02:00:5e:00:00:77").word(139, 8, 1).word(148, 1).word(152, 1);
  const auto stations = value_of("wlan_get_btm_associated_device", list)["stations"];
  ASSERT_EQ(stations.size(), 2u);
  EXPECT_EQ(stations[1], parsed(R"({
    "mac_address": "02:00:5e:00:00:77", "rssi": -71, "downlink_rate": 887398,
    "uplink_rate": 147456, "tx_mcs": 9, "rx_mcs": 7, "bytes_sent": 4294967298,
    "bytes_received": 12884901892, "backhaul": true, "btm": 8, "is_ht": true, "is_vht": true})"));
  EXPECT_EQ(stations[0]["backhaul"], false);
}

TEST(Layouts, SteerEvents) {
  image report = blank("wlan_get_steer_event_report").word(1152, 2);
  report.word(36, 0x01020304).text(40, "02:00:5e:00:00:01").word(60, 1700000000).text(64, "-127");
  const auto events = value_of("wlan_get_steer_event_report", report)["events"];
  ASSERT_EQ(events.size(), 2u);
  EXPECT_EQ(events[1], parsed(R"({"time": 1700000000, "type": 16909060,
                                  "mac_address": "02:00:5e:00:00:01", "code": "-127"})"));
}

TEST(Layouts, NonAssociatedStation) {
  image report = blank("wlan_get_na_sta_report");
  report.word(0, 1).word(4, as_word(-64)).word(8, 1700000000).text(12, "02:00:5e:00:00:01");
  EXPECT_EQ(value_of("wlan_get_na_sta_report", report),
            parsed(R"({"valid": true, "rssi": -64, "time": 1700000000,
                       "mac_address": "02:00:5e:00:00:01"})"));
}

TEST(Layouts, Survey) {
  image survey = blank("wlan_get_ap_scan_result").word(0, 2);
  survey.text(104, std::string("\2\0\x5e\0\0\1\x95\xb0", 8) + "Next door");
  survey.text(104 + 41, "WPA2PSK/AES").text(104 + 64, "11ac");
  survey.text(6404, "\x12").text(6763, "\x34");
  const auto value = value_of("wlan_get_ap_scan_result", survey);
  ASSERT_EQ(value["networks"].size(), 2u);
  EXPECT_EQ(value["networks"][1],
            parsed(R"({"bssid": "02:00:5e:00:00:01", "channel": 149, "rssi": -80,
                       "ssid": "Next door", "security": "WPA2PSK/AES", "mode": "11ac"})"));
  EXPECT_EQ(value["driver_data"], "12" + std::string(716, '0') + "34");
}

TEST(Layouts, Extender) {
  image row = blank("hnc_get_hne_table_entry");
  row.word(0, 3).text(4, "02:00:5e:00:00:02").text(28, "Attic").word(268, 2).word(272, 1);
  row.text(276, "Maker").text(436, "Model").text(596, "Number").text(756, "Serial");
  row.word(916, 1700000000).text(920, "1.2").word(1048, as_word(-1)).word(1052, 866).word(1056, 1);
  row.text(1060, "192.168.1.7").text(1076, "02:00:5e:00:00:03").word(1100, as_word(-71));
  row.text(1104, "none").text(1236, std::string(256, 'd'));
  auto value = value_of("hnc_get_hne_table_entry", row);
  EXPECT_EQ(value["description"], std::string(256, 'd'));
  value.erase("description");
  EXPECT_EQ(value, parsed(R"({"index": 3, "mac_address": "02:00:5e:00:00:02",
    "device_name": "Attic", "status": 2, "active": true, "manufacturer": "Maker",
    "model_name": "Model", "model_number": "Number", "serial_number": "Serial",
    "last_sync_attempt": 1700000000, "software_version": "1.2", "uplink_type": -1,
    "uplink_rate": 866, "upgrade_available": true, "ip_address": "192.168.1.7",
    "uplink_mac_address": "02:00:5e:00:00:03", "rssi": -71, "last_error": "none"})"));
}

TEST(Layouts, SupportedExtender) {
  image row = blank("hnc_get_supported_hne_table_entry");
  row.word(0, as_word(-3)).word(4, as_word(-4)).text(8, std::string(63, 'm')).text(72, "Model");
  row.text(136, "Number").text(200, std::string(255, 'u')).text(456, "file.bin");
  row.text(712, "user").text(968, "word").word(1224, 1700000000).word(1228, 1);
  EXPECT_EQ(value_of("hnc_get_supported_hne_table_entry", row),
            (nlohmann::json{{"index", -3},
                            {"row_status", -4},
                            {"manufacturer", std::string(63, 'm')},
                            {"model_name", "Model"},
                            {"model_number", "Number"},
                            {"firmware_url", std::string(255, 'u')},
                            {"firmware_file_name", "file.bin"},
                            {"firmware_user_name", "user"},
                            {"firmware_password", "word"},
                            {"update_time", 1700000000},
                            {"config_on_demand", true}}));
}

TEST(Layouts, OfGettersThatAnswerNothingYet) {
  EXPECT_EQ(
      value_of("wlan_get_bssid_port", blank("wlan_get_bssid_port").text(0, "\2\2\2\2\2\1\x34\xf2")),
      parsed(R"({"bssid": "02:02:02:02:02:01", "port": 62004})"));
  image hotspot = blank("wlan_get_dot11u_attribute").word(0, as_word(-2)).word(8, 7).word(16, 1);
  EXPECT_EQ(value_of("wlan_get_dot11u_attribute", hotspot),
            parsed(R"({"access_network_type": -2, "internet": false, "asra": true, "esr": false,
                       "uesa": true})"));
  image device = blank("wlan_get_assoc_device");
  device.text(0, "02:00:5e:00:00:01").text(18, "phone").text(82, "192.168.1.9").text(127, "n");
  device.word(144, 1).word(148, 60).word(152, 65).word(156, 54).word(160, 300);
  device.word(164, as_word(-60)).word(168, 0xF0000001).word(172, 0xF0000002).word(176, 0xF00D, 2);
  device.word(180, 0xF0000003).word(184, 0xF0000004).word(188, 5).word(192, 200, 1);
  device.word(196, as_word(-95)).text(200, std::string(32, 's'));
  EXPECT_EQ(value_of("wlan_get_assoc_device", device), parsed(R"({
    "mac_address": "02:00:5e:00:00:01", "host_name": "phone", "ip_address": "192.168.1.9",
    "standard": "n", "authenticated": true, "associated_seconds": 60, "tx_rate": 65,
    "rx_rate": 54, "max_rate": 300, "rssi": -60, "packets_sent": 4026531841,
    "packets_received": 4026531842, "association_id": 61453, "bytes_sent": 4026531843,
    "bytes_received": 4026531844, "retries": 5, "power_save": 200, "noise": -95,
    "ssid": "ssssssssssssssssssssssssssssssss"})"));
  for (const char* name :
       {"wlan_get_hnc_steer_sta_mac_address", "wlan_get_hnc_action_frame_mac_address",
        "wlan_get_na_sta_request_mac_address"})
    EXPECT_EQ(value_of(name, blank(name).text(0, "02:00:5e:00:00:01")),
              parsed(R"({"mac_address": "02:00:5e:00:00:01"})"));
}
