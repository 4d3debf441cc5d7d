// `gwbox run`: the process outside. Starts the box in namespaces of its own, waits for its end,
// passes signals and job control on.
#pragma once

#include "control/command_line.h"

// Returns the exit status: COMMAND's, 128+N for its signal N, 125 when there is no box.
int run_box(const args& a);
