#include "wlan/rates.h"

#include <gtest/gtest.h>

#include <iterator>
#include <vector>

#include "unit_support.h"
#include "wlan/rate_table.h"

// The rates as the standard defines them: data subcarriers x coded bits per subcarrier x
// code rate x streams, per symbol of 4 or 3.6 microseconds.
struct modulation {
  int bits, numerator, denominator;
};
static constexpr modulation kModulations[] = {
    {1, 1, 2}, {2, 1, 2}, {2, 3, 4}, {4, 1, 2}, {4, 3, 4},
    {6, 2, 3}, {6, 3, 4}, {6, 5, 6}, {8, 3, 4}, {8, 5, 6},
};
static constexpr int kSubcarriers[] = {52, 108, 234, 468};

// Rounded down to units of 1/`parts` Mbit/s.
static int standard_rate(int bandwidth, int mcs, int streams, bool short_guard, int parts) {
  const modulation& m = kModulations[mcs];
  return kSubcarriers[bandwidth] * m.bits * m.numerator * streams * 10 * parts /
         (m.denominator * (short_guard ? 36 : 40));
}

// Combinations that the standard leaves out because they give no whole number of bits.
static bool is_left_out(int bandwidth, int mcs, int streams) {
  return (bandwidth == 0 && mcs == 9 && streams != 3) ||
         (bandwidth == 2 && mcs == 6 && streams == 3) ||
         (bandwidth == 3 && mcs == 9 && streams == 3);
}

struct irregular {
  const char* name;
  size_t entry;
  int value;
};
static constexpr irregular kIrregular[] = {
    {"HT 20 MHz short, 1 stream, MCS 1, rounded up", 65, 29},
    {"HT 20 MHz short, 1 stream, MCS 4, rounded up", 68, 87},
    {"HT 20 MHz short, 2 streams, MCS 0, rounded up", 72, 29},
    {"HT 20 MHz short, 2 streams, MCS 1, one too many", 73, 59},
    {"HT 20 MHz short, 2 streams, MCS 2, rounded up", 74, 87},
    {"HT 20 MHz short, 2 streams, MCS 5, one too few", 77, 230},
    {"HT 20 MHz short, 3 streams, MCS 1, rounded up", 81, 87},
    {"HT 20 MHz short, 3 streams, MCS 5, not 346", 85, 317},
    {"VHT 80 MHz long, 2 streams, MCS 3, not 234", 205, 243},
    {"VHT 160 MHz long, 3 streams, MCS 8, not 2106", 260, 2160},
};

static std::vector<int> expected_table() {
  std::vector<int> table = {2,   4,   11,  22,                   // CCK
                            12,  18,  24,  36, 48, 72, 96, 108,  // OFDM
                            109, 110, 111, 112};                 // not rates
  for (const bool short_guard : {false, true})
    for (int bandwidth = 0; bandwidth < 2; ++bandwidth)
      for (int streams = 1; streams <= 3; ++streams)
        for (int mcs = 0; mcs < 8; ++mcs)
          table.push_back(standard_rate(bandwidth, mcs, streams, short_guard, 2));
  for (const bool short_guard : {false, true})
    for (int bandwidth = 0; bandwidth < 4; ++bandwidth)
      for (int streams = 1; streams <= 4; ++streams)
        for (int mcs = 0; mcs < 10; ++mcs)
          table.push_back(is_left_out(bandwidth, mcs, streams)
                              ? 0
                              : standard_rate(bandwidth, mcs, streams, short_guard, 1));
  for (int i = 0; i <= 37; ++i)
    table.push_back(i);
  for (const irregular& entry : kIrregular) {
    EXPECT_NE(table[entry.entry], entry.value) << "regular after all: " << entry.name;
    table[entry.entry] = entry.value;
  }
  return table;
}

TEST(Rates, TableIsTheStandardsButForTheIrregularEntries) {
  const std::vector<int> expected = expected_table();
  ASSERT_EQ(expected.size(), kRateEntries);
  for (size_t i = 0; i < expected.size(); ++i)
    EXPECT_EQ(MCSMappingRateTable[i], expected[i]) << i;
}

