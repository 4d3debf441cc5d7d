// Directories of the host that a box changes for itself: an overlay over each, whose upper layer
// takes the changes.
#pragma once

#include <string>

struct overlay_layers {
  std::string root;    // of the box, as long as it is put together
  std::string layers;  // a directory on a file system that is written to
};

// Where what the box has in the host directory PATH from the start belongs. PATH begins with "/".
[[nodiscard]] std::string overlay_upper(const overlay_layers& place, const std::string& path);

// Mounts the overlay over PATH, with all that is mounted below. Of that, and beside it, what
// cannot be shown is left out. Reports what failed and returns false.
[[nodiscard]] bool overlay_directory(const overlay_layers& place, const std::string& path);
