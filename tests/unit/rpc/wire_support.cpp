#include "rpc/wire_support.h"

#include "rpc/dispatch.h"

std::string word(unsigned value) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8) {
    bytes += static_cast<char>(value >> shift);
  }
  return bytes;
}

std::string text_item(const std::string& text) {
  return word(static_cast<unsigned>(text.size())) + text +
         std::string((4 - text.size() % 4) % 4, '\0');
}

std::string zeros(unsigned words) {
  return std::string(words * 4, '\0');
}

static fake_call* call_of(SVCXPRT* transport) {
  return static_cast<fake_call*>(transport->xp_p1);
}

static bool_t get_arguments(SVCXPRT* transport, xdrproc_t decoder, void* area) {
  fake_call* call = call_of(transport);
  ++call->decodes;
  call->area_before.assign(static_cast<char*>(area), call->area_size);
  call->before_decoding();
  if (call->decodes_nothing) return TRUE;
  XDR stream;
  xdrmem_create(&stream, call->argument.data(), static_cast<u_int>(call->argument.size()),
                XDR_DECODE);
  const bool_t done = decoder(&stream, area, 0);
  call->left_over = call->argument.size() - xdr_getpos(&stream);
  return done;
}

static bool_t send_reply(SVCXPRT* transport, rpc_msg* message) {
  fake_call* call = call_of(transport);
  fake_call::reply reply = {message->acpted_rply.ar_stat, ""};
  bool_t encoded = TRUE;
  if (reply.status == SUCCESS) {
    reply.body.resize(131072);
    XDR stream;
    xdrmem_create(&stream, reply.body.data(), static_cast<u_int>(reply.body.size()), XDR_ENCODE);
    encoded =
        message->acpted_rply.ar_results.proc(&stream, message->acpted_rply.ar_results.where, 0);
    reply.body.resize(xdr_getpos(&stream));
  }
  call->replies.push_back(reply);
  return encoded && static_cast<int>(call->replies.size()) > call->failing_replies;
}

static bool_t free_arguments(SVCXPRT* transport, xdrproc_t decoder, void* area) {
  fake_call* call = call_of(transport);
  ++call->releases;
  xdr_free(decoder, area);
  return !call->failing_release;
}

void dispatch(uint32_t procedure, fake_call* call) {
  struct SVCXPRT::xp_ops operations = {};
  operations.xp_getargs = get_arguments;
  operations.xp_reply = send_reply;
  operations.xp_freeargs = free_arguments;
  SVCXPRT transport = {};
  transport.xp_ops = &operations;
  transport.xp_p1 = call;
  svc_req request = {};
  request.rq_prog = kProgram;
  request.rq_vers = kVersion;
  request.rq_proc = procedure;
  request.rq_xprt = &transport;
  wlan_config_rpc_prog_1(&request, &transport);
}

std::string answer_to(uint32_t procedure, const std::string& argument) {
  fake_call call;
  call.argument = argument;
  dispatch(procedure, &call);
  if (call.replies.empty()) return "(no reply)";
  if (call.replies.size() > 1) return "(" + std::to_string(call.replies.size()) + " replies)";
  if (call.replies[0].status == SUCCESS) return call.replies[0].body;
  return "(status " + std::to_string(call.replies[0].status) + ")";
}
