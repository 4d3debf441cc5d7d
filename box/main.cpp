#include "args.h"
#include "control.h"
#include "log.h"
#include "run.h"
#include "scenario.h"
#include "status.h"

int main(int argc, char** argv) {
  args a = args_read(argc, argv);
  switch (a.command) {
    case ARGS_RUN:
      return run_box(a);
    case ARGS_FAIL:
      return control_fail(a.box, a.what, a.how, a.count);
    case ARGS_SET:
      return control_set(a.box, a.words);
    case ARGS_STATUS:
      return status_print(a.box, a.json);
    case ARGS_LOG:
      return log_print(a.box, a.follow, a.json);
    case ARGS_SCENARIO_LIST:
      return scenario_print_list();
    case ARGS_SCENARIO_SHOW:
      return scenario_print(a.which);
    case ARGS_SCENARIO_CHECK:
      return scenario_print_check(a.which);
    case ARGS_DONE:
      return a.status;
  }
  return 0;
}
