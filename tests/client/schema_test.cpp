#include "schema.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "lookup.h"

namespace {

nlohmann::json schema(const char* procedure) {
  return nlohmann::json::parse(schema_of(*lookup_name(procedure)));
}

TEST(Schema, EveryProcedureHasOne) {
  for (const procedure_row& procedure : table_procedures()) {
    const auto object = nlohmann::json::parse(schema_of(procedure));
    EXPECT_EQ(object["properties"]["number"]["const"], procedure.number);
    const bool has_value =
        procedure.payload != payload_kind::CODE && procedure.payload != payload_kind::NONE;
    EXPECT_EQ(object["properties"].contains("value"), has_value) << procedure.name;
    EXPECT_EQ(object["additionalProperties"], false);
  }
}

TEST(Schema, ValueIsRequiredOfAnAnswerThatIsNoFailure) {
  const auto object = schema("wlan_get_channel");
  EXPECT_EQ(object["required"], nlohmann::json({"procedure", "number", "return_code"}));
  EXPECT_EQ(object["if"]["properties"]["return_code"]["minimum"], 0);
  EXPECT_EQ(object["then"]["required"], nlohmann::json({"value"}));
  EXPECT_FALSE(schema("wlan_set_ssid").contains("then"));
}

TEST(Schema, FieldsTellTheirRangeUnitAndMeaning) {
  const auto station = schema("wlan_get_assoc_devices_table")["properties"]["value"]["properties"]
                                                             ["stations"]["items"]["properties"];
  EXPECT_EQ(station["rssi_0"],
            (nlohmann::json{{"type", "integer"},
                            {"minimum", -128},
                            {"maximum", 127},
                            {"description", "signal on the first chain [dBm]"}}));
  EXPECT_EQ(station["tx_rate"]["properties"]["phy"]["enum"],
            nlohmann::json({"CCK", "OFDM", "HT", "VHT"}));
}

}  // namespace
