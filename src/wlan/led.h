#pragma once

// Switches the LEDs of both radios: on when `enable` is not zero. Always tries both.
// Returns 0 when the driver accepted both, else -1.
int wlan_setLedEnable(int enable);

// Switches the LED of a BSS's radio. Returns 1 for success, else 0.
[[nodiscard]] int Set_LedEnableByIndex(int enable, int bss_index);
