#include "sys/copy.h"

#include <cerrno>
#include <cstdio>

static int report_copy(const char* step, const char* path) {
  const int error = errno;
  fprintf(stderr, "_file_copy %s %s error\n", step, path);
  errno = error;
  perror(step);
  return 0;
}

int _file_copy(const char* source, const char* target) {
  FILE* in = fopen(source, "re");
  if (in == nullptr) return report_copy("fopen", source);
  FILE* out = fopen(target, "w+e");
  if (out == nullptr) {
    report_copy("fopen", target);
    fclose(in);
    return 0;
  }
  char block[4096];
  size_t length;
  bool whole = true;
  while (whole && (length = fread(block, 1, sizeof block, in)) > 0) {
    whole = fwrite(block, 1, length, out) == length;
  }
  whole = whole && ferror(in) == 0;
  fclose(in);
  if (fclose(out) != 0 || !whole) return report_copy("write", target);
  return 1;
}
