// How commands reach a box: from inside it, or from outside by name or process id.
//
// From outside, a box is seen through /proc/<pid>/root of one of its processes. A name is an
// abstract socket that the first process listens on, so it disappears with that process. The kernel
// tells whoever connects which process that is; nothing is sent.
#pragma once

#include <string>
#include <vector>

// ROOT becomes the prefix of paths in the box: "" if BOX is empty, which means the box around the
// caller; else "/proc/<pid>/root". BOX: a name, or the id of `gwbox run` or of a process in a box.
// Reports what is wrong and returns false.
[[nodiscard]] bool reach_root(const std::string& box, std::string& root);

// A descriptor that becomes readable when the process in ROOT ends: the box's first process, unless
// the user named another one. -1 inside a box, where the caller ends with the box.
[[nodiscard]] int reach_open_end(const std::string& root);

// Takes a name for a box about to start; it is taken as long as FD is open. Reports what is wrong
// and returns false.
[[nodiscard]] bool reach_take_name(const std::string& name, int& fd);

// For the box's first process: makes the name of FD lead to it. Reports a failure.
[[nodiscard]] bool reach_listen(int fd);

// Closes connections to the name: a caller learns all it needs by connecting.
void reach_serve(int fd);

// The names of the running boxes, sorted.
std::vector<std::string> reach_names();
