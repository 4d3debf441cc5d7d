#include "companions/companion.h"
#include "companions/programs.h"

int idle_main() {
  companion self = companion_begin({});
  while (companion_pause(self, -1)) {
  }
  return 0;
}
