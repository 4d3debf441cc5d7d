#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "support/seeds.h"
#include "values/argument_check.h"
#include "values/argument_meanings.h"
#include "wire/lookup.h"
#include "wire/table.h"

// make_seeds DIRECTORY: writes inputs to start new corpora from, in a directory named
// after each target. The dispatcher has at least one for each procedure, its example
// with everything in place, and some for what the examples do not do.

static std::string call(const std::string& name, const std::vector<std::string>& words) {
  const procedure_row* procedure = lookup_name(name);
  byte_string bytes;
  std::string error;
  if (procedure == nullptr || !arguments_encode(*procedure, words, bytes, error)) {
    fprintf(stderr, "%s: %s\n", name.c_str(), error.c_str());
    exit(1);
  }
  return make_record(record_type::kCall, u16(procedure->number) + u16(procedure->number >> 16) +
                                             std::string(bytes.begin(), bytes.end()));
}

static std::string example(const procedure_row& procedure) {
  std::vector<std::string> words;
  for (const argument_spec& argument : table_arguments(procedure))
    words.push_back(meanings_find(procedure, argument.name)->example);
  return call(procedure.name, words);
}

// A table of two rows whose first station belongs to BSS 1.
static std::string table() {
  std::string bytes("\2\0\0\0", 4);
  for (unsigned i = 0; i < 200; ++i)
    bytes += byte(i * 7 % 251);
  bytes[4] = 0;
  return bytes;
}

static std::string faults(const std::string& pairs) {
  return make_record(record_type::kFaults, pairs);
}

static std::string profile(unsigned how, const std::string& text) {
  return make_record(record_type::kProfile, byte(how) + text);
}

static std::string plenty() {
  std::string out;
  for (int i = 0; i < 3; ++i) {
    out += answer(record_type::kDriver, 0, table());
    out += answer(record_type::kPeer, 0, "1" + table());
    out += answer(record_type::kCommand, 0, "1\n[0x0052]:0x0002\n");
  }
  return out;
}

static const std::string kWorker = make_record(record_type::kWorker, "");

static void write_examples(const std::filesystem::path& directory) {
  for (const procedure_row& procedure : table_procedures()) {
    const unsigned board = procedure.number % 3;
    write_seed(directory, procedure.name,
               world(0xFFFF, board, 3) + plenty() + example(procedure) + kWorker);
  }
}

static void write_lifecycles(const std::filesystem::path& directory) {
  const std::string cycle = call("wlan_load", {"1"}) + kWorker + call("wlan_init", {}) + kWorker +
                            call("wlan_restart_all", {}) + call("wlan_restart", {"9"}) + kWorker +
                            call("wlan_set_bs_enable", {"1"}) + call("wlan_reset", {});
  for (unsigned board = 0; board < 4; ++board) {
    for (const unsigned there : {0u, 0xFFFFu, 0x5555u})
      write_seed(directory, "cycle" + std::to_string(board) + "_" + std::to_string(there),
                 world(there, board, 0) + plenty() + cycle);
  }
  write_seed(directory, "queue",
             call("wlan_load", {"1"}) + call("wlan_init", {}) + call("wlan_restart", {"1"}) +
                 call("wlan_restart", {"9"}) + call("wlan_reset", {}) + kWorker);
  write_seed(directory, "factory",
             world(0x1018, 2, 0) + answer(record_type::kCommand, 0, "/mnt/usb\n") +
                 call("wlan_load", {"1"}) + kWorker);
  write_seed(directory, "country",
             profile(0, "CountryCode='$(x)\nHT_TxStream=3\n") + world(0, 2, 0) +
                 call("wlan_load", {"1"}) + kWorker);
}

