#include "support/transcript.h"

#include <regex>
#include <sstream>

#include "support/files.h"

static std::string output_of(const std::string& command, bool with_status) {
  int status = 0;
  std::string text = run("exec 2>&1; " + command, &status);
  if (!text.empty() && text.back() != '\n') text += "(no newline)\n";
  if (with_status && status != 0) text += "[" + std::to_string(status) + "]\n";
  return text;
}

std::string replay(const std::string& session, bool with_status) {
  std::string today;
  std::istringstream lines(session);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("$ ")) today += line + "\n" + output_of(line.substr(2), with_status);
  }
  return today;
}

std::string masked(const std::string& session) {
  static const struct {
    std::regex changing;
    const char* mask;
  } kMasks[] = {
      {std::regex("[0-9.]+ ms\n"), "N ms\n"},
      {std::regex("\\d{4}-\\d\\d-\\d\\d[T ]\\d\\d:\\d\\d:\\d\\d(\\.\\d{3})?Z"), "MOMENT"},
      {std::regex(
           "(Mon|Tue|Wed|Thu|Fri|Sat|Sun) [A-Z][a-z]{2} [ \\d]\\d \\d\\d:\\d\\d:\\d\\d \\d{4}"),
       "MOMENT"},
      {std::regex("pid=\\d+"), "pid=N"},
      {std::regex("0x[0-9a-f]{9,}"), "ADDRESS"},
  };
  std::string text = session;
  for (const auto& one : kMasks)
    text = std::regex_replace(text, one.changing, one.mask);
  return text;
}
