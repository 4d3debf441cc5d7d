// The command line, read once into a plain record.
#pragma once

#include <string>
#include <vector>

enum args_command { ARGS_RUN, ARGS_FAIL, ARGS_LOG, ARGS_DONE };

struct args {
  args_command command;
  int status;  // with ARGS_DONE: the exit status (help printed: 0, usage error reported: 2)

  // run
  std::string board;
  std::string log_file;  // empty: none
  bool portmap;
  std::vector<std::string> payload;  // empty: an interactive shell

  // fail
  std::string what;
  std::string how;  // empty with "fail clear"
  int count;

  // log
  bool follow;
  bool json;
};

// Reads the command line. Help and usage errors are printed here and leave ARGS_DONE.
args args_read(int argc, char** argv);
