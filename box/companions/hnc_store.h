// The settings and tables of the home network controller.
#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <string>

#include "companions/hnc_wire.h"

struct hnc_store {
  std::map<std::string, std::string> settings;  // KEY, or KEY/INDEX
  std::map<uint32_t, hnc_extender> extenders;
  std::map<uint32_t, hnc_supported> supported;
  nlohmann::json data;  // of the scenario, at the last update
};

// Starts with the built-in settings and tables.
void hnc_store_init(hnc_store& store);

// Takes over what has changed in the scenario since the last update.
void hnc_store_update(hnc_store& store, const nlohmann::json& data);

// Serves one request; REPLY is zeroed first.
void hnc_store_serve(hnc_store& store, const hnc_request& request, hnc_reply& reply);

// A text field, which may lack its terminator.
template <size_t SIZE>
std::string hnc_text(const char (&field)[SIZE]) {
  std::string text(field, SIZE);
  return text.substr(0, text.find('\0'));
}
