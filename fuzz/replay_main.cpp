#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "support/check.h"

// Runs files, and all files of directories, through a fuzz target, in the order of
// their names. A target ends the process when it finds something; the last name on
// standard output is then that of the input.

namespace fs = std::filesystem;

static void add_inputs(const fs::path& path, std::vector<fs::path>* inputs) {
  if (!fs::is_directory(path)) {
    inputs->push_back(path);
    return;
  }
  const size_t before = inputs->size();
  for (const fs::directory_entry& entry : fs::directory_iterator(path))
    inputs->push_back(entry.path());
  std::sort(inputs->begin() + static_cast<ptrdiff_t>(before), inputs->end());
}

static bool run_input(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::string bytes((std::istreambuf_iterator<char>(file)), {});
  if (!file) return false;
  printf("%s\n", path.c_str());
  fflush(stdout);
  // In a block of its own, so that a sanitizer sees reads beyond its end.
  const std::unique_ptr<uint8_t[]> exact(new uint8_t[bytes.size()]);
  std::copy(bytes.begin(), bytes.end(), exact.get());
  LLVMFuzzerTestOneInput(exact.get(), bytes.size());
  return true;
}

int main(int count, char** words) {
  std::vector<fs::path> inputs;
  for (int i = 1; i < count; ++i) {
    if (fs::exists(words[i])) add_inputs(words[i], &inputs);
  }
  if (inputs.empty()) {
    fputs("no inputs\n", stderr);
    return 1;
  }
  for (const fs::path& input : inputs) {
    if (run_input(input)) continue;
    fprintf(stderr, "%s cannot be read\n", input.c_str());
    return 1;
  }
  printf("%zu inputs\n", inputs.size());
  return 0;
}
