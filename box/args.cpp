// The only file that sees CLI11, which needs exceptions; none leaves it.
#include "args.h"

#include <CLI/CLI.hpp>

#include "board.h"
#include "client/text.h"
#include "report.h"
#include "scenario.h"

static constexpr size_t kHelpWidth = 79;
static constexpr size_t kHelpColumn = 23;  // where descriptions begin

struct command_row {
  const char* name;
  const char* usage;
};

static constexpr command_row kCommands[] = {
    {"run", "gwbox run [OPTION...] [-- COMMAND [ARG...]]"},
    {"status", "gwbox [--box BOX] status [--json]"},
    {"set", "gwbox [--box BOX] set KIND WHICH KEY=VALUE..."},
    {"fail", "gwbox [--box BOX] fail WHAT [HOW] [COUNT]"},
    {"log", "gwbox [--box BOX] log [--follow] [--json]"},
    {"scenario", "gwbox scenario list|show NAME|check FILE"},
};

static std::string usage_of(const std::string& command) {
  std::string all;
  for (const command_row& row : kCommands) {
    if (command == row.name) return row.usage;
    all += (all.empty() ? "" : "\n       ") + std::string(row.usage);
  }
  return all;
}

// "  HEAD  description", the description in a column of its own, folded.
static std::string help_row(const std::string& head, const std::string& description) {
  std::string text = "  " + head;
  if (text.size() + 2 > kHelpColumn) text += "\n";
  size_t used = text.ends_with('\n') ? 0 : text.size();
  text.append(kHelpColumn - used, ' ');
  return text + text_wrap(description, kHelpWidth, kHelpColumn, kHelpColumn) + "\n";
}

static std::string option_head(const CLI::Option& option) {
  if (option.get_positional()) return option.get_name();
  std::string head = option.get_name(false, true), type = option.get_type_name();
  if (size_t comma = head.find(','); comma != std::string::npos) head.insert(comma + 1, " ");
  return head + (type.empty() ? "" : " " + type);
}

static std::string rows_of(const CLI::App& app, bool positional) {
  std::string rows;
  for (const CLI::Option* option : app.get_options()) {
    if (option->get_positional() != positional || option->get_description().empty()) continue;
    rows += help_row(option_head(*option), option->get_description());
  }
  return rows;
}

// The help of gwbox or one of its subcommands, from what is declared below.
static std::string help_of(const CLI::App* app, const std::string&, CLI::AppFormatMode) {
  std::string text = "usage: " + usage_of(app->get_name()) + "\n\n";
  std::string sentence = app->get_description() + ".";
  sentence[0] = static_cast<char>(toupper(sentence[0]));
  text += text_wrap(sentence, kHelpWidth, 0, 0) + "\n";
  if (std::string words = rows_of(*app, true); !words.empty()) text += "\n" + words;
  std::string commands;
  for (const CLI::App* below : app->get_subcommands(nullptr))
    commands += help_row(below->get_name(), below->get_description());
  if (!commands.empty()) text += "\nCommands:\n" + commands;
  text += "\nOptions:\n" + rows_of(*app, false);
  if (!app->get_footer().empty()) text += "\n" + app->get_footer() + "\n";
  return text;
}

static std::string check_speed(const std::string& text) {
  double speed = -1;
  if (CLI::detail::lexical_cast(text, speed) && speed >= 0 && speed <= 100000) return "";
  return "takes a number from 0 to 100000, not " + text_quote(text);
}

static std::string check_count(const std::string& text) {
  int count = 0;
  if (CLI::detail::lexical_cast(text, count) && count >= 1 && count <= 1000000000) return "";
  return "takes a whole number from 1 to 1000000000, not " + text_quote(text);
}

static std::string check_not_empty(const std::string& text) {
  return text.empty() ? "takes a name, not an empty text" : "";
}

static CLI::Validator checked_by(std::string (*check)(const std::string&)) {
  return CLI::Validator(check, "");
}

