#pragma once

// The service child.

// A UDP socket that is not bound yet, closed in what this process starts; -1 with
// errno when there is none.
[[nodiscard]] int make_service_socket();

// The service's socket, bound to the dotted IPv4 address, port 60001: `kept`, or
// where that is -1 a new one. One that an earlier child has bound stays as it is.
// Ends the process with status 1 when the socket cannot be had.
int build_rpc_sockt(int kept, const char* address);

// Serves the program for the rest of the process's life. `kept` is the socket that
// the supervisor keeps for all of its children, or -1. Ends the process with
// status 1 when socket or transport cannot be had: the supervisor tries again;
// and with status 0 when the registration fails or the service loop returns:
// the supervisor gives up too.
[[noreturn]] void run_service(int kept);
