// Fails every outside call of the daemon, one at a time. Run it in a gateway without a
// driver but with companions:
//
//   failure_sweep [--once|--sample] [--traces] [--only NAME] [--matrix FILE] PART...
//   failure_sweep --list PART...
//
// PART is procedures, sequences, in-place or start-up. By default each call fails with
// each of its errors; --once tries one error per call, --sample one call of each class.
// --traces switches the daemon's traces and log on. --matrix appends a table to FILE.
// --list only lists the operations that have a row of their own; start-up has none. The
// last line sums up; the exit status is 1 when a promise was broken.

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "support/gateway.h"
#include "trust/matrix.h"
#include "trust/profile_form.h"
#include "trust/start_up.h"

namespace {

struct options {
  extent how_much = extent::kAll;
  bool traces = false;
  bool list = false;
  std::string only;
  std::string matrix_file;
  std::vector<std::string> parts;
};

}  // namespace

static options parse(int argc, char** argv) {
  options given;
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    const bool with_value = i + 1 < argc;
    if (word == "--once")
      given.how_much = extent::kOnce;
    else if (word == "--sample")
      given.how_much = extent::kSample;
    else if (word == "--traces")
      given.traces = true;
    else if (word == "--list")
      given.list = true;
    else if (word == "--only" && with_value)
      given.only = argv[++i];
    else if (word == "--matrix" && with_value)
      given.matrix_file = argv[++i];
    else
      given.parts.push_back(word);
  }
  return given;
}

static std::vector<operation> operations_of(const std::string& part) {
  if (part == "procedures") return procedure_operations();
  if (part == "sequences") return sequence_operations();
  if (part == "in-place") return in_place_operations();
  fprintf(stderr, "failure_sweep: there is no part \"%s\"\n", part.c_str());
  exit(2);
}

// An operation's name is its procedure's, then a blank or a comma and what is special.
static bool is_of(const operation& op, const std::string& procedure) {
  return op.name.starts_with(procedure) &&
         (op.name.size() == procedure.size() || strchr(" ,", op.name[procedure.size()]) != nullptr);
}

// Procedures that only answer share one row. A sample has one of them.
static std::vector<tally> sweep_operations(const options& given,
                                           const std::vector<operation>& all) {
  if (!start_daemon_traced()) exit(2);
  bring_up();
  std::vector<tally> rows;
  tally inert = {};
  bool inert_swept = false;
  int turn = 0;
  for (const operation& op : all) {
    if (!given.only.empty() && !is_of(op, given.only)) continue;
    if (op.inert && given.how_much == extent::kSample && inert_swept) continue;
    const tally row = sweep_operation(op, given.how_much, turn++);
    if (op.inert)
      add_tally(&inert, row);
    else
      rows.push_back(row);
    inert_swept |= op.inert;
  }
  inert.name = "those that only answer";
  if (inert_swept) rows.push_back(inert);
  stop_traced();
  return rows;
}

static std::vector<tally> sweep_part(const options& given, const std::string& part) {
  if (part == "start-up") return sweep_start_up(given.how_much);
  return sweep_operations(given, operations_of(part));
}

static std::string title_of(const options& given, const std::string& part) {
  static constexpr const char* kExtents[] = {"", ", each call once", ", a sample"};
  return board() + ": " + part + (given.traces ? ", with traces and log" : "") +
         kExtents[static_cast<int>(given.how_much)];
}

static std::string joined(const std::vector<std::string>& parts) {
  std::string all;
  for (const std::string& part : parts)
    all += (all.empty() ? "" : ", ") + part;
  return all;
}

static void save(const options& given, const std::vector<tally>& rows, const std::string& part) {
  if (given.matrix_file.empty()) return;
  FILE* file = fopen(given.matrix_file.c_str(), "a");
  if (file == nullptr) {
    perror(given.matrix_file.c_str());
    exit(2);
  }
  print_matrix(file, {title_of(given, part), rows});
  fclose(file);
}

static void list_operations(const std::vector<std::string>& parts) {
  for (const std::string& part : parts) {
    for (const operation& op : operations_of(part)) {
      if (!op.inert) puts(op.name.c_str());
    }
  }
}

int main(int argc, char** argv) {
  const options given = parse(argc, argv);
  if (given.list) {
    list_operations(given.parts);
    return 0;
  }
  furnish_profiles();
  keep_gateway();
  set_traces(given.traces);
  std::vector<tally> all;
  for (const std::string& part : given.parts) {
    const std::vector<tally> rows = sweep_part(given, part);
    save(given, rows, part);
    all.insert(all.end(), rows.begin(), rows.end());
  }
  unform_profile();
  const tally sum = sum_of(all);
  for (const std::string& line : sum.broken)
    printf("broken: %s\n", line.c_str());
  const std::string unlisted = calls_without_row();
  if (!unlisted.empty()) printf("broken: system calls without a row: %s\n", unlisted.c_str());
  printf("failure sweep, %s: %d failures in %zu operations, %zu promises broken\n",
         title_of(given, joined(given.parts)).c_str(), total_injected(sum), all.size(),
         sum.broken.size());
  return sum.broken.empty() && unlisted.empty() && !all.empty() ? 0 : 1;
}
