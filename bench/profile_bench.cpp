// The profile store beside the bare system calls that its promises need, in one
// run: each round times both sides once, and the medians are compared.
//
//   lookup  bare: open, fstat, read, close, scan for the last key
//   update  bare: lock, read, write a temporary file, fsync, rename it, write
//           the mirror in place, unlock

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "profile/profile.h"

static constexpr char kProfile[] = "/tmp/mt76xx_24.dat";
static constexpr char kLock[] = "/tmp/.mt76xx_24.dat.lock";
static constexpr int kRounds = 4000;

static char content[256 * 1024];

static size_t bare_read() {
  const int file = open(kProfile, O_RDONLY | O_CLOEXEC);
  struct stat status;
  fstat(file, &status);
  const ssize_t length = read(file, content, sizeof content - 1);
  close(file);
  content[length] = '\0';
  return static_cast<size_t>(length);
}

// Finds the value of a key by its line starts.
static const char* scan(size_t length, const char* key) {
  const size_t key_length = strlen(key);
  for (const char* line = content; line < content + length;) {
    const char* end = static_cast<const char*>(memchr(line, '\n', content + length - line));
    const char* equals = static_cast<const char*>(memchr(line, '=', end - line));
    if (equals != nullptr && static_cast<size_t>(equals - line) == key_length &&
        memcmp(line, key, key_length) == 0) {
      return equals + 1;
    }
    line = end + 1;
  }
  return nullptr;
}

static void bare_lookup() {
  if (scan(bare_read(), "LastKey") == nullptr) abort();
}

static void store_lookup() {
  char value[256];
  if (wifiprofile_getParam(kProfile, "LastKey", value, sizeof value - 1) != 1) abort();
}

static void overwrite(const char* path, size_t length) {
  const int file = open(path, O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
  if (write(file, content, length) < 0 || ftruncate(file, length) != 0) abort();
  close(file);
}

static void bare_update() {
  const int lock = open(kLock, O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  flock(lock, LOCK_EX);
  const size_t length = bare_read();
  const int file = open("/tmp/bare.tmp", O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (write(file, content, length) < 0) abort();
  fsync(file);
  close(file);
  chmod("/tmp/bare.tmp", 0644);
  rename("/tmp/bare.tmp", kProfile);
  overwrite("/tmp/mt76xx_24.dat.hnc", length);
  flock(lock, LOCK_UN);
  close(lock);
}

static void store_update() {
  static int turn;
  const char* value = ++turn % 2 == 0 ? "even turn" : "odd turn!";
  if (wifiprofile_updateParam(kProfile, "LastKey", value, "") != kProfileWritten) abort();
}

static double microseconds(void (*side)()) {
  const auto start = std::chrono::steady_clock::now();
  side();
  return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start)
      .count();
}

static double median(std::vector<double>& times) {
  std::nth_element(times.begin(), times.begin() + times.size() / 2, times.end());
  return times[times.size() / 2];
}

// Returns whether the ratio keeps its budget.
static bool compare(const char* what, int lines, void (*ours)(), void (*bare)(), double budget) {
  std::vector<double> our_times;
  std::vector<double> bare_times;
  for (int round = 0; round < kRounds; ++round) {
    our_times.push_back(microseconds(ours));
    bare_times.push_back(microseconds(bare));
  }
  const double ratio = median(our_times) / median(bare_times);
  printf("%-8s %6d lines  ours %7.2f us  bare %7.2f us  ratio %.2f  budget %.1f  %s\n", what, lines,
         median(our_times), median(bare_times), ratio, budget, ratio <= budget ? "kept" : "BROKEN");
  return ratio <= budget;
}

static void write_profile(int lines) {
  FILE* file = fopen(kProfile, "we");
  fputs("Default\n", file);
  for (int i = 2; i < lines; ++i)
    fprintf(file, "SomeParameter%d=value of it %d\n", i, i);
  fputs("LastKey=even turn\n", file);
  fclose(file);
}

int main() {
  bool kept = true;
  for (const int lines : {30, 300, 3000}) {
    write_profile(lines);
    const double lookup_budget = lines == 300 ? 2.0 : 99;
    const double update_budget = lines == 300 ? 1.5 : 99;
    kept = compare("lookup", lines, store_lookup, bare_lookup, lookup_budget) && kept;
    write_profile(lines);
    kept = compare("update", lines, store_update, bare_update, update_budget) && kept;
  }
  return kept ? 0 : 1;
}
