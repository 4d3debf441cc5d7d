#include "rpc/text_filter.h"

#include <cstring>

#include "diag/trace.h"
#include "rpc/column_types.h"

bool_t wlan_xdr_string(XDR* stream, char** text, u_int max_length) {
  if (stream->x_op != XDR_DECODE) return xdr_string(stream, text, max_length);
  u_int length = 0;
  const u_int start = xdr_getpos(stream);
  if (!xdr_u_int(stream, &length) || !xdr_setpos(stream, start)) return FALSE;
  // Refuse it before allocating: no request can hold that much.
  if (length > max_length || length > UDPMSGSIZE) return FALSE;
  if (!xdr_string(stream, text, max_length)) return FALSE;
  if (strlen(*text) == length) return TRUE;
  RPC_ERROR("text argument refused: NUL inside\n");
  return FALSE;
}

bool_t xdr_string_t(XDR* stream, string_t* text) {
  return wlan_xdr_string(stream, text, ~0U);
}
