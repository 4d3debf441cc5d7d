#pragma once

#include <cstddef>

// The number of procedures in the committed wire snapshot, tests/wire_snapshot.txt.
size_t snapshot_procedures();

// The message for a different number.
constexpr char kSnapshotGrows[] =
    "scripts/generate adds a new procedure to tests/wire_snapshot.txt; none may go";
