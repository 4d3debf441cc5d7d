#include "support/snapshot.h"

#include <cctype>
#include <fstream>
#include <string>

size_t snapshot_procedures() {
  std::ifstream file(WIRE_SNAPSHOT);
  size_t count = 0;
  for (std::string line; std::getline(file, line);)
    count += isdigit(static_cast<unsigned char>(line[0])) != 0 ? 1 : 0;
  return count;
}
