#include "support/profile_model.h"

#include <algorithm>

#include "support/profile_lines.h"

static constexpr size_t kLongestLine = 1727;
static constexpr size_t kLongestKey = 31;
static constexpr size_t kLongestValue = 1567;
static constexpr size_t kLongestIndexed = 255;

struct model_line {
  bool is_setting;
  std::string key, value;
};

static model_line parsed(const std::string& line) {
  const size_t equals = line.find('=');
  if (equals == std::string::npos) return {false, "", ""};
  std::string value = line.substr(equals + 1);
  if (!value.empty()) value.pop_back();
  return {true, line.substr(0, equals), value};
}

std::optional<std::string> model_value(const std::string& profile, const std::string& key,
                                       size_t max_len) {
  for (const std::string_view piece : profile_pieces(profile)) {
    const std::string line(piece);
    const model_line setting = parsed(line);
    if (setting.is_setting && setting.key == key && setting.value.size() <= max_len) {
      return setting.value;
    }
  }
  return {};
}

static std::vector<std::string> split(const std::string& list) {
  std::vector<std::string> fields(1);
  for (const char c : list) {
    if (c == ';') {
      fields.emplace_back();
    } else {
      fields.back() += c;
    }
  }
  return fields;
}

std::optional<std::string> model_field(const std::string& profile, const std::string& key,
                                       int index, size_t max_len) {
  if (index < 0) return {};
  const std::optional<std::string> value = model_value(profile, key, kLongestIndexed);
  if (!value) return {};
  // The store passes a value on as a C string.
  const std::vector<std::string> fields = split(value->c_str());
  const auto place = static_cast<size_t>(index);
  if (place >= fields.size()) return {};
  return place + 1 == fields.size() ? fields[place] : fields[place].substr(0, max_len);
}

std::optional<std::string> model_replaced(const std::string& list, const std::string& field,
                                          int index) {
  if (index < 0 || index > static_cast<int>(kLongestValue)) return {};
  std::vector<std::string> fields = split(list);
  const auto place = static_cast<size_t>(index);
  if (fields.size() <= place) fields.resize(place + 1);
  fields[place] = field;
  std::string out = fields[0];
  for (size_t i = 1; i < fields.size(); ++i)
    out += ";" + fields[i];
  if (out.size() > kLongestValue) return {};
  return out;
}

static bool holds(const std::string& text, const char* characters) {
  return text.find_first_of(characters) != std::string::npos;
}

static bool refused(const model_request& request, bool indexed) {
  return holds(request.key, "\r\n=") || holds(request.value, "\r\n") ||
         (indexed && holds(request.value, ";")) || request.key.size() > kLongestKey ||
         request.value.size() > kLongestValue ||
         request.key.size() + request.value.size() + 2 > kLongestLine;
}

static bool any_refused(const std::vector<model_request>& requests, bool indexed) {
  return std::any_of(requests.begin(), requests.end(),
                     [&](const model_request& each) { return refused(each, indexed); });
}

static bool any_negative(const std::vector<model_request>& requests, bool indexed) {
  return indexed && std::any_of(requests.begin(), requests.end(),
                                [](const model_request& each) { return each.index < 0; });
}

// The value that a request gives a line; nothing if it does not fit.
static std::optional<std::string> given(const model_request& request, const model_line& line,
                                        bool indexed) {
  if (!indexed) return request.value;
  const std::optional<std::string> list = model_replaced(line.value, request.value, request.index);
  if (list && request.key.size() + list->size() + 2 > kLongestLine) return {};
  return list;
}

static const model_request* asked(const std::vector<model_request>& requests,
                                  const model_line& line) {
  for (const model_request& request : requests) {
    if (line.is_setting && request.key == line.key) return &request;
  }
  return nullptr;
}

model_outcome model_update(const std::string& profile, const std::vector<model_request>& requests,
                           bool indexed) {
  if (any_negative(requests, indexed)) return {2, profile};
  if (any_refused(requests, indexed)) return {0, profile};
  std::string out;
  size_t changed = 0;
  size_t unchanged = 0;
  for (const std::string_view piece : profile_pieces(profile)) {
    const std::string line(piece);
    const model_line setting = parsed(line);
    const model_request* request = asked(requests, setting);
    const std::optional<std::string> value =
        request == nullptr ? setting.value : given(*request, setting, indexed);
    if (!value) return {0, profile};
    const bool same = *value == setting.value;
    out += same ? line : setting.key + "=" + *value + "\n";
    if (request != nullptr) ++(same ? unchanged : changed);
  }
  if (unchanged == requests.size()) return {2, profile};
  if (changed + unchanged != requests.size()) return {0, profile};
  return {1, out};
}

model_outcome model_forced(const std::string& profile, const std::vector<model_request>& requests,
                           bool indexed) {
  if (any_negative(requests, indexed)) return {2, profile};
  if (any_refused(requests, indexed)) return {0, profile};
  if (requests.empty()) return {2, profile};
  std::string out;
  size_t count = 0;
  for (const std::string_view piece : profile_pieces(profile)) {
    const std::string line(piece);
    const model_line setting = parsed(line);
    if (asked({requests[0]}, setting) == nullptr) {
      out += line;
      continue;
    }
    const std::optional<std::string> value = given(requests[0], setting, indexed);
    if (!value) return {0, profile};
    out += setting.key + "=" + *value + "\n";
    ++count;
  }
  if (count == 0) {
    if (!out.empty() && out.back() != '\n') out += '\n';
    out += requests[0].key + "=" + requests[0].value + "\n";
    ++count;
  }
  if (count != requests.size()) return {0, profile};
  return {1, out};
}
