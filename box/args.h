// The command line, read once into a plain record.
#pragma once

#include <string>
#include <vector>

enum args_command {
  kArgsRun,
  kArgsStatus,
  kArgsSet,
  kArgsFail,
  kArgsLog,
  kArgsScenarioList,
  kArgsScenarioShow,
  kArgsScenarioCheck,
  kArgsDone
};

struct args {
  args_command command;
  int status;  // with kArgsDone: the exit status (help printed: 0, usage error reported: 2)

  // all but run and scenario
  std::string box;  // name or process id; empty: the one around

  // run
  std::string board;     // empty: as the scenario says, else kBoardDefault
  std::string scenario;  // name or file
  double speed;          // below 0: as the scenario says
  std::string name;      // empty: none
  std::string log_file;  // empty: none
  bool portmap;
  bool companions;
  bool cold;
  std::vector<std::string> payload;  // empty: an interactive shell

  // set: the words as they are; scenario show and check: which one
  std::vector<std::string> words;
  std::string which;

  // fail
  std::string what;
  std::string how;  // empty with "fail clear"
  int count;

  // log, status
  bool follow;
  bool json;
};

// Reads the command line. Help and usage errors are printed here and leave kArgsDone.
args args_read(int argc, char** argv);
