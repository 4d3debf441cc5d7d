#pragma once

// Forks a service child and a new one, at once and without end, whenever it is
// ended by a signal or exits non-zero. All of them serve on one socket, which
// this process keeps. Ends the process with status 0 when the child exits 0, and
// with 1 when there is no child to wait for. SIGTERM or SIGINT ends the child,
// removes the registration and ends with 0.
[[noreturn]] void supervise();
