#include "values/payload.h"

#include <gtest/gtest.h>

#include "wire/lookup.h"

#include <set>

static bool is_record(const procedure_row& procedure) {
  return procedure.payload == payload_kind::WORDS || procedure.payload == payload_kind::IMAGE;
}

// Checks that field names are unique, and that fields neither overlap nor exceed `size`.
static void expect_fields_fit(std::span<const payload_field> fields, uint32_t size,
                              const char* procedure) {
  std::set<std::string> names;
  std::set<uint32_t> taken;
  for (const payload_field& field : fields) {
    EXPECT_TRUE(names.insert(field.name).second) << procedure << " " << field.name;
    EXPECT_LE(field.offset + payload_width(field), size) << procedure << " " << field.name;
    for (uint32_t i = 0; i < payload_width(field); ++i)
      EXPECT_TRUE(taken.insert(field.offset + i).second) << procedure << " " << field.name;
  }
}

TEST(Payload, EveryRecordOfTheTableHasALayoutThatFits) {
  for (const procedure_row& procedure : table_procedures()) {
    const payload_layout* layout = payload_find(procedure);
    ASSERT_EQ(layout != nullptr, is_record(procedure))
        << procedure.name
        << ": client/values/layouts.cpp has the layouts of records, and no others";
    if (layout == nullptr) continue;
    expect_fields_fit(layout->fields, procedure.size, procedure.name);
    if (layout->rows == nullptr) continue;
    const payload_rows& rows = *layout->rows;
    expect_fields_fit(rows.fields, rows.stride, procedure.name);
    EXPECT_LE(rows.first + rows.stride * rows.capacity, procedure.size) << procedure.name;
  }
}

TEST(Payload, MeaningsOfValuesAreOfGettersOfOneValue) {
  for (const value_meaning& value : payload_values()) {
    const procedure_row* procedure = lookup_name(value.procedure);
    ASSERT_NE(procedure, nullptr) << value.procedure
                                  << " of client/values/scalars.cpp is no procedure";
    const bool one =
        procedure->payload == payload_kind::INT || procedure->payload == payload_kind::TEXT;
    EXPECT_TRUE(one) << value.procedure;
    EXPECT_EQ(&payload_value(*procedure), &value) << value.procedure << " has two meanings";
  }
}

TEST(Payload, WhatIsNotKnownIsNoValue) {
  EXPECT_TRUE(payload_is_known(not_known::kNever, -1));
  EXPECT_FALSE(payload_is_known(not_known::kMinusOne, -1));
  EXPECT_TRUE(payload_is_known(not_known::kMinusOne, 0));
  EXPECT_FALSE(payload_is_known(not_known::kZero, 0));
  EXPECT_FALSE(payload_is_known(not_known::kNoSignal, 0));
  EXPECT_FALSE(payload_is_known(not_known::kNoSignal, -127));
  EXPECT_TRUE(payload_is_known(not_known::kNoSignal, -126));
  EXPECT_EQ(payload_meaning("signal", not_known::kNoSignal), "signal; 0 or -127: not known");
  EXPECT_EQ(payload_meaning("", not_known::kMinusOne), "-1: not known");
  EXPECT_EQ(payload_meaning("always 0", not_known::kNever), "always 0");
  // A counter that is or was unknown has not grown.
  const payload_field packets = payload_find(*lookup_name("wlan_get_radio_tx_packets"))->fields[0];
  const std::string none(8, '\xff'), some("\5\0\0\0\0\0\0\0", 8);
  uint64_t growth = 0;
  EXPECT_FALSE(payload_growth(packets, none, some, &growth));
  EXPECT_FALSE(payload_growth(packets, some, none, &growth));
  EXPECT_TRUE(payload_growth(packets, some, some, &growth));
}

