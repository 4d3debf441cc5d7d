#include "wire/search.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "base/text.h"
#include "run_support.h"
#include "show/describe.h"
#include "show/json.h"
#include "wire/lookup.h"
#include "wire/topic.h"

static std::string names(const search_choice& choice) {
  std::string out;
  for (const procedure_row* procedure : search_procedures(choice))
    out += lookup_display_name(*procedure) + " ";
  return out;
}

static std::string near(std::string_view text) {
  std::string out;
  for (const char* topic : topics_near(text))
    out += topic_word(topic) + " ";
  return out;
}

TEST(List, EveryProcedureIsInOneTopic) {
  size_t listed = 0;
  for (const char* topic : topics()) {
    EXPECT_FALSE(search_procedures({"", topic}).empty()) << topic;
    listed += search_procedures({"", topic}).size();
  }
  EXPECT_EQ(listed, table_procedures().size());
}

TEST(List, ByTopicAndPattern) {
  const char* survey = topics_near("site-survey").at(0);
  EXPECT_EQ(names({"", survey}),
            "wlan_get_ap_scan_num_of_entries wlan_get_ap_scan_result wlan_ap_scan "
            "wlan_ap_auto_channel_select wlan_get_ap_scan_status ");
  EXPECT_EQ(names({"*status", survey}), "wlan_get_ap_scan_status ");
  EXPECT_EQ(names({"country", survey}), "");
}

TEST(List, ActiveLeavesOutWhatDoesNothing) {
  search_choice choice;
  choice.active = true;
  const auto active = search_procedures(choice);
  EXPECT_GT(active.size(), 100u);
  for (const procedure_row* procedure : active)
    EXPECT_FALSE(procedure->inert) << procedure->name;
  for (const auto& words : {std::vector<std::string>{"list", "--active", "--topic", "survey"},
                            {"list", "--topic", "survey", "--active"}}) {
    const run_outcome listed = run_words(words);
    EXPECT_EQ(listed.status, kExitDone) << listed.err;
    EXPECT_EQ(listed.out.find("does nothing"), std::string::npos) << listed.out;
    EXPECT_NE(listed.out.find("wlan_ap_scan"), std::string::npos) << listed.out;
  }
  EXPECT_NE(run_words({"list", "--topic", "survey"}).out.find("does nothing"), std::string::npos);
}

TEST(List, ATopicIsItsWordOrAPartOfItThatNoOtherHas) {
  EXPECT_EQ(near("wps"), "wps ");
  EXPECT_EQ(near("WPS"), "wps ");
  EXPECT_EQ(near("Site survey"), "site-survey ");
  EXPECT_EQ(near("steering"), "client-steering ");
  EXPECT_EQ(near("home"), "home-network-controller home-network-extenders ");
  EXPECT_EQ(near("no such topic"), "");
}

TEST(List, TopicsAsTextAndJson) {
  const size_t count = search_procedures({"", topics().front()}).size();
  EXPECT_TRUE(describe_topics().starts_with(text_format("%3zu  lifecycle\n", count)))
      << describe_topics();
  const auto all = nlohmann::json::parse(json_topics());
  ASSERT_EQ(all.size(), topics().size());
  EXPECT_EQ(all[0], (nlohmann::json{
                        {"topic", "lifecycle"}, {"title", "Lifecycle"}, {"procedures", count}}));
  const auto one = nlohmann::json::parse(json_list({lookup_name("wlan_ap_scan")}));
  EXPECT_EQ(one[0]["topic"], "site-survey");
}
