#include "values/constraint.h"

#include <arpa/inet.h>

#include <algorithm>
#include <sstream>

#include "base/text.h"
#include "wire/lookup.h"

static constexpr size_t kKeyDigits = 64;
// Longer ranges are not listed value by value.
static constexpr int64_t kOfferedMax = 8;

static bool within(const constraint& limits, int64_t value) {
  return std::ranges::any_of(constraint_ranges(limits), [&](const constraint_range& range) {
    return value >= range.low && value <= range.high;
  });
}

static bool all_of(std::string_view text, const char* characters) {
  return text.find_first_not_of(characters) == std::string_view::npos;
}

static constexpr char kDigits[] = "0123456789";
static constexpr char kHexDigits[] = "0123456789abcdefABCDEF";

static bool is_hex(std::string_view text) {
  return all_of(text, kHexDigits);
}

static bool is_mac(std::string_view text) {
  if (text.size() != 17) return false;
  for (size_t i = 0; i < text.size(); ++i) {
    if (i % 3 == 2 ? text[i] != ':' : !is_hex(text.substr(i, 1))) return false;
  }
  return true;
}

static bool is_ipv4(std::string_view text) {
  in_addr address{};
  return inet_pton(AF_INET, std::string(text).c_str(), &address) == 1;
}

static std::vector<std::string> words_of(const constraint& limits) {
  std::istringstream stream(limits.words);
  std::vector<std::string> words;
  for (std::string word; stream >> word;)
    words.push_back(word);
  return words;
}

// "A", "A or B", "A, B or C"
static std::string joined(const std::vector<std::string>& parts) {
  std::string out;
  for (size_t i = 0; i < parts.size(); ++i)
    out += (i == 0 ? "" : i + 1 == parts.size() ? " or " : ", ") + parts[i];
  return out;
}

static std::string range_words(const constraint_range& range) {
  std::string out = std::to_string(range.low);
  if (range.high != range.low) out += " to " + std::to_string(range.high);
  return range.meaning == nullptr ? out : out + " (" + range.meaning + ")";
}

static std::string ranges_words(const constraint& limits) {
  std::vector<std::string> parts;
  for (const constraint_range& range : constraint_ranges(limits))
    parts.push_back(range_words(range));
  return joined(parts);
}

static std::string length_words(const constraint& limits) {
  if (limits.count == 1 && limits.at[0].low == 0)
    return "at most " + std::to_string(limits.at[0].high) + " bytes";
  return ranges_words(limits) + " bytes";
}

static std::string hex_words(const constraint& limits) {
  const bool fixed = std::ranges::all_of(constraint_ranges(limits),
                                         [](const constraint_range& r) { return r.low == r.high; });
  return ranges_words(limits) + " hexadecimal digits" + (fixed ? "" : ", an even number");
}

static bool is_control(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == 0x7f;
}

static size_t misfit_in_text(const constraint& limits, std::string_view given, const char** what) {
  for (size_t i = 0; i < given.size(); ++i) {
    const bool separates = limits.list_field && given[i] == ';';
    if (!separates && !is_control(given[i])) continue;
    *what = separates                              ? "';', which separates the BSSs in the profile"
            : given[i] == '\n' || given[i] == '\r' ? "a line end"
                                                   : "a control character";
    return i + 1;
  }
  return 0;
}

size_t constraint_misfit(const constraint& limits, std::string_view given, const char** what) {
  switch (limits.kind) {
    case constraint_kind::kAnyText:
    case constraint_kind::kText:
    case constraint_kind::kPassphrase:
      return misfit_in_text(limits, given, what);
    case constraint_kind::kHex:
      *what = "not a hexadecimal digit";
      return given.find_first_not_of(kHexDigits) + 1;
    case constraint_kind::kDigits:
      *what = "not a digit";
      return given.find_first_not_of(kDigits) + 1;
    case constraint_kind::kByType:
    case constraint_kind::kInteger:
    case constraint_kind::kSwitch:
    case constraint_kind::kNumber:
    case constraint_kind::kWord:
    case constraint_kind::kMac:
    case constraint_kind::kIpv4:
      break;
  }
  return 0;
}

const char* constraint_misfit_pattern(const constraint& limits) {
  return limits.list_field ? "[\\u0000-\\u001f\\u007f;]" : "[\\u0000-\\u001f\\u007f]";
}

bool constraint_parse_integer(std::string_view text, int64_t* value) {
  const bool negative = text.starts_with('-');
  uint32_t magnitude = 0;
  if (!lookup_parse_number(text.substr(negative ? 1 : 0), &magnitude)) return false;
  *value = negative ? -int64_t{magnitude} : int64_t{magnitude};
  return true;
}

