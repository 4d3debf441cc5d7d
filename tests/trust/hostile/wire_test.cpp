// Hostile texts and numbers in every argument of every procedure.

#include <gtest/gtest.h>
#include <limits.h>

#include <cstdlib>
#include <random>

#include "support/files.h"
#include "support/gateway.h"
#include "support/wire.h"
#include "trust/hostile/rows.h"
#include "trust/hostile/watch.h"

static void expect_answer(const row& procedure, const std::string& bytes, const std::string& what) {
  reply_message reply = {};
  ASSERT_TRUE(call(procedure.number, bytes, &reply)) << what << ": no answer";
  EXPECT_EQ(reply.accept_status, kAcceptSuccess) << what;
}

static void call_with(const row& procedure, size_t place, const hostile_text& hostile) {
  const std::string what = procedure.name + " with " + hostile.name;
  const std::vector<std::string> before = profile_lines();
  expect_answer(procedure, arguments_with(procedure, place, hostile.text), what);
  expect_lines_kept(before, 1, what);
}

static int call_everything_with(const hostile_text& hostile) {
  int calls = 0;
  for (const row& procedure : all_rows()) {
    for (size_t place = 0; place < procedure.members.size(); ++place) {
      if (procedure.members[place] == member_kind::kNumber) continue;
      call_with(procedure, place, hostile);
      ++calls;
    }
  }
  expect_harmless(hostile.name);
  return calls;
}

// Afterwards the profiles have every key that a call adds.
static void call_everything_plainly() {
  for (const row& procedure : all_rows()) {
    if (!moves_radios(procedure)) expect_answer(procedure, arguments(procedure), procedure.name);
  }
  expect_harmless("plain calls");
  // Some calls have switched things off.
  switch_all_on();
}

// Random bytes other than NUL.
static hostile_text random_text(unsigned seed) {
  std::mt19937 random(seed);
  std::string text(random() % 300, ' ');
  static constexpr char kSpecial[] = "'\"`$();|&\n\r\\%n=\033c";
  for (char& byte : text) {
    byte = random() % 2 == 0 ? kSpecial[random() % (sizeof kSpecial - 1)]
                             : static_cast<char>(1 + random() % 255);
  }
  return {"a random text", text};
}

// Additional random texts; WIFICONFD_HOSTILE_TEXTS says how many.
static unsigned further_texts() {
  const char* count = getenv("WIFICONFD_HOSTILE_TEXTS");
  return count != nullptr ? static_cast<unsigned>(strtoul(count, nullptr, 10)) : 0;
}

// Takes longer than other tests: radios come up once for 1,300 calls.
TEST(Wire, TextsAreHarmlessInEveryArgument) {
  start_watched_daemon();
  call_everything_plainly();
  int calls = 0;
  const std::vector<hostile_text> texts = wire_texts();
  for (const hostile_text& hostile : texts)
    calls += call_everything_with(hostile);
  // The number of text arguments in the table today.
  EXPECT_GE(calls, 48 * static_cast<int>(texts.size()));
  for (unsigned seed = 1; seed <= further_texts(); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    call_everything_with(random_text(seed));
  }
  // The texts have reached the shell and the host.
  const std::string journal = read_file("/run/gwbox/journal.jsonl");
  EXPECT_NE(journal.find("WscPinCode=$(c)"), journal.npos);
  EXPECT_NE(journal.find("WscPinCode=;c;"), journal.npos);
  EXPECT_NE(read_file("/tmp/host_calls").find("1 1 $(c)"), std::string::npos);
}

TEST(Wire, TextIsTracedAsItCame) {
  start_watched_daemon();
  const std::string before = read_file("/tmp/daemon.out");
  reply_message reply = {};
  ASSERT_TRUE(call(22, xdr_word(1) + xdr_text("%n%s 'x' \033[2J\n\xFF caf\xC3\xA9"), &reply));
  const std::string traced = read_file("/tmp/daemon.out").substr(before.size());
  EXPECT_NE(traced.find("wlan_set_ssid_1_svc\033[0m  WLAN RPC server : "
                        "[ssid=%n%s 'x' \\x1b[2J\\x0a\\xff caf\xC3\xA9]\n"),
            traced.npos)
      << traced;
}

static constexpr uint32_t kNumbers[] = {
    static_cast<uint32_t>(INT_MIN), static_cast<uint32_t>(-1), 0, 17, 4096, INT_MAX};

// Tries a number as each argument alone, then as all of them.
static void call_with_number(const row& procedure, uint32_t number) {
  const std::string what = procedure.name + " with " + std::to_string(number);
  const std::vector<std::string> before = profile_lines();
  for (size_t place = 0; place < procedure.members.size(); ++place) {
    if (procedure.members[place] == member_kind::kText) continue;
    expect_answer(procedure, arguments_with(procedure, place, number), what);
  }
  expect_answer(procedure, arguments(procedure, number), what);
  expect_lines_kept(before, 2, what);
}

static void call_with_numbers(bool moving) {
  for (const row& procedure : all_rows()) {
    if (moves_radios(procedure) != moving || procedure.members.empty()) continue;
    for (const uint32_t number : kNumbers)
      call_with_number(procedure, number);
  }
  expect_harmless("numbers");
}

// Takes longer than other tests: radios come up once for 4,000 calls.
TEST(Wire, NumbersAreHarmlessInEveryArgument) {
  start_watched_daemon();
  call_everything_plainly();
  call_with_numbers(false);
  call_with_numbers(true);
}
