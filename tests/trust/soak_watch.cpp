#include <dirent.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

#include "soak.h"
#include "support/files.h"
#include "trust/profile_file.h"

// What the daemon holds and keeps.

static constexpr const char* kProfiles[] = {kProfile24, kProfile5};

static std::atomic<int64_t> checks;

// The number in a line such as "Rss:      1234 kB" of a /proc file; 0 without such a
// line.
static long proc_number(const std::string& text, const char* label) {
  const size_t at = text.find(label);
  return at == text.npos ? 0 : atol(text.c_str() + at + strlen(label));
}

static void count_descriptors(const std::string& process, child_sample* sample) {
  DIR* descriptors = opendir((process + "/fd").c_str());
  if (descriptors == nullptr) return;
  while (const dirent* entry = readdir(descriptors)) {
    char target[64] = {};
    const std::string path = process + "/fd/" + entry->d_name;
    if (readlink(path.c_str(), target, sizeof target - 1) <= 0) continue;
    if (strncmp(target, "socket:", 7) == 0)
      ++sample->sockets;
    else
      ++sample->others;
  }
  closedir(descriptors);
}

static int zombies_of(pid_t parent) {
  int zombies = 0;
  DIR* processes = opendir("/proc");
  while (const dirent* entry = readdir(processes)) {
    if (atoi(entry->d_name) == 0) continue;
    const std::string status = read_file(std::string("/proc/") + entry->d_name + "/status");
    if (proc_number(status, "PPid:") == parent && status.find("State:\tZ") != status.npos)
      ++zombies;
  }
  closedir(processes);
  return zombies;
}

child_sample sample_child(pid_t child) {
  const std::string process = "/proc/" + std::to_string(child);
  const std::string memory = read_file(process + "/smaps_rollup");
  child_sample sample = {};
  sample.pid = child;
  sample.rss = proc_number(memory, "Rss:");
  sample.pss = proc_number(memory, "Pss:");
  sample.threads = static_cast<int>(proc_number(read_file(process + "/status"), "Threads:"));
  sample.zombies = zombies_of(child);
  count_descriptors(process, &sample);
  return sample;
}

static std::vector<std::string> keys_at_first[2];

void remember_profiles() {
  for (size_t i = 0; i < std::size(kProfiles); ++i)
    keys_at_first[i] = keys_in(read_file(kProfiles[i]));
}

void check_profiles() {
  for (size_t i = 0; i < std::size(kProfiles); ++i) {
    // Without the lock, as the driver reads it.
    const std::string wrong = incompleteness(read_file(kProfiles[i]), keys_at_first[i]);
    if (!wrong.empty()) finding("%s %s", kProfiles[i], wrong.c_str());
  }
  ++checks;
}

int64_t profile_checks() {
  return checks;
}

int64_t dropped_datagrams() {
  const std::string dropped =
      run("awk '$2 ~ /:EA61$/ || $3 ~ /:EA61$/ {n += $NF} END {print n + 0}' /proc/net/udp");
  return atoll(dropped.c_str());
}
