#include "wlan/rates.h"

#include "sys/board.h"
#include "wlan/rate_table.h"

enum { kCck, kOfdm, kHt, kHtGreenfield, kVht };

static unsigned mode_of(uint16_t word) {
  return word >> 13;
}

static unsigned bandwidth_of(uint16_t word) {
  return word >> 7 & 3;
}

static bool has_short_guard(uint16_t word) {
  return (word >> 9 & 1) != 0;
}

static constexpr unsigned kMcsField = 0x3F;

// The MT7615's codes for the OFDM rates 6 to 54 Mbit/s.
static constexpr uint8_t kOfdmCodes[] = {11, 15, 10, 14, 9, 13, 8, 12};

static unsigned ofdm_index(unsigned code, unsigned otherwise) {
  for (unsigned i = 0; i < sizeof kOfdmCodes; ++i) {
    if (kOfdmCodes[i] == code) return i;
  }
  return otherwise;
}

unsigned getLegacyOFDMMCSIndex(unsigned code) {
  return hasMTK7615() != 0 ? ofdm_index(code, code) : code;
}

// Where the table has a word's rate, and its multiplier.
struct rate_place {
  unsigned index;
  unsigned mcs;
  int factor;
};

static constexpr unsigned kOfdmBase = 4;
static constexpr unsigned kHtBase = 16;
static constexpr unsigned kHtRun = 24;
static constexpr unsigned kHtShortGuard = 48;
static constexpr unsigned kVhtBases[] = {112, 152, 192, 232};
static constexpr unsigned kVhtRun = 10;
static constexpr unsigned kVhtShortGuard = 160;

// No word indexes beyond the table, whatever its fields hold.
static_assert(kMcsField + kOfdmBase < kRateEntries);
static_assert(kHtBase + 3 * kHtRun + kHtShortGuard + 7 < kRateEntries);
static_assert(kVhtShortGuard + 3 * kVhtRun + kVhtBases[3] + 15 < kRateEntries);

// The rate of one stream, multiplied by the MCS's number of streams.
static rate_place ht_place(uint16_t word) {
  const unsigned field = word & kMcsField;
  const unsigned mcs = field % 8;
  const unsigned guard = has_short_guard(word) ? kHtShortGuard : 0;
  return {bandwidth_of(word) * kHtRun + guard + kHtBase + mcs, mcs,
          static_cast<int>(field / 8) + 1};
}

static rate_place vht_place(uint16_t word) {
  const unsigned mcs = word & 15;
  const unsigned run = word >> 4 & 3;
  const unsigned guard = has_short_guard(word) ? kVhtShortGuard : 0;
  return {guard + run * kVhtRun + kVhtBases[bandwidth_of(word)] + mcs, mcs, 1};
}

static rate_place place_of(uint16_t word) {
  const unsigned field = word & kMcsField;
  switch (mode_of(word)) {
    case kCck:
      return {field, field, 1};
    case kOfdm: {
      const unsigned index = getLegacyOFDMMCSIndex(field);
      return {index + kOfdmBase, index, 1};
    }
    case kHt:
    case kHtGreenfield:
      return ht_place(word);
    default:
      return vht_place(word);
  }
}

void getRate(uint16_t rate_word, int32_t* rate_out, uint8_t* mcs_out) {
  const rate_place place = place_of(rate_word);
  int32_t rate = MCSMappingRateTable[place.index];
  // Modes above VHT are halved too, although their entries are whole Mbit/s: kept on
  // purpose.
  if (mode_of(rate_word) != kVht) rate = rate * 5 / 10;
  // Units of 1024 with a minimum of 1000: kept on purpose.
  const int32_t scaled = rate * place.factor * 1024;
  *rate_out = scaled < 1000 ? 1000 : scaled;
  *mcs_out = static_cast<uint8_t>(place.mcs);
}

void setMCS(uint16_t rate_word, uint16_t* out) {
  const unsigned field = rate_word & kMcsField;
  unsigned mcs = field;
  if (mode_of(rate_word) == kOfdm) mcs = ofdm_index(field, 0);
  // 4 to 7 are the same rates with a short preamble.
  if (mode_of(rate_word) == kCck) mcs = field < 8 ? field % 4 : 0;
  *out = static_cast<uint16_t>((rate_word & ~kMcsField) | mcs);
}
