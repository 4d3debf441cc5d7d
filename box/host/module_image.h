// The driver's module files: small, but real module files in that modinfo(8) reads them, and all
// that a loader does with them works. The name inside is what the box goes by.
#pragma once

#include <string>
#include <string_view>

// A module file whose information names that module.
std::string module_image_make(const std::string& name);

// The name inside, or "" when it is no module file.
std::string module_image_name(std::string_view image);
