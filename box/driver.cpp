#include "driver.h"

#include <errno.h>
#include <string.h>

// One entry of the list of private requests, as every tool that asks for it expects it.
struct private_entry {
  uint32_t request;
  uint16_t set_arguments;  // type << 12 | fixed << 11 | count
  uint16_t get_arguments;
  char name[16];
};
static_assert(sizeof(private_entry) == 24);

static constexpr uint16_t ARGUMENT_TEXT = 0x2000;

static constexpr private_entry PRIVATE_ENTRIES[] = {
    {DRIVER_SET_TEXT, ARGUMENT_TEXT | DRIVER_TEXT_MAX, 0, "set"},
};

// An object of DRIVER_OBJECT. A null handler means that the object cannot be queried or set.
struct object_row {
  uint16_t sub;
  uint16_t minimum;  // a query that announces less is refused with EMSGSIZE
  int (*query)(driver_state&, driver_request&);
  int (*set)(driver_state&, driver_request&);
};

struct request_row {
  uint32_t request;
  const char* name;
  const char* set_name;  // when the flags say that it is a set; null: no such distinction
  bool carries_input;    // without regard to the flags
  int (*handle)(driver_state&, driver_request&);
};

// Callers announce what they have room for, which may be less than the whole record.
static void answer(driver_request& r, const void* record, size_t size) {
  size_t fitting = size < r.length ? size : r.length;
  r.output.assign(static_cast<const char*>(record), fitting);
  r.has_answer_length = true;
  r.answer_length = static_cast<uint16_t>(fitting);
}

static int query_operating_class(driver_state&, driver_request& r) {
  uint32_t operating_class = r.bss < BOARD_FIRST_5GHZ ? 81 : 115;
  answer(r, &operating_class, sizeof operating_class);
  return 0;
}

static int query_wps_status(driver_state& state, driver_request& r) {
  answer(r, &state.bss[r.bss].wps_status, sizeof state.bss[r.bss].wps_status);
  return 0;
}

// The class is asked for with a byte less than its four announced; it never needs the last one.
static constexpr object_row OBJECTS[] = {
    {0x06B2, 3, query_operating_class, nullptr},
    {0x0751, 4, query_wps_status, nullptr},
};

static const object_row* find_object(uint16_t sub) {
  for (const object_row& row : OBJECTS) {
    if (row.sub == sub) return &row;
  }
  return nullptr;
}

static int handle_object(driver_state& state, driver_request& r) {
  const object_row* row = find_object(r.flags & ~DRIVER_SET_FLAG);
  if (!row) return -EOPNOTSUPP;
  if (r.flags & DRIVER_SET_FLAG) return row->set ? row->set(state, r) : -EOPNOTSUPP;
  if (!row->query) return -EOPNOTSUPP;
  if (r.length < row->minimum) return -EMSGSIZE;
  return row->query(state, r);
}

// The list is all or nothing: whoever has too little room learns how much is needed.
static int handle_get_priv(driver_state&, driver_request& r) {
  constexpr uint16_t COUNT = sizeof PRIVATE_ENTRIES / sizeof *PRIVATE_ENTRIES;
  r.has_answer_length = true;
  r.answer_length = COUNT;
  if (r.length < COUNT) return -E2BIG;
  r.output.assign(reinterpret_cast<const char*>(PRIVATE_ENTRIES), sizeof PRIVATE_ENTRIES);
  return 0;
}

static int handle_set_text(driver_state& state, driver_request& r) {
  if (r.length > DRIVER_TEXT_MAX) return -E2BIG;
  std::string text(r.input.c_str());  // ends at the terminator, which some callers leave out
  size_t equals = text.find('=');
  if (equals == std::string::npos || equals == 0) return -EINVAL;
  state.bss[r.bss].settings[text.substr(0, equals)] = text.substr(equals + 1);
  return 0;
}

static constexpr request_row REQUESTS[] = {
    {DRIVER_GET_PRIV, "get_priv", nullptr, false, handle_get_priv},
    {DRIVER_OBJECT, "query", "object_set", false, handle_object},
    {DRIVER_SET_TEXT, "set", nullptr, true, handle_set_text},
};

static const request_row* find_request(uint32_t request) {
  for (const request_row& row : REQUESTS) {
    if (row.request == request) return &row;
  }
  return nullptr;
}

static bool is_flagged_set(const request_row& row, uint16_t flags) {
  return row.set_name && (flags & DRIVER_SET_FLAG);
}

void driver_init(driver_state& state, const board& hardware) {
  state = {};
  state.hardware = &hardware;
}

int driver_interface_number(const char* name) {
  if (strncmp(name, "ra", 2) != 0) return -1;
  for (int number = 0; number < BOARD_MAX_INTERFACES; number++) {
    if (std::to_string(number) == name + 2) return number;
  }
  return -1;
}

size_t driver_input_size(uint32_t request, uint16_t flags, uint16_t length) {
  const request_row* row = find_request(request);
  if (!row) return 0;
  return row->carries_input || is_flagged_set(*row, flags) ? length : 0;
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

int driver_handle(driver_state& state, driver_request& request) {
  const request_row* row = find_request(request.request);
  return row ? row->handle(state, request) : -EOPNOTSUPP;
}
