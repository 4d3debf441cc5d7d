// The scenarios that ship, and their schema.
#include "scenario/document.h"

// Embeds a file of box/share in the program. The build passes that directory.
#define EMBED(symbol, file)                                                            \
  asm(".section .rodata\n" #symbol                                                     \
      "_begin:"                                                                        \
      ".incbin \"" SHARE_DIRECTORY "/" file "\"\n" #symbol "_end:\n.byte 0\n.text\n"); \
  extern "C" const char symbol##_begin[], symbol##_end[]

EMBED(scenario_schema_text, "scenario.schema.json");
EMBED(scenario_minimal_text, "minimal.json");
EMBED(scenario_apartment_text, "apartment.json");
EMBED(scenario_mesh_text, "mesh.json");

static std::string_view between(const char* begin, const char* end) {
  return {begin, static_cast<size_t>(end - begin)};
}

static constexpr const char* kNames[] = {"minimal", "apartment", "mesh"};

std::string_view scenario_shipped(std::string_view name) {
  if (name == kNames[0]) return between(scenario_minimal_text_begin, scenario_minimal_text_end);
  if (name == kNames[1]) return between(scenario_apartment_text_begin, scenario_apartment_text_end);
  if (name == kNames[2]) return between(scenario_mesh_text_begin, scenario_mesh_text_end);
  return {};
}

std::string_view scenario_schema() {
  return between(scenario_schema_text_begin, scenario_schema_text_end);
}

std::span<const char* const> scenario_all() {
  return kNames;
}

std::string scenario_names() {
  std::string names;
  for (const char* name : kNames)
    names += (names.empty() ? "" : ", ") + std::string(name);
  return names;
}
