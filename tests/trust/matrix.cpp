#include "trust/matrix.h"

void add_tally(tally* sum, const tally& one) {
  for (int i = 0; i < static_cast<int>(call_class::kCount); ++i)
    sum->injected[i] += one.injected[i];
  sum->allocations += one.allocations;
  sum->unanswered += one.unanswered;
  sum->replaced += one.replaced;
  sum->ended += one.ended;
  sum->mirror_torn += one.mirror_torn;
  sum->broken.insert(sum->broken.end(), one.broken.begin(), one.broken.end());
}

tally sum_of(const std::vector<tally>& rows) {
  tally sum = {};
  sum.name = "all";
  for (const tally& one : rows)
    add_tally(&sum, one);
  return sum;
}

static void print_cell(FILE* file, int count) {
  if (count == 0)
    fputs(" |", file);
  else
    fprintf(file, " %d |", count);
}

static void print_row(FILE* file, const tally& row) {
  fprintf(file, "| %s |", row.name.c_str());
  for (const int count : row.injected)
    print_cell(file, count);
  print_cell(file, row.allocations);
  fprintf(file, " %d |", total_injected(row));
  for (const int count : {row.unanswered, row.replaced, row.ended, row.mirror_torn})
    print_cell(file, count);
  fprintf(file, " %zu |\n", row.broken.size());
}

static void print_head(FILE* file) {
  fputs("| operation |", file);
  for (int i = 0; i < static_cast<int>(call_class::kCount); ++i)
    fprintf(file, " %s |", class_name(static_cast<call_class>(i)));
  fputs(" malloc | all | unanswered | replaced | ended | mirror | broken |\n|---|", file);
  for (int i = 0; i < static_cast<int>(call_class::kCount) + 7; ++i)
    fputs("--:|", file);
  fputs("\n", file);
}

void print_matrix(FILE* file, const matrix& table) {
  fprintf(file, "\n### %s\n\n", table.title.c_str());
  print_head(file);
  for (const tally& row : table.rows)
    print_row(file, row);
  print_row(file, sum_of(table.rows));
}
