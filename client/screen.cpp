#include "screen.h"

#include <sys/ioctl.h>

#include <algorithm>

size_t screen_height(FILE* out) {
  winsize size{};
  return ioctl(fileno(out), TIOCGWINSZ, &size) == 0 && size.ws_row > 0 ? size.ws_row : 24;
}

std::string screen_lines(const std::string& text, size_t count) {
  size_t end = 0;
  while (count-- > 0 && end < text.size())
    end = std::min(text.find('\n', end), text.size() - 1) + 1;
  return text.substr(0, end);
}
