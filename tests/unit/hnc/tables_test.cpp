#include "hnc/tables.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>

#include "support/hnc_listener.h"
#include "unit_support.h"

static void start_controller_in_utc() {
  write_file("/nvram/hnc_enable", "");
  start_listener();
  // Traces show local times.
  setenv("TZ", "UTC", 1);
  tzset();
}

// A reply in which every byte differs from its neighbours, except in the table error.
static std::string patterned_reply(int32_t table_error) {
  std::string bytes;
  for (int i = 0; i < 2860; ++i)
    bytes += static_cast<char>(1 + (i * 11 + i / 200) % 250);
  return bytes.replace(2856, 4, little_endian(static_cast<uint32_t>(table_error)));
}

static hnc_hne* as_hne(std::string& buffer) {
  return reinterpret_cast<hnc_hne*>(buffer.data());
}

static hnc_supported_hne* as_supported(std::string& buffer) {
  return reinterpret_cast<hnc_supported_hne*>(buffer.data());
}

static hnc_supported_hne sample_record() {
  hnc_supported_hne record = {};
  record.index = 3;
  record.row_status = 5;
  strcpy(record.manufacturer, "Acme");
  strcpy(record.model_name, "Extender");
  strcpy(record.model_number, "X1");
  strcpy(record.firmware_url, "http://192.168.254.254/");
  strcpy(record.firmware_file_name, "x1.bin");
  strcpy(record.firmware_user_name, "user");
  strcpy(record.firmware_password, "secret");
  record.update_time = 1700000000;
  record.config_on_demand = 1;
  return record;
}

TEST(HneTables, RowsAreCopiedByteForByte) {
  start_controller_in_utc();
  const std::string reply = patterned_reply(0);
  listener_answers(reply);
  std::string record(1492 + 8, '#');
  EXPECT_EQ(hnc_getHneTableEntry(5, as_hne(record)), 0);
  EXPECT_EQ(record, reply.substr(132, 1492) + "########");
  EXPECT_EQ(last_listener_request(), hnc_request_bytes(0, "HneEntry", 5, ""));
  record.assign(1232 + 8, '#');
  EXPECT_EQ(hnc_getSupportedHneTableEntry(6, as_supported(record)), 0);
  EXPECT_EQ(record, reply.substr(1624, 1232) + "########");
  EXPECT_EQ(last_listener_request(), hnc_request_bytes(0, "SuppHneEntry", 6, ""));
}

