#pragma once

// The service child.

// A UDP socket bound to the dotted IPv4 address, port 60001, closed in the
// children of this process. Ends the process with status 1 when it cannot be
// had.
int build_rpc_sockt(const char* address);

// Serves the program for the rest of the process's life. Ends the process with
// status 1 when socket or transport cannot be had: the supervisor tries again;
// and with status 0 when the registration fails or the service loop returns:
// the supervisor gives up too.
[[noreturn]] void run_service();

// Removes the program from the portmapper.
void unregister_service();
