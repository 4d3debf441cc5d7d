// News of the box's interfaces. The kernel reports each one that goes up, down or away before the
// call that did it returns: who reads the news first misses nothing.
#pragma once

#include <string>
#include <vector>

struct links_change {
  std::string name;
  bool gone;
  bool up;
};

// A descriptor that is readable when there is news, or -1 after a report.
[[nodiscard]] int links_open();

// All news since the last call, oldest first. When the kernel had to drop some, LOST is set: then
// the state of each interface has to be asked for.
std::vector<links_change> links_take(int fd, bool& lost);

// True when the interface is there and up. FD: any socket.
bool links_is_up(int fd, const char* name);
