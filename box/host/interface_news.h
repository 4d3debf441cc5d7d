// What becomes of the box's interfaces: the kernel tells whenever one goes up, down or away, before
// the call that did it returns. So whoever takes the news before anything else has all of it.
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

// All news since the last time, oldest first. When the kernel had to drop some, LOST is set: then
// only asking for each interface tells how it stands.
std::vector<links_change> links_take(int fd, bool& lost);

// True when the interface is there and up. FD: any socket.
bool links_is_up(int fd, const char* name);
