// "wificonf top": the stations of all BSSs, the busiest first.
#pragma once

#include "commands/session.h"

// Words: top [--every TIME] [--count N]. A terminal is redrawn until q is
// pressed; elsewhere a table is printed N times, once without --count.
exit_status run_top(const output_streams& streams, const client_options& options);
