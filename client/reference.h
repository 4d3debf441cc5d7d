// The reference pages, made from the table.
#pragma once

#include <string>

// docs/procedures.md
std::string reference_markdown();

// packaging/wireshark/wlan_config.lua: a dissector for tshark and Wireshark.
std::string reference_dissector();
