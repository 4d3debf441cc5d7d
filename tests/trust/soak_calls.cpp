#include <arpa/inet.h>

#include <atomic>
#include <cstring>
#include <map>
#include <mutex>

#include "soak.h"
#include "support/wire.h"
#include "values/argument_check.h"
#include "values/argument_meanings.h"

// Right and wrong calls of every procedure, made once and then drawn from.

static constexpr size_t kVariants = 48;  // of each procedure
static constexpr uint32_t kProgramNumberOther = 0x20131338;

static std::vector<std::vector<soak_call>> right_calls;  // by row
static std::vector<soak_call> wrong_calls;
static std::vector<std::atomic<int64_t>> times_called(512);

const char* call_kind_name(call_kind kind) {
  static const char* const kNames[kCallKinds] = {"inert",      "getter",    "setter",
                                                 "controller", "lifecycle", "wrong"};
  return kNames[static_cast<int>(kind)];
}

static bool is_any(const std::string& name, std::initializer_list<const char*> names) {
  return std::any_of(names.begin(), names.end(), [&](const char* one) { return name == one; });
}

static call_kind kind_of(const procedure_row& row) {
  const std::string name = row.name;
  if (is_any(name, {"WLAN_LOAD", "WLAN_INIT", "WLAN_RESET", "WLAN_RESTART", "WLAN_RESTART_ALL",
                    "WLAN_SET_PREK_OPERATION", "WLAN_UNDO_PREK_OPERATION"}))
    return call_kind::kLifecycle;
  if (row.inert) return call_kind::kInert;
  if (name.starts_with("HNC_")) return call_kind::kController;
  return row.payload == payload_kind::CODE ? call_kind::kSetter : call_kind::kGetter;
}

static std::string random_text(std::mt19937& random) {
  static const std::string kTexts[] = {
      "",
      "Living room",
      "a;b",
      "$(true)",
      "`true`",
      "';true;'",
      "%s%n%x",
      "line\nbreak=1",
      "K\303\274che \342\230\225",
      "\xff\xfe\x01",
      std::string(64, 'p'),
      std::string(300, 'x'),
      std::string(2000, 'y'),
      std::string(7900, 'z'),
  };
  const size_t any = random() % (2 * std::size(kTexts));
  // The long ones are rare, because they are logged whole.
  if (any >= std::size(kTexts)) return "text " + std::to_string(random() % 100);
  return kTexts[any];
}

static bool is_index(const std::string& name) {
  return is_any(name, {"bss", "radio", "index", "instance"});
}

// Mostly the example, otherwise what a mistaken caller might send. The first BSS of a
// band keeps its texts, so that band steering stays possible.
static std::string random_word(const procedure_row& row, const argument_spec& argument,
                               std::mt19937& random) {
  const bool setter = row.payload == payload_kind::CODE;
  if (is_index(argument.name)) {
    if (random() % 16 == 0) return setter ? "17" : "-1";
    const unsigned bss = random() % 16 + 1;
    return std::to_string(setter && bss % 8 == 1 ? bss + 1 : bss);
  }
  const meaning_entry* meaning = meanings_find(row, argument.name);
  std::string example = meaning != nullptr ? meaning->example : "";
  if (random() % 4 != 0) return example;
  switch (argument.type) {
    case argument_type::kString:
      return random_text(random);
    case argument_type::kBool:
      return std::to_string(random() % 2);
    case argument_type::kText:
      return "t" + std::to_string(random() % 10);
    case argument_type::kInt:
    case argument_type::kUnsigned:
    case argument_type::kShort:
    case argument_type::kSupportedHne:
      break;
  }
  return std::to_string(random() % 300);
}

static soak_call call_with(const procedure_row& row, const std::vector<std::string>& words) {
  byte_string bytes;
  std::string error;
  if (!arguments_encode(row, words, bytes, error)) finding("%s: %s", row.name, error.c_str());
  return {&row,
          kind_of(row),
          expected::kResult,
          kProgramNumber,
          kVersionNumber,
          row.number,
          std::string(bytes.begin(), bytes.end()),
          0};
}

static soak_call random_call(const procedure_row& row, std::mt19937& random) {
  std::vector<std::string> words;
  for (const argument_spec& argument : table_arguments(row))
    words.push_back(random_word(row, argument, random));
  return call_with(row, words);
}

static bool has_string(const procedure_row& row) {
  for (const argument_spec& argument : table_arguments(row)) {
    if (argument.type == argument_type::kString) return true;
  }
  return false;
}

// The call with its first text replaced by one that ends beyond the datagram, or by one
// with a NUL inside.
static soak_call with_wrong_text(const procedure_row& row, bool endless) {
  std::vector<std::string> words;
  for (const argument_spec& argument : table_arguments(row)) {
    const meaning_entry* meaning = meanings_find(row, argument.name);
    const bool text = argument.type == argument_type::kString;
    words.push_back(text ? "MARK" : meaning != nullptr ? meaning->example : "");
  }
  soak_call call = call_with(row, words);
  const size_t at = call.arguments.find("MARK");
  if (endless)
    call.arguments.replace(at - 4, 4, xdr_word(0xfffffff0));
  else
    call.arguments[at + 1] = '\0';
  return call;
}

static void add_wrong(soak_call call, expected answer) {
  call.kind = call_kind::kWrong;
  call.answer = answer;
  wrong_calls.push_back(call);
}

static void add_wrong_calls(const procedure_row& row, const soak_call& right) {
  soak_call call = right;
  if (!right.arguments.empty()) {
    call.arguments.resize(right.arguments.size() - 4);
    add_wrong(call, expected::kGarbage);
  }
  if (has_string(row)) {
    add_wrong(with_wrong_text(row, true), expected::kGarbage);
    add_wrong(with_wrong_text(row, false), expected::kGarbage);
  }
}

