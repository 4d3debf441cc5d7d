#include "sys/board.h"

#include <atomic>
#include <climits>
#include <cstdio>
#include <cstring>
#include <initializer_list>

#include "diag/trace.h"

static constexpr char kPciDevices[] = "/proc/bus/pci/devices";

int bss_to_radio_index(int bss) {
  if (bss < kRadio24 || bss > kMaxBss) return -1;
  return bss < kRadio5 ? kRadio24 : kRadio5;
}

const char* bss_profile(int bss) {
  return bss < kRadio5 ? "/tmp/mt76xx_24.dat" : "/tmp/mt76xx_5.dat";
}

int bss_list_position(int bss) {
  if (bss == INT_MIN) return bss;
  return bss < kRadio5 ? bss - 1 : bss - 9;
}

int bss_key_number(int bss) {
  return bss < kRadio5 ? bss : bss - 8;
}

interface_name bss_interface(int bss) {
  interface_name name = {};
  snprintf(name.text, sizeof name.text, "ra%lld", static_cast<long long>(bss) - 1);
  return name;
}

// Written by whichever thread probes first; if two probe at once, the list is merely read
// twice.
static std::atomic<bool> mtk7615_probed;
static std::atomic<bool> mtk7615_found;
static std::atomic<bool> single_band_probed;
static std::atomic<bool> single_band = true;

// Vendor and device in the form of /proc/bus/pci/devices; 14c3 is MediaTek.
static bool list_holds(FILE* devices, std::initializer_list<const char*> ids) {
  char line[256];
  while (fgets(line, sizeof line, devices) != nullptr) {
    for (const char* id : ids) {
      if (strstr(line, id) != nullptr) return true;
    }
  }
  return false;
}

int hasMTK7615() {
  if (mtk7615_probed) return mtk7615_found;
  FILE* devices = fopen(kPciDevices, "re");
  if (devices == nullptr) {
    // Not marked as probed, so the next call tries again.
    RPC_TRACE("Unable to open file /proc/bus/pci/devices\n");
    return mtk7615_found;
  }
  const bool found = list_holds(devices, {"14c37615"});
  fclose(devices);
  RPC_TRACE(found ? "MTK 7615 PCIE detected\n" : "MTK 7615 PCIE not detected\n");
  mtk7615_found = found;
  mtk7615_probed = true;
  return found;
}

static bool probe_single_band() {
  static constexpr char kName[] = "isSingleBand";
  FILE* devices = fopen(kPciDevices, "re");
  if (devices != nullptr) {
    const bool dual = list_holds(devices, {"14c37612", "14c37662"});
    fclose(devices);
    if (dual) {
      trace_rpc(kName, "MTK PCIE detected\n");
      return false;
    }
    // Says 2.4 GHz although the search is for the 5 GHz parts, and the line below follows
    // although the file was read: both kept on purpose.
    trace_rpc(kName, "No MTK 2.4GHz PCIE detected\n");
  }
  trace_rpc(kName, "Cannot open file /proc/bus/pci/devices\n");
  return true;
}

int isSingleBand() {
  if (single_band_probed) return single_band;
  single_band = hasMTK7615() ? false : probe_single_band();
  single_band_probed = true;
  return single_band;
}
