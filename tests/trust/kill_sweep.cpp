// Kills the daemon's service child before and after each system call of a profile update.
// Run it in a gateway:
//
//   kill_sweep [--sample] [--matrix FILE]
//
// Afterwards the profile must be the old or the new one, whole, and the next child's next
// update must work as usual. --sample leaves out updates of the same kind. --matrix
// appends a table to FILE. The last line sums up; the exit status is 1 when a promise was
// broken.

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "support/files.h"
#include "support/gateway.h"
#include "support/wire.h"
#include "trust/footprint.h"
#include "trust/profile_form.h"
#include "trust/traced_daemon.h"

namespace {

// A setting of the profile that a procedure writes.
struct setting {
  const char* name;
  uint32_t procedure;
  uint32_t bss;
  const char* before;  // its line with the old value; replaced by the next two
  const char* after;   // what comes before a new value, and what after
  const char* behind;
  const char* values[3];  // shorter, same length, longer
};

struct outcome {
  int kills;
  int old_profile;
  int new_profile;
  int torn;
  int leftovers;                    // temporary files
  int mirror_torn;                  // neither the old nor the new one
  std::vector<std::string> places;  // where the profile was torn
  std::vector<std::string> broken;
};

// One update of the profile, and its result.
struct update {
  form which;
  const setting* row;
  int length;  // index of the value
  std::string before;
  std::string after;
  request call;
};

}  // namespace

static constexpr const char* kLengths[] = {"shorter", "as long", "longer"};

static constexpr setting kSettings[] = {
    {"whole value", 22, 1, "SSID1=Home\n", "SSID1=", "\n", {"Ho", "Work", "A much longer name"}},
    {"one field",
     189,
     3,
     "RADIUS_Server=10.0.0.1;0.0.0.0;0.0.0.0;0.0.0.0",
     "RADIUS_Server=10.0.0.1;0.0.0.0;",
     ";0.0.0.0",
     {"::1", "9.9.9.9", "255.255.255.255"}},
    {"forced",
     264,
     1,
     "HNCSteerSTAMac=02:00:5e:00:00:01\n",
     "HNCSteerSTAMac=",
     "\n",
     {"none", "02:00:5e:00:00:02", "02:00:5e:00:00:02 and more"}},
};

static update make_update(form which, const setting& row, int length, const std::string& profile) {
  update one = {which, &row, length, profile, profile, {}};
  const std::string value = row.values[length];
  const size_t at = profile.find(std::string("\n") + row.before);
  if (at == profile.npos) {
    fprintf(stderr, "kill_sweep: the profile has no line %s", row.before);
    exit(2);
  }
  one.after.replace(at + 1, strlen(row.before), row.after + value + row.behind);
  one.call = {row.procedure, xdr_word(row.bss) + xdr_text(value)};
  return one;
}

static std::string name_of(const update& one) {
  return std::string(form_name(one.which)) + ", " + one.row->name + ", " + kLengths[one.length];
}

static void complain(outcome* found, const update& one, const kill_point& at,
                     const std::string& promise) {
  found->broken.push_back(name_of(one) + ", killed " + (at.after ? "after " : "before ") +
                          killed_at() + " (" + std::to_string(at.nth) + "): " + promise);
}

static int remove_leftovers() {
  const std::string count = run("ls /tmp/wifitemp.* 2>/dev/null | wc -l; rm -f /tmp/wifitemp.*");
  return atoi(count.c_str());
}

// Between the write and the truncation, a profile that is overwritten in place by a
// shorter one still ends with the old one's last lines.
static bool is_known_tear(const update& one, const kill_point& at, const std::string& now) {
  const bool in_place = one.which != form::kPlain;
  const bool between =
      (at.after && killed_at() == "write") || (!at.after && killed_at() == "ftruncate");
  const std::string tail =
      one.before.size() > one.after.size() ? one.before.substr(one.after.size()) : "";
  return in_place && between && now == one.after + tail;
}

static void check_profile(outcome* found, const update& one, const kill_point& at) {
  const std::string now = read_file(kProfile24);
  if (now == one.before) {
    ++found->old_profile;
  } else if (now == one.after) {
    ++found->new_profile;
  } else {
    ++found->torn;
    found->places.push_back((at.after ? "after " : "before ") + killed_at());
    if (!is_known_tear(one, at, now)) complain(found, one, at, "the profile is torn");
  }
  const std::string mirror = read_file(kMirror24);
  found->mirror_torn += mirror != one.before && mirror != one.after;
}

// An update by the next child, with whatever the last one left behind.
static void check_next_update(outcome* found, const update& one, const kill_point& at) {
  const std::string lock = held_lock();
  if (!lock.empty()) complain(found, one, at, "still held: " + lock);
  write_file(kProfile24, one.before);
  const answer next = serve_undisturbed(one.call);
  if (!next.came) complain(found, one, at, "the next update is not answered");
  if (read_file(kProfile24) != one.after) complain(found, one, at, "the next update is not made");
  if (read_file(kMirror24) != one.after) complain(found, one, at, "the next mirror is not made");
}

// False when the update makes fewer system calls.
static bool kill_at(outcome* found, const update& one, const kill_point& at) {
  form_profile(one.which, one.before);
  const int child = service_children();
  arm({});
  arm_kill(at);
  const answer got = serve(one.call);
  if (killed_at().empty()) return false;
  ++found->kills;
  if (got.how != stand::kQuiet || service_children() != child + 1) {
    complain(found, one, at, "no next child");
    stop_traced();
    if (!start_daemon_traced()) exit(2);
  }
  check_profile(found, one, at);
  check_next_update(found, one, at);
  found->leftovers += remove_leftovers();
  return true;
}

