#include "lifecycle/calibration.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "lifecycle/lifecycle_support.h"
#include "unit_support.h"

static constexpr char kResults1[] = "/nvram/MT7615_CALDATA1.bin";
static constexpr char kResults2[] = "/nvram/MT7615_CALDATA2.bin";
static constexpr char kBackup[] = "/nvram/backup_EEPROM_CALDATA";

TEST(Calibration, StatusTellsTheBitTheResultsAndTheBackup) {
  EXPECT_EQ(wlan_get_prek_status("echo '[0x0052]:0x0002'"), -1);
  write_file(kResults1, "1");
  EXPECT_EQ(wlan_get_prek_status("echo '[0x0052]:0x0002'"), -1);
  write_file(kResults2, "2");
  EXPECT_EQ(wlan_get_prek_status("echo '[0x0052]:0x0002'"), 0);
  mkdir(kBackup, 0755);
  EXPECT_EQ(wlan_get_prek_status("echo '[0x0052]:0x0002'"), 2);
  EXPECT_EQ(wlan_get_prek_status("echo '[0x0052]:0x0001'"), 3);
}

TEST(Calibration, WordIsTheSixCharactersBehindTheSeparatorOfTheLastLine) {
  write_file(kResults1, "1");
  write_file(kResults2, "2");
  EXPECT_EQ(wlan_get_prek_status("echo 'ra0  e2p: [0x0052] 0x0002'"), 0);
  EXPECT_EQ(wlan_get_prek_status("echo '[0x0052]:0x00020'"), 0) << "the rest is not read";
  EXPECT_EQ(wlan_get_prek_status("echo '[0x0052]:2'"), 0);
  EXPECT_EQ(wlan_get_prek_status("printf '[0x0052]:0x0002\\n[0x0052]:0x0000\\n'"), 3);
  EXPECT_EQ(wlan_get_prek_status("printf '[0x0052]:0x0000\\n[0x0052]:0x0002\\n'"), 0);
}

TEST(Calibration, WordIsDecimalOctalOrHexadecimalAsItBegins) {
  write_file(kResults1, "1");
  write_file(kResults2, "2");
  EXPECT_EQ(wlan_get_prek_status("echo '[0x0052]:10'"), 0) << "hexadecimal it would be clear";
  EXPECT_EQ(wlan_get_prek_status("echo '[0x0052]:010'"), 3) << "decimal it would be set";
  EXPECT_EQ(wlan_get_prek_status("echo '[0x0052]:0x10'"), 3);
  EXPECT_EQ(wlan_get_prek_status("echo '[0x0052]:0xFFF2'"), 0);
}

TEST(Calibration, LineOfMoreThan63CharactersIsReadInPieces) {
  write_file(kResults1, "1");
  write_file(kResults2, "2");
  EXPECT_EQ(wlan_get_prek_status("printf '%48s[0x0052]:0x0002\\n' ''"), 0);
  EXPECT_EQ(wlan_get_prek_status("printf '%56s[0x0052]:0x0002\\n' ''"), 3) << "cut in the label";
  EXPECT_EQ(wlan_get_prek_status("printf '%63s[0x0052]:0x0002\\n' ''"), 0) << "the next piece";
}

TEST(Calibration, UnreadableEepromIsNotCalibrated) {
  write_file(kResults1, "1");
  write_file(kResults2, "2");
  for (const char* command : {"false", "echo '[0x0052]'", "echo '[0x0053]:0x0002'",
                              "echo '[0x0052]:junk'", "/nonexistent 2>/dev/null"}) {
    EXPECT_EQ(wlan_get_prek_status(command), 3) << command;
  }
}

TEST(Calibration, RefusedUndoDeletesNothing) {
  write_file(kResults1, "1");
  write_file(kResults2, "2");
  note_commands();
  EXPECT_EQ(wlan_undo_prek_operation(), -1);
  EXPECT_EQ(commands(), "");
  EXPECT_TRUE(exists(kResults1) && exists(kResults2));
}

