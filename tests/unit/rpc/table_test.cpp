// The procedure table against the committed wire snapshot, tests/wire_snapshot.txt:
// a line per procedure and, behind them, a line per type of the contract.
//
// Clients in the field depend on every line. Lines may be added together with
// what they describe, never changed or removed. After an addition:
//
//   gwbox run --no-portmap -- env WIRE_SNAPSHOT_OUTPUT=/path/of/the/snapshot
//       unit_tests --gtest_filter=WireSnapshot.*

#include <gtest/gtest.h>

#include <cctype>
#include <cstdlib>
#include <set>
#include <sstream>
#include <string>

#include "rpc/table_rows.h"
#include "unit_support.h"

// Types of the contract, one "struct name { members };" each without line breaks.
static std::string type_lines() {
  const std::string contract = read_file(WIRE_CONTRACT);
  std::string lines;
  size_t at = 0;
  while ((at = contract.find("\nstruct ", at)) != contract.npos) {
    const size_t end = contract.find("};", at);
    std::string line;
    for (const char c : contract.substr(at + 1, end + 2 - (at + 1))) {
      const bool blank = isspace(static_cast<unsigned char>(c)) != 0;
      if (!blank) line += c;
      if (blank && line.back() != ' ') line += ' ';
    }
    lines += line + "\n";
    at = end;
  }
  return lines;
}

static std::string snapshot() {
  std::string lines;
  for (const table_row& row : table_rows()) {
    lines += snapshot_line(row) + "\n";
  }
  return lines + type_lines();
}

static std::set<std::string> lines_of(const std::string& text) {
  std::set<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    lines.insert(line);
  }
  return lines;
}

TEST(WireSnapshot, NothingIsChangedOrRemovedAndAdditionsAreRecorded) {
  const std::string now = snapshot();
  const char* output = getenv("WIRE_SNAPSHOT_OUTPUT");
  if (output != nullptr) write_file(output, now);
  const auto present = lines_of(now);
  const auto committed = lines_of(read_file(output != nullptr ? output : WIRE_SNAPSHOT));
  for (const std::string& line : committed) {
    EXPECT_TRUE(present.contains(line)) << "changed or removed: " << line;
  }
  for (const std::string& line : present) {
    EXPECT_TRUE(committed.contains(line)) << "not in the snapshot: " << line;
  }
}

TEST(WireSnapshot, OrderIsTheOrderOfTheTable) {
  EXPECT_TRUE(read_file(WIRE_SNAPSHOT) == snapshot());
}

TEST(Table, Has362ProceduresIn2Ranges) {
  int base = 0;
  int extension = 0;
  for (const table_row& row : table_rows()) {
    base += row.number >= 1 && row.number <= 301;
    extension += row.number >= 0x01000001 && row.number <= 0x010000AB;
  }
  EXPECT_EQ(table_rows().size(), 362u);
  EXPECT_EQ(base, 274);
  EXPECT_EQ(extension, 88);
}

TEST(Table, Has166SettersAnd196Getters) {
  int setters = 0;
  for (const table_row& row : table_rows()) {
    setters += row.payload == "CODE";
  }
  EXPECT_EQ(setters, 166);
}

// Whether a buffer of that size makes sense for the payload and fits a reply.
static bool sensible_size(const table_row& row) {
  if (row.payload == "CODE" || row.payload == "NONE") return row.size == 0;
  if (row.payload == "INT") return row.size == 4;
  if (row.payload == "WORDS") return row.size > 0 && row.size % 4 == 0;
  return row.size > 0 && row.size <= 8256;
}

TEST(Table, SizesFollowFromThePayload) {
  for (const table_row& row : table_rows()) {
    EXPECT_TRUE(sensible_size(row)) << row.name;
  }
}
