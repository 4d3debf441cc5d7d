#pragma once

#include <rpc/rpc.h>

/* C: rpcgen's filters call this instead of xdr_string, see wire_filters.c.
 * It refuses a text with an embedded NUL, which its readers would see truncated. */
#ifdef __cplusplus
extern "C"
#endif
    bool_t
    wlan_xdr_string(XDR* stream, char** text, u_int max_length);
