/* The filters that rpcgen makes from wlan_config.x, of the daemon and of every other
 * program of ours: the same, and with our own filter for texts. */
#include "rpc/text_filter.h"

#define xdr_string wlan_xdr_string
#include "rpc/wlan_config_xdr.c"
