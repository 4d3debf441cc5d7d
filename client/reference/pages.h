// The reference pages, generated from the table.
#pragma once

#include <string>

// docs/procedures.md
std::string reference_markdown();

// packaging/wireshark/wlan_config_tables.lua: the packet dissector's tables.
std::string reference_dissector();
