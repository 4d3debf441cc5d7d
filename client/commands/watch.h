// "wificonf watch": one call again and again.
#pragma once

#include "commands/session.h"

// Words: watch PROCEDURE ARGUMENT... [--every TIME] [--count N]. A terminal is
// redrawn with what fits it; elsewhere every answer gives lines that begin with the time. A call
// that fails is told and made again at its time. Returns after N calls, or
// never.
exit_status run_watch(const output_streams& streams, const client_options& options);
