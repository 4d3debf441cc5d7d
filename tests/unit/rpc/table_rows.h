#pragma once

#include <cstdint>
#include <string>
#include <vector>

// The procedure table as the tests see it.

enum class row_kind { kDerived, kInert, kRefused, kOwn };

struct table_row {
  uint32_t number;
  std::string name;
  row_kind kind;
  std::string argument;  // its type
  std::string members;   // "int bss, string_t ssid"
  std::string payload;
  size_t size;         // of the answer, in bytes; 0 for a text, whose length varies
  std::string sample;  // an encoded argument
};

// All rows, in table order.
const std::vector<table_row>& table_rows();

// One line of the wire snapshot: number, name, argument, members and answer, with the
// answer's size in bytes unless it varies.
std::string snapshot_line(const table_row& row);
