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
// One transport per process, made by svcudp_create and not used yet. Ends the process,
// with a message, where transport_is_known is false.
void bound_transport(SVCXPRT* transport);

// Whether such a transport is laid out as this file's code takes it to be, which needs
// an inner part of the library.
[[nodiscard]] bool transport_is_known(const SVCXPRT* transport);
