#include "values/rate_word.h"

#include "base/text.h"

static constexpr unsigned kCck[] = {1000, 2000, 5500, 11000};
static constexpr unsigned kOfdm[] = {6000, 9000, 12000, 18000, 24000, 36000, 48000, 54000};

// OFDM rates by the codes 8 to 15 of a frame's SIGNAL field.
static constexpr unsigned kOfdmOfSignal[] = {6, 4, 2, 0, 7, 5, 3, 1};

// IEEE 802.11: data subcarriers by bandwidth; coded bits per subcarrier and coding rate by MCS.
static constexpr unsigned kSubcarriers[] = {52, 108, 234, 468};
static constexpr struct {
  unsigned bits, numerator, denominator;
} kMcs[] = {{1, 1, 2}, {2, 1, 2}, {2, 3, 4}, {4, 1, 2}, {4, 3, 4},
            {6, 2, 3}, {6, 3, 4}, {6, 5, 6}, {8, 3, 4}, {8, 5, 6}};

static unsigned mimo_kilobits(unsigned bandwidth, unsigned streams, unsigned mcs,
                              bool short_guard) {
  if (mcs >= sizeof kMcs / sizeof *kMcs) return 0;
  const auto& scheme = kMcs[mcs];
  // Bits per symbol of 4 us, or 3.6 us with the short guard interval.
  const unsigned bits =
      kSubcarriers[bandwidth] * streams * scheme.bits * scheme.numerator / scheme.denominator;
  return short_guard ? bits * 2500 / 9 : bits * 250;
}

rate_word rate_word_decode(uint16_t word) {
  const unsigned mode = word >> 13;
  const unsigned code = word & 0x3f;
  const unsigned bandwidth = (word >> 7) & 3;
  const bool short_guard = (word & 0x200) != 0;
  rate_word rate = {"CCK", 20u << bandwidth, 0, code, short_guard, 0};
  if (mode == 0) {
    rate.mcs = code & 3;
    rate.kilobits = kCck[rate.mcs];
  } else if (mode == 1) {
    rate.phy = "OFDM";
    rate.mcs = code < 8 ? code : kOfdmOfSignal[code & 7];
    rate.kilobits = kOfdm[rate.mcs];
  } else {
    const bool vht = mode >= 4;
    rate.phy = vht ? "VHT" : "HT";
    rate.streams = (vht ? code >> 4 : code >> 3) + 1;
    rate.mcs = vht ? code & 0xf : code & 7;
    rate.kilobits = mimo_kilobits(bandwidth, rate.streams, rate.mcs, short_guard);
  }
  return rate;
}

std::string rate_word_megabits(const rate_word& rate) {
  if (rate.kilobits == 0) return "-";
  return text_format("%u.%u", (rate.kilobits + 50) / 1000, (rate.kilobits + 50) % 1000 / 100);
}
