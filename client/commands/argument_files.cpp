#include "commands/argument_files.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "base/text.h"
#include "wire/lookup.h"
#include "wire/rpc.h"

// No call can be longer.
static constexpr size_t kFileMax = kCallBytesMax;

static bool is_text(const argument_spec& argument) {
  return argument.type == argument_type::kString || argument.type == argument_type::kText;
}

// Appends everything that can be read. Returns the error, or ""; too long is an error.
static std::string read_all(int fd, std::string& text) {
  char bytes[4096];
  while (text.size() <= kFileMax) {
    const ssize_t length = read(fd, bytes, sizeof bytes);
    if (length < 0 && errno == EINTR) continue;
    if (length < 0) return strerror(errno);
    if (length == 0) return "";
    text.append(bytes, static_cast<size_t>(length));
  }
  return text_format("it is longer than %zu bytes, which no call takes", kFileMax);
}

static std::string read_file(const std::string& path, std::string& text) {
  const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return strerror(errno);
  std::string error = read_all(fd, text);
  close(fd);
  return error;
}

static void drop_line_end(std::string& text) {
  if (!text.ends_with('\n')) return;
  text.pop_back();
  if (text.ends_with('\r')) text.pop_back();
}

// Replaces an "@..." word by the text that it names. Returns the error, or "".
static std::string replace(std::string& word, bool* input_read) {
  if (word.starts_with("@@")) {
    word.erase(0, 1);
    return "";
  }
  const bool is_input = word == "@-";
  if (is_input && *input_read) return "standard input can be read for one argument only";
  *input_read = *input_read || is_input;
  std::string text;
  const std::string error =
      is_input ? read_all(STDIN_FILENO, text) : read_file(word.substr(1), text);
  const std::string name = is_input ? "standard input" : text_quote(word.substr(1));
  if (!error.empty()) return "cannot read " + name + ": " + error;
  if (text.find('\0') != std::string::npos) return name + " has a NUL byte, which no text has";
  drop_line_end(text);
  word = text;
  return "";
}

bool argument_files_read(const procedure_row& procedure, std::vector<std::string>& given,
                         std::string& error) {
  const std::vector<argument_spec> arguments = table_arguments(procedure);
  if (given.size() != arguments.size()) return true;  // the caller reports the wrong number
  bool input_read = false;
  for (size_t i = 0; i < given.size(); ++i) {
    if (!is_text(arguments[i]) || !given[i].starts_with('@')) continue;
    const std::string wrong = replace(given[i], &input_read);
    if (wrong.empty()) continue;
    error = lookup_display_name(procedure) + ": argument '" + arguments[i].name + "': " + wrong +
            " (a text that begins with '@' is written '@@...')";
    return false;
  }
  return true;
}
