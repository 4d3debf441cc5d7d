#pragma once

#include <cstdint>

// What a row of procedures.def says of its procedure beside its types. Daemon and
// client read the same rows; each takes what it needs.

// What lists a procedure beside others of its kind.
enum class topic : uint8_t {
  kLifecycle,
  kBss,
  kSecurity,
  kAccess,
  kServers,
  kWps,
  kStations,
  kStatistics,
  kSurvey,
  kRadio,
  kRates,
  kQos,
  kSteering,
  kDcs,
  kController,
  kExtenders,
};

// What asking does besides answering.
enum class asking : uint8_t {
  kByAnswer,  // CODE, UPDATE and NONE act, all others read
  kReads,
  kAdvances,  // reads, but changes what the next caller is answered: not for polling
  kActs,
};

// The form of the trace of a call's entry, which some procedures of the controller
// write before their handler.
enum class entry_form : uint8_t {
  kNone,
  kNothing,       // "DEBUG:>>>"
  kNothingTwice,  // "DEBUG:DEBUG: >>>"
  kNumber,        // with the last member, a number
  kText,          // with the last member, a text; a null text ends the call unanswered
};

struct entry_trace {
  entry_form form = entry_form::kNone;
  const char* label = nullptr;  // of the member shown
};

struct row_facts {
  const char* handler = nullptr;  // its name where that is not STEM_1_svc
  asking effect = asking::kByAnswer;
  const char* needs = "";  // procedures to call first, with blanks between
  entry_trace entry = {};
  bool answer_shown_twice = false;  // the trace repeats the answer's text
  bool answer_is_all = false;       // inert, and who calls it wants no more than an answer
};
