#include "values/stations.h"

#include <algorithm>

#include "wire/lookup.h"

const procedure_row& stations_procedure() {
  return *lookup_name("wlan_get_btm_associated_device");
}

const payload_rows& stations_rows() {
  return *payload_find(stations_procedure())->rows;
}

const payload_field& stations_field(std::string_view name) {
  const auto fields = stations_rows().fields;
  return *std::find_if(fields.begin(), fields.end(),
                       [&](const payload_field& field) { return name == field.name; });
}
