// gwbox-companion: the processes that run beside a gateway's Wi-Fi daemon, in one program. Which
// one it is, the name says that it was started by.
#include <stdio.h>
#include <string.h>

#include <string>

#include "programs.h"

struct program_row {
  const char* name;
  int (*run)();
};

static constexpr program_row kPrograms[] = {
    {"bndstrg_1", bndstrg_main}, {"bs20", idle_main},
    {"dcs", dcs_main},           {"hnc-listener", hnc_listener_main},
    {"HncInit", hnc_init_main},  {"mtk_ctrl", mtk_ctrl_main},
    {"rtdot1xd", idle_main},     {"rtinicapd", idle_main},
    {"wapp", idle_main},
};

int main(int argc, char** argv) {
  const char* path = argc > 0 ? argv[0] : "";
  const char* slash = strrchr(path, '/');
  std::string name = slash ? slash + 1 : path;
  for (const program_row& program : kPrograms) {
    if (name == program.name) return program.run();
  }
  // Each radio's instance has a number in its name: radstat0, radstat8.
  if (name.starts_with("radstat")) return radstat_main(name, argc, argv);
  fprintf(stderr, "%s: start it under the name of a companion:", name.c_str());
  for (const program_row& program : kPrograms)
    fprintf(stderr, " %s", program.name);
  fprintf(stderr, " radstat\n");
  return 2;
}
