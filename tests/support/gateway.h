#pragma once

#include <string>

// The simulated gateway that a test runs in.

// "mt7603", "mt7603+mt7612" or "mt7615".
std::string board();

// Radio interfaces, one per line in numeric order: the existing ones, all that the board's
// modules create, and those that are up and match an extended regular expression.
std::string interfaces();
std::string all_interfaces();
std::string interfaces_up(const std::string& pattern);

// The SSID that the interface beacons; empty if none.
std::string beaconed_ssid(const std::string& interface);

// Members of a bridge, sorted, one per line.
std::string bridge_members(const std::string& bridge);

// The profiles of the bands, and the copies that the controller reads.
constexpr char kProfile24[] = "/tmp/mt76xx_24.dat";
constexpr char kProfile5[] = "/tmp/mt76xx_5.dat";
constexpr char kMirror24[] = "/tmp/mt76xx_24.dat.hnc";
constexpr char kMirror5[] = "/tmp/mt76xx_5.dat.hnc";

// Reads a key's value in a profile; sets it, appending the key if it is missing.
std::string profile_value(const std::string& profile, const std::string& key);
void set_profile_value(const std::string& profile, const std::string& key,
                       const std::string& value);

// Gives the first BSS of both bands the same SSID, security and pass phrase, and enables band
// steering in both profiles.
void make_bands_alike();

// Adds VLANs, band steering, DCS and RADIUS servers to the profiles.
void switch_everything_on();

// Changes how a companion behaves; see "gwbox set".
void set_companion(const std::string& path, const std::string& value);

// The signals that HncInit received, in order, such as "USR1 USR2 ".
std::string hnc_signals();
