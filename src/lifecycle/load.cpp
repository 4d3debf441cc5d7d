#include "lifecycle/load.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "diag/message.h"
#include "diag/trace.h"
#include "lifecycle/power_tables.h"
#include "lifecycle/state.h"
#include "lifecycle/turn.h"
#include "sys/board.h"
#include "sys/command.h"
#include "sys/module.h"
#include "sys/planted.h"
#include "sys/whole_file.h"

static constexpr size_t kDirectorySize = 128;
static constexpr size_t kPathSize = kDirectorySize + 32;
static constexpr char kDefaultDirectory[] = "/lib/modules/wifi/";

// Prints a notice, which has no newline, and runs the copy. Removes what a failed copy
// has left: it would be taken for the file from then on.
static void copy_default(const char* target, const char* notice, const char* command) {
  fputs(notice, stdout);
  if (run_command(command) == 0) return;
  file_remove(target);
  trace_rpc_error("wifi_load", "Failed to copy the default to %s\n", target);
}

static void provide(const char* target, const char* notice, const char* command) {
  if (!file_is_filled(target)) copy_default(target, notice, command);
}

// Provides a board's power-level profile, which the driver reads from a directory where
// anyone may create files.
static void provide_power_levels() {
  static constexpr char kTarget[] = "/tmp/l1profile.dat";
  planted_remove(kTarget);
  if (path_exists(kTarget) || !planted_make_way(kTarget, false)) return;
  // The notice names an EEPROM image instead: kept on purpose.
  copy_default(kTarget, "Loading default 5G 7615 EEPROM bin file to nvram",
               "cp /etc/Wireless/7615AP/l1profile.dat /tmp/l1profile.dat");
}

static void provide_eeprom_images() {
  if (hasMTK7615() != 0) {
    // Both bands start from the same image.
    provide("/nvram/MT7615_EEPROM_2G.bin", "Loading default 2G 7615 EEPROM bin file to nvram",
            "cp /etc/Wireless/7615AP/MT7615_EEPROM.bin /nvram/MT7615_EEPROM_2G.bin");
    provide("/nvram/MT7615_EEPROM_5G.bin", "Loading default 5G 7615 EEPROM bin file to nvram",
            "cp /etc/Wireless/7615AP/MT7615_EEPROM.bin /nvram/MT7615_EEPROM_5G.bin");
    return;
  }
  provide("/nvram/MT7603_EEPROM.bin", "Loading default 7603 EEPROM bin file to nvram",
          "cp /etc/Wireless/7603AP/MT7603_EEPROM.bin /nvram/");
  provide("/nvram/MT7612_EEPROM.bin", "Loading default 7612 EEPROM bin file to nvram",
          "cp /etc/Wireless/7612AP/MT7612_EEPROM.bin /nvram/");
}

static const char* first_module() {
  return hasMTK7615() != 0 ? "mt7615_ap.ko" : "mt7603e_ap.ko";
}

static bool holds_module(const char* directory) {
  char path[kPathSize];
  snprintf(path, sizeof path, "%s%s", directory, first_module());
  return path_exists(path);
}

// Uses the module tree on the drive, if it is mounted and has one.
static void choose_mount_point(char (&directory)[kDirectorySize]) {
  char* output = nullptr;
  const int status = ex_cmd("wifi_load", "df -h /dev/sda1 | awk 'NR==2{print $NF}'", &output);
  const size_t length = status == 0 ? strlen(output) : 0;
  if (length > 0 && strstr(output, "can't find mount point") == nullptr) {
    output[length - 1] = '\0';
    char candidate[kDirectorySize];
    const int needed = snprintf(candidate, sizeof candidate, "%s%s", output, kDefaultDirectory);
    if (needed < static_cast<int>(sizeof candidate) && holds_module(candidate)) {
      print_message(stdout, "\033[1;32mLoading wlan drivers from mount point %s\033[0m\n",
                    candidate);
      strcpy(directory, candidate);
    }
  }
  free(output);
}

// Only factory mode may take the modules from elsewhere.
static void choose_directory(char (&directory)[kDirectorySize]) {
  strcpy(directory, kDefaultDirectory);
  if (!path_exists("/tmp/factoryModeEnabled")) return;
  if (path_exists("/dev/sda1")) {
    choose_mount_point(directory);
  } else if (holds_module("/nvram/")) {
    puts("\033[1;32mLoading wlan drivers from NVRAM\033[0m");
    strcpy(directory, "/nvram/");
  }
}

static void insert(const char* directory, const char* module, const char* chip) {
  char path[kPathSize];
  snprintf(path, sizeof path, "%s%s", directory, module);
  if (insert_module(path, nullptr) == -1) {
    trace_rpc_error("wifi_load", "Failed to load the %s AP driver\n", chip);
  }
}

// Power-cycles both PCIe slots and rescans the bus.
static void enumerate_pci_slots() {
  static constexpr const char* kSteps[] = {
      "echo 0 > /sys/bus/pci/slots/0000:02:00.0/power",
      "echo 0 > /sys/bus/pci/slots/0000:03:00.0/power",
      "sleep 1",
      "echo 1 > /sys/bus/pci/rescan",
      "sleep 1",
      "echo 1 > /sys/bus/pci/devices/0000:02:00.0/remove",
      "echo 1 > /sys/bus/pci/devices/0000:03:00.0/remove",
      "sleep 1",
      "echo 1 > /sys/bus/pci/rescan",
      "sleep 1",
      "echo 1 > /sys/bus/pci/slots/0000:02:00.0/power",
      "echo 1 > /sys/bus/pci/slots/0000:03:00.0/power",
  };
  for (const char* step : kSteps)
    run_command(step);
}

static void load_mt7615(const char* directory) {
  enumerate_pci_slots();
  provide_power_levels();
  insert(directory, "mt7615_ap.ko", "MT7615");
}

int wifi_load() {
  provide_eeprom_images();
  setup_single_sku();
  char directory[kDirectorySize];
  choose_directory(directory);
  if (hasMTK7615() != 0) {
    load_mt7615(directory);
  } else {
    insert(directory, "mt7603e_ap.ko", "MT7603");
    if (isSingleBand() == 0) insert(directory, "mt7612e_ap.ko", "MT7612");
  }
  lifecycle.modules_loaded = true;
  return 1;
}

void* load_handler_func(const uint8_t*) {
  lifecycle.last_result = 0;
  set_running(&lifecycle.load_running, true);
  if (wifi_load() == 1) {
    lifecycle.wlan_loaded = true;
    REV_TRACE("wlan loaded.\n");
  } else {
    REV_ERROR("load_handler_func failed !!!\n");
    lifecycle.last_result = -1;
  }
  set_running(&lifecycle.load_running, false);
  return &lifecycle.last_result;
}
