// The commands and options of the command line, and their help.
#include "base/board.h"
#include "client/base/text.h"
#include "commands/complete.h"
#include "commands/line_parts.h"
#include "control/connection.h"
#include "scenario/document.h"
#include "trap/faults.h"

static constexpr size_t kHelpWidth = 79;
static constexpr size_t kHelpColumn = 23;  // where descriptions start

struct command_row {
  const char* name;
  const char* usage;
};

static constexpr command_row kCommands[] = {
    {"run", "gwbox run [OPTION...] [-- COMMAND [ARG...]]"},
    {"plan", "gwbox plan [OPTION...] -- COMMAND [ARG...]"},
    {"status", "gwbox [--box BOX] status [--json]"},
    {"set", "gwbox [--box BOX] set KIND WHICH KEY=VALUE..."},
    {"fail",
     "gwbox [--box BOX] fail WHAT HOW [COUNT]\n"
     "       gwbox [--box BOX] fail list [--json]|clear"},
    {"advance", "gwbox [--box BOX] advance SECONDS"},
    {"pause", "gwbox [--box BOX] pause"},
    {"resume", "gwbox [--box BOX] resume"},
    {"log", "gwbox [--box BOX] log [--follow] [--json]"},
    {"wait",
     "gwbox [--box BOX] wait [--timeout SECONDS] quiet\n"
     "       gwbox [--box BOX] wait [--timeout SECONDS] on|off INTERFACE\n"
     "       gwbox [--box BOX] wait [--timeout SECONDS] station|gone MAC\n"
     "       gwbox [--box BOX] wait [--timeout SECONDS] journal NAME=VALUE..."},
    {"scenario", "gwbox scenario list|show NAME|check FILE"},
    {"completion", "gwbox completion bash|zsh"},
};

static std::string usage_of(const std::string& command) {
  std::string all;
  for (const command_row& row : kCommands) {
    if (command == row.name) return row.usage;
    all += (all.empty() ? "" : "\n       ") + std::string(row.usage);
  }
  return all;
}

// "  HEAD  description", with the description wrapped in its own column.
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

std::vector<const CLI::App*> args_commands(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App* below) { return !below->get_group().empty(); });
}

