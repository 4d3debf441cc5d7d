#pragma once

#include <string>

#include "unit_support.h"

// A profile for tests of updates, and checks of what became of it.

constexpr char kContent[] =
    "#The word of \"Default\" must not be removed\n"
    "Default\n"
    "SSID1=Home\n"
    "AuthMode=WPA2PSK;OPEN;OPEN\n"
    "SSID10=Other\n"
    "Empty=\n";

// The name of the updating function in its messages.
constexpr char kUpdate[] = "_wifiprofile_updateParam";

// Makes a fresh profile without a mirror or lock file.
void set_up(const std::string& content = kContent);

// kContent with one part replaced.
std::string with(const std::string& old_part, const std::string& new_part);

// The profile is unchanged, or it and the mirror have the content. No temporary file is
// left.
void expect_untouched(const std::string& content = kContent);
void expect_written(const std::string& content);
