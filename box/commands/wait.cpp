#include "commands/wait.h"

#include <cstdio>

#include <nlohmann/json.hpp>

#include "base/journal.h"
#include "base/report.h"
#include "client/base/text.h"
#include "control/ask.h"
#include "control/follow.h"
#include "control/reach.h"
#include "gateway/conditions.h"

using json = nlohmann::ordered_json;

static int too_late(const std::string& missing, int seconds) {
  report("after %d second%s %s", seconds, seconds == 1 ? "" : "s", missing.c_str());
  return kExitFailed;
}

static int wait_for_condition(const std::string& box, const std::vector<std::string>& words,
                              int seconds) {
  condition wanted;
  std::string wrong, missing;
  if (!condition_parse(words, wanted, wrong)) {
    report("%s", wrong.c_str());
    return kExitUsage;
  }
  std::vector<std::string> message = {"wait", std::to_string(seconds)};
  message.insert(message.end(), words.begin(), words.end());
  int status = control_ask_patiently(box, message, seconds, missing);
  return status == 0 && !missing.empty() ? too_late(missing, seconds) : status;
}

struct member_test {
  std::string name, value;
  bool equal;
};

static bool parse_test(const std::string& word, member_test& test) {
  size_t equals = word.find('=');
  if (equals == std::string::npos || equals == 0) return false;
  test.equal = word[equals - 1] != '!';
  test.name = word.substr(0, equals - (test.equal ? 0 : 1));
  test.value = word.substr(equals + 1);
  return !test.name.empty();
}

static std::string text_of(const json& line, const std::string& name) {
  auto member = line.find(name);
  if (member == line.end()) return "";
  return member->is_string() ? member->get<std::string>() : member->dump();
}

// The first line for which all tests hold is printed, and ends the search.
struct search {
  std::vector<member_test> tests;
  bool found;
};

static bool look_at_line(const std::string& line, void* context) {
  search& wanted = *static_cast<search*>(context);
  json entry = json::parse(line, nullptr, false);
  if (!entry.is_object()) return true;
  for (const member_test& test : wanted.tests) {
    if ((text_of(entry, test.name) == test.value) != test.equal) return true;
  }
  puts(line.c_str());
  wanted.found = true;
  return false;
}

static int wait_for_line(const std::string& box, const std::vector<std::string>& words,
                         int seconds) {
  search wanted = {};
  std::string root;
  for (size_t i = 1; i < words.size(); ++i) {
    member_test test;
    if (parse_test(words[i], test)) {
      wanted.tests.push_back(test);
      continue;
    }
    report("%s is not NAME=VALUE or NAME!=VALUE", text_quote(words[i]).c_str());
    return kExitUsage;
  }
  if (wanted.tests.empty()) return report("wait journal needs NAME=VALUE"), kExitUsage;
  if (!reach_root(box, root)) return kExitFailed;
  int status = follow_journal(root, journal_now_us() + seconds * 1000000LL, look_at_line, &wanted);
  if (status != 0 || wanted.found) return status;
  return too_late("the journal has no such line", seconds);
}

int wait_run(const std::string& box, const std::vector<std::string>& words, int seconds) {
  return words[0] == "journal" ? wait_for_line(box, words, seconds)
                               : wait_for_condition(box, words, seconds);
}