static constexpr unsigned kShort = 1 << 9;
static constexpr unsigned word_of(unsigned mode, unsigned bandwidth, unsigned mcs) {
  return mode << 13 | bandwidth << 7 | mcs;
}

struct example {
  const char* name;
  unsigned word;
  int rate;
  int mcs;
};
static constexpr example kExamples[] = {
    {"CCK 1: 2 halved", word_of(0, 0, 0), 1024, 0},
    {"CCK 11: 22 halved", word_of(0, 0, 3), 11264, 3},
    {"CCK 5.5: 11 halved, cut off", word_of(0, 0, 2), 5120, 2},
    {"CCK code 63 reads an HT entry, 810 halved", word_of(0, 0, 63), 414720, 63},
    {"OFDM 54", word_of(1, 0, 7), 55296, 7},
    {"OFDM code 8 is no index on these chips", word_of(1, 0, 8), 55296, 8},
    {"OFDM code 11 reads a filler: 112 halved", word_of(1, 0, 11), 57344, 11},
    {"HT20 MCS 15, 130 halved, two streams", word_of(2, 0, 15), 133120, 7},
    {"HT20 MCS 7", word_of(2, 0, 7), 66560, 7},
    {"HT40 short MCS 23, 300 halved, three streams", word_of(3, 1, 23) | kShort, 460800, 7},
    {"HT MCS 63 counts eight streams: 65 x 8", word_of(2, 0, 63), 532480, 7},
    {"HT with 80 MHz reads the short guard block: 14 halved", word_of(2, 2, 0), 7168, 0},
    {"VHT80 MCS 9, two streams: 780, not halved", word_of(4, 2, 0x19), 798720, 9},
    {"the same in mode 5: 390", word_of(5, 2, 0x19), 399360, 9},
    {"the same in mode 7: 390", word_of(7, 2, 0x19), 399360, 9},
    {"VHT80 MCS 9, two streams, short: 866", word_of(4, 2, 0x19) | kShort, 886784, 9},
    {"VHT20 MCS 9 is no rate: the least one", word_of(4, 0, 0x09), 1000, 9},
    {"mode 5, 7 halved: 3", word_of(5, 0, 0x00) | kShort, 3072, 0},
    {"VHT160 short, four streams, MCS 9: the highest", word_of(4, 3, 0x39) | kShort, 3549184, 9},
    {"VHT160 short, four streams, MCS 10 reads a 0", word_of(4, 3, 0x3A) | kShort, 1000, 10},
    {"VHT160 short, four streams, MCS 15 reads a 5", word_of(4, 3, 0x3F) | kShort, 5120, 15},
    {"bits 6 and 10 to 12 mean nothing", word_of(2, 0, 15) | 0x1C40, 133120, 7},
};

TEST(Rates, WordsHaveTheirRatesAndIndexes) {
  for (const example& e : kExamples) {
    int32_t rate = -1;
    uint8_t mcs = 99;
    getRate(static_cast<uint16_t>(e.word), &rate, &mcs);
    EXPECT_EQ(rate, e.rate) << e.name;
    EXPECT_EQ(mcs, e.mcs) << e.name;
  }
}

// What getRate returns for a table entry that is multiplied by the number of streams.
static int scaled(int entry, bool halved, int streams) {
  const int rate = (halved ? entry / 2 : entry) * streams * 1024;
  return rate < 1000 ? 1000 : rate;
}

static void expect_rate(unsigned word, int rate, unsigned mcs) {
  // The unused bits, 6 and 10 to 12.
  for (unsigned rest = 0; rest < 16; ++rest) {
    int32_t got_rate = -1;
    uint8_t got_mcs = 99;
    getRate(static_cast<uint16_t>(word | (rest & 1) << 6 | (rest >> 1) << 10), &got_rate, &got_mcs);
    ASSERT_EQ(got_rate, rate) << std::hex << word;
    ASSERT_EQ(got_mcs, mcs) << std::hex << word;
  }
}

