#include "rpc/entry_trace.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cctype>
#include <set>
#include <string>

#include "rpc/handlers.h"
#include "rpc/table_rows.h"
#include "rpc/wire_support.h"
#include "unit_support.h"

namespace {

// What a stub logs for instance 3 with the number 5 or the text "given".
struct stub_case {
  uint32_t procedure;
  const char* stub;
  const char* log;
};

}  // namespace

static constexpr stub_case kNumbers[] = {
    {0x01000053, "_hnc_set_updatefw_enable_1",
     "DEBUG >>>>>>>>>>>>>>>>>>>>>>>>> _hnc_set_updatefw_enable_1. enable:-5-\n"},
    {0x01000054, "_hnc_get_updatefw_url_1",
     "DEBUG:>>>>>>>>>>>>>>>>>>>>>>>>> _hnc_get_updatefw_url_1. \n"},
    {0x01000056, "_hnc_get_updatefw_filename_1",
     "DEBUG:>>>>>>>>>>>>>>>>>>>>>>>>> _hnc_get_updatefw_filename_1. \n"},
    {0x01000058, "_hnc_get_updatefw_username_1",
     "DEBUG:>>>>>>>>>>>>>>>>>>>>>>>>> _hnc_get_updatefw_username_1. \n"},
    {0x0100005A, "_hnc_get_updatefw_password_1",
     "DEBUG:>>>>>>>>>>>>>>>>>>>>>>>>> _hnc_get_updatefw_password_1. \n"},
    {0x0100005C, "_hnc_get_updatefw_time_1",
     "DEBUG:>>>>>>>>>>>>>>>>>>>>>>>>> _hnc_get_updatefw_time_1. \n"},
    {0x01000060, "_hnc_get_supportedhnenumberofentries_1",
     "DEBUG:>>>>>>>>>>>>>>>>>>>>>>>>> _hnc_get_supportedhnenumberofentries_1. \n"},
    {0x01000061, "_hnc_set_supportedhnenumberofentries_1",
     "DEBUG >>>>>>>>>>>>>>>>>>>>>>>>> _hnc_set_supportedhnenumberofentries_1. "
     "no_of_entries:-5-\n"},
    {0x01000062, "_hnc_get_supportedhneconfigondemand_1",
     "DEBUG:>>>>>>>>>>>>>>>>>>>>>>>>> _hnc_get_supportedhneconfigondemand_1. \n"},
    {0x01000063, "_hnc_set_supportedhneconfigondemand_1",
     "DEBUG >>>>>>>>>>>>>>>>>>>>>>>>> _hnc_set_supportedhneconfigondemand_1. enable:-5-\n"},
    {0x01000064, "_hnc_get_supportedhnemanufacturer_1",
     "DEBUG:DEBUG: >>>>>>>>>>>>>>>>>>>>>>>>> _hnc_get_supportedhnemanufacturer_1. \n"},
    {0x01000066, "_hnc_get_supportedhnemodelname_1",
     "DEBUG:DEBUG: >>>>>>>>>>>>>>>>>>>>>>>>> _hnc_get_supportedhnemodelname_1. \n"},
    {0x01000068, "_hnc_get_supportedhnemodelnumber_1",
     "DEBUG:>>>>>>>>>>>>>>>>>>>>>>>>> _hnc_get_supportedhnemodelnumber_1. \n"},
};

static constexpr stub_case kTexts[] = {
    {0x01000055, "_hnc_set_updatefw_url_1", "_hnc_set_updatefw_url_1. URL:-given-\n"},
    {0x01000057, "_hnc_set_updatefw_filename_1",
     "_hnc_set_updatefw_filename_1. filename:-given-\n"},
    {0x01000059, "_hnc_set_updatefw_username_1",
     "_hnc_set_updatefw_username_1. username:-given-\n"},
    {0x0100005B, "_hnc_set_updatefw_password_1",
     "_hnc_set_updatefw_password_1. password:-given-\n"},
    {0x0100005D, "_hnc_set_updatefw_time_1", "_hnc_set_updatefw_time_1. time:-given-\n"},
    {0x01000065, "_hnc_set_supportedhnemanufacturer_1",
     "_hnc_set_supportedhnemanufacturer_1. manufacturer:-given-\n"},
    {0x01000067, "_hnc_set_supportedhnemodelname_1",
     "_hnc_set_supportedhnemodelname_1. model_name:-given-\n"},
    {0x01000069, "_hnc_set_supportedhnemodelnumber_1",
     "_hnc_set_supportedhnemodelnumber_1. model_number:-given-\n"},
};

