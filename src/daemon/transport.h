#pragma once

#include "rpc/column_types.h"

// Limits a UDP transport's decoding to the current datagram. The library's transport
// decodes from its whole receive buffer, and would complete a truncated request with
// bytes of an earlier caller's. With this in place such arguments do not decode, and a
// request that ends within its RPC header is dropped.
//
// A credential other than AUTH_NONE and AUTH_SYS is answered "rejected credential" before
// the library's authentication sees it.
//
// Once per process, for a new transport made by svcudp_create. Exits with a message when
// transport_is_known is false.
void bound_transport(SVCXPRT* transport);

// Whether the transport's private record is laid out as this code expects.
[[nodiscard]] bool transport_is_known(const SVCXPRT* transport);
