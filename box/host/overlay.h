// Directories of the host that a box changes for itself: an overlay over each, whose upper layer
// takes the changes.
#pragma once

#include <string>

struct overlay_layers {
  std::string root;    // of the box, while it is being built
  std::string layers;  // a directory on a writable file system
};

// Where to put the files that the box has in the host directory PATH from the start. PATH begins
// with "/".
[[nodiscard]] std::string overlay_upper(const overlay_layers& place, const std::string& path);

// Mounts the overlay over PATH, with what is mounted below it as far as that can be shown. Reports
// what failed and returns false.
[[nodiscard]] bool overlay_directory(const overlay_layers& place, const std::string& path);
