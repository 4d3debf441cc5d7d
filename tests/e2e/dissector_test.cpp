#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <nlohmann/json.hpp>
#include <regex>
#include <string>
#include <vector>

#include "support/daemon.h"
#include "support/every_procedure.h"
#include "support/files.h"
#include "support/snapshot.h"
#include "support/wire.h"

// The packet dissector in tshark, applied to real traffic.

static constexpr char kCapture[] = "/tmp/calls.pcapng";
static constexpr char kErrors[] = "/tmp/tshark.err";

// Numbers without a procedure. Calls to them mark the beginning and end of a capture.
static constexpr uint32_t kFirst = 0x0FFFFF01;
static constexpr uint32_t kLast = 0x0FFFFF02;

static constexpr char kProtocol[] = " WLAN_CONFIG ";

static constexpr char kMalformed[] = "[Expert Info (Error/Malformed): cut off or malformed]";

// Repeats the call until the capture has it: tshark writes to the file twice a second.
static void capture_mark(uint32_t procedure) {
  const std::string number = xdr_word(procedure);
  int looks = 0;
  EXPECT_TRUE(wait_until([&] {
    if (looks++ % 50 == 0) send_datagram(call_message(procedure, ""));
    return read_file(kCapture).find(number) != std::string::npos;
  })) << read_file(kErrors);
}

static void start_capture() {
  // tshark chooses the protocol by the lower of the two ports. If another protocol had
  // the caller's port and it were lower, tshark would choose that one.
  write_file("/proc/sys/net/ipv4/ip_local_port_range", "60100 65000");
  run("tshark -q -i lo -w " + std::string(kCapture) + " udp port 60001 >/dev/null 2>" + kErrors +
      " & echo $! >/tmp/tshark.pid");
  EXPECT_TRUE(
      wait_until([] { return read_file(kErrors).find("Capturing on") != std::string::npos; }, 15))
      << read_file(kErrors);
  capture_mark(kFirst);
}

static void end_capture() {
  capture_mark(kLast);
  const pid_t pid = atoi(read_file("/tmp/tshark.pid").c_str());
  kill(pid, SIGINT);
  EXPECT_TRUE(wait_until([pid] { return kill(pid, 0) != 0; }));
}

// The dissector's output for each packet without indentation: first "Info: " and that
// column, then the details.
static std::vector<std::string> dissected() {
  int status = -1;
  const std::string said = run("tshark -r " + std::string(kCapture) +
                                   " -X lua_script:" DISSECTOR " -P -O wlan_config 2>" + kErrors,
                               &status);
  EXPECT_EQ(status, 0) << read_file(kErrors);
  EXPECT_EQ(read_file(kErrors).find("Lua"), std::string::npos) << read_file(kErrors);
  std::vector<std::string> packets;
  for (size_t at = 0, end = 0; at < said.size(); at = end + 1) {
    end = std::min(said.find('\n', at), said.size());
    const std::string line = said.substr(at, end - at);
    const size_t text = line.find_first_not_of(' ');
    const size_t protocol = line.find(kProtocol);
    if (protocol != line.npos) {
      const size_t info = line.find(' ', protocol + strlen(kProtocol)) + 1;  // after the length
      packets.push_back("Info: " + line.substr(info) + "\n");
    } else if (text != line.npos && text > 0) {
      packets.back() += line.substr(text) + "\n";
    }
  }
  return packets;
}

// The packets that contain the text.
static std::vector<std::string> with(const std::vector<std::string>& packets,
                                     const std::string& text) {
  std::vector<std::string> found;
  for (const std::string& packet : packets) {
    if (packet.find(text) != packet.npos) found.push_back(packet);
  }
  return found;
}

static std::string first(const std::vector<std::string>& packets) {
  return packets.empty() ? "" : packets.front();
}

static std::string reply_of(const std::vector<std::string>& packets, const std::string& name) {
  return first(with(with(packets, "Message: Reply (1)\n"), "[Procedure: " + name + "]\n"));
}

static constexpr struct {
  const char* rate;  // as given to gwbox
  const char* shown;
} kRates[] = {
    {"VHT80 MCS9 NSS2 SGI", "0x8319 (866.7 Mbit/s)"},
    {"VHT20 MCS8 NSS1", "0x8008 (78.0 Mbit/s)"},
    {"VHT160 MCS4 NSS4", "0x81b4 (1404.0 Mbit/s)"},
    {"HT40 MCS15 SGI", "0x428f (300.0 Mbit/s)"},
    {"OFDM 54", "0x2007 (54.0 Mbit/s)"},
    {"CCK 5.5", "0x0002 (5.5 Mbit/s)"},
};

