#include "args.h"
#include "control.h"
#include "log.h"
#include "run.h"
#include "scenario.h"
#include "status.h"

int main(int argc, char** argv) {
  args a = args_read(argc, argv);
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