// A redacted dump leaves out unclassified values.
TEST(Payload, EveryValueOfAnActiveGetterSaysWhatItHolds) {
  std::string unsaid;
  const auto look = [&](const procedure_row& procedure, std::span<const payload_field> fields) {
    for (const payload_field& field : fields) {
      if (field.holds == content::kUnsaid)
        unsaid.append(" ").append(procedure.name).append(".").append(field.name);
      // A text is free only if the daemon itself chooses it.
      const bool text = field.type == field_type::kText || field.type == field_type::kMac;
      EXPECT_FALSE(text && field.holds == content::kFree && std::string_view(field.name) != "code")
          << procedure.name << " " << field.name;
    }
  };
  for (const procedure_row& procedure : table_procedures()) {
    const payload_layout* layout = payload_find(procedure);
    if (layout != nullptr) look(procedure, layout->fields);
    if (layout != nullptr && layout->rows != nullptr) look(procedure, layout->rows->fields);
    const bool one =
        procedure.payload == payload_kind::INT || procedure.payload == payload_kind::TEXT;
    if (one && !procedure.inert && payload_value(procedure).holds == content::kUnsaid)
      unsaid.append(" ").append(procedure.name);
  }
  EXPECT_EQ(unsaid, " WLAN_GET_AP_SCAN_RESULT.driver_data")
      << "client/values/scalars.cpp says what a value holds, client/values/layouts.cpp what a "
         "field does";
}

TEST(Payload, NumbersAreLittleEndianAndSigned) {
  const std::string record("\xfe\xff\xff\xff\x01\x02\x03\x80", 8);
  const auto field = [](field_type type, uint16_t offset) {
    return payload_field{"", type, offset, 0, "", "", ""};
  };
  EXPECT_EQ(payload_unsigned(field(field_type::kU8, 0), record), 0xfeu);
  EXPECT_EQ(payload_signed(field(field_type::kI8, 0), record), -2);
  EXPECT_EQ(payload_unsigned(field(field_type::kU16, 4), record), 0x0201u);
  EXPECT_EQ(payload_signed(field(field_type::kI32, 0), record), -2);
  EXPECT_EQ(payload_unsigned(field(field_type::kU32, 4), record), 0x80030201u);
  EXPECT_EQ(payload_unsigned(field(field_type::kU64, 0), record), 0x80030201fffffffeu);
  EXPECT_EQ(payload_signed(field(field_type::kI64, 0), record),
            static_cast<int64_t>(0x80030201fffffffeu));
}

TEST(Payload, GrowthOfCounters) {
  const auto le = [](uint64_t value) {
    std::string record(8, '\0');
    for (unsigned i = 0; i < 8; ++i)
      record[i] = static_cast<char>(value >> (8 * i));
    return record;
  };
  const struct {
    field_type type;
    uint64_t then, now;
    bool grown;
    uint64_t growth;
  } cases[] = {
      {field_type::kCounter32, 5, 12, true, 7},
      {field_type::kCounter32, 12, 12, true, 0},
      {field_type::kCounter32, 0xfffffff0, 0x10, true, 0x20},
      {field_type::kCounter32, 100000, 0, false, 0},
      {field_type::kCounter64, 0x1fffffff0, 0x200000010, true, 0x20},
      {field_type::kCounter64, 0x200000000, 0x100000000, false, 0},
      {field_type::kCounter64, 0x200000000, 5, false, 0},
      {field_type::kCounter64, 0xfffffff0, 0x10, true, 0x20},
      {field_type::kCounterI64, 100000, 0, false, 0},
      {field_type::kCounterI64, 100000, 0x100000000, true, 0xfffe7960},
  };
  for (const auto& c : cases) {
    const payload_field field = {"", c.type, 0, 0, "", "", ""};
    uint64_t growth = 0;
    EXPECT_EQ(payload_growth(field, le(c.then), le(c.now), &growth), c.grown) << c.then;
    if (c.grown) {
      EXPECT_EQ(growth, c.growth) << c.then;
    }
  }
}

TEST(Payload, TextEndsAtItsNulOrFillsItsField) {
  const payload_field text = {"", field_type::kText, 1, 4, "", "", ""};
  EXPECT_EQ(payload_bytes(text, std::string("xab\0cd", 6)), "ab");
  EXPECT_EQ(payload_bytes(text, "xabcdef"), "abcd");
}

TEST(Payload, LyingCountIsTheCapacity) {
  const payload_rows rows = {"", 0, 4, 1, 3, {}};
  EXPECT_EQ(payload_row_count(rows, std::string("\2\0\0\0abc", 7)), 2u);
  EXPECT_EQ(payload_row_count(rows, std::string("\4\0\0\0abc", 7)), 3u);
  EXPECT_EQ(payload_row_count(rows, std::string("\xff\xff\xff\xff"
                                                "abc",
                                                7)),
            3u);
}