static void add_wrong_headers() {
  const soak_call right = call_with(table_procedures()[0], {"1"});
  soak_call call = right;
  call.row = nullptr;
  for (const uint32_t number : {20u, 302u, 0x01000003u, 0xffffffffu}) {
    call.procedure = number;
    for (int i = 0; i < 8; ++i)
      add_wrong(call, expected::kNoProcedure);
  }
  for (int i = 0; i < 16; ++i) {
    call = right;
    call.version = 2;
    add_wrong(call, expected::kOtherVersion);
    call = right;
    call.program = kProgramNumberOther;
    add_wrong(call, expected::kOtherProgram);
    call = right;
    call.length = 4 * static_cast<size_t>(i % 10);
    if (call.length > 0) add_wrong(call, expected::kSilence);
  }
}

void prepare_calls(unsigned seed) {
  std::mt19937 random(seed);
  for (const procedure_row& row : table_procedures()) {
    std::vector<soak_call> calls;
    while (calls.size() < kVariants)
      calls.push_back(random_call(row, random));
    add_wrong_calls(row, calls[0]);
    right_calls.push_back(calls);
  }
  add_wrong_headers();
}

// How many of a hundred draws count: calls that change all radios are rare.
static unsigned share(const soak_call& call) {
  if (call.kind != call_kind::kLifecycle) return 100;
  return is_any(call.row->name, {"WLAN_RESET", "WLAN_SET_PREK_OPERATION"}) ? 2 : 10;
}

static const soak_call& take(size_t row, std::mt19937& random) {
  ++times_called[row];
  return right_calls[row][random() % kVariants];
}

const soak_call& draw_call(int64_t n, std::mt19937& random, bool controller) {
  if (n < static_cast<int64_t>(right_calls.size())) return take(static_cast<size_t>(n), random);
  if (random() % 100 < 5) return wrong_calls[random() % wrong_calls.size()];
  for (;;) {
    const size_t row = random() % right_calls.size();
    const soak_call& first = right_calls[row][0];
    if (first.kind == call_kind::kController && !controller) continue;
    if (random() % 100 < share(first)) return take(row, random);
  }
}

const soak_call& call_of(const std::string& procedure, const std::string& word) {
  static std::mutex mutex;
  static std::map<std::string, soak_call> made;
  const std::lock_guard<std::mutex> guard(mutex);
  soak_call& call = made[procedure + " " + word];
  if (call.row != nullptr) return call;
  for (const procedure_row& row : table_procedures()) {
    if (procedure != row.name) continue;
    std::vector<std::string> words;
    if (!word.empty()) words.push_back(word);
    call = call_with(row, words);
  }
  return call;
}

int64_t procedures_never_called() {
  return std::count(times_called.begin(),
                    times_called.begin() + static_cast<ptrdiff_t>(right_calls.size()), 0);
}

std::string message_of(const soak_call& call, uint32_t xid) {
  std::string message =
      call_message(call.procedure, call.arguments, xid, call.program, call.version);
  if (call.length > 0) message.resize(call.length);
  return message;
}

// The largest text of a result. Two steering texts may be as long as the values of their
// keys, 256 and 1025 characters, plus a NUL.
static size_t text_size(const procedure_row& row) {
  const std::string name = row.name;
  if (name == "WLAN_GET_HNC_ACTION_FRAME_CATEGORY_TYPE") return 257;
  return name == "WLAN_GET_HNC_ACTION_FRAME_PAYLOAD" ? 1026 : row.size;
}

// A result is a bare status, or a status, words and data.
static std::string shape_objection(const procedure_row& row, const std::string& result) {
  if (row.payload == payload_kind::CODE) return result.size() == 4 ? "" : "is no bare status";
  if (result.size() < 12) return "is too short for a record";
  const size_t words = word_at(result, 4);
  const size_t data_at = 8 + 4 * words;
  if (data_at + 4 > result.size()) return "announces more words than there are";
  const size_t data = word_at(result, data_at);
  if (data_at + 4 + (data + 3) / 4 * 4 != result.size()) return "does not end where its data ends";
  switch (row.payload) {
    case payload_kind::INT:
      return words == 4 && data == 0 ? "" : "is no single value";
    case payload_kind::WORDS:
      return words == row.size && data == 0 ? "" : "has another number of words";
    case payload_kind::IMAGE:
      return words == 0 && data == row.size ? "" : "has another number of bytes";
    case payload_kind::TEXT:
      if (words != 0 || data == 0 || data > text_size(row)) return "has no text of the right size";
      return result.find('\0', data_at + 4) == data_at + 3 + data ? "" : "has a text without end";
    case payload_kind::CODE:
    case payload_kind::NONE:
      break;
  }
  return words == 0 && data == 0 ? "" : "has a payload";
}

std::string objection(const soak_call& call, uint32_t xid, const std::string& reply) {
  static constexpr uint32_t kAccepted[] = {kAcceptSuccess, kGarbageArguments, kProcedureUnavailable,
                                           kProgramMismatch, kProgramUnavailable};
  if (reply.size() < 24) return "is shorter than a header";
  if (word_at(reply, 0) != xid) return "has another xid";
  if (word_at(reply, 4) != 1 || word_at(reply, 8) != 0) return "is no accepted reply";
  const uint32_t status = word_at(reply, 20);
  if (status != kAccepted[static_cast<int>(call.answer)])
    return "has accept status " + std::to_string(status);
  if (call.answer == expected::kResult) return shape_objection(*call.row, reply.substr(24));
  const size_t rest = call.answer == expected::kOtherVersion ? 8 : 0;
  return reply.size() == 24 + rest ? "" : "is longer than its header";
}
