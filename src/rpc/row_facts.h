#pragma once

#include <cstdint>

// Facts about a procedure, apart from its types, in a row of procedures.def. Daemon and
// client read the same rows; each takes what it needs.

// The list that a procedure appears in.
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

// Effects of a call besides its answer.
enum class asking : uint8_t {
  kByAnswer,  // CODE, UPDATE and NONE act, all others read
  kReads,
  kAdvances,  // reads, but changes the next caller's answer: not for polling
  kActs,
};

// The form of the entry trace that some of the controller's procedures write before their
// handler.
enum class entry_form : uint8_t {
  kNone,
  kNothing,       // "DEBUG:>>>"
  kNothingTwice,  // "DEBUG:DEBUG: >>>"
  kNumber,        // with the last member, a number
  kText,          // with the last member, a text; a null text ends the call without a reply
};

struct entry_trace {
  entry_form form = entry_form::kNone;
  const char* label = nullptr;  // of the member shown
};

struct row_facts {
  const char* handler = nullptr;  // its name if not STEM_1_svc
  asking effect = asking::kByAnswer;
  const char* needs = "";  // procedures to call first, separated by blanks
  entry_trace entry = {};
  bool answer_shown_twice = false;  // the trace repeats the answer's text
  bool answer_is_all = false;       // inert, and callers need only an answer
  bool queued = false;              // the worker does it after the answer
};
