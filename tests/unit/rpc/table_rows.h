#pragma once

#include <cstdint>
#include <string>
#include <vector>

// The procedure table as the tests see it.

enum class row_kind { derived, inert, refused, own };

struct table_row {
  uint32_t number;
  std::string name;
  row_kind kind;
  std::string argument;  // type
  std::string members;   // "int bss, string_t ssid"
  std::string payload;
  size_t size;         // bytes of what comes back; 0 of a text, whose length varies
  std::string sample;  // bytes of an argument
};

// All rows, in the order of the table.
const std::vector<table_row>& table_rows();

// One line of the wire snapshot: number, name, argument, members and answer, with
// its size in bytes unless that varies.
std::string snapshot_line(const table_row& row);