static outcome sweep(const update& one) {
  outcome found = {};
  remove_leftovers();
  bool more = true;
  for (int nth = 1; more; ++nth) {
    for (const bool after : {false, true})
      more = more && kill_at(&found, one, {nth, after});
  }
  unform_profile();
  return found;
}

// Every possible name of a temporary file is taken by a leftover.
static bool is_blocked_by_leftovers(const std::string& profile) {
  run("for n in $(seq 0 999); do : > /tmp/wifitemp.24.1.$n; : > /tmp/wifitemp.24.$n; done;"
      " chmod 0 /tmp/wifitemp.*");
  outcome found = {};
  for (const setting& row : kSettings) {
    const update one = make_update(form::kPlain, row, 2, profile);
    form_profile(one.which, one.before);
    check_next_update(&found, one, {});
  }
  remove_leftovers();
  for (const std::string& line : found.broken)
    printf("broken: beside leftovers: %s\n", line.c_str());
  return !found.broken.empty();
}

static bool holds_line(const std::string& profile, const char* line) {
  return profile.find(std::string("\n") + line + "\n") != profile.npos;
}

// A BSS that becomes a backhaul gets its VLAN and its service in two updates. A kill
// between them may leave the VLAN without the service, never the service without the
// VLAN. Returns whether that holds, and whether kills fell before, between and after the
// updates.
static bool backhaul_keeps_its_order() {
  const request call = {0x0100009F, xdr_word(2) + xdr_word(7)};
  const std::string before = "Default\nVLANID=10;20;30\nBSSHNCService=0;0;0\n";
  int seen[2][2] = {};
  for (int nth = 1;; ++nth) {
    form_profile(form::kPlain, before);
    arm({});
    arm_kill({nth, false});
    const answer got = serve(call);
    if (killed_at().empty()) break;
    if (got.how != stand::kQuiet) return false;
    const std::string now = read_file(kProfile24);
    ++seen[holds_line(now, "VLANID=10;10;30")][holds_line(now, "BSSHNCService=0;7;0")];
  }
  printf("backhaul: %d kills before its VLAN, %d between, %d after its service, %d the wrong way\n",
         seen[0][0], seen[1][0], seen[1][1], seen[0][1]);
  return seen[0][0] > 0 && seen[1][0] > 0 && seen[1][1] > 0 && seen[0][1] == 0;
}

static void print_row(FILE* file, const update& one, const outcome& found) {
  fprintf(file, "| %s | %d | %d | %d | %d | %d | %d | %zu |\n", name_of(one).c_str(), found.kills,
          found.old_profile, found.new_profile, found.torn, found.leftovers, found.mirror_torn,
          found.broken.size());
}

// Once the new content is made, the store handles every setting alike.
static bool is_in_sample(form which, const setting& row, int length) {
  if (&row != kSettings) return which == form::kPlain && length == 0;
  return length == 0 || (length == 2 && which == form::kMountPoint);
}

static std::vector<update> choose_updates(bool sample, const std::string& profile) {
  std::vector<update> all;
  for (const form which : {form::kPlain, form::kSymbolicLink, form::kTwoNames, form::kMountPoint}) {
    for (const setting& row : kSettings) {
      for (int length = 0; length < 3; ++length) {
        if (!sample || is_in_sample(which, row, length))
          all.push_back(make_update(which, row, length, profile));
      }
    }
  }
  return all;
}

static FILE* open_matrix(const char* path) {
  FILE* file = fopen(path, "a");
  if (file == nullptr) {
    perror(path);
    exit(2);
  }
  fprintf(file,
          "\n### %s: kills\n\n"
          "| update | kills | old | new | torn | leftovers | mirror torn | broken |\n"
          "|---|--:|--:|--:|--:|--:|--:|--:|\n",
          board().c_str());
  return file;
}

static void add_outcome(outcome* sum, const outcome& one) {
  sum->kills += one.kills;
  sum->torn += one.torn;
  sum->broken.insert(sum->broken.end(), one.broken.begin(), one.broken.end());
}

static outcome sweep_all(const std::vector<update>& updates, FILE* file) {
  outcome sum = {};
  for (const update& one : updates) {
    const outcome found = sweep(one);
    if (file != nullptr) print_row(file, one, found);
    for (const std::string& place : found.places)
      printf("torn: %s: %s\n", name_of(one).c_str(), place.c_str());
    for (const std::string& line : found.broken)
      printf("broken: %s\n", line.c_str());
    add_outcome(&sum, found);
  }
  return sum;
}

int main(int argc, char** argv) {
  bool sample = false;
  FILE* file = nullptr;
  for (int i = 1; i < argc; ++i) {
    if (strcmp(argv[i], "--sample") == 0) sample = true;
    if (strcmp(argv[i], "--matrix") == 0 && i + 1 < argc) file = open_matrix(argv[++i]);
  }
  furnish_profiles();
  const std::string profile = read_file(kProfile24);
  if (!start_daemon_traced()) return 2;
  const std::vector<update> updates = choose_updates(sample, profile);
  const outcome sum = sweep_all(updates, file);
  const int broken = static_cast<int>(sum.broken.size()) + is_blocked_by_leftovers(profile) +
                     !backhaul_keeps_its_order();
  stop_traced();
  if (file != nullptr) fclose(file);
  printf("kill sweep, %s: %d kills in %zu updates, %d between write and cut, %d promises broken\n",
         board().c_str(), sum.kills, updates.size(), sum.torn, broken);
  return sum.kills > 0 && broken == 0 ? 0 : 1;
}
