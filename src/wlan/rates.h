#pragma once

#include <cstdint>

// The driver's packed rate words:
//
//   bits 0-5    MCS; for VHT 0-3 MCS, 4-5 spatial streams minus one
//   bits 7-8    bandwidth, 0: 20, 1: 40, 2: 80, 3: 160 MHz
//   bit 9       short guard interval
//   bits 13-15  PHY mode, 0: CCK, 1: OFDM, 2 and 3: HT, 4 and above: VHT

// Bit rate of a word in units of 1/1024 Mbit/s, at least 1000, and its MCS: within one
// stream for HT and VHT, 0 to 7 for OFDM. An invalid word gets whatever the table has at
// its place.
void getRate(uint16_t rate_word, int32_t* rate_out, uint8_t* mcs_out);

// The word with the chip's codes for CCK and OFDM rates converted to 0-3 and 0-7, unknown
// codes to 0. The other fields are unchanged.
void setMCS(uint16_t rate_word, uint16_t* out);

// The 0-7 index of an OFDM rate in the MT7615's coding. Unknown codes, and all codes on
// other chips, are returned unchanged.
[[nodiscard]] unsigned getLegacyOFDMMCSIndex(unsigned code);
