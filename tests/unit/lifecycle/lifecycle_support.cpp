#include "lifecycle/lifecycle_support.h"

#include <unistd.h>

#include "support/files.h"

static constexpr char kCommands[] = "/tmp/commands";

void note_commands(const std::string& answer) {
  write_file("/tmp/answer", answer);
  write_file("/tmp/note",
             "#!/bin/bash\nprintf '%s\\n' \"${@: -1}\" >> /tmp/commands\ncat /tmp/answer\n");
  run("chmod +x /tmp/note; mount --bind /tmp/note /usr/bin/dash");
}

std::string commands() {
  const std::string noted = read_file(kCommands);
  unlink(kCommands);
  return noted;
}

void pretend_mt7615() {
  write_file("/proc/bus/pci/devices", "0200\t14c37615\t42\n");
}

void pretend_single_band() {
  write_file("/proc/bus/pci/devices", "0100\t14c37603\t42\n");
}
