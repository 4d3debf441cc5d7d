// Calls one procedure, by name or by number.
#pragma once

#include "commands/session.h"

// Words: PROCEDURE ARGUMENT... Shows the result as text, as JSON or, with --raw, as bytes.
exit_status procedure_by_name(const output_streams& streams, const client_options& options);

// Words: NUMBER. Calls without arguments and shows the result as bytes.
exit_status procedure_by_number(const output_streams& streams, const client_options& options);
