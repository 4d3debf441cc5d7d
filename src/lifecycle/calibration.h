#pragma once

// Pre-calibration data of MT7615 radios, kept in /nvram with a backup of the
// EEPROM images that they were made from.

// Backs the EEPROM images up when a result is missing, over a backup that is
// there, and runs the radios' self-test. 0, or -1, nothing done, when both
// results are there without a backup.
int wlan_set_prek_operation();

// Removes the results and puts the EEPROM images back. 0, or -1 without a
// backup.
int wlan_undo_prek_operation();

// Runs the command that prints the EEPROM word 0x0052 and tells the state: 3
// when its bit 0x2 is clear (not calibrated); with the bit set, 2 when both
// results and the backup are there, 0 without the backup, -1 when a result is
// missing.
[[nodiscard]] int wlan_get_prek_status(const char* command);
