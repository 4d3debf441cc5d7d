#include "commands/fail.h"

#include <cstdio>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "base/report.h"
#include "client/base/text.h"
#include "control/ask.h"
#include "trap/faults.h"

using json = nlohmann::ordered_json;

static std::string columns_of(const std::vector<std::vector<std::string>>& rows) {
  std::vector<size_t> widths(rows[0].size());
  std::string text;
  for (const auto& row : rows) {
    for (size_t i = 0; i < row.size(); ++i)
      widths[i] = std::max(widths[i], row[i].size());
  }
  for (const auto& row : rows) {
    for (size_t i = 0; i < row.size(); ++i) {
      std::string blanks(widths[i] - row[i].size(), ' ');
      text += (i == 0 ? "" : "  ") + (i < 2 ? row[i] + blanks : blanks + row[i]);
    }
    text += "\n";
  }
  return text;
}

static std::string list_table(const std::string& answer) {
  json list = json::parse(answer, nullptr, false);
  std::vector<std::vector<std::string>> rows = {{"WHAT", "HOW", "HITS", "LEFT", "WAITING"}};
  if (!list.is_object() || list["failures"].empty()) return "no failures are set\n";
  for (const json& rule : list["failures"]) {
    rows.push_back({text_escape(rule.value("what", std::string())),
                    text_escape(rule.value("how", std::string())), rule["hits"].dump(),
                    rule["left"].dump(), rule["waiting"].dump()});
  }
  return columns_of(rows);
}

static int print_list(const std::string& box, bool as_json) {
  std::string answer;
  if (int status = control_ask(box, {"fail", kFaultList}, answer); status != 0) return status;
  fputs((as_json ? answer : list_table(answer)).c_str(), stdout);
  return 0;
}

static int wrong_words(const std::string& wrong) {
  report("%s", wrong.c_str());
  return kExitUsage;
}

int fail_run(const std::string& box, const std::vector<std::string>& words, bool as_json) {
  bool lists = words[0] == kFaultList, clears = words[0] == kFaultClear;
  fault_rule rule;
  std::string wrong;
  if ((lists || clears) && words.size() > 1)
    return wrong_words(words[0] + " takes no further arguments");
  if (as_json && !lists) return wrong_words("only \"gwbox fail list\" takes --json");
  if (lists) return print_list(box, as_json);
  if (!clears && !fault_parse_words(words, rule, wrong)) return wrong_words(wrong);
  std::vector<std::string> message = {"fail"};
  message.insert(message.end(), words.begin(), words.end());
  return control_tell(box, message);
}
