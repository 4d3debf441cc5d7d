#pragma once

#include <cstddef>

// How many procedures the committed wire snapshot, tests/wire_snapshot.txt, has.
size_t snapshot_procedures();

// For who finds another number.
constexpr char kSnapshotGrows[] =
    "scripts/generate adds a new procedure to tests/wire_snapshot.txt; none may go";
