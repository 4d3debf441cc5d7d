#include <stdio.h>

#include "args.h"
#include "control.h"
#include "log.h"
#include "report.h"
#include "run.h"
#include "scenario.h"
#include "status.h"

static int act(const args& a) {
  switch (a.command) {
    case kArgsRun:
      return run_box(a);
    case kArgsFail:
      return control_fail(a.box, a.what, a.how, a.count);
    case kArgsSet:
      return control_set(a.box, a.words);
    case kArgsStatus:
      return status_print(a.box, a.json);
    case kArgsLog:
      return log_print(a.box, a.follow, a.json);
    case kArgsScenarioList:
      return scenario_print_list();
    case kArgsScenarioShow:
      return scenario_print(a.which);
    case kArgsScenarioCheck:
      return scenario_print_check(a.which);
    case kArgsDone:
      return a.status;
  }
  return 0;
}

// What was printed is worth nothing when it could not be written.
static int flush_output(int status) {
  bool lost = ferror(stdout) != 0;
  if (fflush(stdout) != 0 || lost) {
    report_errno(nullptr, "write the output");
    return status == 0 ? kExitFailed : status;
  }
  return status;
}

int main(int argc, char** argv) {
  args a = args_read(argc, argv);
  int status = act(a);
  return a.command == kArgsRun ? status : flush_output(status);
}
