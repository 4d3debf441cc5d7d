#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "trust/sweep.h"

// What the sweeps did, as a Markdown table: a row per operation, a column per class of
// calls, and in each cell the number of failures injected.

struct matrix {
  std::string title;
  std::vector<tally> rows;
};

// Adds the counts and the broken promises; the name stays.
void add_tally(tally* sum, const tally& one);

tally sum_of(const std::vector<tally>& rows);
void print_matrix(FILE* file, const matrix& table);
