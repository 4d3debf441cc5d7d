#include "values/redact.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cctype>

#include "base/text.h"
#include "values/payload.h"

using ordered_json = nlohmann::ordered_json;

static constexpr char kRedacted[] = "(redacted)";
static constexpr size_t kMacLength = 17;

// Six pairs of digits joined by colons or dashes, normalised; "" for any other text.
static std::string mac_of(const std::string& text) {
  if (text.size() != kMacLength) return "";
  std::string mac = text_lower(text);
  std::replace(mac.begin(), mac.end(), '-', ':');
  for (size_t i = 0; i < kMacLength; ++i) {
    const auto c = static_cast<unsigned char>(mac[i]);
    if (i % 3 == 2 ? c != ':' : isxdigit(c) == 0) return "";
  }
  return mac;
}

static bool is_ipv4(const std::string& text) {
  in_addr address{};
  return inet_pton(AF_INET, text.c_str(), &address) == 1;
}

static bool is_ipv6(const std::string& text) {
  in6_addr address{};
  return inet_pton(AF_INET6, text.c_str(), &address) == 1;
}

// A number, a time of day or a version. Not an address, and too short for a telephone number.
static bool is_plain_number(const std::string& text) {
  constexpr size_t kLongest = 8;
  return text.size() <= kLongest && text.find_first_not_of("0123456789.:") == std::string::npos &&
         !is_ipv4(text) && !is_ipv6(text);
}

// The replacement of a text. `format` makes it from the number of texts so far, including this.
template <typename Format>
static std::string other_name(std::map<std::string, std::string>& names, const std::string& text,
                              Format format) {
  const auto [found, added] = names.try_emplace(text);
  if (added) found->second = format(names.size());
  return found->second;
}

// Addresses that are never assigned: locally administered ones, and those reserved for
// benchmarks and documentation.
static std::string other_address(const std::string& text, redaction& state) {
  std::string mac = mac_of(text);
  if (mac == "00:00:00:00:00:00" || mac == "ff:ff:ff:ff:ff:ff") return mac;
  if (!mac.empty())
    return other_name(state.macs, mac, [](size_t number) {
      return text_format("02:00:00:%02zx:%02zx:%02zx", number >> 16 & 0xff, number >> 8 & 0xff,
                         number & 0xff);
    });
  if (text == "0.0.0.0" || text == "::") return text;
  if (is_ipv4(text))
    return other_name(state.ipv4s, text, [](size_t number) {
      return text_format("198.18.%zu.%zu", number >> 8 & 0xff, number & 0xff);
    });
  if (!is_ipv6(text)) return kRedacted;
  return other_name(state.ipv6s, text,
                    [](size_t number) { return text_format("2001:db8::%zx", number); });
}

static ordered_json redacted(const ordered_json& value, content holds, redaction& state) {
  if (holds == content::kFree || value.is_null() || value == "") return value;
  if (holds == content::kSecret || !value.is_string()) return kRedacted;
  const std::string text = value.get<std::string>();
  if (holds == content::kAddress) return other_address(text, state);
  if (holds == content::kNumber && is_plain_number(text)) return value;
  return other_name(state.names, text,
                    [](size_t number) { return text_format("name-%zu", number); });
}

// A member of an object. Only free texts keep their "escaped" mark.
static void put_redacted(ordered_json& object, const ordered_json& from, const std::string& name,
                         content holds, redaction& state) {
  if (holds == content::kUnsaid) {
    ++state.left_out;
    return;
  }
  object[name] = redacted(from[name], holds, state);
  const std::string mark = name + "_escaped";
  if (holds == content::kFree && from.contains(mark)) object[mark] = from[mark];
}

static ordered_json redacted_fields(std::span<const payload_field> fields,
                                    const ordered_json& record, redaction& state) {
  ordered_json object = ordered_json::object();
  for (const payload_field& field : fields) {
    if (record.contains(field.name)) put_redacted(object, record, field.name, field.holds, state);
  }
  return object;
}

static ordered_json redacted_record(const payload_layout& layout, const ordered_json& record,
                                    redaction& state) {
  ordered_json object = redacted_fields(layout.fields, record, state);
  if (layout.rows == nullptr) return object;
  ordered_json& list = object[layout.rows->name] = ordered_json::array();
  for (const ordered_json& row : record[layout.rows->name])
    list.push_back(redacted_fields(layout.rows->fields, row, state));
  return object;
}

void redact(const procedure_row& procedure, ordered_json& answer, redaction& state) {
  if (!answer.contains("value")) return;
  ordered_json kept = answer;
  kept.erase("value");
  kept.erase("value_escaped");
  const payload_layout* layout = payload_find(procedure);
  if (layout != nullptr)
    kept["value"] = redacted_record(*layout, answer["value"], state);
  else
    put_redacted(kept, answer, "value", payload_value(procedure).holds, state);
  answer = kept;
}