static std::string help_of(const CLI::App* app, const std::string&, CLI::AppFormatMode) {
  std::string text = "usage: " + usage_of(app->get_name()) + "\n\n";
  std::string sentence = app->get_description() + ".";
  sentence[0] = static_cast<char>(toupper(sentence[0]));
  text += text_wrap(sentence, kHelpWidth, 0, 0) + "\n";
  if (std::string words = rows_of(*app, true); !words.empty()) text += "\n" + words;
  std::string commands;
  for (const CLI::App* below : args_commands(*app))
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

static std::string check_seconds(const std::string& text) {
  double seconds = -1;
  bool good = CLI::detail::lexical_cast(text, seconds) && seconds >= 0;
  if (good && seconds <= kControlAdvanceMax) return "";
  return "takes a number from 0 to 1000000000, not " + text_quote(text);
}

static std::string check_count(const std::string& text) {
  int count = 0;
  if (fault_parse_count(text, count)) return "";
  return "takes a whole number from 1 to 1000000000, not " + text_quote(text);
}

static std::string shell_names() {
  std::string names;
  for (const std::string& shell : complete_shells())
    names += (names.empty() ? "" : " or ") + shell;
  return names;
}

static std::string check_shell(const std::string& text) {
  if (!complete_script(text).empty()) return "";
  return "takes " + shell_names() + ", not " + text_quote(text);
}

static std::string check_not_empty(const std::string& text) {
  return text.empty() ? "takes a name, not an empty text" : "";
}

static CLI::Validator checked_by(std::string (*check)(const std::string&)) {
  return CLI::Validator(check, "");
}

static void declare_surroundings(CLI::App* app, args& a) {
  app->add_option("--board", a.board, board_names() + "; without it " + kBoardDefault)
      ->type_name("BOARD");
  app->add_option(
         "--scenario", a.scenario,
         "what surrounds it: " + scenario_names() + " or a file; without it " + kScenarioDefault)
      ->type_name("SCENARIO");
}

static void declare_run(CLI::App& app, args& a) {
  CLI::App* run = app.add_subcommand("run", "start a box and run COMMAND, or a shell, in it");
  declare_surroundings(run, a);
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

static void declare_plan(CLI::App& app, args& a) {
  CLI::App* plan = app.add_subcommand("plan", "tell what COMMAND would do to a gateway");
  plan->footer(
      "A box of its own is started, its radios are brought up, COMMAND runs in it, and\n"
      "what it caused is printed: settings, and whether they are in effect; who loses\n"
      "air, and for how long; requests, commands, companions. COMMAND's own output goes\n"
      "to standard error.\n"
      "\n"
      "  gwbox plan -- wificonf wlan_set_ssid 1 Attic\n"
      "  gwbox plan -- sh change.sh\n"
      "\n"
      "Exit status: 0 nobody loses air, 10 somebody does, 11 COMMAND failed, 2 wrong\n"
      "usage, 125 no box.");
  declare_surroundings(plan, a);
  plan->add_option("--profile24", a.profile_24, "start with this 2.4 GHz profile")
      ->type_name("FILE");
  plan->add_option("--profile5", a.profile_5, "start with this 5 GHz profile")->type_name("FILE");
  plan->add_flag("--json", a.json, "print the plan as JSON");
  plan->add_option("--html", a.html, "write the plan as a page")->type_name("FILE");
  plan->add_flag("--allow-outage", a.allow_outage, "exit with 0 even if somebody loses air");
  plan->callback([&a] { a.command = kArgsPlan; });
  CLI::App* rehearse = app.add_subcommand("rehearse", "for plan: its part inside the box");
  rehearse->group("");
  rehearse->add_option("--form", a.form);
  rehearse->add_option("--profile24", a.profile_24);
  rehearse->add_option("--profile5", a.profile_5);
  rehearse->add_flag("--allow-outage", a.allow_outage);
  rehearse->callback([&a] { a.command = kArgsRehearse; });
}

static void declare_fail(CLI::App& app, args& a) {
  CLI::App* fail = app.add_subcommand("fail", "make matching requests and system calls fail");
  fail->fallthrough()->footer(
      "Examples of WHAT: 0x8BE1:0x069B, survey, set@ra8, vlan, init_module; a wrong\n"
      "one gets a list of names. \"gwbox fail list\" shows what is set, how often it\n"
      "has hit, how often it will still hit, and how many requests a delay is holding\n"
      "back. \"gwbox fail clear\" ends all failures, including delays under way.");
  fail->add_option("WHAT", a.what, "request[:sub][@interface] or name[@interface], list or clear")
      ->required();
  fail->add_option("HOW", a.how,
                   "an errno name, such as EAGAIN, or delay=MILLISECONDS, short=BYTES or "
                   "count=NUMBER");
  fail->add_option("COUNT", a.count, "how many times; once by default")
      ->check(checked_by(check_count));
  fail->add_flag("--json", a.json, "print the list as JSON");
  fail->callback([&a] { a.command = kArgsFail; });
}

static void declare_time(CLI::App& app, args& a) {
  CLI::App* advance = app.add_subcommand("advance", "advance the box's time");
  advance->fallthrough()->footer(
      "What is due by then has happened when this command ends: events, timers, WPS\n"
      "sessions, counters. It works while the time is paused, too. Programs in the box\n"
      "notice nothing: their own clock and sleeps are the real ones.");
  advance->add_option("SECONDS", a.seconds, "how far, in seconds of the box's time")
      ->required()
      ->check(checked_by(check_seconds));
  advance->callback([&a] { a.command = kArgsAdvance; });
  CLI::App* pause = app.add_subcommand("pause", "stop the box's time; its programs go on");
  pause->fallthrough()->callback([&a] { a.command = kArgsPause; });
  CLI::App* resume = app.add_subcommand("resume", "let the box's time go on, at its speed");
  resume->fallthrough()->callback([&a] { a.command = kArgsResume; });
}

static void declare_completion(CLI::App& app, args& a) {
  CLI::App* completion = app.add_subcommand("completion", "print a completion script");
  completion->add_option("SHELL", a.shell, shell_names())
      ->required()
      ->check(checked_by(check_shell));
  completion->callback([&a] { a.command = kArgsCompletion; });
  CLI::App* complete = app.add_subcommand("complete", "for that script: what may come next");
  complete->group("")->callback([&a] { a.command = kArgsComplete; });
}

static void declare_log(CLI::App& app, args& a) {
  CLI::App* log = app.add_subcommand("log", "print the request journal");
  log->fallthrough();
  log->add_flag("--follow", a.follow, "keep printing as requests arrive");
  log->add_flag("--json", a.json, "print the JSON lines as they are");
  log->callback([&a] { a.command = kArgsLog; });
}

static std::string check_timeout(const std::string& text) {
  int seconds = -1;
  if (CLI::detail::lexical_cast(text, seconds) && seconds >= 0 && seconds <= kControlWaitMax) {
    return "";
  }
  return "takes a whole number of seconds from 0 to " + std::to_string(kControlWaitMax) + ", not " +
         text_quote(text);
}

static void declare_wait(CLI::App& app, args& a) {
  CLI::App* wait = app.add_subcommand("wait", "wait until something is so in the box");
  wait->fallthrough()->footer(
      "  quiet          the daemon has done all that it was asked to, its queue\n"
      "                 included, and it and its companions wait for more\n"
      "  on|off raN     the interface beacons, or does not\n"
      "  station MAC    the station is associated; gone MAC: it is not\n"
      "  journal NAME=VALUE...\n"
      "                 the journal has a line with all these members (NAME!=VALUE:\n"
      "                 without that one); the first such line is printed\n"
      "\n"
      "After --timeout, 30 seconds without it, the exit status is 1, and a message says\n"
      "what is missing.");
  wait->add_option("CONDITION", a.words, "what to wait for")->required();
  wait->add_option("--timeout", a.timeout, "for how long at most")
      ->type_name("SECONDS")
      ->check(checked_by(check_timeout));
  wait->callback([&a] { a.command = kArgsWait; });
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
      "  gwbox set speed FACTOR\n"
      "\n"
      "KEYs are those of the scenario (gwbox scenario show schema); dots join nested\n"
      "names. VALUEs are JSON or texts; \"gone\" removes a key.\n"
      "\n"
      "  gwbox set station 02:00:5e:00:00:01 rssi=[-70,-72] per_second.tx_bytes=1000\n"
      "  gwbox set neighbour 02:00:5e:10:00:09 radio=ra0 channel=6 ssid=Next rssi=-40\n"
      "  gwbox set radio ra0 wps.outcome=failure\n"
      "  gwbox set companion bndstrg_1.marker_after 3");
  set->add_option("KIND", a.words, scenario_kind_names() + ", then WHICH one or the speed")
      ->required();
  set->callback([&a] { a.command = kArgsSet; });
}

static void declare_scenario(CLI::App& app, args& a) {
  CLI::App* scenario = app.add_subcommand("scenario", "list, show and check scenarios");
  CLI::App* list = scenario->add_subcommand("list", "list the scenarios that ship");
  list->callback([&a] { a.command = kArgsScenarioList; });
  CLI::App* show = scenario->add_subcommand("show", "print one, or \"schema\"");
  show->add_option("NAME", a.which)->required();
  show->callback([&a] { a.command = kArgsScenarioShow; });
  CLI::App* check = scenario->add_subcommand("check", "check a file and say what is wrong");
  check->add_option("FILE", a.which)->required();
  check->callback([&a] { a.command = kArgsScenarioCheck; });
}

void args_declare(CLI::App& app, args& a) {
  app.formatter_fn(help_of);
  app.set_help_flag("-h,--help", "print this text; after a command, that of the command");
  app.set_version_flag("--version", "gwbox " GWBOX_VERSION, "print the version");
  app.allow_extras();  // for our own messages
  app.add_option("--box", a.box,
                 "which box, from outside: its name, or the process id of its "
                 "gwbox run or of a process in it")
      ->type_name("BOX")
      ->check(checked_by(check_not_empty));
  declare_run(app, a);
  declare_plan(app, a);
  declare_status(app, a);
  declare_set(app, a);
  declare_fail(app, a);
  declare_time(app, a);
  declare_log(app, a);
  declare_wait(app, a);
  declare_scenario(app, a);
  declare_completion(app, a);
  // Set last: commands declared after it would inherit it.
  app.footer(
      "Exit status of run: that of COMMAND, 128+N when signal N ended it, 125 without\n"
      "a box, 2 wrong usage. Of the others: 0 done, 1 no box, no answer or an output\n"
      "that cannot be written, 2 wrong usage or a value that the box refuses.");
}
