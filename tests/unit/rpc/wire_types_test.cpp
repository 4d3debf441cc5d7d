// Every type of the wire contract: its bytes, and decoding when bytes are missing.

#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <sstream>
#include <string>
#include <type_traits>

#include "rpc/text_filter.h"
#include "rpc/wire_support.h"
#include "unit_support.h"

// An endless stream to decode from: every item has the same value, and every byte is a
// letter. The value is also the length of texts and arrays.

static long endless_value;

static bool_t endless_long(XDR*, long* value) {
  *value = endless_value;
  return TRUE;
}

static bool_t endless_bytes(XDR*, char* bytes, u_int length) {
  memset(bytes, 'x', length);
  return TRUE;
}

static u_int endless_position(XDR*) {
  return 0;
}

static bool_t endless_reposition(XDR*, u_int) {
  return TRUE;
}

// No buffer, so that the filters take one item at a time.
static int32_t* endless_inline(XDR*, u_int) {
  return nullptr;
}

static XDR endless_stream() {
  static struct XDR::xdr_ops operations;
  operations.x_getlong = endless_long;
  operations.x_getbytes = endless_bytes;
  operations.x_getpostn = endless_position;
  operations.x_setpostn = endless_reposition;
  operations.x_inline = endless_inline;
  XDR stream = {};
  stream.x_op = XDR_DECODE;
  stream.x_ops = &operations;
  return stream;
}

// The bytes of an object with the value in every place.
template <typename T>
static std::string sample_bytes(bool_t (*filter)(XDR*, T*), long value) {
  endless_value = value;
  XDR stream = endless_stream();
  T object = {};
  EXPECT_TRUE(filter(&stream, &object));
  const std::string bytes = encoded(filter, &object);
  released(filter, &object);
  return bytes;
}

template <typename T>
static void round_trip(const char* name, bool_t (*filter)(XDR*, T*)) {
  for (const long value : {0, 1, 5}) {
    const std::string bytes = sample_bytes(filter, value);
    ASSERT_NE(bytes, "(refused)") << name;
    T object = {};
    size_t rest = 1;
    EXPECT_TRUE(decoded(filter, bytes, &object, &rest)) << name;
    EXPECT_EQ(rest, 0u) << name;
    EXPECT_TRUE(encoded(filter, &object) == bytes) << name << " with " << value;
    released(filter, &object);
  }
}

// Large tables are cut at a sample of places.
static size_t step_of(size_t length) {
  return length < 1500 ? 1 : length / 97;
}

template <typename T>
static void cut_everywhere(const char* name, bool_t (*filter)(XDR*, T*)) {
  const std::string bytes = sample_bytes(filter, 2);
  for (size_t length = 0; length < bytes.size(); length += step_of(bytes.size())) {
    T object = {};
    EXPECT_FALSE(decoded(filter, bytes.substr(0, length), &object)) << name << " at " << length;
    released(filter, &object);
  }
}

template <typename T>
static void cut_while_encoding(const char* name, bool_t (*filter)(XDR*, T*)) {
  const std::string bytes = sample_bytes(filter, 2);
  T object = {};
  ASSERT_TRUE(decoded(filter, bytes, &object)) << name;
  std::string room(bytes.size(), '\0');
  for (size_t length = 0; length < bytes.size(); length += step_of(bytes.size())) {
    XDR stream;
    xdrmem_create(&stream, room.data(), static_cast<u_int>(length), XDR_ENCODE);
    EXPECT_FALSE(filter(&stream, &object)) << name << " at " << length;
  }
  released(filter, &object);
}

TEST(WireTypes, EveryTypeSurvivesTheRoundTrip) {
#define TYPE(name) round_trip(#name, xdr_##name);
#include "wire_types.def"
#undef TYPE
}

TEST(WireTypes, EveryTypeCutOffAnywhereIsRefused) {
#define TYPE(name) cut_everywhere(#name, xdr_##name);
#include "wire_types.def"
#undef TYPE
}

TEST(WireTypes, EveryTypeIsRefusedWhereTheRoomEnds) {
#define TYPE(name) cut_while_encoding(#name, xdr_##name);
#include "wire_types.def"
#undef TYPE
}

// wire_types.def is made from the contract. This shows that it misses no type.
TEST(WireTypes, EveryStructureOfTheSnapshotIsAmongThem) {
  std::set<std::string> types;
#define TYPE(name) types.insert(#name);
#include "wire_types.def"
#undef TYPE
  std::istringstream snapshot(read_file(WIRE_SNAPSHOT));
  size_t structures = 0;
  for (std::string line; std::getline(snapshot, line);) {
    if (!line.starts_with("struct ")) continue;
    const std::string name = line.substr(7, line.find(' ', 7) - 7);
    EXPECT_TRUE(types.contains(name)) << name;
    ++structures;
  }
  EXPECT_GT(structures, 0u);
}

