// Prints a reference page, see scripts/generate.
#include <cstdio>
#include <cstring>

#include "reference/pages.h"

int main(int argc, char** argv) {
  const char* page = argc == 2 ? argv[1] : "";
  std::string text;
  if (strcmp(page, "markdown") == 0) text = reference_markdown();
  if (strcmp(page, "dissector") == 0) text = reference_dissector();
  if (text.empty()) {
    fputs("usage: wificonf-reference markdown|dissector\n", stderr);
    return 2;
  }
  return fputs(text.c_str(), stdout) < 0 || fflush(stdout) != 0 ? 1 : 0;
}
