// Checks the procedure table against the committed wire snapshot,
// tests/wire_snapshot.txt: a line per procedure, then a line per type of the contract.
//
// Clients in the field depend on every line. Never change or remove one; scripts/generate
// adds those of new procedures and types.

#include <gtest/gtest.h>

#include <cctype>
#include <cstdlib>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "rpc/table_rows.h"
#include "unit_support.h"

// The types of the contract, each as "struct name { members };" without line breaks.
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

static std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);)
    lines.push_back(line);
  return lines;
}

// Older lines have a number after TEXT, the size of the daemon's buffer. Texts travel
// with their own length, so the number is not compared.
static std::string compared(const std::string& line) {
  const size_t text = line.rfind(" TEXT ");
  return text == line.npos ? line : line.substr(0, text + 5);
}

// The snapshot's lines by the part that is compared.
static std::map<std::string, std::string> committed_lines() {
  std::map<std::string, std::string> lines;
  for (const std::string& line : lines_of(read_file(WIRE_SNAPSHOT)))
    lines[compared(line)] = line;
  return lines;
}

// Writes today's lines; those already in the snapshot stay as they are.
static void extend_snapshot(const std::string& file) {
  const auto committed = committed_lines();
  std::string text;
  for (const std::string& line : lines_of(snapshot())) {
    const auto old = committed.find(line);
    text += (old == committed.end() ? line : old->second) + "\n";
  }
  write_file(file, text);
}

TEST(WireSnapshot, NothingIsChangedOrRemoved) {
  const auto lines = lines_of(snapshot());
  const std::set<std::string> present(lines.begin(), lines.end());
  for (const auto& [line, as_committed] : committed_lines())
    EXPECT_TRUE(present.contains(line)) << "changed or removed: " << as_committed;
}

TEST(WireSnapshot, AdditionsAreRecorded) {
  const char* file = getenv("WIRE_SNAPSHOT_OUTPUT");
  if (file != nullptr) return extend_snapshot(file);
  std::vector<std::string> recorded;
  for (const std::string& line : lines_of(read_file(WIRE_SNAPSHOT)))
    recorded.push_back(compared(line));
  EXPECT_EQ(recorded, lines_of(snapshot())) << "when this was added on purpose: scripts/generate";
}

// What the library can send in one piece, without the reply's header and lengths.
static constexpr size_t kLargestAnswer = 8256;

TEST(Table, EveryAnswerFitsAReply) {
  for (const table_row& row : table_rows()) {
    const size_t bytes = row.payload == "WORDS" ? 4 * row.size : row.size;
    EXPECT_LE(bytes, kLargestAnswer) << row.name;
  }
}
