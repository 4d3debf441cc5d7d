#include "show/schema.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <random>

#include "show/json.h"
#include "values/payload.h"
#include "wire/lookup.h"

static nlohmann::json schema(const char* procedure) {
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
    // Procedures that do nothing, and only they, answer "inert": true.
    nlohmann::json required = {"procedure", "number", "return_code"};
    if (procedure.inert) required.push_back("inert");
    EXPECT_EQ(object["required"], required) << procedure.name;
    EXPECT_EQ(object["properties"].contains("inert"), procedure.inert) << procedure.name;
    if (procedure.inert) {
      EXPECT_EQ(object["properties"]["inert"]["const"], true);
    }
  }
}

TEST(Schema, ValueIsRequiredOfAnAnswerThatIsNoFailure) {
  const auto object = schema("wlan_get_channel");
  EXPECT_EQ(object["if"]["properties"]["return_code"]["minimum"], 0);
  EXPECT_EQ(object["then"]["required"], nlohmann::json({"value"}));
  EXPECT_FALSE(schema("wlan_set_ssid").contains("then"));
}

// Every property must be required, at all levels, except the marks of escaped texts.
static void expect_all_required(const nlohmann::json& object, const std::string& where) {
  nlohmann::json named = nlohmann::json::array();
  for (const auto& [name, property] : object["properties"].items()) {
    if (!name.ends_with("_escaped")) named.push_back(name);
    const nlohmann::json type = property.value("type", nlohmann::json());
    if (type == "object") expect_all_required(property, where + "." + name);
    if (type == "array") expect_all_required(property["items"], where + "[]");
  }
  nlohmann::json required = object["required"];
  std::sort(required.begin(), required.end());
  EXPECT_EQ(required, named) << where;
  EXPECT_EQ(object["additionalProperties"], false) << where;
}

TEST(Schema, EveryFieldOfARecordIsRequired) {
  int records = 0;
  for (const procedure_row& procedure : table_procedures()) {
    const payload_layout* layout = payload_find(procedure);
    if (layout == nullptr) continue;
    ++records;
    const auto value = nlohmann::json::parse(schema_of(procedure))["properties"]["value"];
    expect_all_required(value, procedure.name);
    if (layout->rows != nullptr) {
      EXPECT_EQ(value["properties"][layout->rows->name]["maxItems"], layout->rows->capacity);
    }
  }
  EXPECT_GT(records, 0);
}

static std::string answers_of(const procedure_row& procedure, std::minstd_rand& random) {
  decoded_reply reply{};
  std::string lines;
  for (const char fill : {'\0', '\xff', 'r'}) {
    reply.data.assign(procedure.size, fill);
    for (char& byte : reply.data)
      byte = fill == 'r' ? static_cast<char>(random() >> 8) : byte;
    reply.text = reply.data;
    reply.value = static_cast<int32_t>(random());
    lines += json_reply(procedure, reply);
  }
  return lines;
}

TEST(Schema, WhateverIsDecodedIsAsItSays) {
  std::minstd_rand random(1);
  const std::string path = testing::TempDir() + "answers." + std::to_string(getpid());
  FILE* file = fopen(path.c_str(), "w");
  ASSERT_NE(file, nullptr);
  std::string answers = answers_of(*lookup_name("wlan_get_ssid"), random) +
                        answers_of(*lookup_name("wlan_get_channel"), random);
  for (const procedure_row& procedure : table_procedures()) {
    if (payload_find(procedure) != nullptr) answers += answers_of(procedure, random);
  }
  fputs(answers.c_str(), file);
  fclose(file);
  const auto count = std::count(answers.begin(), answers.end(), '\n');
  FILE* pipe = popen(("PATH=" WIFICONF_DIR ":$PATH " VALIDATOR " <" + path + " 2>&1").c_str(), "r");
  char said[4096] = {};
  const size_t length = fread(said, 1, sizeof said - 1, pipe);
  EXPECT_EQ(pclose(pipe), 0);
  unlink(path.c_str());
  EXPECT_EQ(std::string(said, length), std::to_string(count) + " answers are valid\n");
}

TEST(Schema, OfAFailureAndOfTop) {
  const auto error = nlohmann::json::parse(schema_of_error());
  EXPECT_EQ(error["required"], nlohmann::json({"error"}));
  expect_all_required(error["properties"]["error"], "error");
  const auto top = nlohmann::json::parse(schema_of_top());
  EXPECT_EQ(top["required"], nlohmann::json({"time", "stations"}));
  const auto station = top["properties"]["stations"]["items"];
  expect_all_required(station, "stations[]");
  EXPECT_EQ(station["properties"]["bytes_sent_per_second"]["type"],
            nlohmann::json({"number", "null"}));
}

TEST(Schema, FieldsTellTheirRangeUnitAndMeaning) {
  const auto station = schema("wlan_get_assoc_devices_table")["properties"]["value"]["properties"]
                                                             ["stations"]["items"]["properties"];
  EXPECT_EQ(station["rssi_0"],
            (nlohmann::json{{"type", {"integer", "null"}},
                            {"minimum", -128},
                            {"maximum", 127},
                            {"description", "signal on the first chain; null: not known [dBm]"}}));
  EXPECT_EQ(station["tx_rate"]["properties"]["phy"]["enum"],
            nlohmann::json({"CCK", "OFDM", "HT", "VHT"}));
}
