#include "host/firmware.h"

#include <sys/stat.h>
#include <unistd.h>
#include <cerrno>
#include <cstdio>

#include "base/files.h"
#include "base/report.h"
#include "host/module_image.h"
#include "host/modules.h"
#include "host/power_table.h"

static constexpr const char* kCompanions[] = {
#define COMPANION(directory, name, run) directory "/" name,
#include "base/companions.def"
};

static constexpr const char* kEasymeshScript = R"sh(#!/bin/sh
# Sets up the mesh: starts the band steering daemon.
echo "{\"arguments\":$#}" >>/run/gwbox/easymesh.jsonl
pgrep -x bs20 >/dev/null || bs20 </dev/null >/dev/null 2>&1 &
)sh";

static constexpr const char* kSkuGeneratorScript = R"sh(#!/bin/sh
# usage: SKU_generator.sh NUMBER COUNTRY DOMAIN
# Writes the power table of radio NUMBER (1: 2.4 GHz, 9: 5 GHz) to /tmp/COUNTRY_NUMBER.dat.
plain() { printf %s "$1" | tr -cd 'A-Za-z0-9_.-'; }
printf '{"number":"%s","country":"%s","domain":"%s"}\n' \
  "$(plain "$1")" "$(plain "$2")" "$(plain "$3")" >>/run/gwbox/sku_generator.jsonl
[ $# -eq 3 ] || exit 1
limit=20
[ "$3" = FCC ] && limit=27
channels="36 40 44 48 149 153 157 161"
[ "$1" -lt 9 ] && channels="1 2 3 4 5 6 7 8 9 10 11"
{
  echo "# $2 $3 radio $1"
  for channel in $channels; do echo "Ch$channel $limit $limit $limit $limit"; done
} >"/tmp/$2_$1.dat"
)sh";

static constexpr const char* kWappConf = R"(# Access point daemon
interface=ra0
interface=ra8
bridge=br0
)";

static constexpr const char* kL1Profile = R"(Default
INDEX0=MT7615
INDEX0_profile_path=/tmp/mt76xx_24.dat;/tmp/mt76xx_5.dat
INDEX0_EEPROM_offset=0x0
INDEX0_EEPROM_size=0x4000
INDEX0_EEPROM_name=MT7615_EEPROM_2G;MT7615_EEPROM_5G
INDEX0_main_ifname=ra0;ra8
INDEX0_ext_ifname=ra;ra
INDEX0_single_sku_path=/tmp/.mt7615_SingleSKU.dat
INDEX0_bf_sku_path=/tmp/.mt7615_SingleSKU_BF.dat
)";

struct calibration_row {
  const char* path;
  unsigned chip;
  size_t size;
};

static constexpr calibration_row kCalibrations[] = {
    {"/etc/Wireless/7603AP/MT7603_EEPROM.bin", 0x7603, 1024},
    {"/etc/Wireless/7612AP/MT7612_EEPROM.bin", 0x7612, 512},
    {"/etc/Wireless/7615AP/MT7615_EEPROM.bin", 0x7615, 1024},
};

static bool write_script(const std::string& path, const char* text) {
  if (!directory_make(path_parent(path)) || !file_write(path, text)) return false;
  return chmod(path.c_str(), 0755) == 0 ||
         report_errno(nullptr, "make %s executable", path.c_str());
}

// Chip number, version and address are where the chips have them, least significant byte first. The
// word at 0x52 says that no self-calibration was done; the rest stands for the factory's data.
static std::string calibration_image(const calibration_row& row) {
  std::string image(row.size, '\0');
  for (size_t i = 0; i < row.size; ++i)
    image[i] = static_cast<char>(i < 0x20 || i >= row.size * 3 / 4 ? 0xFF : i * 7 + row.chip);
  unsigned low = row.chip & 0xFF, high = row.chip >> 8, at = 0;
  for (unsigned byte : {low, high, 0x00u, 0x01u, 0x00u, 0x0Cu, 0x43u, 0x26u, high, low})
    image[at++] = static_cast<char>(byte);
  image[0x52] = image[0x53] = 0;
  return image;
}

static bool install_calibrations() {
  for (const calibration_row& row : kCalibrations) {
    if (!directory_make(path_parent(row.path)) || !file_write(row.path, calibration_image(row))) {
      return false;
    }
  }
  return true;
}

static bool link_companions(const std::string& usr, const std::string& companion) {
  for (const char* name : kCompanions) {
    std::string link = usr;
    link.append("/").append(name);
    if (!directory_make(path_parent(link))) return false;
    if (symlink(companion.c_str(), link.c_str()) < 0) {
      return report_errno(nullptr, "make the link /usr/%s", name);
    }
  }
  return true;
}

bool firmware_fill_usr(const std::string& usr, const std::string& companion) {
  std::string modules = usr + "/lib/modules/wifi";
  if (!directory_make(modules)) return false;
  for (int row = 0; row < kModulesMax; ++row) {
    std::string name = modules_row(row).name, path = modules;
    path.append("/").append(name).append(".ko");
    if (!file_write(path, module_image_make(name))) return false;
  }
  return link_companions(usr, companion) &&
         write_script(usr + "/sbin/EasyMesh_openwrt.sh", kEasymeshScript);
}

bool firmware_install() {
  return install_calibrations() && power_table_install("/etc/Wireless/7615AP") &&
         file_write("/etc/Wireless/7615AP/l1profile.dat", kL1Profile) &&
         file_write("/etc/wapp_ap.conf", kWappConf) &&
         write_script("/scripts/SKU_generator.sh", kSkuGeneratorScript);
}
