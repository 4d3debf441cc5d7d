// gwbox-companion: all processes that run beside a gateway's Wi-Fi daemon, in one program. The name
// it is started under selects the companion.
#include <cstdio>
#include <cstring>

#include <string>

#include "companions/programs.h"

static constexpr const char* kNames =
#define COMPANION(directory, program, run) " " program
#include "base/companions.def"
    ;

int main(int argc, char** argv) {
  const char* path = argc > 0 ? argv[0] : "";
  const char* slash = strrchr(path, '/');
  std::string name = slash ? slash + 1 : path;
#define COMPANION(directory, program, run) \
  if (name == program) return run();
#define NUMBERED_COMPANION(directory, program, run) \
  if (name.starts_with(program)) return run(name, argc, argv);
#include "base/companions.def"
  fprintf(stderr, "%s: start it under the name of a companion:%s\n", name.c_str(), kNames);
  return 2;
}
