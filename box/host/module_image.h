// The driver's module files: small, but real enough for modinfo(8) and for loaders. The box
// identifies a module by the name inside.
#pragma once

#include <string>
#include <string_view>

// The content of a module file for the module NAME.
std::string module_image_make(const std::string& name);

// The module's name in IMAGE, or "" if that is not a module file.
std::string module_image_name(std::string_view image);
