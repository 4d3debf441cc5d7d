#include <fcntl.h>
#include <unistd.h>
#include <cstdio>

#include "companions/companion.h"
#include "companions/companion_data.h"
#include "companions/programs.h"

static constexpr const char* kMarker = "/tmp/mtk_bnd_file";
static constexpr double kUsualSeconds = 0.2;

int bndstrg_main() {
  companion self = companion_begin({});
  double after = companion_number(companion_data("bndstrg_1"), "marker_after", kUsualSeconds);
  if (companion_wait(self, after) && after >= 0) {
    int fd = open(kMarker, O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
    if (fd < 0) perror(kMarker);
    if (fd >= 0) close(fd);
  }
  while (!self.ended)
    companion_pause(self, -1);
  return 0;
}
