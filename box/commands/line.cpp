#include "commands/line.h"

#include "base/report.h"
#include "client/base/text.h"
#include "commands/line_parts.h"
#include "scenario/document.h"

// What is wrong although CLI11 accepted it; empty if nothing is.
static std::string wrong_words(const CLI::App& app, const args& a) {
  std::vector<std::string> extra = app.remaining(true);
  std::string word = extra.empty() ? "" : text_quote(extra[0]);
  if (!extra.empty() && extra[0].starts_with("-")) return "unknown option " + word;
  if (app.get_subcommands().empty()) {
    return extra.empty() ? "no command given" : "there is no command " + word;
  }
  if (app.got_subcommand("scenario") && a.command == kArgsDone) {
    return extra.empty() ? "scenario takes list, show or check" : "scenario has no command " + word;
  }
  if (!extra.empty() && (a.command == kArgsRun || a.command == kArgsPlan))
    return "put -- before the command: -- " + extra[0];
  if (!extra.empty()) return "unexpected " + word;
  bool takes_payload = a.command == kArgsRun || a.command == kArgsPlan ||
                       a.command == kArgsRehearse || a.command == kArgsComplete;
  if (a.payload.empty() || takes_payload) return "";
  return "only \"gwbox run\" and \"gwbox plan\" take a COMMAND after \"--\"";
}

static args wrong(args a, const CLI::App& app, const std::string& message) {
  std::string command =
      app.get_subcommands().empty() ? "" : app.get_subcommands()[0]->get_name() + " ";
  report("%s; \"gwbox %s--help\" tells how", message.c_str(), command.c_str());
  a.command = kArgsDone;
  a.status = kExitUsage;
  return a;
}

// What follows "--" belongs to COMMAND and is not parsed.
static int split_payload(int argc, char** argv, args& a) {
  for (int i = 1; i < argc; ++i) {
    if (std::string_view(argv[i]) != "--") continue;
    a.payload.assign(argv + i + 1, argv + argc);
    return i;
  }
  return argc;
}

// CLI11 takes the words in reverse order. It would split a word in brackets at its commas; a
// leading blank prevents that and means nothing in JSON.
static std::vector<std::string> words_reversed(int argc, char** argv) {
  std::vector<std::string> words;
  for (int i = argc - 1; i > 0; --i)
    words.push_back(argv[i][0] == '[' ? std::string(" ") + argv[i] : argv[i]);
  return words;
}

args args_read(int argc, char** argv) {
  args a = {};
  a.timeout = 30;
  a.command = kArgsDone;
  a.scenario = kScenarioDefault;
  a.speed = -1;
  a.portmap = true;
  CLI::App app("A simulated gateway in a sandbox: radios, driver, portmapper", "gwbox");
  int own = split_payload(argc, argv, a);
  try {
    args_declare(app, a);
    app.parse(words_reversed(own, argv));
  } catch (const CLI::Success& help_or_version) {
    // There is no help for an unknown command.
    std::vector<std::string> extra = app.remaining();
    bool is_bad = app.get_subcommands().empty() && !extra.empty() && extra[0][0] != '-';
    if (is_bad) return wrong(a, app, wrong_words(app, a));
    a.command = kArgsDone;
    a.status = app.exit(help_or_version);
    return a;
  } catch (const CLI::ParseError& error) {
    return wrong(a, app, error.what());
  }
  if (std::string message = wrong_words(app, a); !message.empty()) return wrong(a, app, message);
  return a;
}