static void add_stations_of_rates() {
  for (size_t i = 0; i < std::size(kRates); ++i)
    run("gwbox set station 02:00:5e:00:02:0" + std::to_string(i) +
        " bss=1 'tx_rate=" + kRates[i].rate + "'");
}

static void expect_rates(const std::vector<std::string>& packets) {
  const std::string table = reply_of(packets, "wlan_get_assoc_devices_table");
  for (size_t i = 0; i < std::size(kRates); ++i) {
    const size_t row = table.find("mac_address: 02:00:5e:00:02:0" + std::to_string(i) + "\n");
    const size_t rate = table.find("tx_rate: ", row);
    ASSERT_NE(rate, table.npos) << table;
    EXPECT_EQ(table.substr(rate, table.find('\n', rate) - rate),
              std::string("tx_rate: ") + kRates[i].shown);
  }
}

// The Info column of the first packet that contains the text.
static std::string info_of(const std::vector<std::string>& packets, const std::string& text) {
  const std::string packet = first(with(packets, text));
  return packet.substr(0, packet.find('\n'));
}

static void expect_known_infos(const std::vector<std::string>& packets) {
  static const struct {
    bool call;
    std::string procedure, info;
  } kKnown[] = {
      {true, "wlan_set_ssid", " 1 \"caf\xc3\xa9 \"7\"\""},
      {false, "wlan_set_ssid", " -> 0"},
      {false, "wlan_get_hnc_action_frame_payload", " -> 1: \"caf\xc3\xa9 \"7\"\""},
      {false, "wlan_get_assoc_devices_num", " -> 0: 14"},  // seven from the scenario
      {false, "wlan_get_assoc_devices_table", " -> 0"},
      {true, "wlan_get_wps_result_status", " 1"},
      // Cut after 40 characters, including the quote.
      {true, "wlan_set_pre_shared_key", " 3 1 \"0123456789abcdef0123456789abcdef0123456..."},
      {true, "hnc_set_hne_table_entry", " 1 1 1 ..."},
  };
  for (const auto& known : kKnown) {
    const std::string named = "Procedure: " + known.procedure;
    EXPECT_EQ(info_of(packets, known.call ? named + "\n" : "[" + named + "]\n"),
              (known.call ? "Info: Call " : "Info: Reply ") + known.procedure + known.info);
  }
  EXPECT_EQ(info_of(packets, "Return code: -1\n").substr(0, 12), "Info: Reply ");
  EXPECT_TRUE(info_of(packets, "Return code: -1\n").ends_with(" -> -1"));
}

// `count` lines from `line` on, without the station's connection time, which varies.
static std::string lines_from(const std::string& packet, const std::string& line, int count) {
  size_t end = packet.find(line);
  if (end == packet.npos) return "no \"" + line + "\" in\n" + packet;
  std::string lines;
  while (count-- > 0) {
    const size_t start = end;
    end = packet.find('\n', start) + 1;
    const std::string one = packet.substr(start, end - start);
    if (!one.starts_with("connected_seconds: ")) lines += one;
  }
  return lines;
}

// Calls with known answers: a station that does not change, and a new SSID.
static void make_known_calls() {
  start_capture();
  run("gwbox set station 02:00:5e:00:00:77 bss=1 'rssi=[-61,-63]' 'tx_rate=HT20 MCS15 SGI' "
      "'rx_rate=HT20 MCS7' btm=true start.tx_packets=1000 start.tx_bytes=70000");
  add_stations_of_rates();
  run("name=\"$(printf 'caf\\303\\251 \"7\"')\";"
      "wificonf wlan_get_assoc_devices_table 1; wificonf wlan_get_btm_associated_device 1;"
      "wificonf wlan_set_ssid 1 \"$name\"; wificonf wlan_get_bss_hnc_service 1;"
      "wificonf --force wlan_set_hnc_action_frame_payload 1 \"$name\";"
      "wificonf wlan_get_hnc_action_frame_payload 1; wificonf wlan_get_assoc_devices_num 1");
}

