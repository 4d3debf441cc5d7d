#include "wire/search.h"

#include "base/text.h"
#include "wire/lookup.h"
#include "wire/topic.h"

static bool glob(std::string_view pattern, std::string_view text) {
  size_t p = 0, t = 0;
  size_t star = std::string_view::npos, resume = 0;
  while (t < text.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      resume = t;
    } else if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == text[t])) {
      ++p;
      ++t;
    } else if (star != std::string_view::npos) {
      p = star + 1;  // let the star match one more character
      t = ++resume;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == '*')
    ++p;
  return p == pattern.size();
}

bool search_matches(const procedure_row& procedure, std::string_view pattern) {
  std::string name_pattern = lookup_fold(pattern);
  std::string summary_pattern = text_upper(pattern);
  std::string summary = text_upper(procedure.summary);
  return glob("*" + name_pattern + "*", procedure.name) ||
         glob("*" + summary_pattern + "*", summary);
}

std::vector<const procedure_row*> search_procedures(const search_choice& choice) {
  std::vector<const procedure_row*> found;
  for (const procedure_row& procedure : table_procedures()) {
    const bool about = (choice.topic == nullptr || topic_of(procedure) == choice.topic) &&
                       !(choice.active && procedure.inert);
    if (about && search_matches(procedure, choice.pattern)) found.push_back(&procedure);
  }
  return found;
}
