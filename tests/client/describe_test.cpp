#include "show/describe.h"

#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "show/json.h"
#include "values/argument_check.h"
#include "values/argument_meanings.h"
#include "wire/lookup.h"
#include "wire/search.h"

static bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

static std::vector<std::string> lines(const std::string& text) {
  std::vector<std::string> out;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);)
    out.push_back(line);
  return out;
}

TEST(Describe, EveryArgumentHasAMeaningAndAnAcceptedExample) {
  for (const procedure_row& procedure : table_procedures()) {
    std::vector<std::string> examples;
    for (const argument_spec& argument : table_arguments(procedure)) {
      const meaning_entry* meaning = meanings_find(procedure, argument.name);
      ASSERT_NE(meaning, nullptr) << procedure.name
                                  << ": client/values/argument_meanings.cpp has to say what "
                                  << argument.name << " means";
      EXPECT_GT(meanings_text(procedure, argument).size(), 5u)
          << procedure.name << ": " << argument.name;
      EXPECT_FALSE(contains(meaning->example, "'")) << procedure.name << ": " << argument.name;
      examples.push_back(meaning->example);
    }
    byte_string bytes;
    std::string error;
    EXPECT_TRUE(arguments_encode(procedure, examples, bytes, error) &&
                arguments_check(procedure, examples, error))
        << procedure.name
        << ": client/values/argument_meanings.cpp has an example that it refuses: " << error;
  }
}

TEST(Describe, EveryRowDescribesItself) {
  for (const procedure_row& procedure : table_procedures()) {
    std::string text = describe_procedure(procedure);
    std::string title =
        lookup_display_number(procedure.number) + "  " + lookup_display_name(procedure) + "\n";
    EXPECT_TRUE(text.starts_with(title)) << text;
    for (const char* part :
         {"\nArguments\n", "\nResult\n  a return code", "\nExample\n  wificonf "})
      EXPECT_TRUE(contains(text, part)) << procedure.name << part;
    for (const argument_spec& argument : table_arguments(procedure))
      EXPECT_TRUE(contains(text, "\n  " + argument.name + " ")) << procedure.name;
    EXPECT_EQ(contains(text, "does nothing"), procedure.inert) << procedure.name;
    if (procedure.payload == payload_kind::INT) {
      EXPECT_EQ(procedure.size, 4u) << procedure.name;
    }
  }
}

TEST(Describe, FitsATerminal) {
  for (const procedure_row& procedure : table_procedures()) {
    for (const std::string& line : lines(describe_procedure(procedure))) {
      bool example = line.starts_with("  wificonf ");  // stays on one line, to be copied
      EXPECT_TRUE(example || line.size() <= 80u) << line;
    }
  }
  for (const std::string& line : lines(describe_list(search_procedures({}), 80)))
    EXPECT_LE(line.size(), 80u) << line;
}

TEST(Describe, OneInWhole) {
  EXPECT_EQ(describe_procedure(*lookup_name("wlan_get_bssid_port")),
            "7  wlan_get_bssid_port\n"
            "\n"
            "  BSSID and port of an interface\n"
            "\n"
            "Note\n"
            "  Accepted, but deliberately does nothing: nothing is read or changed, the\n"
            "  answer is always the same and is no value of the gateway.\n"
            "\n"
            "Arguments\n"
            "  interface_name  string  network interface of the gateway\n"
            "\n"
            "Result\n"
            "  a return code and 2 words of 32 bits:\n"
            "       0  MAC       bssid\n"
            "       6  u16       port\n"
            "\n"
            "Example\n"
            "  wificonf wlan_get_bssid_port ra0\n");
  EXPECT_TRUE(contains(describe_procedure(*lookup_name("wlan_set_ssid")),
                       "\n  wificonf wlan_set_ssid 3 'Living room'\n"));
  EXPECT_TRUE(contains(describe_procedure(*lookup_name("wlan_init")), "\nArguments\n  none\n"));
}

static std::string bare(std::string_view text) {
  std::string out;
  for (const char c : text)
    if (isalnum(static_cast<unsigned char>(c)) != 0)
      out += static_cast<char>(tolower(static_cast<unsigned char>(c)));
  return out;
}