static void expect_known_answers(const std::vector<std::string>& packets) {
  EXPECT_EQ(lines_from(first(with(packets, "Procedure: wlan_set_ssid\n")), "Number: ", 4),
            "Number: 22 (0x00000016)\n"
            "Procedure: wlan_set_ssid\n"
            "bss: 1\n"
            "ssid: \"caf\xc3\xa9 \"7\"\"\n");
  EXPECT_EQ(lines_from(reply_of(packets, "wlan_get_bss_hnc_service"), "Accepted", 3),
            "Accepted: success (0)\n"
            "Return code: 0\n"
            "Value: 0\n");
  EXPECT_EQ(lines_from(reply_of(packets, "wlan_get_assoc_devices_table"),
                       "mac_address: 02:00:5e:00:00:77", 13),
            "mac_address: 02:00:5e:00:00:77\n"
            "association_id: 2\n"
            "power_save: 0\n"
            "mimo_power_save: 0\n"
            "rssi_0: -61\n"
            "rssi_1: -63\n"
            "rssi_2: 0 (not known)\n"
            "rssi_3: 0 (not known)\n"
            "tx_rate: 0x420f (144.4 Mbit/s)\n"
            "rx_rate: 0x4007 (65.0 Mbit/s)\n"
            "packets_sent: 1000\n"
            "failures: 0\n");
  EXPECT_EQ(lines_from(reply_of(packets, "wlan_get_btm_associated_device"),
                       "mac_address: \"02:00:5e:00:00:77\"", 12),
            "mac_address: \"02:00:5e:00:00:77\"\n"
            "rssi: -61\n"
            "downlink_rate: 147456\n"
            "uplink_rate: 147456\n"
            "tx_mcs: 7\n"
            "rx_mcs: 7\n"
            "bytes_sent: 70000\n"
            "bytes_received: 0\n"
            "backhaul: no\n"
            "btm: 0 (not known)\n"
            "is_ht: yes\n"
            "is_vht: no\n");
}

namespace {
using ordered_json = nlohmann::ordered_json;
}

// The words of a command line in which single quotes protect blanks.
static std::vector<std::string> words_of(const std::string& line) {
  std::vector<std::string> words(1);
  bool quoted = false;
  for (const char c : line) {
    if (c == '\'')
      quoted = !quoted;
    else if (c == ' ' && !quoted)
      words.emplace_back();
    else
      words.back() += c;
  }
  return words;
}

// What the dissector shows for the example's arguments.
static std::string expected_arguments(const std::string& name) {
  const ordered_json about = ordered_json::parse(run("wificonf --json describe " + name));
  const std::vector<std::string> words = words_of(about["example"]);
  std::string lines;
  for (size_t i = 0; i < about["arguments"].size(); ++i) {
    const ordered_json& argument = about["arguments"][i];
    const std::string type = argument["type"];
    const bool text = type == "string" || type.starts_with("char[");
    const std::string quote = text ? "\"" : "";
    lines += argument["name"].get<std::string>() + ": " + quote + words.at(i + 2) + quote + "\n";
  }
  return lines;
}

static std::string date_of(uint32_t seconds) {
  if (seconds == 0) return "-";
  const time_t when = seconds;
  char text[32];
  strftime(text, sizeof text, "%Y-%m-%d %H:%M:%SZ", gmtime(&when));
  return text;
}

static std::string expected_value(const std::string& name, const ordered_json& value) {
  static const char* const kTimes[] = {"time", "last_sync_attempt", "update_time"};
  const bool time = std::find(std::begin(kTimes), std::end(kTimes), name) != std::end(kTimes);
  if (value.is_null()) return time ? "-" : "(not known)";
  if (value.is_boolean()) return value.get<bool>() ? "yes" : "no";
  if (value.is_object()) {  // a rate
    char rate[64];
    if (value["mbit_s"].is_null())
      snprintf(rate, sizeof rate, "0x%04x (no such rate)", value["word"].get<unsigned>());
    else
      snprintf(rate, sizeof rate, "0x%04x (%.1f Mbit/s)", value["word"].get<unsigned>(),
               value["mbit_s"].get<double>());
    return rate;
  }
  if (value.is_number() && time) return date_of(value.get<uint32_t>());
  if (name == "driver_data") return value.get<std::string>().substr(0, 32) + "... (360 bytes)";
  return name == "bssid" ? value.get<std::string>() : value.dump();
}

static std::string expected_fields(const ordered_json& record) {
  std::string lines;
  for (const auto& [name, value] : record.items()) {
    if (!value.is_array()) {
      lines += name + ": " + expected_value(name, value) + "\n";
      continue;
    }
    for (size_t i = 0; i < value.size(); ++i)
      lines += name + " " + std::to_string(i) + "\n" + expected_fields(value[i]);
  }
  return lines;
}

