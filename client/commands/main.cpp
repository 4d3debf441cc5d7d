#include "commands/run.h"

int main(int argc, char** argv) {
  return run(std::vector<std::string>(argv + 1, argv + argc), stdout, stderr);
}
