#pragma once

// Checks before the service starts.

// False only when the process list could be read and shows no portmapper.
[[nodiscard]] bool portmapper_running();

// 1 when this process may run; 0 when another one holds the instance lock or the lock
// file cannot be opened. The lock is released before the function returns, so it catches
// only a process that holds it at that very moment: kept on purpose.
[[nodiscard]] int check_instance();
