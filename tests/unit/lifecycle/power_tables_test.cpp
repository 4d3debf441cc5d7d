#include "lifecycle/power_tables.h"

#include <gtest/gtest.h>

#include "lifecycle/lifecycle_support.h"
#include "support/files.h"
#include "support/gateway.h"

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
