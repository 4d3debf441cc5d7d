#pragma once

#include <optional>
#include <string>
#include <vector>

// A second implementation of the profile store, slow and with copies everywhere, to
// compare the store with.

struct model_request {
  std::string key;
  int index;  // negative: refused; ignored in the forms without an index
  std::string value;
};

struct model_outcome {
  unsigned result;  // 1 written, 2 nothing to change, 0 failed
  std::string content;
};

std::optional<std::string> model_value(const std::string& profile, const std::string& key,
                                       size_t max_len);
std::optional<std::string> model_field(const std::string& profile, const std::string& key,
                                       int index, size_t max_len);

// The list with the field replaced; nothing if it does not fit the store.
std::optional<std::string> model_replaced(const std::string& list, const std::string& field,
                                          int index);

model_outcome model_update(const std::string& profile, const std::vector<model_request>& requests,
                           bool indexed);
model_outcome model_forced(const std::string& profile, const std::vector<model_request>& requests,
                           bool indexed);
