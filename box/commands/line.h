// The command line, read once into a plain record.
#pragma once

#include <string>
#include <vector>

enum args_command {
  kArgsRun,
  kArgsStatus,
  kArgsSet,
  kArgsFail,
  kArgsAdvance,
  kArgsPause,
  kArgsResume,
  kArgsLog,
  kArgsWait,
  kArgsPlan,
  kArgsRehearse,  // of plan, inside its box
  kArgsScenarioList,
  kArgsScenarioShow,
  kArgsScenarioCheck,
  kArgsCompletion,
  kArgsComplete,
  kArgsDone
};

struct args {
  args_command command;
  int status;  // with kArgsDone: the exit status (help printed: 0, usage error reported: 2)

  // all but run, scenario and completion
  std::string box;  // name or process id; empty: the box that gwbox runs in

  // run
  std::string board;     // empty: as the scenario says, else kBoardDefault
  std::string scenario;  // name or file
  double speed;          // below 0: as the scenario says
  std::string name;      // empty: none
  std::string log_file;  // empty: none
  bool portmap;
  bool companions;
  bool cold;
  std::vector<std::string> payload;  // empty: an interactive shell; complete: words of the line

  // plan and what it starts in its box
  std::string profile_24, profile_5;  // files, or descriptors
  std::string html;                   // file for the page; empty: none
  std::string form;
  bool allow_outage;

  // set, wait: all its words; scenario show and check: which one
  std::vector<std::string> words;
  std::string which;

  // fail: empty if not given
  std::string what;
  std::string how;
  std::string count;

  std::string seconds;  // advance
  int timeout;          // wait: seconds
  std::string shell;    // completion

  // log, status, fail list
  bool follow;
  bool json;
};

// Offers for the last of WORDS, which are those after "gwbox"; see complete.h.
std::vector<std::string> args_offers(const std::vector<std::string>& words);

// Reads the command line. Help and usage errors are printed here and result in kArgsDone.
args args_read(int argc, char** argv);
