#include "trust/profiles.h"

#include <sstream>

#include "support/files.h"

profile_pair read_profiles() {
  return {read_file("/tmp/mt76xx_24.dat"), read_file("/tmp/mt76xx_5.dat")};
}

static std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);)
    lines.push_back(line);
  return lines;
}

// A profile that cannot be read counts as empty when the bands are compared. Bands that
// differ switch band steering off, in an update of its own.
static bool is_steering_off(const std::string& line) {
  return line == "BandSteering=0";
}

bool is_whole(const std::string& before, const std::string& after, const std::string& now) {
  if (now == before || now == after) return true;
  const std::vector<std::string> old_lines = lines_of(before);
  const std::vector<std::string> new_lines = lines_of(after);
  const std::vector<std::string> lines = lines_of(now);
  if (new_lines.size() < old_lines.size()) return false;
  if (lines.size() < old_lines.size() || !now.ends_with('\n')) return false;
  for (size_t i = 0; i < lines.size(); ++i) {
    const bool is_old = i < old_lines.size() && lines[i] == old_lines[i];
    const bool is_new = i < new_lines.size() && lines[i] == new_lines[i];
    bool appended = false;
    for (size_t j = old_lines.size(); i >= old_lines.size() && j < new_lines.size(); ++j)
      appended |= lines[i] == new_lines[j];
    if (!is_old && !is_new && !appended && !is_steering_off(lines[i])) return false;
  }
  return true;
}
