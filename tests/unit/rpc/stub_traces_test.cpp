#include "rpc/stub_traces.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <set>
#include <string>

#include "rpc/table_rows.h"
#include "rpc/wire_support.h"
#include "unit_support.h"

namespace {

// What a stub logs for the instance 3 with the number 5 or the text "given".
struct stub_case {
  const char* stub;
  const char* log;
};

}  // namespace

static constexpr stub_case kNumbers[] = {
    {"_hnc_set_updatefw_enable_1",
     "DEBUG >>>>>>>>>>>>>>>>>>>>>>>>> _hnc_set_updatefw_enable_1. enable:-5-\n"},
    {"_hnc_get_updatefw_url_1", "DEBUG:>>>>>>>>>>>>>>>>>>>>>>>>> _hnc_get_updatefw_url_1. \n"},
    {"_hnc_get_updatefw_filename_1",
     "DEBUG:>>>>>>>>>>>>>>>>>>>>>>>>> _hnc_get_updatefw_filename_1. \n"},
    {"_hnc_get_updatefw_username_1",
     "DEBUG:>>>>>>>>>>>>>>>>>>>>>>>>> _hnc_get_updatefw_username_1. \n"},
    {"_hnc_get_updatefw_password_1",
     "DEBUG:>>>>>>>>>>>>>>>>>>>>>>>>> _hnc_get_updatefw_password_1. \n"},
    {"_hnc_get_updatefw_time_1", "DEBUG:>>>>>>>>>>>>>>>>>>>>>>>>> _hnc_get_updatefw_time_1. \n"},
    {"_hnc_get_supportedhnenumberofentries_1",
     "DEBUG:>>>>>>>>>>>>>>>>>>>>>>>>> _hnc_get_supportedhnenumberofentries_1. \n"},
    {"_hnc_set_supportedhnenumberofentries_1",
     "DEBUG >>>>>>>>>>>>>>>>>>>>>>>>> _hnc_set_supportedhnenumberofentries_1. "
     "no_of_entries:-5-\n"},
    {"_hnc_get_supportedhneconfigondemand_1",
     "DEBUG:>>>>>>>>>>>>>>>>>>>>>>>>> _hnc_get_supportedhneconfigondemand_1. \n"},
    {"_hnc_set_supportedhneconfigondemand_1",
     "DEBUG >>>>>>>>>>>>>>>>>>>>>>>>> _hnc_set_supportedhneconfigondemand_1. enable:-5-\n"},
    {"_hnc_get_supportedhnemanufacturer_1",
     "DEBUG:DEBUG: >>>>>>>>>>>>>>>>>>>>>>>>> _hnc_get_supportedhnemanufacturer_1. \n"},
    {"_hnc_get_supportedhnemodelname_1",
     "DEBUG:DEBUG: >>>>>>>>>>>>>>>>>>>>>>>>> _hnc_get_supportedhnemodelname_1. \n"},
    {"_hnc_get_supportedhnemodelnumber_1",
     "DEBUG:>>>>>>>>>>>>>>>>>>>>>>>>> _hnc_get_supportedhnemodelnumber_1. \n"},
};

static constexpr stub_case kTexts[] = {
    {"_hnc_set_updatefw_url_1", "_hnc_set_updatefw_url_1. URL:-given-\n"},
    {"_hnc_set_updatefw_filename_1", "_hnc_set_updatefw_filename_1. filename:-given-\n"},
    {"_hnc_set_updatefw_username_1", "_hnc_set_updatefw_username_1. username:-given-\n"},
    {"_hnc_set_updatefw_password_1", "_hnc_set_updatefw_password_1. password:-given-\n"},
    {"_hnc_set_updatefw_time_1", "_hnc_set_updatefw_time_1. time:-given-\n"},
    {"_hnc_set_supportedhnemodelnumber_1",
     "_hnc_set_supportedhnemodelnumber_1. model_number:-given-\n"},
};

static std::string log_since(size_t start) {
  return logged().substr(start);
}

TEST(StubTraces, NumbersAndIndexesAreShown) {
  switch_log_on();
  const int argument[] = {3, 5};
  for (const stub_case& row : kNumbers) {
    const size_t start = logged().size();
    EXPECT_EQ(trace_stub(row.stub, argument), 1) << row.stub;
    EXPECT_EQ(log_since(start), row.log);
  }
}

TEST(StubTraces, TextsAreShown) {
  switch_log_on();
  char text[] = "given";
  const hnc_set_updatefw_url_1_argument argument = {3, text};
  for (const stub_case& row : kTexts) {
    const size_t start = logged().size();
    EXPECT_EQ(trace_stub(row.stub, &argument), 1) << row.stub;
    EXPECT_EQ(log_since(start), std::string("DEBUG:DEBUG: >>>>>>>>>>>>>>>>>>>>>>>>> ") + row.stub +
                                    ". \nDEBUG >>>>>>>>>>>>>>>>>>>>>>>>> " + row.log);
  }
}

TEST(StubTraces, MissingTextEndsTheCallWithTheLogsStatus) {
  switch_log_on();
  const hnc_set_updatefw_url_1_argument argument = {3, nullptr};
  for (const stub_case& row : kTexts) {
    const size_t start = logged().size();
    EXPECT_EQ(trace_stub(row.stub, &argument), 0) << row.stub;
    EXPECT_EQ(log_since(start), std::string("DEBUG:DEBUG: >>>>>>>>>>>>>>>>>>>>>>>>> ") + row.stub +
                                    ". \nDEBUG >>>>>>>>>>>>>>>>>>>>>>>>> Pointer is NULL in " +
                                    row.stub + " func. \n");
  }
  unlink("/tmp/auto_debug/dbg_rpc.log");
  ASSERT_EQ(mkdir("/tmp/auto_debug/dbg_rpc.log", 0755), 0);
  EXPECT_EQ(trace_stub("_hnc_set_updatefw_url_1", &argument), -1);
}

TEST(StubTraces, ConsoleNamesTheStub) {
  switch_console_on();
  const int argument[] = {3, 5};
  EXPECT_EQ(output_of([&] { EXPECT_EQ(trace_stub("_hnc_get_updatefw_url_1", argument), 1); }),
            rpc_prefix("_hnc_get_updatefw_url_1") +
                "DEBUG:>>>>>>>>>>>>>>>>>>>>>>>>> _hnc_get_updatefw_url_1. \n");
}

// Through the dispatcher: which procedures have which of the traces.
TEST(StubTraces, AllButTwoOfTheProceduresTracedAtDispatchTraceTheirStubs) {
  switch_log_on();
  std::set<std::string> at_dispatch;
  std::set<std::string> silent;
  for (const table_row& row : table_rows()) {
    if (!row.name.starts_with("HNC_")) continue;
    const size_t start = logged().size();
    errors_of([&] { answer_to(row.number, row.sample); });
    unlink("/nvram/hnc_enable");
    const std::string log = log_since(start);
    const bool traced = contains(log, "DEBUG >>>>>>>>>>>>>>>>>>>>>>>>> case " + row.name + " \n");
    if (traced) at_dispatch.insert(row.name);
    const bool stub_traced = contains(log, ">>>>>>>>>>>>>>>>>>>>>>>>> _hnc_");
    EXPECT_LE(stub_traced, traced) << row.name;
    if (traced && !stub_traced) silent.insert(row.name);
  }
  EXPECT_EQ(at_dispatch.size(), 21u);
  EXPECT_EQ(silent, (std::set<std::string>{"HNC_SET_SUPPORTEDHNEMANUFACTURER",
                                           "HNC_SET_SUPPORTEDHNEMODELNAME"}));
}
