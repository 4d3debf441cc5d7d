// How commands reach a box: from inside it, or from outside by name or process id.
//
// Outside, a box is seen through /proc/<pid>/root of its first process. A name is an abstract
// socket that this process listens on: it is gone with the process, however that ends. Whoever
// connects learns the process from the kernel, and nothing is said.
#pragma once

#include <string>
#include <vector>

// ROOT: what stands before a path of the box: "" with an empty BOX, which is the box around the
// caller; else "/proc/<pid>/root". BOX: a name, or the id of `gwbox run` or of a process in a box.
// Reports what is wrong and returns false.
[[nodiscard]] bool reach_root(const std::string& box, std::string& root);

// A descriptor that becomes readable when the box of ROOT ends. -1 inside a box, whose end is the
// caller's own.
[[nodiscard]] int reach_open_end(const std::string& root);

// Takes a name for the box about to be started. FD stays open as long as the name is taken.
// Reports what is wrong and returns false.
[[nodiscard]] bool reach_take_name(const std::string& name, int& fd);

// For the box's first process: from now on it is found by the name of FD. Reports a failure.
[[nodiscard]] bool reach_listen(int fd);

// Closes connections to the name: a caller learns all it needs by connecting.
void reach_serve(int fd);

// The names of the running boxes, sorted.
std::vector<std::string> reach_names();
