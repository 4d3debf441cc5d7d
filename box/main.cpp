#include "args.h"
#include "control.h"
#include "log.h"
#include "run.h"

int main(int argc, char** argv) {
  args a = args_read(argc, argv);
  switch (a.command) {
    case ARGS_RUN:
      return run_box(a);
    case ARGS_FAIL:
      return control_fail(a.what, a.how, a.count);
    case ARGS_LOG:
      return log_print(a.follow, a.json);
    case ARGS_DONE:
      return a.status;
  }
  return 0;
}
