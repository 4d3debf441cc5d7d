// What may follow the words typed so far. It comes from the declaration of the command line, so
// nothing is offered that would be rejected.
#include "commands/complete.h"
#include "commands/line_parts.h"

struct walk {
  const CLI::App* root;
  const CLI::App* app;              // the command, or gwbox itself
  const CLI::Option* pending;       // waits for its value
  std::vector<std::string> values;  // the command's positional arguments so far
  std::string box;
};

// An option of the command, or of gwbox if the command falls through to it.
static const CLI::Option* find_option(const walk& w, const std::string& name) {
  const CLI::Option* option = w.app->get_option_no_throw(name);
  if (!option && w.app->get_fallthrough()) option = w.root->get_option_no_throw(name);
  return option;
}

static bool takes_value(const CLI::Option* option) {
  return option && option->get_items_expected_max() > 0;
}

static void take_option(walk& w, const std::string& word) {
  size_t equals = word.find('=');
  const CLI::Option* option = find_option(w, word.substr(0, equals));
  if (!takes_value(option)) return;
  if (equals == std::string::npos) {
    w.pending = option;
  } else if (option->check_name("--box")) {
    w.box = word.substr(equals + 1);
  }
}

static void take_word(walk& w, const std::string& word) {
  if (w.pending) {
    if (w.pending->check_name("--box")) w.box = word;
    w.pending = nullptr;
    return;
  }
  if (word.starts_with("-")) return take_option(w, word);
  for (const CLI::App* below : args_commands(*w.app)) {
    if (below->get_name() != word) continue;
    w.app = below;
    return;
  }
  w.values.push_back(word);
}

static std::vector<std::string> options_of(const walk& w) {
  std::vector<std::string> names;
  for (const CLI::App* app : {w.app, w.root}) {
    if (app == w.root && w.app != w.root && !w.app->get_fallthrough()) continue;
    for (const CLI::Option* option : app->get_options()) {
      if (option->get_positional() || option->get_description().empty()) continue;
      std::string name = "--" + option->get_lnames()[0];
      if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
    }
  }
  return names;
}

// The next positional argument; the last one of a command may take many words.
static const CLI::Option* next_positional(const walk& w) {
  size_t place = 0;
  for (const CLI::Option* option : w.app->get_options()) {
    if (!option->get_positional()) continue;
    bool takes_many = option->get_items_expected_max() > 1;
    if (place == w.values.size() || takes_many) return option;
    ++place;
  }
  return nullptr;
}

static std::vector<std::string> offers_at(const walk& w, const std::string& current) {
  size_t equals = current.find('=');
  if (w.pending) return complete_value("--" + w.pending->get_lnames()[0], {}, current, w.box);
  if (current.starts_with("--") && equals != std::string::npos) {
    std::string name = current.substr(0, equals);
    if (!takes_value(find_option(w, name))) return {};
    std::vector<std::string> offers = complete_value(name, {}, current.substr(equals + 1), w.box);
    for (std::string& offer : offers) {
      if (offer != kCompleteFiles) offer.insert(0, name + "=");
    }
    return offers;
  }
  if (current.starts_with("-")) return options_of(w);
  std::vector<std::string> offers;
  for (const CLI::App* below : args_commands(*w.app))
    if (w.values.empty()) offers.push_back(below->get_name());
  const CLI::Option* positional = next_positional(w);
  if (offers.empty() && positional) {
    return complete_value(positional->get_name(), w.values, current, w.box);
  }
  return offers;
}

static std::vector<std::string> offers_for(const CLI::App& app,
                                           const std::vector<std::string>& words) {
  walk w = {&app, &app, nullptr, {}, ""};
  for (size_t i = 0; i + 1 < words.size(); ++i) {
    bool is_run = w.app->get_name() == "run" && !w.pending;
    if (words[i] == "--") return {is_run ? kCompleteCommand : ""};
    take_word(w, words[i]);
  }
  std::string current = words.empty() ? "" : words.back();
  std::vector<std::string> offers = offers_at(w, current);
  std::erase_if(offers, [&](const std::string& offer) {
    return offer != kCompleteFiles && !offer.starts_with(current);
  });
  return offers;
}

std::vector<std::string> args_offers(const std::vector<std::string>& words) {
  args a = {};
  CLI::App app("", "gwbox");
  try {
    args_declare(app, a);
    return offers_for(app, words);
  } catch (const CLI::Error&) {
    return {};
  }
}
