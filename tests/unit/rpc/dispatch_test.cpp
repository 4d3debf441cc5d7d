#include "rpc/dispatch.h"

#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <set>
#include <string>

#include "rpc/table_rows.h"
#include "rpc/wire_support.h"
#include "unit_support.h"

static const std::string kUnavailable = "(status " + std::to_string(PROC_UNAVAIL) + ")";
static const std::string kGarbage = "(status " + std::to_string(GARBAGE_ARGS) + ")";

static constexpr uint32_t kSetSsid = 22;
static constexpr uint32_t kGetChannel = 16;
static constexpr uint32_t kGetStandard = 27;
static constexpr uint32_t kCheckAlive = 0x010000A8;
static constexpr uint32_t kSetLed = 0x01000082;
static constexpr uint32_t kSetUrl = 0x01000055;

TEST(Dispatch, ProcedureZeroIsAnsweredEmptyWithoutATrace) {
  switch_log_on();
  fake_call call;
  dispatch(0, &call);
  ASSERT_EQ(call.replies.size(), 1u);
  EXPECT_EQ(call.replies[0].status, SUCCESS);
  EXPECT_EQ(call.replies[0].body, "");
  EXPECT_EQ(call.decodes, 0);
  EXPECT_EQ(logged(), "");
}

static std::set<uint32_t> procedure_numbers() {
  std::set<uint32_t> numbers;
  for (const table_row& row : table_rows())
    numbers.insert(row.number);
  return numbers;
}

// Numbers without a procedure: all those within and around each range, and some far away.
static std::set<uint32_t> gaps() {
  constexpr uint32_t kAround = 100;
  std::set<uint32_t> near = {0x7FFFFFFF, 0x80000000, 0x80000001, 0xFFFFFFFE, 0xFFFFFFFF};
  for (const uint32_t number : procedure_numbers()) {
    const uint32_t first = number > kAround ? number - kAround : 1;
    for (uint32_t other = first; other <= number + kAround; ++other)
      near.insert(other);
  }
  for (const uint32_t number : procedure_numbers())
    near.erase(number);
  return near;
}

TEST(Dispatch, NumbersWithoutAProcedureAreUnavailableAndNothingElseHappens) {
  switch_log_on();
  for (const uint32_t number : gaps()) {
    fake_call call;
    call.argument = word(1);
    dispatch(number, &call);
    ASSERT_EQ(call.replies.size(), 1u) << number;
    EXPECT_EQ(call.replies[0].status, PROC_UNAVAIL) << number;
    EXPECT_EQ(call.decodes, 0) << number;
  }
  EXPECT_EQ(logged(), "");
}

TEST(Dispatch, EveryProcedureTakesAllOfItsArgumentAndAnswers) {
  errors_of([] {
    for (const table_row& row : table_rows()) {
      fake_call call;
      call.argument = row.sample;
      dispatch(row.number, &call);
      // An enabled controller would be asked and waited for from here on.
      unlink("/nvram/hnc_enable");
      ASSERT_EQ(call.replies.size(), 1u) << row.name;
      EXPECT_EQ(call.replies[0].status, SUCCESS) << row.name;
      EXPECT_EQ(call.left_over, 0u) << row.name;
      EXPECT_EQ(call.releases, 1) << row.name;
    }
  });
}

TEST(Dispatch, ArgumentCutOffAnywhereIsGarbage) {
  errors_of([] {
    for (const table_row& row : table_rows()) {
      for (size_t length = 0; length < row.sample.size(); ++length) {
        EXPECT_EQ(answer_to(row.number, row.sample.substr(0, length)), kGarbage)
            << row.name << " at " << length;
      }
    }
  });
}

TEST(Dispatch, UndecodableArgumentReachesNoHandler) {
  switch_log_on();
  write_file(kProfile24, "SSID3=old\n");
  fake_call call;
  call.argument = word(3) + word(100) + "too short";
  dispatch(kSetSsid, &call);
  ASSERT_EQ(call.replies.size(), 1u);
  EXPECT_EQ(call.replies[0].status, GARBAGE_ARGS);
  EXPECT_EQ(call.releases, 0);
  EXPECT_EQ(logged(), "");
  EXPECT_EQ(read_file(kProfile24), "SSID3=old\n");
}

