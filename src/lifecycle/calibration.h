#pragma once

// Pre-calibration data of MT7615 radios, kept in /nvram with a backup of the EEPROM
// images that it was made from.

// If a result is missing, backs up the EEPROM images, over an earlier backup, and runs
// the radios' self-test. 0, or -1 with nothing done when both results exist without a
// backup.
int wlan_set_prek_operation();

// Removes the results and restores the EEPROM images. 0, or -1 without a backup.
int wlan_undo_prek_operation();

// Runs the command that prints the EEPROM word 0x0052 and returns the state: 3 when its
// bit 0x2 is clear (not calibrated). With the bit set, 2 when both results and the backup
// exist, 0 without the backup, -1 when a result is missing.
[[nodiscard]] int wlan_get_prek_status(const char* command);
