#pragma once

#include <cstddef>

// How many procedures the committed wire snapshot, tests/wire_snapshot.txt, has.
size_t snapshot_procedures();
