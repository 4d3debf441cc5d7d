#include "wire/topic.h"

#include <algorithm>
#include <iterator>

#include "base/text.h"

// In the order of enum topic.
static constexpr const char* kTitles[] = {
    "Lifecycle",
    "BSS and SSID",
    "Security",
    "Access control and isolation",
    "RADIUS and accounting",
    "WPS",
    "Associated stations",
    "Traffic and channel statistics",
    "Site survey",
    "Radio and channel",
    "Rates and PHY",
    "Quality of service",
    "Client steering",
    "Dynamic channel selection",
    "Home network controller",
    "Home network extenders",
};
static_assert(std::size(kTitles) == static_cast<size_t>(topic::kExtenders) + 1,
              "a topic of rpc/row_facts.h without a title");

std::span<const char* const> topics() {
  return kTitles;
}

const char* topic_of(const procedure_row& procedure) {
  return kTitles[static_cast<size_t>(procedure.about)];
}

std::string topic_word(const char* topic) {
  std::string word = text_lower(topic);
  std::replace(word.begin(), word.end(), ' ', '-');
  return word;
}

std::vector<const char*> topics_near(std::string_view text) {
  const std::string wanted = topic_word(std::string(text).c_str());
  std::vector<const char*> found;
  for (const char* topic : kTitles) {
    const std::string word = topic_word(topic);
    if (word == wanted) return {topic};
    if (word.find(wanted) != std::string::npos) found.push_back(topic);
  }
  return found;
}
