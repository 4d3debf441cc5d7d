#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "trust/sweep.h"

// What the sweeps did, as a table in Markdown: a row per operation, a column per class
// of calls, in each cell the failures injected.

struct matrix {
  std::string title;
  std::vector<tally> rows;
};

// Adds the counts and what is broken to a row of another name.
void add_tally(tally* sum, const tally& one);

tally sum_of(const std::vector<tally>& rows);
void print_matrix(FILE* file, const matrix& table);