TEST(Rates, AllWordsStayWithinTheTable) {
  const std::vector<int> table = expected_table();
  for (unsigned fields = 0; fields < 8 * 64; ++fields) {
    const unsigned bandwidth = fields >> 7;
    const bool guard = (fields & 64) != 0;
    const unsigned code = fields & 63;
    const unsigned common = bandwidth << 7 | (guard ? kShort : 0) | code;
    expect_rate(common, scaled(table.at(code), true, 1), code);
    expect_rate(1 << 13 | common, scaled(table.at(code + 4), true, 1), code);
    const int ht = table.at(16 + bandwidth * 24 + (guard ? 48 : 0) + code % 8);
    expect_rate(2 << 13 | common, scaled(ht, true, 1 + code / 8), code % 8);
    expect_rate(3 << 13 | common, scaled(ht, true, 1 + code / 8), code % 8);
    const int vht = table.at(112 + bandwidth * 40 + (guard ? 160 : 0) + code / 16 * 10 + code % 16);
    expect_rate(4 << 13 | common, scaled(vht, false, 1), code % 16);
    for (unsigned mode = 5; mode < 8; ++mode)
      expect_rate(mode << 13 | common, scaled(vht, true, 1), code % 16);
    if (HasFatalFailure()) return;
  }
}

// The codes of 6 to 54 Mbit/s on the dual-band chip.
static constexpr unsigned kOfdmCodes[] = {11, 15, 10, 14, 9, 13, 8, 12};

static void make_mt7615() {
  mount_tmpfs("/proc/bus/pci", "size=64k");
  write_file("/proc/bus/pci/devices", "0100\t14c37615\t4\tdriver\n");
}

TEST(Rates, OfdmCodesAreKnownOnTheDualBandChip) {
  make_mt7615();
  static constexpr int kRates[] = {6, 9, 12, 18, 24, 36, 48, 54};
  for (unsigned i = 0; i < std::size(kOfdmCodes); ++i) {
    EXPECT_EQ(getLegacyOFDMMCSIndex(kOfdmCodes[i]), i);
    expect_rate(word_of(1, 0, kOfdmCodes[i]), kRates[i] * 1024, i);
  }
  for (const unsigned code : {0U, 7U, 16U, 63U, 300U})
    EXPECT_EQ(getLegacyOFDMMCSIndex(code), code);
  expect_rate(word_of(1, 0, 7), 55296, 7);
  expect_rate(word_of(1, 0, 63), 28 * 1024, 63);  // entry 67: 57, halved
}

TEST(Rates, OfdmCodesStayOnOtherChips) {
  for (unsigned code = 0; code < 64; ++code)
    EXPECT_EQ(getLegacyOFDMMCSIndex(code), code);
}

// The value that a word's MCS field becomes, on any chip.
static unsigned normalised(unsigned mode, unsigned mcs) {
  static constexpr unsigned kCck[] = {0, 1, 2, 3, 0, 1, 2, 3};
  if (mode == 0) return mcs < 8 ? kCck[mcs] : 0;
  if (mode != 1) return mcs;
  for (unsigned i = 0; i < std::size(kOfdmCodes); ++i)
    if (kOfdmCodes[i] == mcs) return i;
  return 0;
}

static void expect_all_normalised() {
  for (unsigned word = 0; word < 65536; ++word) {
    uint16_t out = 0xEEEE;
    setMCS(static_cast<uint16_t>(word), &out);
    ASSERT_EQ(out, (word & 0xFFC0) | normalised(word >> 13, word & 63)) << word;
  }
}

TEST(Rates, McsFieldIsNormalisedAndTheRestKept) {
  expect_all_normalised();
}

TEST(Rates, McsFieldIsNormalisedOnTheDualBandChipToo) {
  make_mt7615();
  expect_all_normalised();
}
