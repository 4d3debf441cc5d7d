#include "rpc/dispatch.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "diag/trace.h"
#include "rpc/entry_trace.h"
#include "rpc/handlers.h"
#include "rpc/row_argument.h"

namespace {

struct procedure {
  uint32_t number;
  bool entry_traced;
  const char* name;
  size_t argument_size;
  xdrproc_t argument_decoder;
  xdrproc_t result_encoder;
  int (*stub)(void* argument, void* result, svc_req* request);
};

// One result area for both shapes of a result.
union result_area {
  wlan_config_return_code_e code;
  wlan_config_result_data_t record;
};

template <typename T>
constexpr size_t kSizeOf = sizeof(T);
template <>
constexpr size_t kSizeOf<void> = 0;

}  // namespace

// The stubs: each traces its entry, if its row says so, and passes the members of its
// argument, in order, to its handler.
template <typename Row, typename... Members>
static int serve(typename Row::handler& handler, void* result, svc_req* request,
                 Members... members) {
  if constexpr (Row::kFacts.entry.form != entry_form::kNone) {
    const int go_on = trace_entry(Row::kFacts.entry, Row::kStub, members...);
    if (go_on <= 0) return go_on;
  }
  return handler(members..., static_cast<typename Row::result*>(result), request);
}

#define NOTHING
#define SHARED(stem)
#define INDEX(name) , in->name
#define FIELD(type, name) , in->name
#define ONLY_INDEX(name) , *in
#define ONLY(type, name) , *in
#define PROCEDURE(number, name, stem, topic, members, ...)                 \
  static int _##stem##_1(void* argument, void* result, svc_req* request) { \
    using type = ARGUMENT(stem, FIRST_##members);                          \
    [[maybe_unused]] const type* in = static_cast<const type*>(argument);  \
    return serve<row_##stem>(stem##_1_svc, result, request members);       \
  }
#include "rpc/procedures.def"

// XDR filters have different signatures: cast through a neutral function type.
#define FILTER(filter) reinterpret_cast<xdrproc_t>(reinterpret_cast<void (*)()>(filter))
#define ARGUMENT_FILTER(type) ARGUMENT_FILTER_(type)
#define ARGUMENT_FILTER_(type) FILTER(xdr_##type)

template <typename Result>
static const xdrproc_t kEncoder = FILTER(xdr_wlan_config_result_data_t);
template <>
const xdrproc_t kEncoder<wlan_config_return_code_e> = FILTER(xdr_wlan_config_return_code_e);

static const procedure kProcedures[] = {
#define PROCEDURE(number, name, stem, topic, members, ...) \
  {number,                                                 \
   row_##stem::kFacts.entry.form != entry_form::kNone,     \
   #name,                                                  \
   kSizeOf<ARGUMENT(stem, FIRST_##members)>,               \
   ARGUMENT_FILTER(ARGUMENT(stem, FIRST_##members)),       \
   kEncoder<row_##stem::result>,                           \
   _##stem##_1},
#include "rpc/procedures.def"
};

constexpr size_t kArgumentMax = std::max({
#define PROCEDURE(number, name, stem, topic, members, ...) kSizeOf<ARGUMENT(stem, FIRST_##members)>,
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

static void answer(const procedure& row, void* argument, svc_req* request, SVCXPRT* transport) {
  result_area result;
  memset(&result, 0, sizeof result);
  const int send_reply = row.stub(argument, &result, request);
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
  if (row->entry_traced) RPC_TRACE("DEBUG >>>>>>>>>>>>>>>>>>>>>>>>> case %s \n", row->name);
  alignas(std::max_align_t) char argument[kArgumentMax];
  memset(argument, 0, row->argument_size);
  if (!svc_getargs(transport, row->argument_decoder, argument)) {
    svcerr_decode(transport);
    // Frees what was decoded before the failing member.
    xdr_free(row->argument_decoder, argument);
    return;
  }
  answer(*row, argument, request, transport);
}
