#include "show/screen.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "base/text.h"

size_t screen_height(FILE* out) {
  winsize size{};
  return ioctl(fileno(out), TIOCGWINSZ, &size) == 0 && size.ws_row > 0 ? size.ws_row : 24;
}

bool screen_is(FILE* out) {
  const char* name = getenv("TERM");
  const bool able = name != nullptr && *name != '\0' && std::string_view(name) != "dumb";
  return able && isatty(fileno(out)) != 0;
}

static size_t cut(std::string_view line, size_t width) {
  size_t end = 0;
  uint32_t code_point = 0;
  for (; width > 0 && end < line.size(); --width)
    end += std::max<size_t>(text_decode(line, end, &code_point), 1);
  return end;
}

std::string screen_lines(const std::string& text, size_t count, size_t width) {
  if (count == 0) return "";
  const auto lines = static_cast<size_t>(std::count(text.begin(), text.end(), '\n'));
  const size_t shown = lines > count ? count - 1 : lines;
  std::string out;
  for (size_t at = 0, i = 0; i < shown; ++i) {
    const size_t end = text.find('\n', at);
    const std::string_view line = std::string_view(text).substr(at, end - at);
    out.append(line.substr(0, cut(line, width))).append("\n");
    at = end + 1;
  }
  if (shown < lines) out += text_format("... %zu more lines\n", lines - shown);
  return out;
}
