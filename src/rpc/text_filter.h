#pragma once

#include <rpc/rpc.h>

/* C: the filters that rpcgen makes call this in place of xdr_string, see wire_filters.c.
 * It refuses a text with a NUL inside, which whoever reads it would see cut short. */
#ifdef __cplusplus
extern "C"
#endif
    bool_t
    wlan_xdr_string(XDR* stream, char** text, u_int max_length);