static void declare_run(CLI::App& app, args& a) {
  CLI::App* run = app.add_subcommand("run", "start a box and run COMMAND, or a shell, in it");
  run->add_option("--board", a.board, board_names() + "; without it " + kBoardDefault)
      ->type_name("BOARD");
  run->add_option(
         "--scenario", a.scenario,
         "what is around it: " + scenario_names() + " or a file; without it " + kScenarioDefault)
      ->type_name("SCENARIO");
  run->add_option("--speed", a.speed, "how fast time runs in it, 0 (not at all) to 100000")
      ->type_name("FACTOR")
      ->check(checked_by(check_speed));
  run->add_option("--name", a.name,
                  "a name by which --box finds it: up to 64 letters, digits, \".\", \"_\", \"-\"")
      ->type_name("NAME")
      ->check(checked_by(check_not_empty));
  run->add_option("--log", a.log_file, "append the request journal to this file as well")
      ->type_name("FILE");
  run->add_flag_callback(
      "--no-portmap", [&a] { a.portmap = false; }, "start no portmapper");
  run->add_flag("--companions", a.companions, "start HncInit and the HNC listener with the box");
  run->add_flag("--cold", a.cold, "load no driver: no ra interface until a module is loaded");
  run->callback([&a] { a.command = kArgsRun; });
}

static void declare_fail(CLI::App& app, args& a) {
  CLI::App* fail = app.add_subcommand("fail", "make matching requests and system calls fail");
  fail->fallthrough()->footer(
      "WHAT is such as 0x8BE1:0x069B, survey, set@ra8, vlan or init_module; a wrong\n"
      "one gets a list of names. \"gwbox fail clear\" ends all failures.");
  fail->add_option("WHAT", a.what, "request[:sub][@interface] or name[@interface]")->required();
  fail->add_option("HOW", a.how,
                   "an errno name, such as EAGAIN, or delay=MILLISECONDS, short=BYTES or "
                   "count=NUMBER");
  fail->add_option("COUNT", a.count, "how many times; without it once")
      ->check(checked_by(check_count));
  fail->callback([&a] { a.command = kArgsFail; });
}

static void declare_log(CLI::App& app, args& a) {
  CLI::App* log = app.add_subcommand("log", "print the request journal");
  log->fallthrough();
  log->add_flag("--follow", a.follow, "go on printing as requests come");
  log->add_flag("--json", a.json, "print the JSON lines as they are");
  log->callback([&a] { a.command = kArgsLog; });
}

static void declare_status(CLI::App& app, args& a) {
  CLI::App* status = app.add_subcommand("status", "show what the radios beacon and who is there");
  status->fallthrough();
  status->add_flag("--json", a.json, "everything, as JSON");
  status->callback([&a] { a.command = kArgsStatus; });
}

static void declare_set(CLI::App& app, args& a) {
  CLI::App* set = app.add_subcommand("set", "change what is around the gateway");
  set->fallthrough()->footer(
      "  gwbox set station MAC KEY=VALUE...      a new MAC needs bss\n"
      "  gwbox set neighbour BSSID KEY=VALUE...  a new BSSID needs radio, channel\n"
      "  gwbox set nonassoc MAC KEY=VALUE...     a new MAC needs radio, observations\n"
      "  gwbox set bss N KEY=VALUE...\n"
      "  gwbox set station|neighbour|nonassoc|bss WHICH gone\n"
      "  gwbox set radio ra0|ra8 KEY=VALUE...\n"
      "  gwbox set companion PATH VALUE\n"
      "\n"
      "KEYs are those of the scenario (gwbox scenario show schema), with dots for what\n"
      "is deeper. VALUEs are JSON or texts; \"gone\" takes a key away.\n"
      "\n"
      "  gwbox set station 02:00:5e:00:00:01 rssi=[-70,-72] per_second.tx_bytes=1000\n"
      "  gwbox set neighbour 02:00:5e:10:00:09 radio=ra0 channel=6 ssid=Next rssi=-40\n"
      "  gwbox set radio ra0 wps.outcome=failure\n"
      "  gwbox set companion bndstrg_1.marker_after 3");
  set->add_option("KIND", a.words,
                  "station, neighbour, nonassoc, bss, radio or companion, then WHICH one")
      ->required();
  set->callback([&a] { a.command = kArgsSet; });
}

