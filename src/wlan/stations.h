#pragma once

#include "wlan/station_layout.h"

// Associated stations, read from the driver. 0, or -1 when the driver does not
// answer, which is reported.

// Number of stations of a BSS; `*count` stays 0 on failure.
int wlan_getAssocDevicesNum(int bss, int* count);

// The driver's table as it is: the stations of all BSSes of the radio of `bss`.
// The caller zeroes it; what the driver does not write stays so.
int wlan_getAssocDevicesTable_2(int bss, driver_station_table* table);
