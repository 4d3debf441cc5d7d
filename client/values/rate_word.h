// The driver's 16-bit transmit-rate word.
//
//   bits  0-5   MCS; VHT: 0-3 MCS, 4-5 spatial streams minus one
//   bits  7-8   bandwidth: 20, 40, 80, 160 MHz
//   bit   9     short guard interval
//   bits 13-15  PHY mode: 0 CCK, 1 OFDM, 2 and 3 HT, 4 and up VHT
#pragma once

#include <cstdint>
#include <string>

struct rate_word {
  const char* phy;    // "CCK", "OFDM", "HT", "VHT"
  unsigned mhz;       // bandwidth
  unsigned streams;   // 0 for CCK and OFDM
  unsigned mcs;       // rate index for CCK and OFDM
  bool short_guard;   // HT and VHT
  unsigned kilobits;  // per second; 0: invalid rate
};

rate_word rate_word_decode(uint16_t word);

// "866.7"; "-" for an invalid rate.
std::string rate_word_megabits(const rate_word& rate);
