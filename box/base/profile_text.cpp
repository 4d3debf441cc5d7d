#include "base/profile_text.h"

std::map<std::string, std::string> profile_text_read(const std::string& text) {
  std::map<std::string, std::string> found;
  for (size_t start = 0; start < text.size();) {
    size_t end = text.find('\n', start);
    if (end == std::string::npos) end = text.size();
    std::string line = text.substr(start, end - start);
    size_t equals = line.find('=');
    if (equals != std::string::npos) found.emplace(line.substr(0, equals), line.substr(equals + 1));
    start = end + 1;
  }
  return found;
}
