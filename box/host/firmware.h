// What a gateway's firmware has on its read-only file system: module files, calibration images,
// power tables, scripts. All boards run the same firmware, so each has the files of all.
//
//   /lib/modules/wifi/*.ko                  the driver's modules
//   /etc/Wireless/{7603AP,7612AP,7615AP}/   calibration defaults, power tables, l1profile.dat
//   /etc/wapp_ap.conf
//   /scripts/SKU_generator.sh               its calls: kSkuGeneratorLog
//   /sbin/EasyMesh_openwrt.sh               its calls: kEasymeshLog
//   companions                              links to gwbox-companion, see companions/companion.h
#pragma once

#include <string>

constexpr const char* kSkuGeneratorLog = "/run/gwbox/sku_generator.jsonl";
constexpr const char* kEasymeshLog = "/run/gwbox/easymesh.jsonl";

// Puts what lies below /usr into that directory. COMPANION: the program behind the companions.
[[nodiscard]] bool firmware_fill_usr(const std::string& usr, const std::string& companion);

// Puts the rest in place, inside the box. Both report what failed.
[[nodiscard]] bool firmware_install();
