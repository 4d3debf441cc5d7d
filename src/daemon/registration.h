#pragma once

#include "rpc/column_types.h"

// Registers the program with the transport and, over UDP, with the portmapper. Another
// user's registration is replaced, in at most 100 tries over one second.
[[nodiscard]] bool register_service(SVCXPRT* transport);

void unregister_service();