static void write_texts(const std::filesystem::path& directory) {
  const std::string texts[] = {"a\nSSID1=b",
                               "'; reboot #",
                               "%s%n%x",
                               "a;b;c",
                               "\xff\xfe",
                               "\x1b[2J\x01\x1f\x7f\xc2\x9b",
                               std::string(300, 'x'),
                               std::string(1600, '='),
                               ""};
  int number = 0;
  for (const std::string& text : texts) {
    write_seed(directory, "text" + std::to_string(number++),
               world(0xFFFF, 2, 3) + call("wlan_set_ssid", {"1", text}) +
                   call("wlan_set_radius_server_address", {"10", text}) +
                   call("wlan_set_hnc_steer_sta_mac_address", {"1", text}) +
                   call("wlan_set_hnc_action_frame_payload", {"1", text}) +
                   call("wlan_set_hnc_steer_sta_type", {"1", "3"}) +
                   call("wlan_set_wps_pinstart", {"1", text}) +
                   call("wlan_set_dcs_rssi_weight", {"1", text}) +
                   call("hnc_set_updatefw_url", {"1", text}));
  }
}

static void write_profiles(const std::filesystem::path& directory) {
  const std::string set = call("wlan_set_ssid", {"1", "other"}) +
                          call("wlan_set_enable", {"3", "1"}) +
                          call("wlan_set_channel_utilization_enable", {"1", "1"}) +
                          call("wlan_set_bss_hnc_service", {"2", "7"});
  for (const unsigned how : {2u, 4u, 8u, 16u, 32u})
    write_seed(directory, "profile" + std::to_string(how),
               world(0, 0, 3) + profile(how, "SSID1=a\nBssEnabled=1;0") + set);
  write_seed(directory, "long_line",
             profile(32, "SSID1=" + std::string(1800, 'x') + "\nSSID1=y\n") + set);
  for (unsigned after = 0; after < 16; ++after) {
    for (const int how : {3, 5, 16, 6})
      write_seed(directory, "fault" + std::to_string(after) + "_" + std::to_string(how),
                 faults(byte(after) + byte(static_cast<unsigned>(how)) + "\t\3") +
                     profile(after % 2 * 2, "") + set);
  }
}

