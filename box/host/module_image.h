// The driver's module files: small, but real enough for modinfo(8) and for loaders. The box
// identifies a module by the name inside.
#pragma once

#include <string>
#include <string_view>

// A module file whose information names that module.
std::string module_image_make(const std::string& name);

// The name inside, or "" when it is no module file.
std::string module_image_name(std::string_view image);
