// `gwbox plan`, outside: starts a box in which gwbox rehearses the command.
#pragma once

#include "commands/line.h"

// Returns the exit status: that of rehearse, or as run_box.
int plan_run(args a);

// In the box; only plan_run starts it.
int plan_rehearse(const args& a);