// What the dissector shows for an answer that wificonf has decoded.
static std::string expected_result(const ordered_json& answer) {
  std::string lines = "Return code: " + answer["return_code"].dump() + "\n";
  if (!answer.contains("value")) return lines;
  const ordered_json& value = answer["value"];
  if (value.is_object()) return lines + expected_fields(value);
  return lines + "Value: " + (value.is_null() ? "(not known)" : value.dump()) + "\n";
}

// The dissector quotes addresses that are texts but not those of six bytes, and it shows
// the number that means "not known". JSON has neither distinction.
static std::string unquoted_addresses(const std::string& lines) {
  static const std::regex kAddress("\"(([0-9a-f]{2}:){5}[0-9a-f]{2})\"");
  static const std::regex kNotKnown("-?[0-9]+ (\\(not known\\))");
  return std::regex_replace(std::regex_replace(lines, kAddress, "$1"), kNotKnown, "$1");
}

// The packet's details after a line.
static std::string comparable(const std::string& packet, const std::string& start) {
  const size_t at = packet.find(start);
  return at == packet.npos ? "" : packet.substr(at + start.size());
}

static void expect_as_wificonf_says(const std::vector<std::string>& packets,
                                    const procedure_call& call) {
  const ordered_json answer = ordered_json::parse(call.answer);
  const std::string called = "Procedure: " + call.name + "\n";
  const auto asked = with(with(packets, "Message: Call (0)\n"), called);
  const auto answered =
      with(with(packets, "Message: Reply (1)\n"), "[Procedure: " + call.name + "]\n");
  ASSERT_FALSE(asked.empty() || answered.empty()) << call.name;
  EXPECT_EQ(comparable(asked.back(), called), expected_arguments(call.name)) << call.name;
  const std::string result = answered.back().substr(
      std::min(answered.back().find("Return code: "), answered.back().size()));
  const std::string expected = expected_result(answer);
  // A failure may still have a payload.
  if (answer["return_code"] < 0)
    EXPECT_TRUE(result.starts_with(expected)) << call.name << "\n" << result;
  else
    EXPECT_EQ(unquoted_addresses(result), unquoted_addresses(expected)) << call.name;
}

// Takes longer than other tests: tshark starts twice, the radios come up, and every
// procedure is called.
TEST(Dissector, DecodesEveryCallAndReply) {
  const std::vector<procedure_call> calls = call_every_procedure(make_known_calls);
  end_capture();
  ASSERT_EQ(calls.size(), snapshot_procedures()) << kSnapshotGrows;
  const std::vector<std::string> packets = dissected();
  std::string missing;
  for (const procedure_call& call : calls) {
    const auto asked = with(packets, "Procedure: " + call.name + "\n");
    if (first(asked).find("Message: Call (0)\n") == std::string::npos)
      missing += "call " + call.name + "\n";
    if (reply_of(packets, call.name).find("Return code: ") == std::string::npos)
      missing += "reply " + call.name + "\n";
  }
  EXPECT_EQ(missing, "");
  for (const procedure_call& call : calls)
    expect_as_wificonf_says(packets, call);
  EXPECT_EQ(first(with(packets, "Malformed")), "");
  expect_known_answers(packets);
  expect_known_infos(packets);
  expect_rates(packets);
}

namespace {

struct odd_datagram {
  std::string bytes;  // after the transaction id
  std::string info;
  std::string shown;
  bool malformed;
};

}  // namespace

// A call that sets the SSID of BSS 3, without its transaction id.
static std::string set_ssid(const std::string& text) {
  return call_message(22, xdr_word(3) + text).substr(sizeof(uint32_t));
}

static std::vector<odd_datagram> odd_datagrams() {
  const std::string whole = set_ssid(xdr_text("Living room"));
  const std::string lying = set_ssid(xdr_word(0xFFFFFFFF) + "Living room");
  const std::string reply = xdr_word(1) + xdr_word(0);
  const std::string called = "Call wlan_set_ssid";
  return {
      {whole, called + " 3 \"Living room\"", "bss: 3\nssid: \"Living room\"\n", false},
      {whole.substr(0, whole.size() - 4), called + " 3 [cut off]", "bss: 3\n", true},
      {whole.substr(0, whole.size() - 14), called + " 3 [cut off]", "bss: 3\n", true},
      {whole.substr(0, 22), called + " [cut off]", "Procedure: wlan_set_ssid\n", true},
      {lying, called + " 3 [cut off]", "bss: 3\n", true},
      {reply, "Reply unknown procedure [cut off]", "[Procedure: unknown procedure]\n", true},
  };
}

