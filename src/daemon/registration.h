#pragma once

#include "rpc/column_types.h"

// The program's registration with the portmapper.

// Has the transport serve the program, and registers the program's version over UDP
// with the portmapper. Another user's registration is replaced: at most 100 tries, for
// one second.
[[nodiscard]] bool register_service(SVCXPRT* transport);

// Removes the program from the portmapper.
void unregister_service();