// Traced procedures.

static constexpr char kArrows[] = "DEBUG >>>>>>>>>>>>>>>>>>>>>>>>> ";

TEST(Dispatch, TracedProcedureIsNamedBeforeItsArgumentIsDecoded) {
  switch_log_on();
  const std::string named = std::string(kArrows) + "case HNC_SET_UPDATEFW_URL \n";
  std::string log_at_decoding;
  fake_call call;
  call.argument = word(3) + word(100) + "too short";
  call.before_decoding = [&] { log_at_decoding = logged(); };
  dispatch(kSetUrl, &call);
  EXPECT_EQ(log_at_decoding, named);
  ASSERT_EQ(call.replies.size(), 1u);
  EXPECT_EQ(call.replies[0].status, GARBAGE_ARGS);
  EXPECT_EQ(logged(), named);
}

namespace {

struct text_setter {
  uint32_t number;
  const char* procedure;
  const char* stub;
};

}  // namespace

static constexpr text_setter kTextSetters[] = {
    {0x01000055, "HNC_SET_UPDATEFW_URL", "_hnc_set_updatefw_url_1"},
    {0x01000057, "HNC_SET_UPDATEFW_FILENAME", "_hnc_set_updatefw_filename_1"},
    {0x01000059, "HNC_SET_UPDATEFW_USERNAME", "_hnc_set_updatefw_username_1"},
    {0x0100005B, "HNC_SET_UPDATEFW_PASSWORD", "_hnc_set_updatefw_password_1"},
    {0x0100005D, "HNC_SET_UPDATEFW_TIME", "_hnc_set_updatefw_time_1"},
    {0x01000065, "HNC_SET_SUPPORTEDHNEMANUFACTURER", "_hnc_set_supportedhnemanufacturer_1"},
    {0x01000067, "HNC_SET_SUPPORTEDHNEMODELNAME", "_hnc_set_supportedhnemodelname_1"},
    {0x01000069, "HNC_SET_SUPPORTEDHNEMODELNUMBER", "_hnc_set_supportedhnemodelnumber_1"},
};

// The log of a call whose text is a null pointer.
static std::string log_of_absent_text(const text_setter& setter) {
  const size_t start = logged().size();
  fake_call call;
  call.decodes_nothing = true;
  dispatch(setter.number, &call);
  EXPECT_TRUE(call.replies.empty()) << setter.procedure;
  EXPECT_EQ(call.releases, 1) << setter.procedure;
  return logged().substr(start);
}

TEST(Dispatch, AbsentTextReachesNoHandlerAndGetsNoReply) {
  EXPECT_EQ(log_of_absent_text(kTextSetters[0]), "");
  switch_log_on();
  for (const text_setter& setter : kTextSetters) {
    EXPECT_EQ(log_of_absent_text(setter), std::string(kArrows) + "case " + setter.procedure +
                                              " \nDEBUG:DEBUG: >>>>>>>>>>>>>>>>>>>>>>>>> " +
                                              setter.stub + ". \n" + kArrows +
                                              "Pointer is NULL in " + setter.stub + " func. \n");
  }
  // With a log that cannot be written the status is -1, and still no reply is sent.
  unlink("/tmp/auto_debug/dbg_rpc.log");
  ASSERT_EQ(mkdir("/tmp/auto_debug/dbg_rpc.log", 0755), 0);
  EXPECT_EQ(log_of_absent_text(kTextSetters[0]), "");
}

TEST(Dispatch, NulInsideATextIsGarbage) {
  write_file(kProfile24, "SSID3=old\n");
  errors_of([] {
    EXPECT_EQ(answer_to(kSetSsid, word(3) + text_item(std::string("new\0tail", 8))), kGarbage);
  });
  EXPECT_EQ(read_file(kProfile24), "SSID3=old\n");
}

