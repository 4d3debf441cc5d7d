#include "trap/requests.h"

namespace {

struct named_request {
  uint32_t request;
  const char* name;
};

struct named_object {
  uint16_t sub;
  const char* name;
};

}  // namespace

static constexpr named_request kNamedRequests[] = {
    {0x8B01, "get_name"},     {0x8B05, "get_frequency"},     {0x8B07, "get_mode"},
    {0x8B0B, "get_range"},    {kRequestGetPriv, "get_priv"}, {0x8B15, "get_address"},
    {0x8B1B, "get_essid"},    {0x8B21, "get_rate"},          {kRequestObject, "query"},
    {kRequestSetText, "set"}, {kRequestE2p, "e2p"},          {kRequestStations, "stations"},
};

static constexpr named_object kNamedObjects[] = {
    {0x067D, "counters"},
    {0x0693, "channel_load"},
    {0x0695, "station_traffic"},
    {0x069A, "ssid_traffic"},
    {0x069B, "survey"},
    {0x06B0, "action_frame"},
    {0x06B1, "steer"},
    {0x06B2, "operating_class"},
    {0x06B3, "nonassoc_capable"},
    {0x06B4, "nonassoc_enable"},
    {0x06B5, "nonassoc_report"},
    {0x0751, "wps_status"},
    {0x0753, "wps_uuid"},
    {0x094A, "btm_enable"},
    {0x0AA0, "wps_state"},
    {0x0AA2, "power_limits"},
    {0x494A, "btm"},
};

bool request_has_sub(uint32_t request) {
  return request == kRequestObject;
}

const char* request_name(uint32_t request, uint16_t flags) {
  if (request_has_sub(request) && (flags & kRequestSetFlag) != 0) return "object_set";
  for (const named_request& row : kNamedRequests) {
    if (row.request == request) return row.name;
  }
  return "unknown";
}

const char* request_object_name(uint16_t sub) {
  for (const named_object& row : kNamedObjects) {
    if (row.sub == sub) return row.name;
  }
  return nullptr;
}

bool request_find(const std::string& name, uint32_t& request, bool& has_sub, uint16_t& sub) {
  for (const named_request& row : kNamedRequests) {
    if (name != row.name) continue;
    request = row.request;
    return true;
  }
  for (const named_object& row : kNamedObjects) {
    if (name != row.name) continue;
    request = kRequestObject;
    has_sub = true;
    sub = row.sub;
    return true;
  }
  return false;
}

std::vector<std::string> request_names() {
  std::vector<std::string> names;
  for (const named_request& row : kNamedRequests)
    names.emplace_back(row.name);
  for (const named_object& row : kNamedObjects)
    names.emplace_back(row.name);
  return names;
}
