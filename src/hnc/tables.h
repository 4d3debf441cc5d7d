#pragma once

#include "hnc/listener.h"

// The controller's two tables: the extenders that it has seen (HNE) and the
// models that it accepts (supported HNE). Rows are addressed by their index,
// which is not checked here: the listener knows which there are. Every operation
// answers 0, or -1 with a message when the controller does not run or the
// exchange with its listener fails.

// Copies a row of 1492 bytes into the record. -1 also when there is no such
// row; the record then stays as it is.
int hnc_getHneTableEntry(unsigned row, hnc_hne* record);

// Names an extender, with at most 127 bytes. -1 also when there is no such row.
int hnc_setHneDeviceName(unsigned row, const char* name);

// Copies a row of 1232 bytes into the record, as above.
int hnc_getSupportedHneTableEntry(unsigned row, hnc_supported_hne* record);

// Writes a row. `row` addresses it; the index inside the record goes with it and
// need not agree. Whether the listener takes the row is not looked at.
int hnc_setSupportedHneTableEntry(unsigned row, const hnc_supported_hne* record);

// Sets a row's status. Whether the listener takes it is not looked at.
int hnc_setSupportedHneRowStatus(unsigned row, int status);
