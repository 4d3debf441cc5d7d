#include "sys/command.h"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cctype>
#include <cstdlib>
#include <cstring>

#include "sys/shell.h"

bool run_command(const char* command) {
  return system(command) != -1;
}

bool command_succeeds(const char* command) {
  const int status = system(command);
  return status != -1 && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

void run_captured(const char* caller, const char* command) {
  char* output = nullptr;
  // ex_cmd reports a command that cannot be run.
  static_cast<void>(ex_cmd(caller, command, &output));
  free(output);
}

bool path_exists(const char* path) {
  return access(path, F_OK) == 0;
}

bool name_exists(const char* path) {
  struct stat status;
  return lstat(path, &status) == 0;
}

static bool is_plain(const char* text) {
  for (; *text != '\0'; ++text) {
    const bool plain = isalnum(static_cast<unsigned char>(*text)) != 0 && isascii(*text) != 0;
    if (!plain && strchr("._-:", *text) == nullptr) return false;
  }
  return true;
}

void quote_for_shell(const char* text, char* out, size_t size) {
  static constexpr char kQuote[] = "'\\''";
  const bool plain = is_plain(text);
  // Always leaves room for the closing quote and the NUL.
  const char* end = out + size - (plain ? 1 : 2);
  if (!plain) *out++ = '\'';
  for (; *text != '\0'; ++text) {
    const bool quote = *text == '\'';
    const size_t length = quote ? sizeof kQuote - 1 : 1;
    if (out + length > end) break;
    memcpy(out, quote ? kQuote : text, length);
    out += length;
  }
  if (!plain) *out++ = '\'';
  *out = '\0';
}
