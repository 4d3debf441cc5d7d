#include "support/check.h"
#include "support/outside.h"
#include "support/service_calls.h"

// The whole dispatcher, from a datagram's bytes to its reply, with the outside
// simulated. A call record is a procedure number of four bytes, the low one
// first, and its arguments in XDR.

// In one run. The worker runs at most once between the calls, and once after them.
static constexpr unsigned kMostCalls = 8;

static unsigned calls;
static bool worked;

static void run_worker(bool last) {
  if (worked && !last) return;
  worked = true;
  outside_before_call();
  outside_run_worker(last);
  outside_after_call();
}

static void run_record(const record& what) {
  std::string_view bytes = what.bytes;
  const bool acts = what.type == record_type::kCall || what.type == record_type::kDatagram ||
                    what.type == record_type::kWorker;
  if (!acts) {
    outside_apply(what);
    return;
  }
  if (++calls > kMostCalls) return;
  if (what.type == record_type::kCall) {
    const uint32_t procedure = take_u32(&bytes);
    serve_call(procedure, bytes);
  } else if (what.type == record_type::kDatagram) {
    serve_datagram(bytes);
  } else {
    run_worker(false);
  }
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  start_service();
  outside world;
  outside_begin(&world);
  std::string_view rest(reinterpret_cast<const char*>(data), size);
  record what;
  calls = 0;
  worked = false;
  while (next_record(&rest, &what))
    run_record(what);
  run_worker(true);
  outside_end();
  return 0;
}
