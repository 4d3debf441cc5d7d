// `gwbox run`, the process outside. It starts the box in new namespaces, passes on signals and job
// control, and waits for the box to end.
#pragma once

#include "commands/line.h"

// Returns the exit status: COMMAND's, 128+N if signal N ended it, 125 if there is no box, 2 if the
// scenario, the board or the name is wrong.
int run_box(const args& a);
