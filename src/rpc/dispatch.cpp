#include "rpc/dispatch.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "diag/trace.h"
#include "rpc/handlers.h"
#include "rpc/stub_traces.h"

namespace {

struct procedure {
  uint32_t number;
  const char* name;
  size_t argument_size;
  xdrproc_t argument_decoder;
  xdrproc_t result_encoder;
  int (*stub)(void* argument, void* result, svc_req* request);
  const char* stub_name;
};

// One result area for the two shapes of a result.
union result_area {
  wlan_config_return_code_e code;
  wlan_config_result_data_t record;
};

template <typename T>
constexpr size_t kSizeOf = sizeof(T);
template <>
constexpr size_t kSizeOf<void> = 0;

}  // namespace

// The stubs: each hands the members of its argument, in order, to its handler.
#define INDEX(name) in->name,
#define FIELD(type, name) in->name,
#define ONLY_INDEX(name) *in,
#define ONLY(type, name) *in,
#define PROCEDURE(number, name, stub, argument, members, payload, size, handler, back_end, \
                  summary)                                                                 \
  static int _##stub(void* argument_area, void* result, svc_req* request) {                \
    [[maybe_unused]] argument* in = static_cast<argument*>(argument_area);                 \
    return handler(members static_cast<result_##payload*>(result), request);               \
  }
#include "rpc/procedures.def"

// By way of a type that any function pointer converts to: XDR filters have
// signatures of their own.
#define FILTER(filter) reinterpret_cast<xdrproc_t>(reinterpret_cast<void (*)()>(filter))

static const xdrproc_t kEncodeCode = FILTER(xdr_wlan_config_return_code_e);
static const xdrproc_t kEncodeRecord = FILTER(xdr_wlan_config_result_data_t);
#define ENCODER_CODE kEncodeCode
#define ENCODER_INT kEncodeRecord
#define ENCODER_TEXT kEncodeRecord
#define ENCODER_WORDS kEncodeRecord
#define ENCODER_IMAGE kEncodeRecord
#define ENCODER_NONE kEncodeRecord

#define ROW(number, name, argument, payload, stub, stub_name) \
  {number, name, kSizeOf<argument>, FILTER(xdr_##argument), ENCODER_##payload, stub, stub_name},
static const procedure kProcedures[] = {
#define PROCEDURE(number, name, stub, argument, members, payload, ...) \
  ROW(number, #name, argument, payload, _##stub, "_" #stub)
#include "rpc/procedures.def"
};

constexpr size_t kArgumentMax = std::max({
#define PROCEDURE(number, name, stub, argument, ...) kSizeOf<argument>,
#include "rpc/procedures.def"
});

static const procedure* find_procedure(uint32_t number) {
  const procedure* end = std::end(kProcedures);
  const procedure* found = std::lower_bound(
      kProcedures, end, number, [](const procedure& row, uint32_t n) { return row.number < n; });
  const bool usable = found != end && found->number == number;
  return usable ? found : nullptr;
}

int wlan_config_rpc_prog_1_freeresult(SVCXPRT*, xdrproc_t result_encoder, void* result) {
  xdr_free(result_encoder, result);
  return 1;
}

static void answer(const procedure& row, const stub_trace* trace, void* argument, svc_req* request,
                   SVCXPRT* transport) {
  result_area result;
  memset(&result, 0, sizeof result);
  int send_reply = trace != nullptr ? trace_stub(*trace, row.stub_name, argument) : 1;
  if (send_reply > 0) send_reply = row.stub(argument, &result, request);
  if (send_reply > 0 && !svc_sendreply(transport, row.result_encoder, &result)) {
    svcerr_systemerr(transport);
  }
  if (!svc_freeargs(transport, row.argument_decoder, argument)) {
    fputs("unable to free arguments", stderr);
    exit(1);
  }
  if (wlan_config_rpc_prog_1_freeresult(transport, row.result_encoder, &result) == 0) {
    fputs("unable to free results", stderr);
  }
}

void wlan_config_rpc_prog_1(svc_req* request, SVCXPRT* transport) {
  if (request->rq_proc == NULLPROC) {
    svc_sendreply(transport, FILTER(xdr_void), nullptr);
    return;
  }
  const procedure* row = find_procedure(request->rq_proc);
  if (row == nullptr) {
    svcerr_noproc(transport);
    return;
  }
  const stub_trace* trace = find_stub_trace(row->number);
  if (trace != nullptr) {
    RPC_TRACE("DEBUG >>>>>>>>>>>>>>>>>>>>>>>>> case %s \n", row->name);
  }
  alignas(std::max_align_t) char argument[kArgumentMax];
  memset(argument, 0, row->argument_size);
  if (!svc_getargs(transport, row->argument_decoder, argument)) {
    svcerr_decode(transport);
    // What was decoded before the failing member.
    xdr_free(row->argument_decoder, argument);
    return;
  }
  answer(*row, trace, argument, request, transport);
}
