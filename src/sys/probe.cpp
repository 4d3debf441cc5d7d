#include "sys/probe.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

bool probe_number(const char* command, size_t size, int* number) {
  FILE* stream = popen(command, "re");
  if (stream == nullptr) return false;
  char text[33] = {};
  const size_t length = fread(text, 1, std::min(size, sizeof text - 1), stream);
  // pclose, so that the probe does not remain as a zombie.
  pclose(stream);
  *number = atoi(text);
  return length > 0;
}

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

void probe_lines(const char* command, void (*take)(const char* line, void* context),
                 void* context) {
  FILE* stream = popen(command, "re");
  if (stream == nullptr) return;
  char line[64];
  while (fgets(line, sizeof line, stream) != nullptr)
    take(line, context);
  pclose(stream);
}
