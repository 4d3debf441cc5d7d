// The only file of the client with exceptions and RTTI, because CLI11 needs them. No exception
// leaves it.
#include "commands/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "base/text.h"

static constexpr double kTimeoutMax = 86400;

static std::string check_timeout(const std::string& text) {
  double seconds = 0;
  bool number = CLI::detail::lexical_cast(text, seconds);
  if (number && seconds >= 0.001 && seconds <= kTimeoutMax) return "";
  return "takes seconds, 0.001 to 86400, not " + text_quote(text);
}

static std::string check_port(const std::string& text) {
  unsigned port = 0;
  bool digits = !text.empty() && text.size() <= 5 &&
                text.find_first_not_of("0123456789") == std::string::npos;
  if (digits && CLI::detail::lexical_cast(text, port) && port >= 1 && port <= 65535) return "";
  return "takes a port, 1 to 65535, not " + text_quote(text);
}

static std::string check_host(const std::string& text) {
  return text.empty() ? "takes a name or an address" : "";
}

static void define(CLI::App& app, client_options& options) {
  app.set_help_flag("-h,--help");
  app.set_version_flag("--version", std::string());
  app.add_option("--host", options.host)->check(CLI::Validator(check_host, ""));
  app.add_option("--port", options.port)->check(CLI::Validator(check_port, ""));
  app.add_option("--timeout", options.timeout)->check(CLI::Validator(check_timeout, ""));
  app.add_flag("--json", options.json);
  app.add_flag("--raw", options.raw);
  app.add_flag("--force", options.force);
  app.add_flag("--inert-ok", options.inert_ok);
  app.prefix_command();
}

static std::string one_line(std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

// Takes PROCEDURE and the words after it. Returns the error, or "".
static std::string take_words(std::vector<std::string> words, client_options& options) {
  if (!words.empty() && words[0] == "--") words.erase(words.begin());
  options.words = std::move(words);
  if (options.words.empty()) return "no procedure given";
  const bool is_option = options.words[0].starts_with('-');
  return is_option ? "unknown option " + text_quote(options.words[0]) : "";
}

options_outcome options_parse(const std::vector<std::string>& arguments, client_options& options,
                              std::string& error) {
  CLI::App app;
  try {
    define(app, options);
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
  } catch (const CLI::CallForHelp&) {
    return options_outcome::kHelp;
  } catch (const CLI::CallForVersion&) {
    return options_outcome::kVersion;
  } catch (const std::exception& e) {
    error = one_line(e.what());
  }
  if (error.empty()) error = take_words(app.remaining(), options);
  // After a bad option CLI11 may not have seen the later ones.
  const bool said_json = std::find(arguments.begin(), arguments.end(), "--json") != arguments.end();
  options.json = options.json || (!error.empty() && said_json);
  return error.empty() ? options_outcome::kRun : options_outcome::kError;
}
