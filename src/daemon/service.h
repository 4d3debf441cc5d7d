#pragma once

// The service child.

// An unbound UDP socket, closed on exec; -1 with errno on failure.
[[nodiscard]] int make_service_socket();

// The service's socket, bound to the dotted IPv4 address and port 60001: `kept`, or a new
// one when that is -1. One that an earlier child has bound is used as it is. Exits with
// status 1 on failure.
int build_rpc_sockt(int kept, const char* address);

// Serves the program for the rest of the process's life. `kept` is the socket that the
// supervisor keeps for all its children, or -1. Exits with status 1 when socket or
// transport cannot be created: the supervisor tries again. Exits with status 0 when the
// registration fails or the service loop returns: the supervisor then exits too.
[[noreturn]] void run_service(int kept);
