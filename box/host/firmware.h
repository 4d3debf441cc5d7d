// What a gateway's firmware has on its read-only file system: module files, calibration images,
// power tables, scripts. All boards run the same firmware, so each has the files of all.
//
//   /lib/modules/wifi/*.ko                  the driver's modules
//   /etc/Wireless/{7603AP,7612AP,7615AP}/   calibration defaults, power tables, l1profile.dat
//   /etc/wapp_ap.conf
//   /scripts/SKU_generator.sh               logs its calls to kSkuGeneratorLog
//   /sbin/EasyMesh_openwrt.sh               logs its calls to kEasymeshLog
//   companions                              links to gwbox-companion, see companions/companion.h
#pragma once

#include <string>

constexpr const char* kSkuGeneratorLog = "/run/gwbox/sku_generator.jsonl";
constexpr const char* kEasymeshLog = "/run/gwbox/easymesh.jsonl";

// Writes what belongs in /usr to the directory USR. COMPANION: the program that the companions'
// names link to.
[[nodiscard]] bool firmware_fill_usr(const std::string& usr, const std::string& companion);

// Writes the rest, inside the box. Both report what failed.
[[nodiscard]] bool firmware_install();