TEST(HneTables, RowsAreAddressedAsTheyAre) {
  start_controller_in_utc();
  const hnc_supported_hne none = {};
  for (const unsigned row : {0u, 17u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
    std::string record(1492, '#');
    EXPECT_EQ(hnc_getHneTableEntry(row, as_hne(record)), 0);
    EXPECT_EQ(last_listener_request(), hnc_request_bytes(0, "HneEntry", row, ""));
    EXPECT_EQ(hnc_setSupportedHneTableEntry(row, &none), 0);
    EXPECT_EQ(last_listener_request(), hnc_request_bytes(1, "SuppHneEntry", row, ""));
  }
}

TEST(HneTables, OnlyMinusOneIsATableError) {
  start_controller_in_utc();
  std::string record(1492, '#');
  for (const int32_t error : {0, 1, -2, INT_MIN, INT_MAX}) {
    listener_answers(hnc_reply_bytes("", error));
    record.assign(1492, '#');
    EXPECT_EQ(hnc_getHneTableEntry(1, as_hne(record)), 0) << error;
    EXPECT_EQ(record, std::string(1492, '\0')) << error;
    EXPECT_EQ(hnc_getSupportedHneTableEntry(1, as_supported(record)), 0) << error;
    EXPECT_EQ(hnc_setHneDeviceName(1, "Attic"), 0) << error;
  }
  listener_answers(patterned_reply(-1));
  record.assign(1492, '#');
  EXPECT_EQ(hnc_getHneTableEntry(1, as_hne(record)), -1);
  EXPECT_EQ(hnc_getSupportedHneTableEntry(1, as_supported(record)), -1);
  EXPECT_EQ(record, std::string(1492, '#'));
  EXPECT_EQ(hnc_setHneDeviceName(1, "Attic"), -1);
}

TEST(HneTables, OtherSetsDoNotNoticeATableError) {
  start_controller_in_utc();
  listener_answers(hnc_reply_bytes("", -1));
  const hnc_supported_hne record = sample_record();
  EXPECT_EQ(hnc_setSupportedHneTableEntry(1, &record), 0);
  EXPECT_EQ(hnc_setSupportedHneRowStatus(1, 6), 0);
}

TEST(HneTables, EmptyOrShortReplyIsARowOfZeros) {
  start_controller_in_utc();
  for (const size_t size : {0, 1, 20}) {
    listener_answers(std::string(size, 'x'));
    std::string record(1232, '#');
    EXPECT_EQ(hnc_getSupportedHneTableEntry(1, as_supported(record)), 0) << size;
    EXPECT_EQ(record, std::string(1232, '\0')) << size;
  }
}

TEST(HneTables, RecordIsSentFieldByField) {
  start_controller_in_utc();
  const hnc_supported_hne record = sample_record();
  EXPECT_EQ(hnc_setSupportedHneTableEntry(7, &record), 0);
  std::string expected = hnc_request_bytes(1, "SuppHneEntry", 7, "");
  const std::pair<size_t, std::string> fields[] = {{0, little_endian(3)},
                                                   {4, little_endian(5)},
                                                   {8, "Acme"},
                                                   {72, "Extender"},
                                                   {136, "X1"},
                                                   {200, "http://192.168.254.254/"},
                                                   {456, "x1.bin"},
                                                   {712, "user"},
                                                   {968, "secret"},
                                                   {1224, std::string("\x00\xf1\x53\x65", 4)},
                                                   {1228, little_endian(1)}};
  for (const auto& [offset, bytes] : fields)
    expected.replace(264 + offset, bytes.size(), bytes);
  EXPECT_EQ(last_listener_request(), expected);
}

TEST(HneTables, TextThatFillsItsFieldIsSentWithoutATerminator) {
  start_controller_in_utc();
  hnc_supported_hne record;
  memset(&record, 'F', sizeof record);
  EXPECT_EQ(hnc_setSupportedHneTableEntry(1, &record), 0);
  EXPECT_EQ(last_listener_request().substr(264), std::string(1232, 'F'));
}

TEST(HneTables, NothingBehindATextsEndIsSent) {
  start_controller_in_utc();
  const struct {
    size_t offset, size;
  } texts[] = {{8, 64}, {72, 64}, {136, 64}, {200, 256}, {456, 256}, {712, 256}, {968, 256}};
  for (const auto& text : texts) {
    for (const size_t length : {size_t{0}, size_t{4}, text.size - 1}) {
      std::string bytes(1232, 'F');
      bytes[text.offset + length] = '\0';
      hnc_supported_hne record;
      memcpy(&record, bytes.data(), sizeof record);
      EXPECT_EQ(hnc_setSupportedHneTableEntry(1, &record), 0);
      const size_t rest = text.size - length;
      EXPECT_EQ(last_listener_request().substr(264),
                bytes.replace(text.offset + length, rest, rest, '\0'))
          << text.offset << " " << length;
    }
  }
}

TEST(HneTables, DeviceNameIsCutTo127Bytes) {
  start_controller_in_utc();
  const std::string longest(127, 'n');
  const std::pair<std::string, std::string> names[] = {
      {"Attic; $(reboot) '%n\n", "Attic; $(reboot) '%n\n"},
      {"", ""},
      {longest, longest},
      {longest + "x", longest},
      {longest + std::string(8000, 'x'), longest}};
  for (const auto& [name, sent] : names) {
    EXPECT_EQ(hnc_setHneDeviceName(2, name.c_str()), 0);
    EXPECT_EQ(last_listener_request(), hnc_request_bytes(1, "DeviceName", 2, sent));
  }
}

TEST(HneTables, RowStatusIsSentAsDecimalText) {
  start_controller_in_utc();
  const std::pair<int, std::string> values[] = {{6, "6"}, {-1, "-1"}, {INT_MIN, "-2147483648"}};
  for (const auto& [status, text] : values) {
    EXPECT_EQ(hnc_setSupportedHneRowStatus(4, status), 0);
    EXPECT_EQ(last_listener_request(), hnc_request_bytes(1, "RowStatus", 4, text));
  }
}

// Every operation fails with the message, after its name and a separator.
static void expect_failures(const std::string& message, const std::string& first_separator,
                            const std::string& separator) {
  const auto expected = [&](const char* operation, const std::string& between) {
    return rev_error_prefix(operation) + operation + between + message;
  };
  const hnc_supported_hne sample = sample_record();
  std::string record(1492, '#');
  EXPECT_EQ(errors_of([&] { EXPECT_EQ(hnc_getHneTableEntry(1, as_hne(record)), -1); }),
            expected("hnc_getHneTableEntry", first_separator));
  EXPECT_EQ(
      errors_of([&] { EXPECT_EQ(hnc_getSupportedHneTableEntry(1, as_supported(record)), -1); }),
      expected("hnc_getSupportedHneTableEntry", separator));
  EXPECT_EQ(record, std::string(1492, '#'));
  EXPECT_EQ(errors_of([&] { EXPECT_EQ(hnc_setHneDeviceName(1, "Attic"), -1); }),
            expected("hnc_setHneDeviceName", separator));
  EXPECT_EQ(errors_of([&] { EXPECT_EQ(hnc_setSupportedHneTableEntry(1, &sample), -1); }),
            expected("hnc_setSupportedHneTableEntry", separator));
  EXPECT_EQ(errors_of([&] { EXPECT_EQ(hnc_setSupportedHneRowStatus(1, 1), -1); }),
            expected("hnc_setSupportedHneRowStatus", separator));
}

TEST(HneTables, ControllerThatDoesNotRunIsReportedAndAskedNothing) {
  start_listener();
  expect_failures("HNC Process is not running\n", ":", " ");
  EXPECT_TRUE(listener_requests().empty());
}

TEST(HneTables, FailedExchangeIsReported) {
  write_file("/nvram/hnc_enable", "");
  HOST_IP = "203.0.113.1";
  expect_failures("Failed to send messgae to HNC Listner\n", " ", " ");
}

TEST(HneTables, GettersTraceTheTableErrorAndTheLastAttempt) {
  start_controller_in_utc();
  std::string reply = hnc_reply_bytes("");
  reply.replace(132 + 916, 4, little_endian(0xFFFFFFFF));
  listener_answers(reply);
  switch_console_on();
  std::string record(1492, '#');
  std::string output = output_of([&] { EXPECT_EQ(hnc_getHneTableEntry(1, as_hne(record)), 0); });
  const std::string first = rev_prefix("hnc_getHneTableEntry") + "hnc_getHneTableEntry";
  EXPECT_TRUE(output.ends_with(first + ":response.hneTableEntryGetError = 0\n" + first +
                               " - hneLastSyncAttempt  = -4294967295-\n"))
      << output;
  output = output_of([&] { EXPECT_EQ(hnc_getSupportedHneTableEntry(1, as_supported(record)), 0); });
  const std::string second =
      rev_prefix("hnc_getSupportedHneTableEntry") + "hnc_getSupportedHneTableEntry";
  EXPECT_TRUE(output.ends_with(second + " response.hneTableEntryGetError = 0\n")) << output;
  listener_answers(hnc_reply_bytes("", -1));
  output = output_of([&] { EXPECT_EQ(hnc_getHneTableEntry(1, as_hne(record)), -1); });
  EXPECT_TRUE(output.ends_with(first + ":response.hneTableEntryGetError = -1\n")) << output;
}

TEST(HneTables, SettersTraceTheirInput) {
  start_controller_in_utc();
  switch_console_on();
  const std::string name = rev_prefix("hnc_setHneDeviceName");
  EXPECT_TRUE(output_of([] { EXPECT_EQ(hnc_setHneDeviceName(9, "At%nic"), 0); })
                  .starts_with(name + "hnc_setHneDeviceName entered index = 9, "
                                      "device name = At%nic \n"));
  const std::string status = rev_prefix("hnc_setSupportedHneRowStatus");
  EXPECT_TRUE(output_of([] { EXPECT_EQ(hnc_setSupportedHneRowStatus(9, 6), 0); })
                  .starts_with(status +
                               "@@@@hnc_setSupportedHneRowStatus index = 9, Row Status = 6\n" +
                               status + "@@@ hnc_setSupportedHneRowStatus request.data:-6-\n"));
}

TEST(HneTables, RecordIsTracedBeforeTheControllerIsLookedFor) {
  start_controller_in_utc();
  ASSERT_EQ(unlink("/nvram/hnc_enable"), 0);
  switch_console_on();
  hnc_supported_hne record = sample_record();
  const std::string entry = rev_prefix("hnc_setSupportedHneTableEntry");
  std::string output;
  errors_of([&] {
    output = output_of([&] { EXPECT_EQ(hnc_setSupportedHneTableEntry(9, &record), -1); });
  });
  EXPECT_EQ(output,
            entry + "@@@@hnc_setSupportedHneTableEntry index = 9 \n" + entry +
                " WLAN RPC SERVER {MANF Acme} {Model Name Extender} {Model Number X1} "
                "{FW URL http://192.168.254.254/} \n" +
                entry +
                " WLAN RPC SERVER {FW File Name x1.bin} {FW User Name user} { FW PWD secret} "
                "{UpDateTime= 1700000000 |Tue Nov 14 22:13:20 2023|} \n" +
                entry + " WLAN RPC SERVER {index = 3} { Row Status = 5} {Config On Demand 1}\n");
  record.update_time = 0;
  errors_of([&] {
    output = output_of([&] { EXPECT_EQ(hnc_setSupportedHneTableEntry(9, &record), -1); });
  });
  EXPECT_TRUE(contains(output, "{UpDateTime= 0 |Thu Jan  1 00:00:00 1970|} \n")) << output;
  record.update_time = 4102444800;
  errors_of([&] {
    output = output_of([&] { EXPECT_EQ(hnc_setSupportedHneTableEntry(9, &record), -1); });
  });
  EXPECT_TRUE(contains(output, "{UpDateTime= -192522496 |Fri Jan  1 00:00:00 2100|} \n")) << output;
}

TEST(HneTables, TracedTimeIsALocalOne) {
  start_controller_in_utc();
  switch_console_on();
  // Five and a half hours ahead of UTC.
  setenv("TZ", "AHEAD-5:30", 1);
  tzset();
  hnc_supported_hne record = sample_record();
  record.update_time = 0;
  const std::string output =
      output_of([&] { EXPECT_EQ(hnc_setSupportedHneTableEntry(1, &record), 0); });
  EXPECT_TRUE(contains(output, "{UpDateTime= 0 |Thu Jan  1 05:30:00 1970|} \n")) << output;
}

TEST(HneTables, EntryOfTheOtherSettersIsTracedBeforeTheControllerIsLookedFor) {
  switch_console_on();
  std::string output;
  errors_of([&] { output = output_of([] { EXPECT_EQ(hnc_setHneDeviceName(9, "Attic"), -1); }); });
  EXPECT_EQ(output, rev_prefix("hnc_setHneDeviceName") +
                        "hnc_setHneDeviceName entered index = 9, device name = Attic \n");
  errors_of([&] { output = output_of([] { EXPECT_EQ(hnc_setSupportedHneRowStatus(9, 6), -1); }); });
  const std::string status = rev_prefix("hnc_setSupportedHneRowStatus");
  EXPECT_EQ(output, status + "@@@@hnc_setSupportedHneRowStatus index = 9, Row Status = 6\n" +
                        status + "@@@ hnc_setSupportedHneRowStatus request.data:-6-\n");
}

TEST(HneTables, TraceStaysInsideFieldsWithoutATerminator) {
  start_controller_in_utc();
  switch_console_on();
  hnc_supported_hne record;
  memset(&record, 'F', sizeof record);
  const std::string output =
      output_of([&] { EXPECT_EQ(hnc_setSupportedHneTableEntry(1, &record), 0); });
  const std::string narrow = " " + std::string(64, 'F') + "}";
  const std::string wide = " " + std::string(256, 'F') + "}";
  EXPECT_EQ(count_of(output, narrow), 3) << output;
  EXPECT_EQ(count_of(output, wide), 4) << output;
}
