#include "trust/hostile/rows.h"

#include <algorithm>

#include "rpc/column_types.h"
#include "support/lifecycle.h"
#include "support/wire.h"

template <typename T>
static constexpr member_kind kKind = T::not_known_here;
template <>
constexpr member_kind kKind<int> = member_kind::kNumber;
template <>
constexpr member_kind kKind<u_int> = member_kind::kNumber;
template <>
constexpr member_kind kKind<u_short> = member_kind::kNumber;
template <>
constexpr member_kind kKind<string_t> = member_kind::kText;
template <>
constexpr member_kind kKind<hnc_supported_hne_table> = member_kind::kRecord;

const std::vector<row>& all_rows() {
  static const std::vector<row> kRows = {
#define NOTHING
#define SHARED(stem)
#define INDEX(name) member_kind::kNumber,
#define FIELD(type, name) kKind<type>,
#define ONLY_INDEX(name) member_kind::kNumber,
#define ONLY(type, name) kKind<type>,
#define PROCEDURE(number, name, stem, topic, members, ...) {number, #name, {members}},
#include "rpc/procedures.def"
  };
  return kRows;
}

bool moves_radios(const row& procedure) {
  static constexpr uint32_t kNumbers[] = {kLoad,    kInit,    kReset,   kRestartAll,
                                          kRestart, kSetPrek, kUndoPrek};
  return std::find(std::begin(kNumbers), std::end(kNumbers), procedure.number) !=
         std::end(kNumbers);
}

// Each character of the record's texts is sent as a number.
static std::string record_of(const std::string& text, uint32_t number) {
  std::string bytes = xdr_word(number) + xdr_word(number);
  for (const size_t size : {64, 64, 64, 256, 256, 256, 256}) {
    for (size_t i = 0; i < size; ++i)
      bytes += xdr_word(i < text.size() ? static_cast<unsigned char>(text[i]) : 0);
  }
  return bytes + xdr_word(number) + xdr_word(number);
}

static std::string member_of(member_kind kind, const std::string& text, uint32_t number) {
  switch (kind) {
    case member_kind::kNumber:
      return xdr_word(number);
    case member_kind::kText:
      return xdr_text(text);
    case member_kind::kRecord:
      return record_of(text, number);
  }
  return "";
}

static constexpr size_t kNowhere = ~size_t{0};

static std::string encode(const row& procedure, uint32_t usual, size_t place,
                          const std::string& text, uint32_t number) {
  std::string bytes;
  for (size_t i = 0; i < procedure.members.size(); ++i) {
    const bool here = i == place;
    bytes += member_of(procedure.members[i], here ? text : "x", here ? number : usual);
  }
  return bytes;
}

std::string arguments(const row& procedure, uint32_t number) {
  return encode(procedure, number, kNowhere, "x", number);
}

std::string arguments_with(const row& procedure, size_t place, const std::string& text) {
  return encode(procedure, 1, place, text, 1);
}

std::string arguments_with(const row& procedure, size_t place, uint32_t number) {
  return encode(procedure, 1, place, "x", number);
}
