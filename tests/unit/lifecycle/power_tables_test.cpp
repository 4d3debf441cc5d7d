#include "lifecycle/power_tables.h"

#include <gtest/gtest.h>

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

TEST(PowerTables, EtsiCountriesAreThreeAndPrinted) {
  catch_stream(1);
  EXPECT_EQ(isEtsiCountry("EU") + isEtsiCountry("IL") + isEtsiCountry("AR"), 3);
  EXPECT_EQ(isEtsiCountry("eu") + isEtsiCountry("EUR") + isEtsiCountry("") + isEtsiCountry("DE"),
            0);
  EXPECT_EQ(caught_stream(1), "country code is EU\ncountry code is IL\ncountry code is AR\n");
}
