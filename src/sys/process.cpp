#include "sys/process.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <cctype>
#include <climits>
#include <cstdio>
#include <cstring>

// Whether /proc/PID/status describes such a process. Compares the real user: a
// set-user-ID program still belongs to whoever started it.
static bool tells_of(FILE* status, const char* name) {
  char line[128];
  char process[32] = "";
  char state = 'Z';
  unsigned user = ~0U;
  while (fgets(line, sizeof line, status) != nullptr && sscanf(line, "Uid: %u", &user) != 1) {
    static_cast<void>(sscanf(line, "Name:\t%31[^\n]", process));
    static_cast<void>(sscanf(line, "State: %c", &state));
  }
  return strcmp(process, name) == 0 && state != 'Z' && state != 'X' && user == getuid();
}

static bool is_named(const char* number, const char* name) {
  char path[sizeof "/proc//status" + NAME_MAX];
  snprintf(path, sizeof path, "/proc/%s/status", number);
  FILE* status = fopen(path, "re");
  if (status == nullptr) return false;
  const bool named = tells_of(status, name);
  fclose(status);
  return named;
}

bool process_runs(const char* name) {
  DIR* processes = opendir("/proc");
  if (processes == nullptr) return false;
  bool runs = false;
  for (const dirent* entry = readdir(processes); entry != nullptr && !runs;
       entry = readdir(processes)) {
    runs =
        isdigit(static_cast<unsigned char>(entry->d_name[0])) != 0 && is_named(entry->d_name, name);
  }
  closedir(processes);
  return runs;
}

void reserve_standard_streams() {
  int file = open("/dev/null", O_RDWR);
  while (file >= 0 && file <= STDERR_FILENO)
    file = open("/dev/null", O_RDWR);
  if (file > STDERR_FILENO) close(file);
}
