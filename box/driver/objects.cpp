// The objects of the object request, one row each.
#include <cerrno>

#include "driver/parts.h"

// A null handler means that the object cannot be queried or set.
struct object_row {
  uint16_t sub;
  bool needs_radio;  // ENETDOWN while the radio is down
  int (*query)(driver_state&, driver_request&);
  int (*set)(driver_state&, driver_request&);
};

static constexpr object_row kObjects[] = {
    {0x067D, true, driver_query_counters, nullptr},
    {0x0693, true, driver_query_load, nullptr},
    {0x0695, true, driver_query_traffic, nullptr},
    {0x069A, true, driver_query_ssids, nullptr},
    {0x069B, true, driver_query_survey, nullptr},
    {0x06B0, true, nullptr, driver_set_action_frame},
    {0x06B1, true, nullptr, driver_set_steer},
    {0x06B2, false, driver_query_operating_class, nullptr},
    {0x06B3, false, driver_query_nonassoc_capable, nullptr},
    {0x06B4, false, nullptr, driver_set_nonassoc},
    {0x06B5, false, driver_query_nonassoc, nullptr},
    {0x0751, false, driver_query_wps_status, nullptr},
    {0x0753, false, driver_query_uuid, nullptr},
    {0x094A, false, nullptr, driver_set_btm},
    {0x0AA0, false, driver_query_wps_state, nullptr},
    {0x0AA2, false, driver_query_power, nullptr},
    {0x494A, false, driver_query_btm, nullptr},
};

static constexpr uint16_t kNonassocReport = 0x06B5;
static constexpr uint16_t kBtm = 0x494A;
static constexpr uint16_t kNonassocRegistrationMax = 7;
static constexpr uint16_t kBtmStationMin = 8;

static const object_row* find_object(uint16_t sub) {
  for (const object_row& row : kObjects) {
    if (row.sub == sub) return &row;
  }
  return nullptr;
}

bool driver_object_carries(uint16_t sub, uint16_t length) {
  return (sub == kNonassocReport && length <= kNonassocRegistrationMax) ||
         (sub == kBtm && length >= kBtmStationMin);
}

int driver_do_object(driver_state& state, driver_request& r) {
  const object_row* row = find_object(r.flags & ~kRequestSetFlag);
  if (!row) return -EOPNOTSUPP;
  auto handle = (r.flags & kRequestSetFlag) ? row->set : row->query;
  if (!handle) return -EOPNOTSUPP;
  if (row->needs_radio && !driver_radio_up(state, driver_radio_of(r.bss))) return -ENETDOWN;
  return handle(state, r);
}
