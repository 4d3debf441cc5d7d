#pragma once

#include <string>

// The simulated gateway that a test runs in.

// "mt7603", "mt7603+mt7612" or "mt7615".
std::string board();

// Radio interfaces, a line each in the order of their numbers: those that are
// there, those that the board's modules make, and those that are up and match
// an extended regular expression.
std::string interfaces();
std::string all_interfaces();
std::string interfaces_up(const std::string& pattern);

// What the interface beacons; empty when it does not.
std::string beaconed_ssid(const std::string& interface);

// Members of a bridge, a line each, sorted.
std::string bridge_members(const std::string& bridge);

// The value of a key, and its replacement in a profile that has it; appended
// where it has not.
std::string profile_value(const std::string& profile, const std::string& key);
void set_profile_value(const std::string& profile, const std::string& key,
                       const std::string& value);

// Gives both bands' first BSS the same SSID, security and pass phrase, and
// switches band steering on in both profiles.
void make_bands_alike();

// Gives the profiles VLANs, band steering, DCS and RADIUS servers.
void switch_everything_on();

// Changes how a companion behaves, see "gwbox set".
void set_companion(const std::string& path, const std::string& value);

// The signals that HncInit got, "USR1 USR2 " in their order.
std::string hnc_signals();
