#include "support/gateway.h"

#include <gtest/gtest.h>

#include "support/files.h"

std::string board() {
  const std::string devices = read_file("/proc/bus/pci/devices");
  if (devices.find("14c37615") != devices.npos) return "mt7615";
  return devices.find("14c37612") != devices.npos ? "mt7603+mt7612" : "mt7603";
}

std::string interfaces() {
  return run("ls /sys/class/net | grep -x 'ra[0-9]*' | sort -V");
}

std::string all_interfaces() {
  std::string names;
  const int count = board() == "mt7603" ? 8 : 16;
  for (int i = 0; i < count; ++i)
    names += "ra" + std::to_string(i) + "\n";
  return names;
}

std::string interfaces_up(const std::string& pattern) {
  return run("ip -br link show up | sed 's/@.* / /; s/ .*//' | grep -Ex '" + pattern +
             "' | sort -V");
}

std::string beaconed_ssid(const std::string& interface) {
  std::string ssid = run("gwbox status --json | jq -r '.interfaces[] | select(.name == \"" +
                         interface + "\" and .up) | .ssid'");
  if (!ssid.empty()) ssid.pop_back();
  return ssid;
}

std::string bridge_members(const std::string& bridge) {
  return run("ls /sys/class/net/" + bridge + "/brif | sort");
}

std::string profile_value(const std::string& profile, const std::string& key) {
  const std::string text = "\n" + read_file(profile);
  const size_t start = text.find("\n" + key + "=");
  if (start == text.npos) return "";
  const size_t value = start + key.size() + 2;
  return text.substr(value, text.find('\n', value) - value);
}

void set_profile_value(const std::string& profile, const std::string& key,
                       const std::string& value) {
  std::string text = read_file(profile);
  const size_t start = ("\n" + text).find("\n" + key + "=");
  if (start == text.npos) {
    text += key + "=" + value + "\n";
  } else {
    text.replace(start, text.find('\n', start) - start, key + "=" + value);
  }
  write_file(profile, text);
}

void make_bands_alike() {
  for (const char* profile : {"/tmp/mt76xx_24.dat", "/tmp/mt76xx_5.dat"}) {
    if (!exists(profile)) continue;
    set_profile_value(profile, "SSID1", "Home");
    set_profile_value(profile, "WPAPSK1", "correct horse");
    set_profile_value(profile, "AuthMode", "WPA2PSK;WPA2PSK;OPEN;OPEN;OPEN;OPEN;OPEN;OPEN");
    set_profile_value(profile, "BandSteering", "1");
    set_profile_value(profile, "RadioOn", "1");
    set_profile_value(profile, "BssEnabled", "1;1;0;0;0;0;0;0");
  }
}

void switch_everything_on() {
  make_bands_alike();
  for (const char* profile : {"/tmp/mt76xx_24.dat", "/tmp/mt76xx_5.dat"}) {
    if (!exists(profile)) continue;
    set_profile_value(profile, "VLAN_ID", "10;20;10;0;0;0;0;0");
    set_profile_value(profile, "MSODCSOn", "1");
    set_profile_value(profile, "USERDCSOn", "1");
    set_profile_value(profile, "Channel", "0");
    set_profile_value(profile, "RADIUS_Server",
                      "10.0.0.1;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0");
  }
}

void set_companion(const std::string& path, const std::string& value) {
  int status = -1;
  const std::string said = run("gwbox set companion " + path + " " + value + " 2>&1", &status);
  EXPECT_EQ(status, 0) << said;
}

std::string hnc_signals() {
  return run("jq -j '.signal + \" \"' /run/gwbox/hncinit.jsonl 2>/dev/null");
}
