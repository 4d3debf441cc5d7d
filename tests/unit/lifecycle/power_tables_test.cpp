#include "lifecycle/power_tables.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

#include "lifecycle/lifecycle_support.h"
#include "support/gateway.h"
#include "unit_support.h"

static void set_country(const std::string& country, const std::string& streams) {
  set_profile_value("/tmp/mt76xx_24.dat", "CountryCode", country);
  set_profile_value("/tmp/mt76xx_5.dat", "HT_TxStream", streams);
}

TEST(PowerTables, EtsiPairForEtsiCountriesWithTwoStreams) {
  pretend_mt7615();
  set_country("IL", "2");
  note_commands();
  setup_single_sku();
  EXPECT_EQ(commands(),
            "cp /etc/Wireless/7615AP/SingleSKU_ETSI_IL.dat /tmp/.mt7615_SingleSKU.dat\n"
            "cp /etc/Wireless/7615AP/SingleSKU_BF_ETSI_IL.dat /tmp/.mt7615_SingleSKU_BF.dat\n");
}

TEST(PowerTables, FccTableAloneForThreeStreamsWhateverTheCountry) {
  pretend_mt7615();
  set_country("IL", "3");
  note_commands();
  setup_single_sku();
  EXPECT_EQ(commands(),
            "cp /etc/Wireless/7615AP/SingleSKU_FCC_3_TxStream_IL.dat /tmp/.mt7615_SingleSKU.dat\n");
}

TEST(PowerTables, CountryIsPrintedWhereItsDomainMatters) {
  pretend_mt7615();
  note_commands();
  set_country("EU", "3");
  EXPECT_EQ(output_of(setup_single_sku), "") << "three streams are FCC anyway";
  set_country("EU", "2");
  EXPECT_EQ(output_of(setup_single_sku), "country code is EU\n");
}

TEST(PowerTables, StreamsHaveFourCharactersAtMost) {
  pretend_mt7615();
  note_commands();
  set_country("US", "0003");
  setup_single_sku();
  EXPECT_TRUE(contains(commands(), "SingleSKU_FCC_3_TxStream_US.dat"));
  set_country("US", "00003");
  errors_of(setup_single_sku);
  EXPECT_TRUE(contains(commands(), "SingleSKU_BF_FCC_US.dat"));
}

TEST(PowerTables, GeneratorIsToldTheDomainOfTheCountry) {
  note_commands();
  set_country("AR", "2");
  output_of(setup_single_sku);
  EXPECT_EQ(commands(),
            "/scripts/SKU_generator.sh 1 AR ETSI\n"
            "ln -sf /tmp/AR_1.dat /tmp/.mt7603_SingleSKU.dat\n"
            "/scripts/SKU_generator.sh 9 AR ETSI\n"
            "ln -sf /tmp/AR_9.dat /tmp/.mt7612_SingleSKU.dat\n");
}

TEST(PowerTables, CountryHasSixCharactersAtMost) {
  pretend_single_band();
  note_commands();
  set_country("ABCDEF", "2");
  setup_single_sku();
  EXPECT_EQ(commands(),
            "/scripts/SKU_generator.sh 1 ABCDEF FCC\n"
            "ln -sf /tmp/ABCDEF_1.dat /tmp/.mt7603_SingleSKU.dat\n");
  set_country("ABCDEFG", "2");
  errors_of(setup_single_sku);
  EXPECT_EQ(commands(),
            "/scripts/SKU_generator.sh 1  FCC\nln -sf /tmp/_1.dat /tmp/.mt7603_SingleSKU.dat\n");
}

TEST(PowerTables, CountryRunsNoCommandOfItsOwn) {
  pretend_mt7615();
  note_commands();
  set_country("`>/x`", "2");
  setup_single_sku();
  EXPECT_EQ(commands(),
            "cp /etc/Wireless/7615AP/SingleSKU_FCC_'`>/x`'.dat /tmp/.mt7615_SingleSKU.dat\n"
            "cp /etc/Wireless/7615AP/SingleSKU_BF_FCC_'`>/x`'.dat /tmp/.mt7615_SingleSKU_BF.dat\n");
}

TEST(PowerTables, TableThatIsThereIsLinkedOnly) {
  set_country("US", "2");
  write_file("/tmp/US_1.dat", "");
  note_commands();
  setup_single_sku();
  EXPECT_EQ(commands(),
            "ln -sf /tmp/US_1.dat /tmp/.mt7603_SingleSKU.dat\n"
            "/scripts/SKU_generator.sh 9 US FCC\n"
            "ln -sf /tmp/US_9.dat /tmp/.mt7612_SingleSKU.dat\n");
}

