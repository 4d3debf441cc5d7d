// How commands reach a box: from inside it, or from outside by name or process id.
//
// Outside, a box is seen through /proc/<pid>/root of its first process. A name is an abstract
// socket that the process outside listens on: it is gone with that process, however that ends.
#pragma once

#include <string>

// ROOT: what stands before a path of the box: "" with an empty BOX, which is the box around the
// caller; else "/proc/<pid>/root". BOX: a name, or the id of `gwbox run` or of a process in a box.
// Reports what is wrong and returns false.
[[nodiscard]] bool reach_root(const std::string& box, std::string& root);

// Takes a name for the box about to be started. FD stays open as long as the name is taken.
[[nodiscard]] bool reach_take_name(const std::string& name, int& fd);
