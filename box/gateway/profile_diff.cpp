#include "gateway/profile_diff.h"

#include <algorithm>

#include "base/profile_text.h"

static std::vector<std::string> fields_of(const std::string& list) {
  std::vector<std::string> fields(1);
  for (char c : list) {
    if (c == ';') {
      fields.emplace_back();
    } else {
      fields.back() += c;
    }
  }
  return fields;
}

// Lists of the same length are compared field by field.
static void compare(const std::string& key, const std::string& before, const std::string& after,
                    std::vector<profile_change>& changes) {
  std::vector<std::string> old_fields = fields_of(before), new_fields = fields_of(after);
  if (old_fields.size() == 1 || old_fields.size() != new_fields.size()) {
    changes.push_back({key, -1, true, true, before, after});
    return;
  }
  for (size_t i = 0; i < old_fields.size(); ++i) {
    if (old_fields[i] == new_fields[i]) continue;
    changes.push_back({key, static_cast<int>(i), true, true, old_fields[i], new_fields[i]});
  }
}

// An update changes a few lines of hundreds: those before and after them need no look.
struct window {
  size_t start, end_before, end_after;
};

static window changed_lines(const std::string& before, const std::string& after) {
  size_t shorter = std::min(before.size(), after.size()), start = 0, tail = 0;
  while (start < shorter && before[start] == after[start])
    ++start;
  while (tail < shorter - start &&
         before[before.size() - 1 - tail] == after[after.size() - 1 - tail])
    ++tail;
  while (start > 0 && before[start - 1] != '\n')
    --start;
  while (tail > 0 && before[before.size() - tail - 1] != '\n')
    --tail;
  return {start, before.size() - tail, after.size() - tail};
}

// The key's value counts only if no line in front has the key.
static bool is_shadowed(const std::string& text, size_t start, const std::string& key) {
  std::string head = "\n" + text.substr(0, start);
  return head.find("\n" + key + "=") != std::string::npos;
}

std::vector<profile_change> profile_value_changes(const std::map<std::string, std::string>& before,
                                                  const std::map<std::string, std::string>& after) {
  std::vector<profile_change> changes;
  for (const auto& [key, value] : before) {
    auto now = after.find(key);
    if (now == after.end()) {
      changes.push_back({key, -1, true, false, value, ""});
    } else if (now->second != value) {
      compare(key, value, now->second, changes);
    }
  }
  for (const auto& [key, value] : after) {
    if (!before.contains(key)) changes.push_back({key, -1, false, true, "", value});
  }
  return changes;
}

std::vector<profile_change> profile_changes(const std::string& before, const std::string& after) {
  window changed = changed_lines(before, after);
  auto was = profile_text_read(before.substr(changed.start, changed.end_before - changed.start));
  auto is = profile_text_read(after.substr(changed.start, changed.end_after - changed.start));
  auto shadowed = [&](const auto& line) { return is_shadowed(before, changed.start, line.first); };
  std::erase_if(was, shadowed);
  std::erase_if(is, shadowed);
  return profile_value_changes(was, is);
}