static std::string log_since(size_t start) {
  return logged().substr(start);
}

// The entry traces in a procedure's row.
static const entry_trace& entry_of(uint32_t wanted) {
#define PROCEDURE(number, name, stem, ...) \
  if (number == wanted) return row_##stem::kFacts.entry;
#include "rpc/procedures.def"
  static constexpr entry_trace kNone = {};
  return kNone;
}

template <typename... Members>
static int traced(const stub_case& row, const Members&... members) {
  const entry_trace& entry = entry_of(row.procedure);
  EXPECT_NE(entry.form, entry_form::kNone) << row.stub;
  return trace_entry(entry, row.stub, members...);
}

TEST(EntryTrace, NumbersAndIndexesAreShown) {
  switch_log_on();
  for (const stub_case& row : kNumbers) {
    const size_t start = logged().size();
    EXPECT_EQ(traced(row, 3, 5), 1) << row.stub;
    EXPECT_EQ(log_since(start), row.log);
  }
}

TEST(EntryTrace, TextsAreShown) {
  switch_log_on();
  for (const stub_case& row : kTexts) {
    const size_t start = logged().size();
    EXPECT_EQ(traced(row, 3, "given"), 1) << row.stub;
    EXPECT_EQ(log_since(start), std::string("DEBUG:DEBUG: >>>>>>>>>>>>>>>>>>>>>>>>> ") + row.stub +
                                    ". \nDEBUG >>>>>>>>>>>>>>>>>>>>>>>>> " + row.log);
  }
}

TEST(EntryTrace, MissingTextEndsTheCallWithTheLogsStatus) {
  switch_log_on();
  const char* const missing = nullptr;
  for (const stub_case& row : kTexts) {
    const size_t start = logged().size();
    EXPECT_EQ(traced(row, 3, missing), 0) << row.stub;
    EXPECT_EQ(log_since(start), std::string("DEBUG:DEBUG: >>>>>>>>>>>>>>>>>>>>>>>>> ") + row.stub +
                                    ". \nDEBUG >>>>>>>>>>>>>>>>>>>>>>>>> Pointer is NULL in " +
                                    row.stub + " func. \n");
  }
  unlink("/tmp/auto_debug/dbg_rpc.log");
  ASSERT_EQ(mkdir("/tmp/auto_debug/dbg_rpc.log", 0755), 0);
  EXPECT_EQ(traced(kTexts[0], 3, missing), -1);
}

TEST(EntryTrace, ConsoleNamesTheStub) {
  switch_console_on();
  EXPECT_EQ(output_of([&] { EXPECT_EQ(traced(kNumbers[1], 3), 1); }),
            rpc_prefix("_hnc_get_updatefw_url_1") +
                "DEBUG:>>>>>>>>>>>>>>>>>>>>>>>>> _hnc_get_updatefw_url_1. \n");
}

static std::string stub_of(std::string procedure) {
  for (char& letter : procedure)
    letter = static_cast<char>(tolower(letter));
  return "_" + procedure + "_1";
}

// Through the dispatcher: which procedures have which traces.
TEST(EntryTrace, ProceduresTracedAtDispatchAreThoseWhoseStubsAre) {
  switch_log_on();
  std::set<std::string> stubs;
  for (const table_row& row : table_rows()) {
    if (!row.name.starts_with("HNC_")) {
      EXPECT_EQ(entry_of(row.number).form, entry_form::kNone) << row.name;
      continue;
    }
    const size_t start = logged().size();
    errors_of([&] { answer_to(row.number, row.sample); });
    unlink("/nvram/hnc_enable");
    const std::string log = log_since(start);
    const std::string named = "DEBUG >>>>>>>>>>>>>>>>>>>>>>>>> case " + row.name + " \n";
    const std::string entered = ">>>>>>>>>>>>>>>>>>>>>>>>> " + stub_of(row.name) + ". ";
    EXPECT_EQ(log.starts_with(named), contains(log, entered)) << row.name << "\n" << log;
    EXPECT_EQ(contains(log, " case "), contains(log, named)) << row.name << "\n" << log;
    if (log.starts_with(named)) stubs.insert(stub_of(row.name));
  }
  std::set<std::string> expected;
  for (const stub_case& row : kNumbers)
    expected.insert(row.stub);
  for (const stub_case& row : kTexts)
    expected.insert(row.stub);
  EXPECT_EQ(stubs, expected);
}