TEST(WireTypes, CharacterOfAVectorTakesFourBytes) {
  EXPECT_EQ(sizeof(wlan_device_t::ssid), 32u);
  wlan_device_t device = {};
  const std::string without = encoded(xdr_wlan_device_t, &device);
  memcpy(device.ssid, "Home", 4);
  const std::string with = encoded(xdr_wlan_device_t, &device);
  ASSERT_EQ(with.size(), without.size());
  // The network name is the last member: 32 characters in 128 bytes.
  const std::string name = with.substr(with.size() - 128);
  EXPECT_EQ(with.substr(0, with.size() - 128), without.substr(0, with.size() - 128));
  EXPECT_EQ(name, word('H') + word('o') + word('m') + word('e') + zeros(28));
}

TEST(WireTypes, StationMembersAreInOrder) {
  wlan_device_t device = {};
  device.mac_address[0] = 1;
  device.host_name[0] = 2;
  device.ip_address[0] = 3;
  device.standard[0] = 4;
  device.authenticated = 5;
  device.associated_seconds = 6;
  device.tx_rate = 7;
  device.rx_rate = 8;
  device.max_rate = 9;
  device.rssi = -10;
  device.packets_sent = 11;
  device.packets_received = 12;
  device.association_id = 13;
  device.bytes_sent = 14;
  device.bytes_received = 15;
  device.retries = 16;
  device.power_save = 17;
  device.noise = -18;
  device.ssid[0] = 19;
  const std::string expected = word(1) + zeros(17) + word(2) + zeros(63) + word(3) + zeros(44) +
                               word(4) + zeros(16) + word(5) + word(6) + word(7) + word(8) +
                               word(9) + word(-10U) + word(11) + word(12) + word(13) + word(14) +
                               word(15) + word(16) + word(17) + word(-18U) + word(19) + zeros(31);
  EXPECT_TRUE(encoded(xdr_wlan_device_t, &device) == expected);
}

// libtirpc widens a char with the processor's signedness; on ARM it is unsigned. Reading
// into a char gives the same value either way.
TEST(WireTypes, NegativeCharacterIsSignExtendedWhereCharHasASign) {
  scan_entry entry = {};
  entry.rssi = -70;
  entry.bssid[0] = 0xFE;
  const std::string bytes = encoded(xdr_scan_entry, &entry);
  EXPECT_EQ(bytes.substr(0, 4), word(0xFE));
  const size_t rssi = 4 * (6 + 32 + 12 + 1 + 12 + 1 + 15 + 1 + 1 + 6);
  EXPECT_EQ(bytes.substr(rssi, 4), word(std::is_signed_v<char> ? 0xFFFFFFBA : 0xBA));
  EXPECT_EQ(bytes.size(), rssi + 4 * (1 + 15 + 8 + 8 + 1 + 1));
}

TEST(WireTypes, TablesAlwaysCarryAllTheirEntries) {
  wlan_assoc_devices_table devices = {};
  wlan_device_t device = {};
  EXPECT_EQ(encoded(xdr_wlan_assoc_devices_table, &devices).size(),
            4 + 32 * encoded(xdr_wlan_device_t, &device).size());
  scan_table scans = {};
  scan_entry entry = {};
  EXPECT_EQ(encoded(xdr_scan_table, &scans).size(),
            4 + 64 * encoded(xdr_scan_entry, &entry).size());
}

TEST(WireTypes, ExtenderMembersAreInOrder) {
  char empty[] = "";
  char texts[10][3] = {"b", "c", "f", "g", "h", "i", "k", "o", "p", "r"};
  hnc_hne_table_entry entry = {};
  entry.index = 1;
  entry.mac_address = texts[0];
  entry.device_name = texts[1];
  entry.status = 4;
  entry.active = TRUE;
  entry.manufacturer = texts[2];
  entry.model_name = texts[3];
  entry.model_number = texts[4];
  entry.serial_number = texts[5];
  entry.last_sync_attempt = 10;
  entry.software_version = texts[6];
  entry.uplink_type = 12;
  entry.uplink_rate = 13;
  entry.upgrade_available = TRUE;
  entry.ip_address = texts[7];
  entry.uplink_mac_address = texts[8];
  entry.rssi = 17;
  entry.last_error = texts[9];
  entry.description = empty;
  const std::string expected = word(1) + text_item("b") + text_item("c") + word(4) + word(1) +
                               text_item("f") + text_item("g") + text_item("h") + text_item("i") +
                               word(10) + text_item("k") + word(12) + word(13) + word(1) +
                               text_item("o") + text_item("p") + word(17) + text_item("r") +
                               text_item("");
  EXPECT_EQ(encoded(xdr_hnc_hne_table_entry, &entry), expected);
}

TEST(WireTypes, SupportedExtenderHasItsVectorsBetweenItsNumbers) {
  hnc_supported_hne_table row = {};
  row.index = 1;
  row.row_status = 2;
  row.manufacturer[0] = 3;
  row.model_name[0] = 4;
  row.model_number[0] = 5;
  row.firmware_url[0] = 6;
  row.firmware_file_name[0] = 7;
  row.firmware_user_name[0] = 8;
  row.firmware_password[0] = 9;
  row.update_time = 10;
  row.config_on_demand = 11;
  std::string expected = word(1) + word(2);
  for (const unsigned first : {3, 4, 5}) {
    expected += word(first) + zeros(63);
  }
  for (const unsigned first : {6, 7, 8, 9}) {
    expected += word(first) + zeros(255);
  }
  EXPECT_TRUE(encoded(xdr_hnc_supported_hne_table, &row) == expected + word(10) + word(11));
}

