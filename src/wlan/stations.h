#pragma once

#include "wlan/station_layout.h"

// Associated stations, read from the driver. 0, or -1, reported, when the driver does not
// answer.

// Number of stations of a BSS; `*count` is 0 on failure.
int wlan_getAssocDevicesNum(int bss, int* count);

// Copies the driver's table unchanged: the stations of all BSSes of the radio of `bss`.
// The caller zeroes it first; the driver may not fill all of it.
int wlan_getAssocDevicesTable_2(int bss, driver_station_table* table);
