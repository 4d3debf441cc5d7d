// Rates: a scenario's texts as packed rate words, and the best rate that a radio can have.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "driver/parts.h"

enum { kModeCck, kModeOfdm, kModeHt, kModeVht = 4 };
static constexpr int kModeAt = 13, kShortAt = 9, kWidthAt = 7, kStreamsAt = 4;

// Mbit/s by index, and how the dual-band chip codes the OFDM ones.
static constexpr const char* kCckRates[] = {"1", "2", "5.5", "11"};
static constexpr const char* kOfdmRates[] = {"6", "9", "12", "18", "24", "36", "48", "54"};
static constexpr int kOfdmCodes[] = {11, 15, 10, 14, 9, 13, 8, 12};

static int width_code(int mhz) {
  return mhz == 160 ? 3 : mhz == 80 ? 2 : mhz == 40 ? 1 : 0;
}

template <size_t N>
static int index_of(const char* const (&rates)[N], const std::string& rate) {
  for (size_t i = 0; i < N; ++i) {
    if (rate == rates[i]) return static_cast<int>(i);
  }
  return 0;
}

static int legacy_word(const std::string& rate, bool dual_band_chip) {
  if (rate.starts_with("CCK ")) return kModeCck << kModeAt | index_of(kCckRates, rate.substr(4));
  int index = index_of(kOfdmRates, rate.substr(strlen("OFDM ")));
  return kModeOfdm << kModeAt | (dual_band_chip ? kOfdmCodes[index] : index);
}

uint16_t driver_rate_word(const std::string& rate, bool dual_band_chip) {
  int mhz = 20, mcs = 0, streams = 1, word = 0;
  int is_short = rate.ends_with(" SGI") ? 1 << kShortAt : 0;
  if (rate.starts_with("CCK ") || rate.starts_with("OFDM ")) {
    word = legacy_word(rate, dual_band_chip);
  } else if (sscanf(rate.c_str(), "VHT%d MCS%d NSS%d", &mhz, &mcs, &streams) == 3) {
    word = kModeVht << kModeAt | is_short | (streams - 1) << kStreamsAt | mcs;
  } else if (sscanf(rate.c_str(), "HT%d MCS%d", &mhz, &mcs) == 2) {
    word = kModeHt << kModeAt | is_short | mcs;
  } else {
    word = static_cast<int>(strtol(rate.c_str(), nullptr, 0));
  }
  return static_cast<uint16_t>(word | width_code(mhz) << kWidthAt);
}

static int number_of(const driver_radio& radio, const char* key, int otherwise) {
  auto found = radio.profile.find(key);
  return found == radio.profile.end() ? otherwise : atoi(found->second.c_str());
}

// Data subcarriers of the channel widths.
static int subcarriers(int mhz) {
  switch (mhz) {
    case 160:
      return 468;
    case 80:
      return 234;
    case 40:
      return 108;
    default:
      return 52;
  }
}

// The best coding carries 5/6 of 6 (HT) or 8 (VHT) bits per subcarrier, stream and symbol. A symbol
// takes 3.6 or 4 microseconds.
int64_t driver_best_rate(const driver_state& state, int number) {
  const driver_radio& radio = state.radios[number];
  int mode = number_of(radio, "WirelessMode", number == 0 ? 9 : 14);
  bool vht = number == 1 && (mode == 14 || mode == 15);
  bool ht = vht || mode == 6 || mode == 7 || mode == 8 || mode == 9 || mode == 11;
  if (!ht) return mode == 1 ? 11000000 : 54000000;
  int mhz = number_of(radio, "HT_BW", 0) == 1 ? 40 : 20;
  int wider = number_of(radio, "VHT_BW", 0);
  if (vht && mhz == 40 && wider >= 1) mhz = wider == 2 ? 160 : 80;
  int streams = number_of(radio, "HT_TxStream", 2);
  if (streams < 1 || streams > 4) streams = 1;
  bool is_short = number_of(radio, vht ? "VHT_SGI" : "HT_GI", 1) == 1;
  bool best_is_barred = vht && mhz == 20 && streams != 3;  // no MCS 9 there
  double bits = vht ? (best_is_barred ? 6.0 : 20.0 / 3.0) : 5.0;
  double rate = subcarriers(mhz) * bits * streams / (is_short ? 3.6e-6 : 4e-6);
  return static_cast<int64_t>(rate / 1e5) * 100000;
}
