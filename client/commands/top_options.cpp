#include "commands/top_options.h"

#include <algorithm>

#include "base/text.h"
#include "values/stations.h"
#include "wire/lookup.h"

// "1,3,9"; false for anything else.
static bool read_bsses(const std::string& text, std::vector<int>& bsses) {
  bsses.clear();
  for (size_t at = 0; at <= text.size();) {
    const size_t end = std::min(text.find(',', at), text.size());
    uint32_t bss = 0;
    if (!lookup_parse_number(text.substr(at, end - at), &bss)) return false;
    if (bss < 1 || bss > kBssMax) return false;
    const int number = static_cast<int>(bss);
    if (std::find(bsses.begin(), bsses.end(), number) == bsses.end()) bsses.push_back(number);
    at = end + 1;
  }
  return true;
}

std::string top_order_names(const char* separator) {
  std::string names;
  for (const top_order& order : top_orders())
    names.append(names.empty() ? "" : separator).append(order.name);
  return names;
}

// Takes "--sort KEY" or "--bss LIST" off the front. Returns false if it is missing, or wrong,
// which sets the error.
static bool take_choice(std::vector<std::string>& words, top_choice& choice, std::string& error) {
  if (words.size() < 2 || (words[0] != "--sort" && words[0] != "--bss")) return false;
  if (words[0] == "--bss") {
    if (!read_bsses(words[1], choice.bsses))
      error =
          "--bss takes numbers of BSSs from 1 to 16, such as 1 or 1,9, not " + text_quote(words[1]);
  } else {
    const auto orders = top_orders();
    const auto named = [&](const top_order& order) { return words[1] == order.name; };
    const auto found = std::find_if(orders.begin(), orders.end(), named);
    if (found != orders.end())
      choice.order = &*found;
    else
      error = "--sort takes " + top_order_names(", ") + ", not " + text_quote(words[1]);
  }
  words.erase(words.begin(), words.begin() + 2);
  return error.empty();
}

bool top_options_read(std::vector<std::string> words, top_options& settings, std::string& error) {
  settings.choice.order = &top_orders().front();
  for (int bss = 1; bss <= kBssMax; ++bss)
    settings.choice.bsses.push_back(bss);
  do {
    if (!repeat_take(words, settings.repeat, error)) return false;
  } while (take_choice(words, settings.choice, error));
  if (error.empty() && !words.empty())
    error = "top takes [--every TIME] [--count N] [--sort KEY] [--bss LIST] only";
  return error.empty();
}
