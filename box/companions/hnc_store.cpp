#include "companions/hnc_store.h"

#include <cstdlib>

#include "companions/companion_data.h"
#include "companions/hnc_rows.h"

using nlohmann::json;

static constexpr int32_t kNoRow = -1;
static constexpr int32_t kRowDestroy = 6;

static constexpr const char* kUsual = R"({
  "settings": {
    "Enable": "1", "ACMEnable": "0", "TopologyEnable": "1", "HNEFWUpgradeEnable": "0",
    "ClientSteerEnable": "1", "RRMEnable": "1", "MSearchEnable": "1", "ConfigAttempts": "3",
    "ConfigDuration": "300", "SecurityEnable": "1"
  },
  "hne": [
    {"mac": "02:0c:43:0e:00:01", "name": "Attic", "status": 1, "active": true,
     "manufacturer": "Acme", "model_name": "Extender", "model_number": "X1",
     "serial_number": "0001", "last_sync_attempt": 1700000000, "software_version": "1.0",
     "uplink_type": 1, "uplink_rate": 866, "ip_address": "192.168.254.10",
     "uplink_mac": "02:0c:43:26:02:0f", "rssi": -58}
  ],
  "supported_hne": [
    {"manufacturer": "Acme", "model_name": "Extender", "model_number": "X1",
     "firmware_url": "http://192.168.254.254/", "firmware_file_name": "x1.bin"},
    {"manufacturer": "Acme", "model_name": "Extender", "model_number": "X2"}
  ]
})";

// Keys that stand for a field of a row if there is a row with that index.
struct field_row {
  const char* key;
  std::string (*get)(const hnc_supported&);
  void (*set)(hnc_supported&, const std::string&);
};

#define TEXT_FIELD(key, field)                                                    \
  {                                                                               \
    key, [](const hnc_supported& r) { return hnc_text(r.field); },                \
        [](hnc_supported& r, const std::string& text) { hnc_put(r.field, text); } \
  }
#define NUMBER_FIELD(key, field)                                         \
  {                                                                      \
    key, [](const hnc_supported& r) { return std::to_string(r.field); }, \
        [](hnc_supported& r, const std::string& text) {                  \
          r.field = static_cast<decltype(r.field)>(atoll(text.c_str())); \
        }                                                                \
  }

static constexpr field_row kFields[] = {
    TEXT_FIELD("UpdateFwUrl", firmware_url),
    TEXT_FIELD("UpdateFwFilename", firmware_file_name),
    TEXT_FIELD("UpdateFwUsername", firmware_user_name),
    TEXT_FIELD("UpdateFwPassword", firmware_password),
    NUMBER_FIELD("UpdateFwTime", update_time),
    NUMBER_FIELD("HNEConfigOnDemand", config_on_demand),
    TEXT_FIELD("HNEManufacturer", manufacturer),
    TEXT_FIELD("HNEModelname", model_name),
    TEXT_FIELD("HNEModelnumber", model_number),
};

static const field_row* find_field(const std::string& key) {
  for (const field_row& field : kFields) {
    if (key == field.key) return &field;
  }
  return nullptr;
}

static std::string setting_name(const std::string& key, uint32_t index) {
  return index == 0 ? key : key + "/" + std::to_string(index);
}

static json array_of(const json& data, const char* member) {
  auto found = data.find(member);
  return found != data.end() && found->is_array() ? *found : json();
}

void hnc_store_update(hnc_store& store, const json& data) {
  if (data == store.data) return;
  json before = store.data.is_object() ? store.data : json::object();
  store.data = data;
  json settings = data.value("settings", json::object());
  json settings_before = before.value("settings", json::object());
  for (const auto& [key, value] : settings.items()) {
    bool same = settings_before.contains(key) && settings_before[key] == value;
    if (!same) store.settings[key] = companion_text(settings, key.c_str(), "");
  }
  json rows = array_of(data, "hne"), supported = array_of(data, "supported_hne");
  if (!rows.is_null() && rows != array_of(before, "hne")) {
    store.extenders.clear();
    for (uint32_t i = 0; i < rows.size(); ++i) {
      hnc_extender row = hnc_extender_row(rows[i], i + 1);
      store.extenders[row.index] = row;
    }
  }
  if (!supported.is_null() && supported != array_of(before, "supported_hne")) {
    store.supported.clear();
    for (uint32_t i = 0; i < supported.size(); ++i) {
      hnc_supported row = hnc_supported_row(supported[i], i + 1);
      store.supported[static_cast<uint32_t>(row.index)] = row;
    }
  }
}

void hnc_store_init(hnc_store& store) {
  store = {};
  hnc_store_update(store, json::parse(kUsual, nullptr, false));
}

static std::string get_value(const hnc_store& store, const std::string& key, uint32_t index) {
  const field_row* field = find_field(key);
  auto row = store.supported.find(index);
  if (field && row != store.supported.end()) return field->get(row->second);
  for (const std::string& name : {setting_name(key, index), key}) {
    auto found = store.settings.find(name);
    if (found != store.settings.end()) return found->second;
  }
  return key == "HNENumberOfEntries" ? std::to_string(store.supported.size()) : "";
}

static void get(const hnc_store& store, const std::string& key, uint32_t index, hnc_reply& reply) {
  if (key == "HneEntry") {
    auto row = store.extenders.find(index);
    reply.table_error = row == store.extenders.end() ? kNoRow : 0;
    if (reply.table_error == 0) reply.extender = row->second;
  } else if (key == "SuppHneEntry") {
    auto row = store.supported.find(index);
    reply.table_error = row == store.supported.end() ? kNoRow : 0;
    if (reply.table_error == 0) reply.supported = row->second;
  } else {
    get_value(store, key, index).copy(reply.value, sizeof reply.value - 1);
  }
}

static int32_t set_row_status(hnc_store& store, uint32_t index, int32_t status) {
  auto row = store.supported.find(index);
  if (row == store.supported.end()) return kNoRow;
  row->second.row_status = status;
  if (status == kRowDestroy) store.supported.erase(row);
  return 0;
}

static int32_t set(hnc_store& store, const hnc_request& request) {
  std::string key = hnc_text(request.name), value = hnc_text(request.value);
  auto row = store.supported.find(request.index);
  const field_row* field = find_field(key);
  if (key == "SuppHneEntry") {
    store.supported[request.index] = request.supported;
  } else if (key == "RowStatus") {
    return set_row_status(store, request.index, atoi(value.c_str()));
  } else if (key == "DeviceName") {
    auto extender = store.extenders.find(request.index);
    if (extender == store.extenders.end()) return kNoRow;
    hnc_put(extender->second.name, value);
  } else if (field && row != store.supported.end()) {
    field->set(row->second, value);
  } else {
    store.settings[setting_name(key, request.index)] = value;
  }
  return 0;
}

void hnc_store_serve(hnc_store& store, const hnc_request& request, hnc_reply& reply) {
  reply = {};
  if (request.type == kHncGet) {
    get(store, hnc_text(request.name), request.index, reply);
  } else if (request.type == kHncSet) {
    reply.table_error = set(store, request);
  } else {
    reply.table_error = kNoRow;
  }
}
