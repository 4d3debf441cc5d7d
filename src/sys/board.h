#pragma once

// The board and its indexes. Operations take a 1-based BSS index: 1-8 are the BSSes of
// the 2.4 GHz radio, 9-16 those of the 5 GHz radio. A radio is named by its first BSS, 1
// or 9. An index selects:
//
//   BSS    radio  profile               list position  key number  interface
//   1-8    1      /tmp/mt76xx_24.dat    BSS - 1        BSS         ra0 - ra7
//   9-16   9      /tmp/mt76xx_5.dat     BSS - 9        BSS - 8     ra8 - ra15
//
// Only bss_to_radio_index checks the range; the others treat any index below 9 as 2.4 GHz
// and all others as 5 GHz.

constexpr int kMaxBss = 16;
constexpr int kRadio24 = 1;
constexpr int kRadio5 = 9;

// 1 or 9; -1 for an index outside 1 to 16.
[[nodiscard]] int bss_to_radio_index(int bss);

[[nodiscard]] const char* bss_profile(int bss);

// 0-based position of the BSS in the per-BSS lists of its profile; negative for an index
// below 1.
[[nodiscard]] int bss_list_position(int bss);

// The number at the end of the per-BSS keys ("SSID3").
[[nodiscard]] int bss_key_number(int bss);

// Interface name of the BSS: "ra" followed by the index minus one, for any index.
struct interface_name {
  char text[16];
};
[[nodiscard]] interface_name bss_interface(int bss);

// 1 when an MT7615, which serves both bands, is on the PCI bus, else 0.
[[nodiscard]] int hasMTK7615();

// 1 when the board has only the 2.4 GHz radio, 0 when it also has a 5 GHz one. Both
// probes read /proc/bus/pci/devices once per process and remember the result.
[[nodiscard]] int isSingleBand();
