#pragma once

// Pre-calibration data of MT7615 radios, kept in /nvram with a backup of the
// EEPROM images that they were made from.

// Backs the EEPROM images up, unless there is a backup, and runs the radios'
// self-test. 0, or -1 when there are results without a backup.
int wlan_set_prek_operation();

// Removes the results and puts the EEPROM images back. 0, or -1 without a
// backup.
int wlan_undo_prek_operation();

// Runs the command that prints the EEPROM word 0x0052 and tells the state:
// 3 not calibrated, 2 calibrated in this run, 0 calibrated before, -1 neither.
[[nodiscard]] int wlan_get_prek_status(const char* command);