bool constraint_parse_switch(std::string_view text, bool* value) {
  const std::string word = text_lower(text);
  *value = word == "1" || word == "true" || word == "on" || word == "yes";
  return *value || word == "0" || word == "false" || word == "off" || word == "no";
}

bool constraint_holds(const constraint& limits, std::string_view given) {
  const auto size = static_cast<int64_t>(given.size());
  int64_t number = 0;
  bool on = false;
  const char* misfit = nullptr;
  if (constraint_misfit(limits, given, &misfit) != 0) return false;
  switch (limits.kind) {
    case constraint_kind::kByType:
    case constraint_kind::kAnyText:
      return true;
    case constraint_kind::kSwitch:
      return constraint_parse_switch(given, &on);
    case constraint_kind::kInteger:
    case constraint_kind::kNumber:
      return constraint_parse_integer(given, &number) && within(limits, number);
    case constraint_kind::kWord:
      return std::ranges::count(words_of(limits), given) > 0;
    case constraint_kind::kText:
      return within(limits, size);
    case constraint_kind::kHex:
      return within(limits, size) && size % 2 == 0;
    case constraint_kind::kDigits:
      return within(limits, size);
    case constraint_kind::kPassphrase:
      return within(limits, size) || (given.size() == kKeyDigits && is_hex(given));
    case constraint_kind::kMac:
      return is_mac(given);
    case constraint_kind::kIpv4:
      return is_ipv4(given);
  }
  return false;
}

std::string constraint_words(const constraint& limits) {
  switch (limits.kind) {
    case constraint_kind::kByType:
    case constraint_kind::kInteger:
    case constraint_kind::kAnyText:
      return limits.list_field ? "without ';'" : "";
    case constraint_kind::kSwitch:
      return "on or off";
    case constraint_kind::kNumber:
      return ranges_words(limits);
    case constraint_kind::kWord:
      return joined(words_of(limits));
    case constraint_kind::kText:
      return length_words(limits);
    case constraint_kind::kHex:
      return hex_words(limits);
    case constraint_kind::kDigits:
      return ranges_words(limits) + " digits";
    case constraint_kind::kPassphrase:
      return length_words(limits) + ", or 64 hexadecimal digits";
    case constraint_kind::kMac:
      return "a MAC address such as 00:11:22:33:44:55";
    case constraint_kind::kIpv4:
      return "an IPv4 address, 0.0.0.0 for none";
  }
  return "";
}

std::string constraint_form(const constraint& limits) {
  switch (limits.kind) {
    case constraint_kind::kInteger:
      return "an integer, " + ranges_words(limits);
    case constraint_kind::kAnyText:
      return "a text";
    case constraint_kind::kNumber:
      return "an integer, " + constraint_words(limits);
    case constraint_kind::kText:
    case constraint_kind::kPassphrase:
      return "a text of " + constraint_words(limits);
    case constraint_kind::kByType:
    case constraint_kind::kSwitch:
    case constraint_kind::kWord:
    case constraint_kind::kHex:
    case constraint_kind::kDigits:
    case constraint_kind::kMac:
    case constraint_kind::kIpv4:
      break;
  }
  return constraint_words(limits);
}

std::vector<std::string> constraint_values(const constraint& limits) {
  if (limits.kind == constraint_kind::kSwitch) return {"on", "off"};
  if (limits.kind == constraint_kind::kWord) return words_of(limits);
  std::vector<std::string> values;
  if (limits.kind != constraint_kind::kNumber) return values;
  for (const constraint_range& range : constraint_ranges(limits)) {
    if (range.high - range.low >= kOfferedMax) continue;
    for (int64_t value = range.low; value <= range.high; ++value)
      values.push_back(std::to_string(value));
  }
  return values;
}

std::string constraint_nearest(const constraint& limits, std::string_view given) {
  if (limits.kind != constraint_kind::kWord || given.empty()) return "";
  const std::string wanted = text_lower(given);
  std::string nearest;
  size_t least = SIZE_MAX;
  for (const std::string& word : words_of(limits)) {
    const std::string candidate = text_lower(word);
    // A prefix counts as close, however much is missing. If two are equally close, prefer the
    // one of the same length.
    const bool begins = wanted.size() >= 3 && candidate.starts_with(wanted);
    const size_t other = wanted.size() == candidate.size() ? 0 : 1;
    const size_t farness = begins ? 1 : 2 * lookup_distance(wanted, candidate) + other;
    if (farness >= least || farness > wanted.size()) continue;
    least = farness;
    nearest = word;
  }
  return nearest;
}
