// "wificonf list": the procedures there are.
#include "base/text.h"
#include "commands/command.h"
#include "commands/session.h"
#include "show/describe.h"
#include "show/json.h"
#include "wire/lookup.h"
#include "wire/search.h"
#include "wire/topic.h"

using procedures = std::vector<const procedure_row*>;

static constexpr char kTakes[] =
    "list takes [--active] [--topic TOPIC] and one PATTERN at most, which the shell must leave "
    "alone; or --topics";

static exit_status list_topics(const output_streams& streams, const client_options& options) {
  print(streams, options.json ? json_topics() : describe_topics());
  return kExitDone;
}

static exit_status wrong_topic(const output_streams& streams, const std::string& word) {
  std::string line = "no topic " + text_quote(word) + ";";
  const std::vector<const char*> meant = topics_near(word);
  if (meant.size() > 1) {
    line = text_quote(word) + " is part of more than one topic:";
    for (const char* topic : meant)
      line += " " + topic_word(topic);
    line += ";";
  }
  return fail(streams, kExitUsage, line + " 'wificonf list --topics' has all");
}

// Takes "--active" and "--topic TOPIC" off the front of the words. `wrong` is set to an unknown
// topic.
static void take_options(std::vector<std::string>& words, search_choice& choice,
                         std::string& wrong) {
  while (!words.empty()) {
    if (words[0] == "--active") {
      choice.active = true;
      words.erase(words.begin());
      continue;
    }
    if (words[0] != "--topic" || words.size() < 2) return;
    const std::vector<const char*> meant = topics_near(words[1]);
    if (meant.size() != 1) {
      wrong = words[1];
      return;
    }
    choice.topic = meant[0];
    words.erase(words.begin(), words.begin() + 2);
  }
}

static exit_status list_procedures(const output_streams& streams, const client_options& options,
                                   const search_choice& choice) {
  const procedures found = search_procedures(choice);
  if (found.empty()) {
    const std::string of = choice.topic == nullptr ? "" : " of " + topic_word(choice.topic);
    const bool is_number = lookup_is_number(choice.pattern) && lookup_procedure(choice.pattern);
    return fail(streams, kExitUsage,
                "no name or summary of a procedure" + of + " has " + text_quote(choice.pattern) +
                    (is_number ? "; 'wificonf describe " + std::string(choice.pattern) +
                                     "' tells of that number"
                               : "; 'wificonf list' has all"));
  }
  print(streams,
        options.json ? json_list(found) : describe_list(found, terminal_width(streams.out)));
  return kExitDone;
}

// Words: list [--active] [--topic TOPIC] [PATTERN], or list --topics.
static exit_status run_list(const output_streams& streams, const client_options& options) {
  std::vector<std::string> words(options.words.begin() + 1, options.words.end());
  if (words == std::vector<std::string>{"--topics"}) return list_topics(streams, options);
  search_choice choice;
  std::string wrong;
  take_options(words, choice, wrong);
  if (!wrong.empty()) return wrong_topic(streams, wrong);
  const bool is_option = !words.empty() && words[0].starts_with("--");
  if (words.size() > 1 || is_option) return fail(streams, kExitUsage, kTakes);
  if (!words.empty()) choice.pattern = words[0];
  return list_procedures(streams, options, choice);
}

static std::string topic_words() {
  std::string out;
  for (const char* topic : topics())
    out += (out.empty() ? "" : " ") + topic_word(topic);
  return out;
}

static constexpr const char* kListUsages[] = {"[--json] list [--active] [--topic TOPIC] [PATTERN]",
                                              "[--json] list --topics"};
static constexpr command_offer kListOffers[] = {
    {"0", "--active --topic --topics"}, {"--active", "--topic"}, {"--topic", "", topic_words}};

const command_row kListCommand = {
    .name = "list",
    .usages = kListUsages,
    .meaning =
        "procedures whose name or summary has PATTERN, in which * and ? are wildcards; with "
        "--active without those that do nothing, with --topic those of one topic, and --topics "
        "tells which topics there are",
    .offers = kListOffers,
    .run = run_list};
