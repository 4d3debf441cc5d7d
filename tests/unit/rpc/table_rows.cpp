#include "rpc/table_rows.h"

#include "rpc/back_ends.h"
#include "rpc/row_argument.h"
#include "rpc/wire_support.h"

template <typename T>
static std::string sample();

template <>
std::string sample<int>() {
  return word(3);
}

template <>
std::string sample<u_int>() {
  return word(2);
}

template <>
std::string sample<u_short>() {
  return word(7);
}

template <>
std::string sample<string_t>() {
  return text_item("sample");
}

template <>
std::string sample<hnc_supported_hne_table>() {
  return zeros(2 + 3 * 64 + 4 * 256 + 2);
}

static std::string without_tail(std::string members) {
  if (members.size() >= 2) members.resize(members.size() - 2);
  return members;
}

// The rows are expanded twice: for the names of the members and for their bytes.

static std::vector<std::string> member_lists() {
  return {
#define NOTHING
#define SHARED(stem)
#define INDEX(name) "int " #name ", "
#define FIELD(type, name) #type " " #name ", "
#define ONLY_INDEX(name) "int " #name ", "
#define ONLY(type, name) #type " " #name ", "
#define PROCEDURE(number, name, stem, topic, members, ...) without_tail("" members),
#include "rpc/procedures.def"
  };
}

static std::vector<std::string> sample_arguments() {
  return {
#define NOTHING
#define SHARED(stem)
#define INDEX(name) +sample<int>()
#define FIELD(type, name) +sample<type>()
#define ONLY_INDEX(name) +sample<int>()
#define ONLY(type, name) +sample<type>()
#define PROCEDURE(number, name, stem, topic, members, ...) std::string() members,
#include "rpc/procedures.def"
  };
}

static std::vector<table_row> build_rows() {
  std::vector<table_row> rows = {
#define TYPE_NAME(type) TYPE_NAME_(type)
#define TYPE_NAME_(type) #type
#define CODE "CODE", 0
#define UPDATE "CODE", 0
#define INT(label) "INT", sizeof(int)
#define TEXT(label) "TEXT", 0
#define WORDS(type) "WORDS", sizeof(type)
#define IMAGE(type) "IMAGE", sizeof(type)
#define NONE "NONE", 0
#define ROW(kind, number, name, argument, ...) \
  {number, name, row_kind::kind, TYPE_NAME(argument), "", __VA_ARGS__, ""},
#define PROCEDURE(number, name, stem, topic, members, answer, back_end, ...) \
  ROW(kDerived, number, #name, ARGUMENT(stem, FIRST_##members), answer)
#define INERT(number, name, stem, topic, members, answer, back_end, ...) \
  ROW(kInert, number, #name, ARGUMENT(stem, FIRST_##members), answer)
#define INERT_REFUSED(number, name, stem, topic, members, answer, back_end, ...) \
  ROW(kRefused, number, #name, ARGUMENT(stem, FIRST_##members), answer)
#define OWN(number, name, stem, topic, members, answer, back_end, ...) \
  ROW(kOwn, number, #name, ARGUMENT(stem, FIRST_##members), answer)
#include "rpc/procedures.def"
  };
  const auto members = member_lists();
  const auto samples = sample_arguments();
  for (size_t i = 0; i < rows.size(); ++i) {
    rows[i].members = members[i];
    rows[i].sample = samples[i];
  }
  return rows;
}

const std::vector<table_row>& table_rows() {
  static const std::vector<table_row> kRows = build_rows();
  return kRows;
}

static std::string text_of_number(uint32_t number) {
  char text[16];
  snprintf(text, sizeof text, number < 0x01000000 ? "%u" : "0x%08X", number);
  return text;
}

std::string snapshot_line(const table_row& row) {
  return text_of_number(row.number) + " " + row.name + " " + row.argument + "(" + row.members +
         ") " + row.payload + (row.payload == "TEXT" ? "" : " " + std::to_string(row.size));
}