// Texts as bytes and as the dissector shows them.
static std::vector<odd_datagram> odd_texts() {
  static const struct {
    const char* bytes;
    const char* shown;
  } kTexts[] = {
      {"\xe2\x82\xac \xf0\x9f\x93\xb6 \xd8\xb9", "\xe2\x82\xac \xf0\x9f\x93\xb6 \xd8\xb9"},
      {"caf\xe9 \xe2\x82", "caf\\xe9 \\xe2\\x82"},            // not UTF-8, and truncated
      {"\x1b[2J\x7f\xc2\x9b", "\\x1b[2J\\x7f\\xc2\\x9b"},     // control characters
      {"\xd8\x9c\xe2\x80\x8f", "\\xd8\\x9c\\xe2\\x80\\x8f"},  // text direction
      {"\xe2\x80\xae\xe2\x81\xa6", "\\xe2\\x80\\xae\\xe2\\x81\\xa6"},
      {"\xc0\xaf\xe0\x80\x80", "\\xc0\\xaf\\xe0\\x80\\x80"},  // overlong
      {"\xed\xa0\x80", "\\xed\\xa0\\x80"},                    // surrogate
      {"\xf4\x90\x80\x80", "\\xf4\\x90\\x80\\x80"},           // above U+10FFFF
  };
  std::vector<odd_datagram> odd;
  for (const auto& text : kTexts) {
    const std::string quoted = "\"" + std::string(text.shown) + "\"";
    odd.push_back({set_ssid(xdr_text(text.bytes)), "Call wlan_set_ssid 3 " + quoted,
                   "ssid: " + quoted + "\n", false});
  }
  // The quote and 39 two-byte characters.
  std::string many, most;
  for (int i = 0; i < 50; ++i) {
    many += "\xc3\xa9";
    if (i < 39) most += "\xc3\xa9";
  }
  odd.push_back({set_ssid(xdr_text(many)), "Call wlan_set_ssid 3 \"" + most + "...",
                 "ssid: \"" + many + "\"\n", false});
  return odd;
}

TEST(Dissector, SaysOfWhatIsCutOffThatItIs) {
  start_daemon();
  start_capture();
  std::vector<odd_datagram> odd = odd_datagrams();
  for (const odd_datagram& text : odd_texts())
    odd.push_back(text);
  for (uint32_t i = 0; i < odd.size(); ++i)
    send_datagram(xdr_word(0xABCD00 + i) + odd[i].bytes);
  send_datagram(call_message(22, "").substr(0, 8));
  send_datagram(call_message(22, "", 2, 100000));
  run("wificonf ping");
  end_capture();
  const std::vector<std::string> packets = dissected();
  for (uint32_t i = 0; i < odd.size(); ++i) {
    char transaction[64];
    snprintf(transaction, sizeof transaction, "Transaction: 0x%08x\n", 0xABCD00 + i);
    const std::string packet = first(with(packets, transaction));
    EXPECT_EQ(packet.substr(0, packet.find('\n')), "Info: " + odd[i].info) << transaction;
    EXPECT_NE(packet.find(odd[i].shown), std::string::npos) << transaction << packet;
    EXPECT_EQ(packet.find(kMalformed) != std::string::npos, odd[i].malformed) << packet;
  }
  // Five of the datagrams above, and the two that are not calls of this program.
  EXPECT_EQ(with(packets, kMalformed).size(), 7u);
  EXPECT_NE(first(with(packets, "Number: 268435202 (0x0fffff02)\n")), "");
  EXPECT_EQ(info_of(packets, "Number: 268435202 (0x0fffff02)\n"), "Info: Call procedure 268435202");
  EXPECT_EQ(info_of(packets, "[Procedure: procedure 268435202]\n"),
            "Info: Reply procedure 268435202: procedure unavailable");
  EXPECT_EQ(info_of(packets, "Number: 0 (0x00000000)\n"), "Info: Call ping");
  EXPECT_EQ(info_of(packets, "[Procedure: ping]\n"), "Info: Reply ping");
  EXPECT_EQ(info_of(packets, "[Procedure: wlan_set_ssid]\nAccepted: garbage arguments (4)\n"),
            "Info: Reply wlan_set_ssid: garbage arguments");
}