TEST(WireTypes, ReturnDataBeyondItsBoundIsRefusedOnBothSides) {
  wlan_config_result_data_t result = {};
  std::string data(8257, 'x');
  result.return_data.return_data_val = data.data();
  result.return_data.return_data_len = 8257;
  EXPECT_EQ(encoded(xdr_wlan_config_result_data_t, &result), "(refused)");
  result.return_data.return_data_len = 8256;
  EXPECT_EQ(encoded(xdr_wlan_config_result_data_t, &result).size(), 12u + 8256u);
  wlan_config_result_data_t received = {};
  EXPECT_FALSE(
      decoded(xdr_wlan_config_result_data_t, word(0) + word(0) + text_item(data), &received));
  released(xdr_wlan_config_result_data_t, &received);
}

TEST(WireTypes, EveryStatusIsCarriedUnchanged) {
  for (const int status : {0, -1, 1, 2, 3, 2147483647, -2147483647 - 1}) {
    wlan_config_return_code_e code = status;
    const std::string bytes = encoded(xdr_wlan_config_return_code_e, &code);
    EXPECT_EQ(bytes, word(static_cast<unsigned>(status)));
    code = 77;
    EXPECT_TRUE(decoded(xdr_wlan_config_return_code_e, bytes, &code));
    EXPECT_EQ(code, status);
  }
}

// Decoding texts.

static std::string text_from(const std::string& bytes) {
  string_t text = nullptr;
  const bool done = decoded(xdr_string_t, bytes, &text);
  const std::string result = !done ? "(refused)" : text == nullptr ? "(null)" : text;
  released(xdr_string_t, &text);
  return result;
}

TEST(WireText, TextIsDecoded) {
  EXPECT_EQ(text_from(text_item("Living room")), "Living room");
  EXPECT_EQ(text_from(text_item("")), "");
  EXPECT_EQ(text_from(text_item("four")), "four");
  EXPECT_EQ(text_from(text_item("\xC3\xA9\xFF")), "\xC3\xA9\xFF");
}

TEST(WireText, NulInsideIsRefusedWithAMessage) {
  switch_log_on();
  for (const std::string& text :
       {std::string("a\0b", 3), std::string("\0", 1), std::string("abcd\0", 5)}) {
    std::string result;
    const std::string errors = errors_of([&] { result = text_from(text_item(text)); });
    EXPECT_EQ(result, "(refused)");
    EXPECT_EQ(errors, rpc_error_prefix("wlan_xdr_string") + "text argument refused: NUL inside\n");
  }
  EXPECT_TRUE(logged().starts_with("text argument refused: NUL inside\n"));
}

TEST(WireText, NulInATextOfAStructureIsRefused) {
  wlan_set_ssid_1_argument argument = {};
  errors_of([&] {
    EXPECT_FALSE(decoded(xdr_wlan_set_ssid_1_argument, word(3) + text_item(std::string("a\0b", 3)),
                         &argument));
  });
  released(xdr_wlan_set_ssid_1_argument, &argument);
}

TEST(WireText, AbsurdLengthIsRefused) {
  for (const unsigned length :
       {0xFFFFFFFFu, 0xFFFFFFFEu, 0xFFFFFFFCu, 0x80000000u, 0x7FFFFFFFu, 0x40000000u, 8801u}) {
    string_t text = nullptr;
    EXPECT_FALSE(decoded(xdr_string_t, word(length) + "some text", &text)) << length;
    EXPECT_EQ(text, nullptr) << length;
  }
}

TEST(WireText, LengthBeyondTheBytesAtHandIsRefused) {
  EXPECT_EQ(text_from(word(5) + "four"), "(refused)");
  EXPECT_EQ(text_from(word(1)), "(refused)");
  EXPECT_EQ(text_from(std::string("\0\0", 2)), "(refused)");
  EXPECT_EQ(text_from(word(8800) + std::string(8796, 'x')), "(refused)");
}

TEST(WireText, TextIsAtMostAsLongAsADatagramCouldHold) {
  const std::string text(8800, 'x');
  EXPECT_EQ(text_from(text_item(text)), text);
  EXPECT_EQ(text_from(text_item(text + "x")), "(refused)");
}

TEST(WireText, BoundOfTheCallerHolds) {
  std::string bytes = text_item("abcd");
  for (const u_int bound : {3u, 4u}) {
    XDR stream;
    char* text = nullptr;
    xdrmem_create(&stream, bytes.data(), static_cast<u_int>(bytes.size()), XDR_DECODE);
    EXPECT_EQ(wlan_xdr_string(&stream, &text, bound), bound == 4 ? TRUE : FALSE) << bound;
    free(text);
  }
}

TEST(WireText, EncodingIsPlain) {
  char text[] = "abc";
  string_t pointer = text;
  EXPECT_EQ(encoded(xdr_string_t, &pointer), text_item("abc"));
}
