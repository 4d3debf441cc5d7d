#pragma once

// The board and its index space. Operations are addressed by a 1-based BSS
// index: 1-8 are the BSSes of the 2.4 GHz radio, 9-16 those of the 5 GHz radio.
// A radio is named by its first BSS, 1 or 9. Everything that an index selects
// is here:
//
//   BSS    radio  profile               list position  key number  interface
//   1-8    1      /tmp/mt76xx_24.dat    BSS - 1        BSS         ra0 - ra7
//   9-16   9      /tmp/mt76xx_5.dat     BSS - 9        BSS - 8     ra8 - ra15
//
// Only bss_to_radio_index checks the range; the others take any index below 9
// for 2.4 GHz and the rest for 5 GHz, as the operations that use them do.

constexpr int kMaxBss = 16;
constexpr int kRadio24 = 1;
constexpr int kRadio5 = 9;

// 1 or 9; -1 for an index outside 1 to 16.
[[nodiscard]] int bss_to_radio_index(int bss);

// Path of the profile that holds the BSS.
[[nodiscard]] const char* bss_profile(int bss);

// 0-based position of the BSS in the per-BSS lists of its profile; negative
// for an index below 1.
[[nodiscard]] int bss_list_position(int bss);

// Number that the per-BSS keys ("SSID3") carry.
[[nodiscard]] int bss_key_number(int bss);

// Name of the interface of the BSS, "ra" and the index less one, for any index.
struct interface_name {
  char text[16];
};
[[nodiscard]] interface_name bss_interface(int bss);

// 1 when an MT7615, which serves both bands, is on the PCI bus, else 0.
[[nodiscard]] int hasMTK7615();

// 1 when the board has only the 2.4 GHz radio, 0 when it has a 5 GHz one too.
// Both probes search /proc/bus/pci/devices once per process and remember.
[[nodiscard]] int isSingleBand();
