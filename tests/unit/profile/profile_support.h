#pragma once

#include <string>

#include "unit_support.h"

// A profile for tests of updates, and what became of it.

constexpr char kContent[] =
    "#The word of \"Default\" must not be removed\n"
    "Default\n"
    "SSID1=Home\n"
    "AuthMode=WPA2PSK;OPEN;OPEN\n"
    "SSID10=Other\n"
    "Empty=\n";

// The function in messages of an update.
constexpr char kUpdate[] = "_wifiprofile_updateParam";

// A fresh profile, no mirror and no lock file.
void set_up(const std::string& content = kContent);

// kContent with a part of it replaced.
std::string with(const std::string& old_part, const std::string& new_part);

// The profile is as it was set up, or has the content, as the mirror has; no
// temporary file is left.
void expect_untouched(const std::string& content = kContent);
void expect_written(const std::string& content);
