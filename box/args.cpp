// The only file that sees CLI11, which needs exceptions; none leaves it.
#include "args.h"

#include <CLI/CLI.hpp>

#include "board.h"
#include "report.h"
#include "scenario.h"

static void declare_run(CLI::App& app, args& a) {
  CLI::App* run = app.add_subcommand("run", "start a box and run COMMAND, or a shell, in it");
  run->footer("gwbox run [OPTIONS] -- COMMAND [ARG...]\nWithout a COMMAND: an interactive shell.");
  run->add_option("--board", a.board, "the board: " + board_names() + " (" + kBoardDefault + ")");
  run->add_option("--scenario", a.scenario, "what is around it: " + scenario_names() + " or a file")
      ->capture_default_str();
  run->add_option("--speed", a.speed, "how fast time runs in it, 0: not at all")
      ->check(CLI::Range(0.0, 100000.0));
  run->add_option("--name", a.name, "a name by which --box finds it");
  run->add_option("--log", a.log_file, "append the request journal to this file as well");
  run->add_flag_callback(
      "--no-portmap", [&a] { a.portmap = false; }, "start no portmapper");
  run->add_flag("--companions", a.companions, "start HncInit and the HNC listener with the box");
  run->add_flag("--cold", a.cold, "load no driver: no ra interface until a module is loaded");
  run->callback([&a] { a.command = kArgsRun; });
}

static void declare_fail(CLI::App& app, args& a) {
  CLI::App* fail = app.add_subcommand("fail", "make matching requests and system calls fail");
  fail->fallthrough()->footer(
      "WHAT: 0x8BE1:0x069B, survey, set@ra8, vlan, init_module; wrong ones get a list of names.\n"
      "\"gwbox fail clear\" ends all failures.");
  fail->add_option("WHAT", a.what, "request[:sub][@interface] or name[@interface]")->required();
  fail->add_option("HOW", a.how,
                   "an errno name, such as EAGAIN, or delay=MILLISECONDS, short=BYTES, "
                   "count=NUMBER");
  fail->add_option("COUNT", a.count, "how many times (1)")->check(CLI::Range(1, 1000000000));
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
      "gwbox set station MAC KEY=VALUE...      MAC need not be there yet\n"
      "gwbox set station MAC gone\n"
      "gwbox set neighbour BSSID KEY=VALUE...  and gone\n"
      "gwbox set nonassoc MAC KEY=VALUE...     and gone\n"
      "gwbox set bss N KEY=VALUE...            and gone\n"
      "gwbox set radio ra0|ra8 KEY=VALUE...\n"
      "gwbox set companion PATH VALUE\n"
      "KEYs are those of the scenario (gwbox scenario show schema), with dots for what is deeper:\n"
      "  gwbox set station 02:00:5e:00:00:01 rssi=[-70,-72] per_second.tx_bytes=1000\n"
      "  gwbox set radio ra0 wps.outcome=failure\n"
      "VALUEs are JSON or texts; \"gone\" takes a key away.");
  set->add_option("WORDS", a.words, "KIND WHICH KEY=VALUE...")->required();
  set->callback([&a] { a.command = kArgsSet; });
}

static void declare_scenario(CLI::App& app, args& a) {
  CLI::App* scenario = app.add_subcommand("scenario", "list, show and check scenarios");
  scenario->require_subcommand(1);
  CLI::App* list = scenario->add_subcommand("list", "the ones that ship");
  list->callback([&a] { a.command = kArgsScenarioList; });
  CLI::App* show = scenario->add_subcommand("show", "print one, or \"schema\"");
  show->add_option("NAME", a.which)->required();
  show->callback([&a] { a.command = kArgsScenarioShow; });
  CLI::App* check = scenario->add_subcommand("check", "say what is wrong with a file");
  check->add_option("FILE", a.which)->required();
  check->callback([&a] { a.command = kArgsScenarioCheck; });
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
  CLI::App app("A simulated gateway in a sandbox: radios, driver, portmapper.", "gwbox");
  app.require_subcommand(1);
  declare_run(app, a);
  app.add_option("--box", a.box,
                 "which box, from outside: its name, or the process id of its "
                 "gwbox run or of a process in it");
  declare_status(app, a);
  declare_set(app, a);
  declare_fail(app, a);
  declare_log(app, a);
  declare_scenario(app, a);
  int own = split_payload(argc, argv, a);
  try {
    app.parse(words_reversed(own, argv));
  } catch (const CLI::ParseError& error) {
    a.command = kArgsDone;
    a.status = app.exit(error) == 0 ? 0 : kExitUsage;
    return a;
  }
  if (!a.payload.empty() && a.command != kArgsRun) {
    report("only \"gwbox run\" takes a COMMAND after \"--\"");
    a.command = kArgsDone;
    a.status = kExitUsage;
  }
  return a;
}
