// Finds a value in the text of a scenario.
#include <algorithm>

#include "scenario/parts.h"

// A position in a well-formed document.
struct scanner {
  const std::string& text;
  size_t at;
};

static void skip_blanks(scanner& s) {
  s.at = std::min(s.text.find_first_not_of(" \t\r\n", s.at), s.text.size());
}

static std::string take_string(scanner& s) {
  size_t start = ++s.at;
  while (s.at < s.text.size() && s.text[s.at] != '"')
    s.at += s.text[s.at] == '\\' ? 2 : 1;
  std::string found = s.text.substr(start, s.at - start);
  ++s.at;
  return found;
}

// A value ends when all the brackets that it opened are closed.
static void skip_value(scanner& s) {
  int depth = 0;
  do {
    skip_blanks(s);
    if (s.at >= s.text.size()) return;
    char c = s.text[s.at];
    if (c == '"') {
      take_string(s);
    } else if (c == '{' || c == '[') {
      ++depth;
      ++s.at;
    } else if (c == '}' || c == ']') {
      --depth;
      ++s.at;
    } else if (c == ',' || c == ':') {
      ++s.at;
    } else {
      s.at = std::min(s.text.find_first_of(",:{}[] \t\r\n", s.at), s.text.size());
    }
  } while (depth > 0);
}

// Goes to the member or element; false when there is none.
static bool step_into(scanner& s, const std::string& step) {
  bool is_element = step[0] == '[';
  ++s.at;
  for (size_t index = 0;; ++index) {
    skip_blanks(s);
    if (s.at >= s.text.size() || s.text[s.at] == '}' || s.text[s.at] == ']') return false;
    std::string name = "[" + std::to_string(index) + "]";
    if (!is_element) {
      name = take_string(s);
      skip_blanks(s);
      ++s.at;  // colon
      skip_blanks(s);
    }
    if (name == step) return true;
    skip_value(s);
    skip_blanks(s);
    if (s.at < s.text.size() && s.text[s.at] == ',') s.at++;
  }
}

int scenario_line(const std::string& text, const std::vector<std::string>& path) {
  scanner s = {text, 0};
  skip_blanks(s);
  for (const std::string& step : path) {
    if (!step_into(s, step)) break;
  }
  auto end = text.begin() + static_cast<ptrdiff_t>(std::min(s.at, text.size()));
  return 1 + static_cast<int>(std::count(text.begin(), end, '\n'));
}

std::string scenario_finding_text(const scenario_finding& finding) {
  std::string where;
  for (const std::string& step : finding.path)
    where += (where.empty() || step[0] == '[' ? "" : ".") + step;
  return (where.empty() ? "" : where + ": ") + finding.message;
}
