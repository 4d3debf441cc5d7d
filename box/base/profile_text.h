// The text of a driver's profile: lines "Key=Value".
#pragma once

#include <map>
#include <string>

// The values by key. Of several lines with a key the first counts, as for the driver.
std::map<std::string, std::string> profile_text_read(const std::string& text);