static void declare_scenario(CLI::App& app, args& a) {
  CLI::App* scenario = app.add_subcommand("scenario", "list, show and check scenarios");
  CLI::App* list = scenario->add_subcommand("list", "the ones that ship");
  list->callback([&a] { a.command = kArgsScenarioList; });
  CLI::App* show = scenario->add_subcommand("show", "print one, or \"schema\"");
  show->add_option("NAME", a.which)->required();
  show->callback([&a] { a.command = kArgsScenarioShow; });
  CLI::App* check = scenario->add_subcommand("check", "say what is wrong with a file");
  check->add_option("FILE", a.which)->required();
  check->callback([&a] { a.command = kArgsScenarioCheck; });
}

static void declare(CLI::App& app, args& a) {
  app.formatter_fn(help_of);
  app.set_help_flag("-h,--help", "print this text; after a command, that of the command");
  app.set_version_flag("--version", "gwbox " GWBOX_VERSION, "print the version");
  app.allow_extras();  // for messages of our own
  app.add_option("--box", a.box,
                 "which box, from outside: its name, or the process id of its "
                 "gwbox run or of a process in it")
      ->type_name("BOX")
      ->check(checked_by(check_not_empty));
  declare_run(app, a);
  declare_status(app, a);
  declare_set(app, a);
  declare_fail(app, a);
  declare_log(app, a);
  declare_scenario(app, a);
}

// What CLI11 let pass; empty when nothing.
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
  if (!extra.empty() && a.command == kArgsRun) return "put -- before the command: -- " + extra[0];
  if (!extra.empty()) return "unexpected " + word;
  if (a.payload.empty() || a.command == kArgsRun) return "";
  return "only \"gwbox run\" takes a COMMAND after \"--\"";
}

static args wrong(args a, const CLI::App& app, const std::string& message) {
  std::string command =
      app.get_subcommands().empty() ? "" : app.get_subcommands()[0]->get_name() + " ";
  report("%s; \"gwbox %s--help\" tells how", message.c_str(), command.c_str());
  a.command = kArgsDone;
  a.status = kExitUsage;
  return a;
}

// What follows "--" belongs to COMMAND and is never looked at.
static int split_payload(int argc, char** argv, args& a) {
  for (int i = 1; i < argc; i++) {
    if (std::string_view(argv[i]) != "--") continue;
    a.payload.assign(argv + i + 1, argv + argc);
    return i;
  }
  return argc;
}

// The words in the order that CLI11 takes them in, the last first. It would split one in brackets
// at its commas; the blank in front keeps it whole, and JSON does not mind.
static std::vector<std::string> words_reversed(int argc, char** argv) {
  std::vector<std::string> words;
  for (int i = argc - 1; i > 0; i--)
    words.push_back(argv[i][0] == '[' ? std::string(" ") + argv[i] : argv[i]);
  return words;
}

args args_read(int argc, char** argv) {
  args a = {};
  a.command = kArgsDone;
  a.scenario = kScenarioDefault;
  a.speed = -1;
  a.portmap = true;
  a.count = 1;
  CLI::App app("A simulated gateway in a sandbox: radios, driver, portmapper", "gwbox");
  int own = split_payload(argc, argv, a);
  try {
    declare(app, a);
    app.parse(words_reversed(own, argv));
  } catch (const CLI::Success& help_or_version) {
    a.command = kArgsDone;
    a.status = app.exit(help_or_version);
    return a;
  } catch (const CLI::ParseError& error) {
    return wrong(a, app, error.what());
  }
  if (std::string message = wrong_words(app, a); !message.empty()) return wrong(a, app, message);
  return a;
}
