// "wificonf dump": what the gateway tells of itself, in one JSON object.
#pragma once

#include "commands/session.h"

// Words: dump [--redact]. Calls every getter that reads without side effects,
// for each radio, BSS and row. --redact keeps what the layouts say to be free,
// gives addresses and names others, the same wherever they are, and counts in "left_out"
// the values of which nothing says what they hold.
exit_status run_dump(const output_streams& streams, const client_options& options);

// Whether a dump calls the procedure.
bool dump_is_safe(const procedure_row& procedure);
