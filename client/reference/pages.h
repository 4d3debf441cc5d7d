// The reference pages, made from the table.
#pragma once

#include <string>

// docs/procedures.md
std::string reference_markdown();

// packaging/wireshark/wlan_config_tables.lua: what the packet dissector knows of them.
std::string reference_dissector();
