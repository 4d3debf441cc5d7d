// Shared by the files of the scenario: the document, and the mistakes in it.
#pragma once

#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <vector>

#include "scenario/document.h"

using scenario_json = nlohmann::ordered_json;

// A place in a document and what is wrong there. Steps of the path: member names, "[3]".
struct scenario_finding {
  std::vector<std::string> path;
  std::string message;
};

// "stations[3].rssi: expected 1 to 4 numbers"
std::string scenario_finding_text(const scenario_finding& finding);

// The line, from 1, where the value at that path begins in a well-formed document.
int scenario_line(const std::string& text, const std::vector<std::string>& path);

const scenario_json& scenario_schema_document();

// The schema that SCHEMA refers to, or SCHEMA itself.
const scenario_json& scenario_schema_resolve(const scenario_json& schema);

// The schema of the value at that path of a document; null if there is none.
const scenario_json* scenario_schema_at(const std::vector<std::string>& path);

// How a document breaks the schema, which is the only place that says what is allowed.
std::vector<scenario_finding> scenario_check(const scenario_json& document);

// Fills the records from a checked document.
void scenario_fill(const scenario_json& document, scenario& s);

// A kind of thing that `gwbox set` changes: an element of LIST, found by its member ID, or, if ID
// is null, something in the document's member LIST.
struct scenario_kind {
  const char* name;
  const char* list;
  const char* id;
  bool (*change)(scenario_json& document, const scenario_kind& kind,
                 const std::vector<std::string>& words, std::string& wrong);
};

std::span<const scenario_kind> scenario_kinds();

// Changes the document by the words after `gwbox set`. The caller still has to check the result.
[[nodiscard]] bool scenario_change(scenario_json& document, const std::vector<std::string>& words,
                                   std::string& wrong);

// Words of a line, separated by blanks; quotes of either kind keep a word together.
std::vector<std::string> scenario_words(const std::string& line);
