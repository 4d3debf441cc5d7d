#include "sys/probe.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

bool probe_number(const char* command, size_t size, int* number) {
  FILE* stream = popen(command, "re");
  if (stream == nullptr) return false;
  char text[33] = {};
  const size_t length = fread(text, 1, std::min(size, sizeof text - 1), stream);
  // pclose, so that the probe does not wait to be collected as a child.
  pclose(stream);
  *number = atoi(text);
  return length > 0;
}

bool try_record_lock(const char* path) {
  // Everybody may write to the directory: no file that a link names is truncated.
  const int file = open(path, O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0666);
  if (file < 0) return false;
  struct flock whole = {};
  whole.l_type = F_WRLCK;
  whole.l_whence = SEEK_SET;
  const bool granted = fcntl(file, F_SETLK, &whole) == 0;
  close(file);
  return granted;
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
