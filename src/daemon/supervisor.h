#pragma once

// Forks a service child, and another at once, without limit, whenever one is killed by a
// signal or exits non-zero. All serve on one socket, which this process keeps. Exits with
// status 0 when the child exits 0, and with 1 when there is no child to wait for. SIGTERM
// or SIGINT ends the child, removes the registration and exits with 0.
[[noreturn]] void supervise();
