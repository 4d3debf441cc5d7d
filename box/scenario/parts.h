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

// The line, from 1 on, on which the value at that path begins in a well-formed document.
int scenario_line(const std::string& text, const std::vector<std::string>& path);

const scenario_json& scenario_schema_document();

// What the schema refers to, or itself.
const scenario_json& scenario_schema_resolve(const scenario_json& schema);

// The schema of what stands at that path of a document; null where there is none.
const scenario_json* scenario_schema_at(const std::vector<std::string>& path);

// What a document has that the schema, which is the only place that says what is allowed, has not.
std::vector<scenario_finding> scenario_check(const scenario_json& document);

// Fills the records from a checked document.
void scenario_fill(const scenario_json& document, scenario& s);

// A kind of thing that `gwbox set` changes: an element of LIST with an id, or, where ID is null,
// what stands in the document under LIST.
struct scenario_kind {
  const char* name;
  const char* list;
  const char* id;
  bool (*change)(scenario_json& document, const scenario_kind& kind,
                 const std::vector<std::string>& words, std::string& wrong);
};

std::span<const scenario_kind> scenario_kinds();

// Changes the document by the words of `gwbox set`; the result is yet to be checked.
[[nodiscard]] bool scenario_change(scenario_json& document, const std::vector<std::string>& words,
                                   std::string& wrong);

// Words of a line, separated by blanks; quotes of either kind keep a word together.
std::vector<std::string> scenario_words(const std::string& line);
