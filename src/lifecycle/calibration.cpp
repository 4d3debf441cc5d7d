#include "lifecycle/calibration.h"

#include <cstdlib>
#include <cstring>

#include "diag/trace.h"
#include "sys/command.h"
#include "sys/whole_file.h"

static constexpr char kResults1[] = "/nvram/MT7615_CALDATA1.bin";
static constexpr char kResults2[] = "/nvram/MT7615_CALDATA2.bin";
static constexpr char kBackup[] = "/nvram/backup_EEPROM_CALDATA";

// Bit of the EEPROM word 0x0052.
static constexpr unsigned long kCalibrated = 0x2;

static bool has_results() {
  return path_exists(kResults1) && path_exists(kResults2);
}

// Makes backups of the images. A truncated copy is removed: an undo would restore it over
// the image.
static void back_up_images() {
  static constexpr const char* kImages[][2] = {
      {"/nvram/MT7615_EEPROM_2G.bin", "/nvram/backup_EEPROM_CALDATA/MT7615_EEPROM_2G.bin"},
      {"/nvram/MT7615_EEPROM_5G.bin", "/nvram/backup_EEPROM_CALDATA/MT7615_EEPROM_5G.bin"},
  };
  if (run_command("mkdir /nvram/backup_EEPROM_CALDATA; "
                  "cp /nvram/MT7615_EEPROM_* /nvram/backup_EEPROM_CALDATA") == 0)
    return;
  trace_rpc_error("wlan_set_prek_operation", "Failed to back up the EEPROM images\n");
  for (const auto& [image, copy] : kImages) {
    if (path_exists(copy) && !file_is_whole_copy(copy, image)) file_remove(copy);
  }
}

int wlan_set_prek_operation() {
  const bool results = has_results();
  if (results && !path_exists(kBackup)) return -1;
  if (!results) back_up_images();
  run_command(
      "iwpriv ra0 set ATE=ATESTART; iwpriv ra0 set ATE=RXFRAME; "
      "iwpriv ra0 set ATE=RX2GSELFTEST; sleep 2; iwpriv ra0 set ATE=ATESTOP");
  run_command(
      "iwpriv ra8 set ATE=ATESTART; iwpriv ra8 set ATE=RXFRAME; "
      "iwpriv ra8 set ATE=RX5GSELFTEST; sleep 2; iwpriv ra8 set ATE=ATESTOP");
  return 0;
}

int wlan_undo_prek_operation() {
  if (!path_exists(kBackup)) return -1;
  if (path_exists(kResults1)) run_command("rm -f /nvram/MT7615_CALDATA1.bin");
  if (path_exists(kResults2)) run_command("rm -f /nvram/MT7615_CALDATA2.bin");
  run_command("mv /nvram/backup_EEPROM_CALDATA/MT7615_* /nvram/");
  run_command("rm -rf /nvram/backup_EEPROM_CALDATA");
  return 0;
}

// Parses "[0x0052]:0x0002": the six characters after one separator.
static void take_word(const char* line, void* word) {
  static constexpr char kLabel[] = "[0x0052]";
  const char* label = strstr(line, kLabel);
  if (label == nullptr || label[strlen(kLabel)] == '\0') return;
  char digits[7] = {};
  strncpy(digits, label + strlen(kLabel) + 1, sizeof digits - 1);
  *static_cast<unsigned long*>(word) = strtoul(digits, nullptr, 0);
}

int wlan_get_prek_status(const char* command) {
  unsigned long word = 0;
  probe_lines(command, take_word, &word);
  if ((word & kCalibrated) == 0) return 3;
  if (!has_results()) return -1;
  return path_exists(kBackup) ? 2 : 0;
}
