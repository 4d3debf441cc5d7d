#pragma once

#include "hnc/listener.h"

// The controller's two tables: the extenders that it has seen (HNE) and the models that
// it accepts (supported HNE). A row's index is not checked here; only the listener knows
// which rows exist. Every operation returns 0, or -1 with a message when the controller
// does not run or the exchange with its listener fails.

// Copies a row of 1492 bytes into the record. Also -1 when there is no such row, with the
// record unchanged.
int hnc_getHneTableEntry(unsigned row, hnc_hne* record);

// Names an extender, with at most 127 bytes. Also -1 when there is no such row.
int hnc_setHneDeviceName(unsigned row, const char* name);

// Copies a row of 1232 bytes into the record, as above.
int hnc_getSupportedHneTableEntry(unsigned row, hnc_supported_hne* record);

// Writes a row. `row` addresses it; the index inside the record is sent too and need not
// match. Whether the listener accepts the row is not checked.
int hnc_setSupportedHneTableEntry(unsigned row, const hnc_supported_hne* record);

// Sets a row's status. Whether the listener accepts it is not checked.
int hnc_setSupportedHneRowStatus(unsigned row, int status);
