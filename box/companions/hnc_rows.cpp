#include "companions/hnc_rows.h"

#include "companions/companion_data.h"

template <size_t SIZE>
static void put(const nlohmann::json& data, const char* member, char (&field)[SIZE]) {
  hnc_put(field, companion_text(data, member, ""));
}

template <typename Number>
static void put(const nlohmann::json& data, const char* member, Number& number) {
  number = static_cast<Number>(companion_number(data, member, static_cast<double>(number)));
}

hnc_extender hnc_extender_row(const nlohmann::json& data, uint32_t index) {
  hnc_extender row = {};
  row.index = index;
  put(data, "index", row.index);
  put(data, "mac", row.mac);
  put(data, "name", row.name);
  put(data, "status", row.status);
  put(data, "active", row.active);
  put(data, "manufacturer", row.manufacturer);
  put(data, "model_name", row.model_name);
  put(data, "model_number", row.model_number);
  put(data, "serial_number", row.serial_number);
  put(data, "last_sync_attempt", row.last_sync_attempt);
  put(data, "software_version", row.software_version);
  put(data, "uplink_type", row.uplink_type);
  put(data, "uplink_rate", row.uplink_rate);
  put(data, "upgrade_available", row.upgrade_available);
  put(data, "ip_address", row.ip_address);
  put(data, "uplink_mac", row.uplink_mac);
  put(data, "rssi", row.rssi);
  put(data, "last_error", row.last_error);
  put(data, "description", row.description);
  return row;
}

hnc_supported hnc_supported_row(const nlohmann::json& data, uint32_t index) {
  hnc_supported row = {};
  row.index = static_cast<int32_t>(index);
  row.row_status = 1;
  put(data, "index", row.index);
  put(data, "row_status", row.row_status);
  put(data, "manufacturer", row.manufacturer);
  put(data, "model_name", row.model_name);
  put(data, "model_number", row.model_number);
  put(data, "firmware_url", row.firmware_url);
  put(data, "firmware_file_name", row.firmware_file_name);
  put(data, "firmware_user_name", row.firmware_user_name);
  put(data, "firmware_password", row.firmware_password);
  put(data, "update_time", row.update_time);
  put(data, "config_on_demand", row.config_on_demand);
  return row;
}