// AddressSanitizer reports an empty heap here, but its leak detector checks the same.
TEST(Dispatch, GarbageArgumentsAreGivenBack) {
  static constexpr size_t kSize = 4000;
  const std::string garbage = word(3) + text_item(std::string(kSize, 'x') + '\0');
  EXPECT_EQ(answer_to(kSetSsid, garbage), kGarbage);
  const size_t before = mallinfo2().uordblks;
  for (int i = 0; i < 100; ++i)
    answer_to(kSetSsid, garbage);
  EXPECT_LT(mallinfo2().uordblks, before + kSize);
}

TEST(Dispatch, ReplyThatCannotBeSentIsASystemError) {
  fake_call call;
  call.argument = word(1);
  call.failing_replies = 1;
  dispatch(kGetChannel, &call);
  ASSERT_EQ(call.replies.size(), 2u);
  EXPECT_EQ(call.replies[0].status, SUCCESS);
  EXPECT_EQ(call.replies[1].status, SYSTEM_ERR);
  EXPECT_EQ(call.releases, 1);
}

TEST(Dispatch, ArgumentThatCannotBeFreedEndsTheProcess) {
  EXPECT_EXIT(
      {
        fake_call call;
        call.failing_release = true;
        dispatch(kCheckAlive, &call);
      },
      testing::ExitedWithCode(1), "^unable to free arguments$");
}

// Leaves marks on the stack where the dispatcher's areas will be.
__attribute__((noinline)) static void dirty_the_stack() {
  volatile char block[65536];
  for (size_t i = 0; i < sizeof block; ++i) {
    block[i] = 0x5A;
  }
}

TEST(Dispatch, ArgumentAreaIsZeroBeforeDecoding) {
  write_file(kProfile24, "SSID3=old\n");
  fake_call call;
  call.argument = word(3) + text_item("new");
  call.area_size = sizeof(wlan_set_ssid_1_argument);
  dirty_the_stack();
  dispatch(kSetSsid, &call);
  EXPECT_EQ(call.area_before, std::string(sizeof(wlan_set_ssid_1_argument), '\0'));
}

TEST(Dispatch, ResultAreaIsZeroBeforeTheHandler) {
  // This procedure's handler fills in nothing.
  dirty_the_stack();
  EXPECT_EQ(answer_to(300, word(1)), zeros(3));
}

TEST(Dispatch, OnlyNumbersOfTheRequestMatterNotWhatFollowsTheArgument) {
  fake_call call;
  call.argument = word(1) + "trailing bytes";
  dispatch(kGetChannel, &call);
  ASSERT_EQ(call.replies.size(), 1u);
  EXPECT_EQ(call.replies[0].status, SUCCESS);
}

TEST(Dispatch, NetworkNameReachesTheProfile) {
  write_file(kProfile24, "SSID3=old\n");
  EXPECT_EQ(answer_to(kSetSsid, word(3) + text_item("Living room")), word(0));
  EXPECT_EQ(read_file(kProfile24), "SSID3=Living room\n");
  EXPECT_EQ(read_file(kMirror24), "SSID3=Living room\n");
}

TEST(Dispatch, FailureOfTheBackEndTravelsInTheReply) {
  write_file(kProfile24, "SSID3=old\n");
  errors_of([] {
    EXPECT_EQ(answer_to(kSetSsid, word(4) + text_item("x")), word(~0U));
    EXPECT_EQ(answer_to(kSetSsid, word(0x80000000) + text_item("x")), word(~0U));
  });
}

TEST(Dispatch, PassPhraseTakesItsThirdMember) {
  write_file(kProfile5, "WPAPSK1=old\n");
  EXPECT_EQ(answer_to(65, word(9) + word(2) + text_item("pass phrase")), word(0));
  EXPECT_EQ(read_file(kProfile5), "WPAPSK1=pass phrase\n");
}

