#pragma once

#include "rpc/column_types.h"

// Bounds a UDP transport's decoding to the datagram at hand. By itself the
// transport decodes from its whole receive buffer, so that a request that is
// cut off would be completed with bytes of an earlier caller's request. With
// this in place such arguments do not decode, and a request that ends within
// its RPC header is dropped.
//
// A credential other than AUTH_NONE and AUTH_SYS is answered "rejected credential"
// before the library's authentication sees it.
//
// One transport per process.
void bound_transport(SVCXPRT* transport);