TEST(Describe, NoMeaningRepeatsTheName) {
  EXPECT_EQ(bare("MAC address"), bare("mac_address"));
  for (const procedure_row& procedure : table_procedures()) {
    const payload_layout* layout = payload_find(procedure);
    if (layout == nullptr) continue;
    std::vector<payload_field> fields(layout->fields.begin(), layout->fields.end());
    if (layout->rows != nullptr)
      fields.insert(fields.end(), layout->rows->fields.begin(), layout->rows->fields.end());
    for (const payload_field& field : fields)
      EXPECT_NE(bare(field.meaning), bare(field.name)) << procedure.name;
  }
}

TEST(Describe, AMeaningIsThereWhenSomethingIsKnown) {
  const std::string extender = describe_procedure(*lookup_name("hnc_get_hne_table_entry"));
  EXPECT_TRUE(contains(extender, "\n     272  flag      active\n")) << extender;
  EXPECT_TRUE(contains(extender, "\n    1052  i32       uplink_rate         [Mbit/s]\n"))
      << extender;
  EXPECT_TRUE(contains(extender, " signal of its uplink [dBm]\n")) << extender;
  const auto fields =
      nlohmann::json::parse(json_describe(*lookup_name("hnc_get_hne_table_entry")))["fields"];
  EXPECT_FALSE(fields[4].contains("meaning")) << fields[4];
  EXPECT_EQ(fields[16]["meaning"], "signal of its uplink");
}

TEST(Describe, EveryWordOfARecordHasAName) {
  for (const procedure_row& procedure : table_procedures()) {
    const payload_layout* layout = payload_find(procedure);
    if (procedure.payload != payload_kind::WORDS || layout == nullptr) continue;
    uint32_t named = layout->rows == nullptr ? 0 : layout->rows->stride * layout->rows->capacity;
    for (const payload_field& field : layout->fields)
      named += payload_width(field);
    EXPECT_EQ(named, procedure.size)
        << procedure.name << ": client/values/layouts.cpp has to name every word of it";
  }
}

TEST(Describe, AMeaningMayDependOnTheProcedure) {
  const meaning_entry* bss = meanings_find(*lookup_name("wlan_set_enable"), "index");
  const meaning_entry* instance = meanings_find(*lookup_name("hnc_set_enable"), "index");
  EXPECT_TRUE(contains(bss->text, "BSS"));
  EXPECT_TRUE(contains(instance->text, "controller"));
  EXPECT_EQ(meanings_find(*lookup_name("hnc_set_enable"), "nonsense"), nullptr);
}

TEST(Describe, ListHasEveryProcedureOnALineOfItsOwn) {
  std::vector<std::string> all = lines(describe_list(search_procedures({}), 0));
  ASSERT_EQ(all.size(), table_procedures().size());
  for (size_t i = 0; i < all.size(); ++i) {
    const procedure_row& procedure = table_procedures()[i];
    EXPECT_TRUE(contains(all[i], lookup_display_number(procedure.number) + "  " +
                                     lookup_display_name(procedure) + "  "));
    EXPECT_TRUE(all[i].ends_with(procedure.inert ? " (does nothing)" : procedure.summary));
  }
}

TEST(Describe, ListIsAligned) {
  EXPECT_EQ(describe_list(search_procedures({"*country*"}), 80),
            "122  wlan_get_country_code  Read the country code (does nothing)\n"
            "123  wlan_set_country_code  Set the country code (does nothing)\n");
}

TEST(Describe, JsonTellsTheSame) {
  for (const procedure_row& procedure : table_procedures()) {
    auto object = nlohmann::json::parse(json_describe(procedure), nullptr, false);
    ASSERT_TRUE(object.is_object()) << procedure.name;
    EXPECT_EQ(object["number"], procedure.number);
    EXPECT_EQ(object["inert"], procedure.inert);
    EXPECT_EQ(object["arguments"].size(), table_arguments(procedure).size());
    for (const auto& argument : object["arguments"])
      EXPECT_TRUE(argument["meaning"].is_string()) << procedure.name;
  }
  const auto stations = nlohmann::json::parse(
      json_describe(*lookup_name("wlan_get_btm_associated_device")), nullptr, false);
  EXPECT_EQ(stations["rows"]["bytes"], 76);
  EXPECT_EQ(stations["rows"]["fields"][5]["type"], "i32");
  EXPECT_EQ(stations["rows"]["fields"][0]["offset"], 40);
  EXPECT_EQ(nlohmann::json::parse(json_list(search_procedures({})), nullptr, false).size(),
            table_procedures().size());
}
