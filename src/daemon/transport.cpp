#include "daemon/transport.h"

#include <rpc/svc_dg.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <type_traits>

// The transport's own operations, and a copy with two of them replaced. RPC thread only,
// like the length below.
static const struct SVCXPRT::xp_ops* original;
static struct SVCXPRT::xp_ops bounded;

static u_int datagram_length;

// xid, direction, RPC version, program, version, procedure, two empty
// credentials of two words each.
static constexpr u_int kSmallestCall = 10 * BYTES_PER_XDR_UNIT;

// The record is private to the library, though its header is installed. The library at
// run time may be newer than the header, so transport_is_known compares.
static_assert(std::is_same_v<decltype(svc_dg_data::su_xdrs), XDR>);
static_assert(std::is_same_v<decltype(XDR::x_handy), u_int>);
static_assert(offsetof(svc_dg_data, su_verfbody) == offsetof(svc_dg_data, su_xdrs) + sizeof(XDR));

bool transport_is_known(const SVCXPRT* transport) {
  const auto* data = static_cast<const svc_dg_data*>(transport->xp_p2);
  // The verifier follows the stream. If it is elsewhere, nothing of the record is read:
  // it might be shorter.
  if (data == nullptr || transport->xp_verf.oa_base != data->su_verfbody) return false;
  const XDR& stream = data->su_xdrs;
  return stream.x_op == XDR_DECODE && stream.x_private == transport->xp_p1 &&
         stream.x_base == transport->xp_p1 && stream.x_handy == data->su_iosz;
}

static XDR* stream_of(SVCXPRT* transport) {
  return &static_cast<svc_dg_data*>(transport->xp_p2)->su_xdrs;
}

// The library's other flavors keep memory for each caller or contact key servers.
static bool serves_flavor(enum_t flavor) {
  return flavor == AUTH_NONE || flavor == AUTH_SYS;
}

static bool_t receive(SVCXPRT* transport, rpc_msg* message) {
  // The length of the first datagram in the queue, which the original operation will
  // read: this process is the only reader.
  int length = 0;
  if (ioctl(transport->xp_fd, FIONREAD, &length) != 0) length = 0;
  datagram_length = static_cast<u_int>(length);
  if (datagram_length < kSmallestCall) {
    char dropped;
    recv(transport->xp_fd, &dropped, sizeof dropped, MSG_DONTWAIT);
    return FALSE;
  }
  if (!original->xp_recv(transport, message)) return FALSE;
  if (xdr_getpos(stream_of(transport)) > datagram_length) return FALSE;
  if (serves_flavor(message->rm_call.cb_cred.oa_flavor)) return TRUE;
  svcerr_auth(transport, AUTH_REJECTEDCRED);
  return FALSE;
}

static bool_t get_arguments(SVCXPRT* transport, xdrproc_t decoder, void* arguments) {
  XDR* stream = stream_of(transport);
  const u_int buffered = stream->x_handy;
  const u_int rest = datagram_length - xdr_getpos(stream);
  if (rest < stream->x_handy) stream->x_handy = rest;
  const u_int hidden = buffered - stream->x_handy;
  const bool_t decoded = original->xp_getargs(transport, decoder, arguments);
  // The reply is written through the same stream and needs the whole buffer.
  stream->x_handy += hidden;
  return decoded;
}

void bound_transport(SVCXPRT* transport) {
  if (!transport_is_known(transport)) {
    fputs(
        "the RPC library keeps its transport in another way than wificonfd was built for: build "
        "wificonfd against the library that is installed.\n",
        stderr);
    // With status 0 the supervisor makes no new child, which would fail the same way.
    exit(0);
  }
  original = transport->xp_ops;
  bounded = *original;
  bounded.xp_recv = receive;
  bounded.xp_getargs = get_arguments;
  transport->xp_ops = &bounded;
}