static constexpr char kTable15[] = "/tmp/.mt7615_SingleSKU.dat";
static constexpr char kTable03[] = "/tmp/.mt7603_SingleSKU.dat";

static bool is_plain(const char* path) {
  struct stat status = {};
  return lstat(path, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 1;
}

// Anything that a command would follow or wait for is removed before it runs.
TEST(PowerTables, NothingButAPlainFileIsCopiedTo) {
  pretend_mt7615();
  set_country("DE", "2");
  const std::string table = read_file("/etc/Wireless/7615AP/SingleSKU_FCC_DE.dat");
  ASSERT_NE(table, "");
  ASSERT_EQ(mkfifo(kTable15, 0666), 0);
  errors_of(setup_single_sku);
  EXPECT_TRUE(is_plain(kTable15));
  EXPECT_EQ(read_file(kTable15), table);
  unlink(kTable15);
  write_file("/tmp/precious", "content");
  ASSERT_EQ(symlink("/tmp/precious", kTable15), 0);
  errors_of(setup_single_sku);
  EXPECT_EQ(read_file(kTable15), table);
  EXPECT_EQ(read_file("/tmp/precious"), "content");
  unlink(kTable15);
  run(std::string("mkdir ") + kTable15 + "; mkfifo " + kTable15 + "/SingleSKU_FCC_DE.dat");
  errors_of(setup_single_sku);
  EXPECT_EQ(read_file(kTable15), table);
}

TEST(PowerTables, CountryWithoutATableLeavesNoneOrTheOldOne) {
  pretend_mt7615();
  set_country("XX", "2");
  errors_of(setup_single_sku);
  EXPECT_TRUE(names_in("/tmp", ".mt7615").empty());
  write_file(kTable15, "old");
  errors_of(setup_single_sku);
  EXPECT_EQ(read_file(kTable15), "old");
}

static std::string target_of(const char* link) {
  char target[64] = {};
  EXPECT_GT(readlink(link, target, sizeof target - 1), 0) << link;
  return target;
}

TEST(PowerTables, LinkIsMadeInThePlaceOfADirectory) {
  pretend_single_band();
  set_country("DE", "2");
  run(std::string("mkdir ") + kTable03);
  EXPECT_TRUE(contains(errors_of(setup_single_sku), "is removed"));
  EXPECT_EQ(target_of(kTable03), "/tmp/DE_1.dat");
  set_country("US", "2");
  EXPECT_EQ(errors_of(setup_single_sku), "") << "a link of ours is replaced by ln";
  EXPECT_EQ(target_of(kTable03), "/tmp/US_1.dat");
  set_country("FR", "2");
  unlink(kTable03);
  // Fails only the calls that posix_spawn makes: the leak checker clones in its own way.
  fail_system_call(SYS_clone3, EAGAIN);
  fail_system_call_if(SYS_clone, 0, CLONE_VM | CLONE_VFORK | SIGCHLD, EAGAIN);
  errors_of(setup_single_sku);
  EXPECT_TRUE(names_in("/tmp", ".mt7603").empty()) << "no empty table";
}

TEST(PowerTables, TableOfAnotherUserIsNotUsed) {
  pretend_single_band();
  set_country("DE", "2");
  write_file("/tmp/DE_1.dat", "planted");
  if (!give_to_nobody("/tmp/DE_1.dat")) GTEST_SKIP() << kOneUser;
  EXPECT_EQ(errors_of(setup_single_sku),
            rpc_error_prefix("remove_planted") + "/tmp/DE_1.dat of user 65534 is removed\n");
  EXPECT_TRUE(is_plain("/tmp/DE_1.dat"));
  EXPECT_NE(read_file("/tmp/DE_1.dat"), "planted");
  EXPECT_EQ(target_of(kTable03), "/tmp/DE_1.dat");
}

TEST(PowerTables, EtsiCountriesAreThreeAndPrinted) {
  catch_stream(1);
  EXPECT_EQ(isEtsiCountry("EU") + isEtsiCountry("IL") + isEtsiCountry("AR"), 3);
  EXPECT_EQ(isEtsiCountry("eu") + isEtsiCountry("EUR") + isEtsiCountry("") + isEtsiCountry("DE"),
            0);
  EXPECT_EQ(caught_stream(1), "country code is EU\ncountry code is IL\ncountry code is AR\n");
}
