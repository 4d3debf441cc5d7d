// The one file of the client that has exceptions and RTTI: CLI11 needs them.
// None leaves it.
#include "args.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "text.h"

namespace {

constexpr double kTimeoutMax = 86400;

std::string check_timeout(const std::string& text) {
  double seconds = 0;
  bool number = CLI::detail::lexical_cast(text, seconds);
  if (number && seconds >= 0.001 && seconds <= kTimeoutMax) return "";
  return "takes seconds, 0.001 to 86400, not " + text_quote(text);
}

std::string check_port(const std::string& text) {
  unsigned port = 0;
  bool digits = !text.empty() && text.size() <= 5 &&
                text.find_first_not_of("0123456789") == std::string::npos;
  if (digits && CLI::detail::lexical_cast(text, port) && port >= 1 && port <= 65535) return "";
  return "takes a port, 1 to 65535, not " + text_quote(text);
}

std::string check_host(const std::string& text) {
  return text.empty() ? "takes a name or an address" : "";
}

void define(CLI::App& app, client_options& options) {
  app.set_help_flag("-h,--help");
  app.set_version_flag("--version", std::string());
  app.add_option("--host", options.host)->check(CLI::Validator(check_host, ""));
  app.add_option("--port", options.port)->check(CLI::Validator(check_port, ""));
  app.add_option("--timeout", options.timeout)->check(CLI::Validator(check_timeout, ""));
  app.add_flag("--json", options.json);
  app.add_flag("--raw", options.raw);
  app.prefix_command();
}

std::string one_line(std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

}  // namespace

args_outcome args_parse(const std::vector<std::string>& arguments, client_options& options,
                        std::string& error) {
  CLI::App app;
  try {
    define(app, options);
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
  } catch (const CLI::CallForHelp&) {
    return args_outcome::kHelp;
  } catch (const CLI::CallForVersion&) {
    return args_outcome::kVersion;
  } catch (const std::exception& e) {
    error = one_line(e.what());
    return args_outcome::kError;
  }
  options.words = app.remaining();
  if (!options.words.empty() && options.words[0] == "--")
    options.words.erase(options.words.begin());
  if (options.words.empty())
    error = "no procedure given";
  else if (options.words[0].starts_with('-'))
    error = "unknown option " + text_quote(options.words[0]);
  return error.empty() ? args_outcome::kRun : args_outcome::kError;
}
