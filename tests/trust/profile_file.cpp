#include "trust/profile_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <set>

#include "support/files.h"

int lock_profile(const std::string& profile, int operation) {
  const char* path = profile == kProfile24 ? "/tmp/.mt76xx_24.dat.lock" : "/tmp/.mt76xx_5.dat.lock";
  const int lock = open(path, O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  if (lock >= 0 && flock(lock, operation) == 0) return lock;
  perror(path);
  return -1;
}

std::string locked_profile(const std::string& profile) {
  const int lock = lock_profile(profile, LOCK_SH);
  std::string text = read_file(profile);
  close(lock);
  return text;
}

std::string value_in(const std::string& text, const std::string& key) {
  const std::string lines = "\n" + text;
  const size_t at = lines.find("\n" + key + "=");
  if (at == lines.npos) return "";
  const size_t value = at + key.size() + 2;
  return lines.substr(value, lines.find('\n', value) - value);
}

std::vector<std::string> keys_in(const std::string& text) {
  std::vector<std::string> keys;
  for (size_t start = 0; start < text.size();) {
    const size_t end = std::min(text.find('\n', start), text.size());
    keys.push_back(text.substr(start, std::min(text.find('=', start), end) - start));
    start = end + 1;
  }
  return keys;
}

std::string incompleteness(const std::string& text, const std::vector<std::string>& first) {
  if (text.empty() || text.back() != '\n') return "ends within a line";
  const std::vector<std::string> keys = keys_in(text);
  if (keys.size() < first.size()) return "has lost lines";
  std::set<std::string> seen;
  for (size_t i = 0; i < keys.size(); ++i) {
    const bool added = i >= first.size();
    if (!added && keys[i] != first[i]) return "has \"" + keys[i] + "\" for \"" + first[i] + "\"";
    if (added && (keys[i].empty() || seen.contains(keys[i]))) {
      return "has \"" + keys[i] + "\" twice";
    }
    seen.insert(keys[i]);
  }
  return "";
}
