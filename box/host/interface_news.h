// News of the box's interfaces. The kernel reports one that goes up, goes down or disappears before
// the call that did it returns, so whoever reads the news first misses nothing.
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

// All news since the last call, oldest first. LOST is set if the kernel had to drop some; the
// caller then has to ask for the state of each interface.
std::vector<links_change> links_take(int fd, bool& lost);

// True when the interface exists and is up. FD: any socket.
bool links_is_up(int fd, const char* name);
