// Requests by their numbers, and what all of them share.
#include "driver/model.h"

#include <cerrno>

#include "driver/layout.h"
#include "driver/parts.h"

// One entry of the list of private requests, in the layout that tools expect.
struct private_entry {
  uint32_t request;
  uint16_t set_arguments;  // type << 12 | fixed << 11 | count
  uint16_t get_arguments;
  char name[16];
};
static_assert(sizeof(private_entry) == 24);

static constexpr uint16_t kArgumentText = 0x2000;

static constexpr private_entry kPrivateEntries[] = {
    {kRequestSetText, kArgumentText | kDriverTextMax, 0, "set"},
    {kRequestE2p, kArgumentText | kDriverTextMax, kArgumentText | kDriverTextMax, "e2p"},
};

// All or nothing: a caller with too little room learns how much it needs.
static int query_private(driver_state&, driver_request& r) {
  constexpr uint16_t kCount = sizeof kPrivateEntries / sizeof *kPrivateEntries;
  r.has_answer_length = true;
  r.answer_length = kCount;
  if (r.length < kCount) return -E2BIG;
  r.output.assign(reinterpret_cast<const char*>(kPrivateEntries), sizeof kPrivateEntries);
  return 0;
}

struct request_row {
  uint32_t request;
  bool carries_input;  // whatever the flags are
  bool needs_radio;    // ENETDOWN while the radio is down
  int (*handle)(driver_state&, driver_request&);
};

static constexpr request_row kRequests[] = {
    {0x8B01, false, false, driver_query_name},
    {0x8B05, false, true, driver_query_frequency},
    {0x8B07, false, false, driver_query_mode},
    {0x8B0B, false, false, driver_query_range},
    {kRequestGetPriv, false, false, query_private},
    {0x8B15, false, true, driver_query_address},
    {0x8B1B, false, true, driver_query_essid},
    {0x8B21, false, true, driver_query_rate},
    {kRequestObject, false, false, driver_do_object},
    {kRequestSetText, true, false, driver_do_text},
    {kRequestE2p, true, false, driver_do_e2p},
    {kRequestStations, false, true, driver_query_stations},
};

static const request_row* find_request(uint32_t request) {
  for (const request_row& row : kRequests) {
    if (row.request == request) return &row;
  }
  return nullptr;
}

size_t driver_input_size(uint32_t request, uint16_t flags, uint16_t length) {
  const request_row* row = find_request(request);
  if (!row) return 0;
  if (row->carries_input) return length;
  if (request != kRequestObject) return 0;
  const bool carries = (flags & kRequestSetFlag) != 0 || driver_object_carries(flags, length);
  return carries ? length : 0;
}

size_t driver_room(uint32_t request, uint16_t length) {
  if (request == kRequestGetPriv) return length * sizeof(private_entry);
  return request == kRequestE2p ? kDriverTextMax : length;
}

int driver_handle(driver_state& state, driver_request& request) {
  const request_row* row = find_request(request.request);
  if (!row) return -EOPNOTSUPP;
  driver_advance(state, request.now_us);
  if (row->needs_radio && !driver_radio_up(state, driver_radio_of(request.bss))) return -ENETDOWN;
  return row->handle(state, request);
}
