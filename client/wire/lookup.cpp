#include "wire/lookup.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>

#include "base/text.h"

// Smaller is closer; SIZE_MAX is not close. A name without its prefix or its end is close,
// however many edits that takes.
static size_t nearness(std::string_view wanted, std::string_view candidate) {
  size_t edits = lookup_distance(wanted, candidate);
  size_t prefix = candidate.find('_') + 1;  // 0 if there is none
  std::string_view bare = candidate.substr(prefix);
  if (prefix > 0) edits = std::min(edits, lookup_distance(wanted, bare) + 1);
  size_t allowed = wanted.size() < 6 ? 2 : 3;
  if (edits <= allowed) return edits;
  bool begins = candidate.starts_with(wanted) || bare.starts_with(wanted);
  return wanted.size() >= 4 && begins ? allowed + candidate.size() : SIZE_MAX;
}

std::string lookup_fold(std::string_view name) {
  std::string out = text_upper(name);
  std::replace(out.begin(), out.end(), '-', '_');
  return out;
}

size_t lookup_distance(std::string_view a, std::string_view b) {
  std::vector<size_t> row(b.size() + 1);
  for (size_t j = 0; j <= b.size(); ++j)
    row[j] = j;
  for (size_t i = 1; i <= a.size(); ++i) {
    size_t diagonal = row[0];
    row[0] = i;
    for (size_t j = 1; j <= b.size(); ++j) {
      size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
    }
  }
  return row[b.size()];
}

const procedure_row* lookup_name(std::string_view name) {
  std::string folded = lookup_fold(name);
  for (const procedure_row& procedure : table_procedures())
    if (folded == procedure.name) return &procedure;
  return nullptr;
}

const procedure_row* lookup_number(uint32_t number) {
  for (const procedure_row& procedure : table_procedures())
    if (procedure.number == number) return &procedure;
  return nullptr;
}

const procedure_row* lookup_procedure(std::string_view text) {
  uint32_t number = 0;
  if (lookup_parse_number(text, &number)) return lookup_number(number);
  return lookup_name(text);
}

bool lookup_is_number(std::string_view text) {
  return !text.empty() && text[0] >= '0' && text[0] <= '9';
}

bool lookup_parse_number(std::string_view text, uint32_t* number) {
  if (!lookup_is_number(text)) return false;
  std::string digits(text);
  int base = digits.starts_with("0x") || digits.starts_with("0X") ? 16 : 10;
  char* end = nullptr;
  errno = 0;
  unsigned long long value = strtoull(digits.c_str(), &end, base);
  if (errno != 0 || end != digits.c_str() + digits.size() || value > UINT32_MAX) return false;
  *number = static_cast<uint32_t>(value);
  return true;
}

std::vector<std::string> lookup_near(std::string_view name, std::span<const char* const> others) {
  struct candidate {
    size_t nearness;
    bool inert;
    std::string name;
  };
  std::string wanted = lookup_fold(name);
  std::vector<candidate> found;
  for (const char* other : others)
    found.push_back({nearness(wanted, text_upper(other)), false, other});
  for (const procedure_row& procedure : table_procedures())
    found.push_back(
        {nearness(wanted, procedure.name), procedure.inert, text_lower(procedure.name)});
  std::erase_if(found, [](const candidate& c) { return c.nearness == SIZE_MAX; });
  std::stable_sort(found.begin(), found.end(), [](const candidate& a, const candidate& b) {
    return std::pair(a.nearness, a.inert) < std::pair(b.nearness, b.inert);
  });
  found.resize(std::min(found.size(), size_t{3}));
  // Prefer an active procedure even if it is a worse match.
  std::stable_partition(found.begin(), found.end(), [](const candidate& c) { return !c.inert; });
  std::vector<std::string> names(found.size());
  std::ranges::transform(found, names.begin(), &candidate::name);
  return names;
}

std::string lookup_display_name(const procedure_row& procedure) {
  return text_lower(procedure.name);
}

std::string lookup_display_number(uint32_t number) {
  return text_format(number < 0x1000 ? "%u" : "0x%08X", number);
}