TEST(Dispatch, LedSwitchReachesBothRadios) {
  EXPECT_EQ(answer_to(kSetLed, word(0)), word(0));
  EXPECT_EQ(driver_requests().size(), 2u);
  EXPECT_TRUE(contains(driver_requests().back(), "LEDEnable=0"));
}

TEST(Dispatch, ServiceOfABssIsAnIntegerAndFailsWithValueZero) {
  write_file(kProfile24, "BSSHNCService=0;7\n");
  EXPECT_EQ(answer_to(0x0100009E, word(2)), word(0) + word(4) + word(7) + zeros(4));
  errors_of([] { EXPECT_EQ(answer_to(0x0100009E, word(3)), word(~0U) + word(4) + zeros(5)); });
}

TEST(Dispatch, TextGetterOfAnInertOperationSendsASingleNul) {
  EXPECT_EQ(answer_to(21, word(3)), word(0) + word(0) + word(1) + zeros(1));
  EXPECT_EQ(answer_to(kGetStandard, word(1)), word(0) + word(0) + word(1) + zeros(1));
}

TEST(Dispatch, FreeingAResultAnswersOne) {
  wlan_config_result_data_t result = {};
  result.return_data.return_data_val = strdup("text");
  result.return_data.return_data_len = 5;
  const auto filter =
      reinterpret_cast<xdrproc_t>(reinterpret_cast<void (*)()>(xdr_wlan_config_result_data_t));
  EXPECT_EQ(wlan_config_rpc_prog_1_freeresult(nullptr, filter, &result), 1);
  EXPECT_EQ(result.return_data.return_data_val, nullptr);
}

// Inert operations.

static bool is_inert(const table_row& row) {
  return row.kind == row_kind::kInert || row.kind == row_kind::kRefused;
}

static std::string zero_answer(const table_row& row, int status) {
  const std::string code = word(static_cast<unsigned>(status));
  if (row.payload == "CODE") return code;
  if (row.payload == "NONE") return code + zeros(2);
  if (row.payload == "TEXT") return code + word(0) + word(1) + zeros(1);
  if (row.payload == "IMAGE") return code + word(0) + text_item(std::string(row.size, '\0'));
  const unsigned size = static_cast<unsigned>(row.size);
  return code + word(size) + zeros(size) + word(0);
}

TEST(Inert, EveryOperationAnswersItsStatusAndZeros) {
  for (const table_row& row : table_rows()) {
    if (!is_inert(row)) continue;
    dirty_the_stack();
    const int status = row.kind == row_kind::kRefused ? -1 : 0;
    EXPECT_EQ(answer_to(row.number, row.sample), zero_answer(row, status)) << row.name;
  }
}

TEST(Inert, OnlyTheseAreRefused) {
  const std::set<std::string> refused = {"WLAN_GET_IGMP_SNOOPING",    "WLAN_GET_AIRTIME_ENABLE",
                                         "WLAN_GET_DOT11U_ENABLE",    "WLAN_SET_DOT11U_ENABLE",
                                         "WLAN_GET_DOT11U_ATTRIBUTE", "WLAN_SET_DOT11U_ATTRIBUTE"};
  for (const table_row& row : table_rows()) {
    if (!is_inert(row)) continue;
    EXPECT_EQ(row.kind == row_kind::kRefused, refused.contains(row.name)) << row.name;
  }
}

TEST(Inert, NoOperationTouchesAFileOrTheDriver) {
  unlink(kProfile24);
  unlink(kProfile5);
  const auto before = names_in("/tmp");
  const size_t requests = driver_requests().size();
  const int descriptors = open_descriptors();
  const std::string errors = errors_of([&] {
    for (const table_row& row : table_rows()) {
      if (is_inert(row)) answer_to(row.number, row.sample);
    }
  });
  EXPECT_EQ(errors, "");
  EXPECT_EQ(names_in("/tmp"), before);
  EXPECT_EQ(driver_requests().size(), requests);
  EXPECT_EQ(open_descriptors(), descriptors);
}
