#include "profile/files.h"

#include <cstring>

static constexpr profile_files kFiles24 = {24, "/tmp/.mt76xx_24.dat.lock",
                                           "/tmp/mt76xx_24.dat.hnc"};
static constexpr profile_files kFiles5 = {5, "/tmp/.mt76xx_5.dat.lock", "/tmp/mt76xx_5.dat.hnc"};

const profile_files* profile_files_of(const char* path) {
  return strstr(path, "mt76xx_24.dat") != nullptr ? &kFiles24 : &kFiles5;
}
