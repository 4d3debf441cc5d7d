#include "lifecycle/vlan_bridges.h"

#include <atomic>
#include <cstdio>

#include "profile/profile_values.h"
#include "sys/board.h"
#include "sys/netdev.h"

namespace {

constexpr int kPositions = 16;
constexpr int kPositionsSingleBand = 8;
constexpr int kFirstId = 2;
constexpr int kLastId = 4095;
constexpr int kAnyLength = 255;
constexpr int kUdmaLimit = 4;

struct device_name {
  char text[16];
};

}  // namespace

// The VLAN id that setup bridged, at the position of the first BSS of each
// group. Written by the worker, read by whichever thread tears down.
static std::atomic<int> vlan_table[kPositions];

static bool in_range(int id) {
  return id >= kFirstId && id <= kLastId;
}

static device_name numbered(const char* prefix, int number) {
  device_name name;
  snprintf(name.text, sizeof name.text, "%s%d", prefix, number);
  return name;
}

static device_name vlan_device(int id) {
  device_name name;
  snprintf(name.text, sizeof name.text, "%s.%d", "eth0", id);
  return name;
}

static bool udma_enabled(int max_len) {
  return profile_number(bss_profile(kRadio24), "UdmaEnable", max_len) == 1;
}

static void make_bridge(const device_name& bridge, int id) {
  // The add fails harmlessly for a bridge that is there, such as br0.
  bridge_ioctl(bridge.text, nullptr, kBridgeAdd);
  vconfig_ioctl("eth0", id, kVlanAdd);
  const device_name device = vlan_device(id);
  bridge_ioctl(bridge.text, device.text, kBridgeAddInterface);
  if_ioctl(bridge.text, nullptr, nullptr, 0, 1);
  if_ioctl(device.text, nullptr, nullptr, 0, 1);
}

// Joins or removes the interfaces of every position from `first` on that has
// the id and is not handled yet.
static void for_group(const device_name& bridge, const int (&ids)[kPositions], int count, int first,
                      int op, bool (&handled)[kPositions]) {
  for (int position = first; position < count; ++position) {
    if (handled[position] || ids[position] != ids[first]) continue;
    bridge_ioctl(bridge.text, numbered("ra", position).text, op);
    handled[position] = true;
  }
}

void wifi_setupVlanBridges() {
  if (udma_enabled(kAnyLength)) return;
  const int count = isSingleBand() != 0 ? kPositionsSingleBand : kPositions;
  int ids[kPositions] = {};
  for (int i = 0; i < count; ++i)
    ids[i] = bss_number(i + 1, "VLAN_ID", kAnyLength);
  bool handled[kPositions] = {};
  int bridges = 0;
  for (int i = 0; i < count; ++i) {
    if (handled[i] || !in_range(ids[i])) continue;
    vlan_table[i] = ids[i];
    const device_name bridge = numbered("br", bridges++);
    make_bridge(bridge, ids[i]);
    for_group(bridge, ids, count, i, kBridgeAddInterface, handled);
  }
}

void wifi_teardownVlanBridges() {
  if (udma_enabled(kUdmaLimit)) return;
  int ids[kPositions];
  for (int i = 0; i < kPositions; ++i)
    ids[i] = vlan_table[i];
  bool handled[kPositions] = {};
  int bridges = 0;
  for (int i = 0; i < kPositions; ++i) {
    if (handled[i] || !in_range(ids[i])) continue;
    if (ids[i] != kFirstId) vconfig_ioctl(vlan_device(ids[i]).text, ids[i], kVlanDelete);
    const device_name bridge = numbered("br", bridges);
    for_group(bridge, ids, kPositions, i, kBridgeDeleteInterface, handled);
    if_ioctl(bridge.text, nullptr, nullptr, 0, 0);
    if (bridges != 0) bridge_ioctl(bridge.text, nullptr, kBridgeDelete);
    ++bridges;
  }
}
