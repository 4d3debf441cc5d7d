// Requests by their numbers, and what all of them share.
#include "driver/model.h"

#include <errno.h>
#include <string.h>

#include "base/journal.h"
#include "driver/layout.h"
#include "driver/parts.h"

// One entry of the list of private requests, as every tool that asks for it expects it.
struct private_entry {
  uint32_t request;
  uint16_t set_arguments;  // type << 12 | fixed << 11 | count
  uint16_t get_arguments;
  char name[16];
};
static_assert(sizeof(private_entry) == 24);

static constexpr uint16_t kArgumentText = 0x2000;

static constexpr private_entry kPrivateEntries[] = {
    {kDriverSetText, kArgumentText | kDriverTextMax, 0, "set"},
    {kDriverE2p, kArgumentText | kDriverTextMax, kArgumentText | kDriverTextMax, "e2p"},
};

// The list is all or nothing: whoever has too little room learns how much is needed.
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
  const char* name;
  const char* set_name;  // when the flags say that it is a set; null: no such distinction
  bool carries_input;    // without regard to the flags
  bool needs_radio;      // ENETDOWN while the radio is down
  int (*handle)(driver_state&, driver_request&);
};

static constexpr request_row kRequests[] = {
    {0x8B01, "get_name", nullptr, false, false, driver_query_name},
    {0x8B05, "get_frequency", nullptr, false, true, driver_query_frequency},
    {0x8B07, "get_mode", nullptr, false, false, driver_query_mode},
    {0x8B0B, "get_range", nullptr, false, false, driver_query_range},
    {kDriverGetPriv, "get_priv", nullptr, false, false, query_private},
    {0x8B15, "get_address", nullptr, false, true, driver_query_address},
    {0x8B1B, "get_essid", nullptr, false, true, driver_query_essid},
    {0x8B21, "get_rate", nullptr, false, true, driver_query_rate},
    {kDriverObject, "query", "object_set", false, false, driver_do_object},
    {kDriverSetText, "set", nullptr, true, false, driver_do_text},
    {kDriverE2p, "e2p", nullptr, true, false, driver_do_e2p},
    {kDriverStations, "stations", nullptr, false, true, driver_query_stations},
};

static const request_row* find_request(uint32_t request) {
  for (const request_row& row : kRequests) {
    if (row.request == request) return &row;
  }
  return nullptr;
}

static bool is_flagged_set(const request_row& row, uint16_t flags) {
  return row.set_name && (flags & kDriverSetFlag);
}

int driver_interface_number(const char* name) {
  if (strncmp(name, "ra", 2) != 0) return -1;
  for (int number = 0; number < kBoardMaxInterfaces; number++) {
    if (std::to_string(number) == name + 2) return number;
  }
  return -1;
}

size_t driver_input_size(uint32_t request, uint16_t flags, uint16_t length) {
  const request_row* row = find_request(request);
  if (!row) return 0;
  if (row->carries_input || is_flagged_set(*row, flags)) return length;
  return request == kDriverObject && driver_object_carries(flags, length) ? length : 0;
}

size_t driver_room(uint32_t request, uint16_t length) {
  if (request == kDriverGetPriv) return length * sizeof(private_entry);
  return request == kDriverE2p ? kDriverTextMax : length;
}

bool driver_has_sub(uint32_t request) {
  const request_row* row = find_request(request);
  return row && row->set_name;
}

const char* driver_request_name(uint32_t request, uint16_t flags) {
  const request_row* row = find_request(request);
  if (!row) return "unknown";
  return is_flagged_set(*row, flags) ? row->set_name : row->name;
}

bool driver_find_name(const std::string& name, uint32_t& request, bool& has_sub, uint16_t& sub) {
  for (const request_row& row : kRequests) {
    if (name != row.name) continue;
    request = row.request;
    return true;
  }
  for (const auto& [number, object] : driver_objects()) {
    if (name != object) continue;
    request = kDriverObject;
    has_sub = true;
    sub = number;
    return true;
  }
  return false;
}

std::vector<std::string> driver_names() {
  std::vector<std::string> names;
  for (const request_row& row : kRequests)
    names.push_back(row.name);
  for (const auto& object : driver_objects())
    names.push_back(object.second);
  return names;
}

int driver_answer(driver_request& r, const void* record, size_t size, size_t used) {
  size_t needed = used < size ? used : size - 1;
  if (size <= 2) needed = 1;
  if (r.length < needed) return -EMSGSIZE;
  size_t fitting = size < r.length ? size : r.length;
  r.output.assign(static_cast<const char*>(record), fitting);
  r.has_answer_length = true;
  r.answer_length = static_cast<uint16_t>(fitting);
  return 0;
}

void driver_answer_frame(driver_request& r, const void* record, size_t size) {
  r.frame.assign(static_cast<const char*>(record), size);
}

int driver_take(const driver_request& r, void* record, size_t size) {
  if (r.input.size() < size) return -EMSGSIZE;
  memcpy(record, r.input.data(), size);
  return 0;
}

void driver_decode(driver_request& r, const char* name, const std::string& value) {
  r.decoded.emplace_back(name, value);
}

std::string driver_field(const std::string& list, int index) {
  size_t start = 0;
  for (int i = 0; i < index; i++) {
    start = list.find(';', start);
    if (start == std::string::npos) return "";
    start++;
  }
  return list.substr(start, list.find(';', start) - start);
}

bool driver_is_dual_band_chip(const driver_state& state) {
  return strcmp(state.hardware->name, "mt7615") == 0;
}

int64_t driver_now_us(const driver_state& state) {
  return clock_box_us(state.clock, journal_now_us());
}

int driver_handle(driver_state& state, driver_request& request) {
  const request_row* row = find_request(request.request);
  if (!row) return -EOPNOTSUPP;
  driver_advance(state, request.now_us);
  if (row->needs_radio && !driver_radio_up(state, driver_radio_of(request.bss))) return -ENETDOWN;
  return row->handle(state, request);
}
