#pragma once

#include "rpc/column_types.h"

constexpr unsigned long kProgram = 0x20131337;
constexpr unsigned long kVersion = 1;

// The service routine: answers one request for any procedure number. Three failures stay
// distinct: an undecodable argument is answered "garbage arguments", a reply that cannot
// be sent "system error", and the back end's status is part of the reply. A number that
// is not in the table is answered "procedure unavailable".
void wlan_config_rpc_prog_1(svc_req* request, SVCXPRT* transport);

// Frees what a handler packed. Returns 1.
int wlan_config_rpc_prog_1_freeresult(SVCXPRT* transport, xdrproc_t result_encoder, void* result);
