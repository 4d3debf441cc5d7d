#pragma once

// Tests before the service starts.

// Whether a portmapper runs, as far as the process list tells: false only when
// the probe answered and found none.
[[nodiscard]] bool portmapper_running();

// 1 when this process may run, 0 when another one holds the instance lock or
// the lock file cannot be opened. The lock is given up again before the
// function returns, so it catches only a process that holds it at this very
// moment: kept on purpose.
[[nodiscard]] int check_instance();
