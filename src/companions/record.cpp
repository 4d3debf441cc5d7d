#include "companions/record.h"

#include "diag/trace.h"
#include "sys/command.h"
#include "sys/process.h"

bool left_running(companion* process) {
  const bool left = !process->asked && process_runs(process->name);
  process->asked = true;
  if (left) trace_rpc(process->control, "%s runs already\n", process->name);
  return left;
}

static void run_for(const companion& process, const char* command) {
  if (process.quiet) {
    cfg_executecmd(process.control, command);
  } else {
    run_command(command);
  }
}

static void switch_locked(companion* process, int mode, bool wanted) {
  if (mode != 0 && !process->running && wanted) {
    process->running = true;
    if (left_running(process)) return;
    trace_rpc(process->control, "Sart %s\n", process->name);
    run_for(*process, process->start);
  } else if (mode == 0 && process->running) {
    trace_rpc(process->control, "Stop %s\n", process->name);
    run_for(*process, process->stop);
    process->running = false;
  }
}

void switch_companion(companion* process, int mode, bool wanted) {
  pthread_mutex_lock(&process->lock);
  switch_locked(process, mode, wanted);
  pthread_mutex_unlock(&process->lock);
}
