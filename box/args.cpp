// The only file that sees CLI11, which needs exceptions; none leaves it.
#include "args.h"

#include <CLI/CLI.hpp>

#include "board.h"
#include "report.h"

static void declare_run(CLI::App& app, args& a) {
  CLI::App* run = app.add_subcommand("run", "start a box and run COMMAND, or a shell, in it");
  run->footer("gwbox run [OPTIONS] -- COMMAND [ARG...]\nWithout a COMMAND: an interactive shell.");
  run->add_option("--board", a.board, "the board: " + board_names())->capture_default_str();
  run->add_option("--log", a.log_file, "append the request journal to this file as well");
  run->add_flag_callback(
      "--no-portmap", [&a] { a.portmap = false; }, "start no portmapper");
  run->callback([&a] { a.command = ARGS_RUN; });
}

static void declare_fail(CLI::App& app, args& a) {
  CLI::App* fail = app.add_subcommand("fail", "inside a box: make matching requests fail");
  fail->footer("\"gwbox fail clear\" ends all failures.");
  fail->add_option("WHAT", a.what, "request[:sub][@interface], such as 0x8BE1:0x069B@ra8")
      ->required();
  fail->add_option("HOW", a.how, "an errno name, such as EAGAIN, or delay=MILLISECONDS");
  fail->add_option("COUNT", a.count, "how many requests")->check(CLI::Range(1, 1000000000));
  fail->callback([&a] { a.command = ARGS_FAIL; });
}

static void declare_log(CLI::App& app, args& a) {
  CLI::App* log = app.add_subcommand("log", "inside a box: print the request journal");
  log->add_flag("--follow", a.follow, "go on printing as requests come");
  log->add_flag("--json", a.json, "print the JSON lines as they are");
  log->callback([&a] { a.command = ARGS_LOG; });
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

args args_read(int argc, char** argv) {
  args a = {};
  a.command = ARGS_DONE;
  a.board = BOARD_DEFAULT;
  a.portmap = true;
  a.count = 1;
  CLI::App app("A simulated gateway in a sandbox: radios, driver, portmapper.", "gwbox");
  app.require_subcommand(1);
  declare_run(app, a);
  declare_fail(app, a);
  declare_log(app, a);
  int own = split_payload(argc, argv, a);
  try {
    app.parse(own, argv);
  } catch (const CLI::ParseError& error) {
    a.command = ARGS_DONE;
    a.status = app.exit(error) == 0 ? 0 : EXIT_USAGE;
    return a;
  }
  if (!a.payload.empty() && a.command != ARGS_RUN) {
    report("only \"gwbox run\" takes a COMMAND after \"--\"");
    a.command = ARGS_DONE;
    a.status = EXIT_USAGE;
  }
  return a;
}