TEST(Calibration, UndoRemovesTheResultsThatAreThereAndRestoresTheImages) {
  mkdir(kBackup, 0755);
  write_file(kResults2, "2");
  note_commands();
  EXPECT_EQ(wlan_undo_prek_operation(), 0);
  EXPECT_EQ(commands(),
            "rm -f /nvram/MT7615_CALDATA2.bin\n"
            "mv /nvram/backup_EEPROM_CALDATA/MT7615_* /nvram/\n"
            "rm -rf /nvram/backup_EEPROM_CALDATA\n");
}

static constexpr char kSelfTests[] =
    "iwpriv ra0 set ATE=ATESTART; iwpriv ra0 set ATE=RXFRAME; "
    "iwpriv ra0 set ATE=RX2GSELFTEST; sleep 2; iwpriv ra0 set ATE=ATESTOP\n"
    "iwpriv ra8 set ATE=ATESTART; iwpriv ra8 set ATE=RXFRAME; "
    "iwpriv ra8 set ATE=RX5GSELFTEST; sleep 2; iwpriv ra8 set ATE=ATESTOP\n";

TEST(Calibration, OperationBacksUpWhereAResultIsMissingAlsoOverABackup) {
  note_commands();
  const std::string all =
      "mkdir /nvram/backup_EEPROM_CALDATA; "
      "cp /nvram/MT7615_EEPROM_* /nvram/backup_EEPROM_CALDATA\n" +
      std::string(kSelfTests);
  EXPECT_EQ(wlan_set_prek_operation(), 0);
  EXPECT_EQ(commands(), all);
  write_file(kResults2, "2");
  EXPECT_EQ(wlan_set_prek_operation(), 0);
  EXPECT_EQ(commands(), all);
  mkdir(kBackup, 0755);
  EXPECT_EQ(wlan_set_prek_operation(), 0);
  EXPECT_EQ(commands(), all);
}

TEST(Calibration, OperationWithResultsNeedsTheBackupAndLeavesIt) {
  write_file(kResults1, "1");
  write_file(kResults2, "2");
  note_commands();
  EXPECT_EQ(wlan_set_prek_operation(), -1);
  EXPECT_EQ(commands(), "");
  mkdir(kBackup, 0755);
  EXPECT_EQ(wlan_set_prek_operation(), 0);
  EXPECT_EQ(commands(), kSelfTests);
}

// Otherwise an undo would put the truncated copy in the image's place.
TEST(Calibration, CopyThatIsCutShortIsRemovedFromTheBackup) {
  mount_tmpfs("/nvram", "size=20k");
  const std::string image(5000, 'e');
  write_file("/nvram/MT7615_EEPROM_2G.bin", image);
  write_file("/nvram/MT7615_EEPROM_5G.bin", image);
  const std::string errors = errors_of([] { EXPECT_EQ(wlan_set_prek_operation(), 0); });
  EXPECT_TRUE(contains(errors, rpc_error_prefix("wlan_set_prek_operation") +
                                   "Failed to back up the EEPROM images\n"))
      << errors;
  EXPECT_TRUE(names_in(kBackup).empty());
  EXPECT_EQ(wlan_undo_prek_operation(), 0);
  EXPECT_EQ(read_file("/nvram/MT7615_EEPROM_2G.bin"), image);
  EXPECT_EQ(read_file("/nvram/MT7615_EEPROM_5G.bin"), image);
}

TEST(Calibration, WholeCopiesStayWhereAnotherFails) {
  mount_tmpfs("/nvram", "size=20k");
  write_file("/nvram/MT7615_EEPROM_2G.bin", "small");
  write_file("/nvram/MT7615_EEPROM_5G.bin", std::string(9000, 'e'));
  errors_of([] { EXPECT_EQ(wlan_set_prek_operation(), 0); });
  EXPECT_EQ(names_in(kBackup), std::vector<std::string>{"MT7615_EEPROM_2G.bin"});
}