static void write_datagrams(const std::filesystem::path& directory) {
  const std::string header(
      "\0\0\0\1\0\0\0\0\0\0\0\2\x20\x13\x13\x37\0\0\0\1\0\0\0\x10\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0",
      40);
  std::string unix_style = header;
  unix_style.replace(24, 8, std::string("\0\0\0\1\0\0\0\x18", 8));
  unix_style.insert(32, std::string("\0\0\0\1\0\0\0\1a\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 24));
  const std::string one("\0\0\0\1", 4);
  write_seed(directory, "datagram", make_record(record_type::kDatagram, header + one));
  write_seed(directory, "unix", make_record(record_type::kDatagram, unix_style + one));
  write_seed(directory, "cut", make_record(record_type::kDatagram, header));
  write_seed(directory, "short", make_record(record_type::kDatagram, header.substr(0, 36)));
  for (const size_t at : {7u, 11u, 15u, 19u, 22u, 23u, 27u, 35u}) {
    std::string other = header + one;
    other[at] = 3;
    write_seed(directory, "header" + std::to_string(at),
               make_record(record_type::kDatagram, other));
  }
  // Each credential flavor, with the start of a GSS context.
  for (unsigned flavor = 0; flavor <= 10; ++flavor) {
    std::string other = header;
    other.replace(24, 8, std::string("\0\0\0", 3) + byte(flavor) + std::string("\0\0\0\x14", 4));
    other.insert(32, std::string("\0\0\0\1\0\0\0\1\0\0\0\1\0\0\0\1\0\0\0\0", 20));
    write_seed(directory, "flavor" + std::to_string(flavor),
               make_record(record_type::kDatagram, other + one));
  }
}

// ---- The other targets.

static void write_answers(const std::filesystem::path& directory) {
  for (unsigned number = 0; number < 12; ++number) {
    std::string scene = world(0xFFFF, 2, 3);
    for (const size_t size : {size_t{2860}, size_t{404}, size_t{192}, size_t{100}})
      scene += answer(record_type::kPeer, 0, "1" + pattern(size - 1));
    scene += answer(record_type::kPeer, number, "2");
    scene += answer(record_type::kCommand, 0, "[0x0052]:0x0002\n");
    write_seed(directory, std::to_string(number),
               scene + operation(number, 1) + operation(number, 9) + operation(number, 1));
  }
}

// Tables whose first words announce rows; the fields have arbitrary values.
static void write_driver(const std::filesystem::path& directory) {
  for (unsigned number = 0; number < 17; ++number) {
    std::string scene = world(0xFFFF, number % 3, 3);
    for (const size_t size : {size_t{6000}, size_t{6660}, size_t{700}, size_t{13164}}) {
      std::string table = "\5" + pattern(size - 1);
      if (number == 13 && size > 1920) table.replace(1920, 1, "\3");
      if (number == 13) table.replace(0, 8, std::string("\2\0\x5e\0\0\3\4\2", 8));
      scene += answer(record_type::kDriver, 0, table);
    }
    write_seed(directory, std::to_string(number),
               scene + operation(number, 1) + operation(number, 9));
  }
}

static void write_profile_seeds(const std::filesystem::path& directory) {
  for (unsigned number = 0; number < 10; ++number) {
    for (const char* index : {"\0", "\2", "\xff"}) {
      const std::string fill(3, index[0] == '\xff' ? '\xff' : '\0');
      write_seed(directory, std::to_string(number) + "_" + std::to_string(index[0] + 1),
                 byte(number) + u16(255) + index[0] + fill + byte(8) + "AuthMode" +
                     text_item("OPEN") + byte(5) + "SSID1" + text_item("Home") +
                     "SSID1=Home\nno setting\nAuthMode=WPA2PSK;OPEN;\nSSID1=\nSSID10=x");
    }
  }
}

static void write_xdr(const std::filesystem::path& directory) {
  for (unsigned number = 0; number < 200; ++number) {
    write_seed(directory, std::to_string(number),
               u16(number) + std::string("\0\0\0\1\0\0\0\3abc\0\0\0\0\2\0\0\0\0", 20));
  }
  write_seed(directory, "zeros", u16(2) + std::string(4096, '\0'));
}

static void write_client(const std::filesystem::path& directory) {
  unsigned place = 0;
  for (const procedure_row& procedure : table_procedures()) {
    const std::string start = u16(place++);
    std::string words;
    for (const argument_spec& argument : table_arguments(procedure))
      words.append(meanings_find(procedure, argument.name)->example).append(1, '\0');
    if (place % 4 == 0)
      write_seed(directory, procedure.name + std::string("_words"), "\2" + start + words);
    if (procedure.payload == payload_kind::WORDS || procedure.payload == payload_kind::IMAGE)
      write_seed(directory, procedure.name,
                 "\1" + start + byte(place) + "\5" + pattern(procedure.size));
  }
  const std::string integer("\0\0\0\0\0\0\0\4\0\0\0\6\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 28);
  write_seed(directory, "reply", byte(0) + u16(8) + integer);
  write_seed(directory, "options",
             "\3" + u16(0) +
                 std::string("--json\0--port\0"
                             "80\0ping",
                             21));
  write_seed(directory, "text", "\4" + u16(0) + "a\x1b[1m\xff\xc3\xa4\\\xd8\x9c\xe2\x80\x8f");
  write_seed(directory, "rpc",
             "\5" + u16(0) + std::string("\1\2\3\4\0\0\0\1", 8) + std::string(24, '\0'));
}

static std::filesystem::path made(const std::filesystem::path& directory) {
  std::filesystem::create_directories(directory);
  return directory;
}

int main(int count, char** words) {
  if (count != 2) {
    fputs("usage: make_seeds DIRECTORY\n", stderr);
    return 2;
  }
  const std::filesystem::path root = words[1];
  write_answers(made(root / "answers"));
  write_driver(made(root / "driver"));
  write_profile_seeds(made(root / "profile"));
  write_xdr(made(root / "xdr"));
  write_client(made(root / "client"));
  const std::filesystem::path directory = made(root / "dispatch");
  write_examples(directory);
  write_lifecycles(directory);
  write_texts(directory);
  write_profiles(directory);
  write_datagrams(directory);
  write_edges(root);
  return 0;
}
