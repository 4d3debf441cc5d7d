#include <gtest/gtest.h>
#include <unistd.h>

#include <climits>
#include <cstring>

#include "support/gateway.h"
#include "unit_support.h"
#include "wlan/bss_service.h"

static constexpr char kUpdate[] = "failed to update wifi profile, ret:0\n ";

struct number_pair {
  const char* set_name;
  const char* get_name;
  const char* key;
  int (*set)(int bss, int value);
  int (*get)(int bss, int* value);
  const char* trace;  // of the getter; null: none
};

static constexpr number_pair kPairs[] = {
    {"wlan_set_bh_enable", "wlan_get_bh_enable", "BSSHNCBHEnable", wlan_set_bh_enable,
     wlan_get_bh_enable, "BSSHNCEnable:"},
    {"wlan_set_hnc_replicate", "wlan_get_hnc_replicate", "BSSHNCReplicate", wlan_set_hnc_replicate,
     wlan_get_hnc_replicate, "BSSHNCReplicate:"},
    {"wlan_set_hnc_wds_mode", "wlan_get_hnc_wds_mode", "BSSHNCWdsMode", wlan_set_hnc_wds_mode,
     wlan_get_hnc_wds_mode, nullptr},
};

TEST(BssServiceSettings, PairsWriteAndReadTheFieldOfTheBss) {
  for (const number_pair& row : kPairs) {
    for (const int bss : {1, 8, 9, 16}) {
      EXPECT_EQ(row.set(bss, bss * -3), 0) << row.set_name;
      int value = 99;
      EXPECT_EQ(row.get(bss, &value), 0) << row.get_name;
      EXPECT_EQ(value, bss * -3);
    }
    EXPECT_EQ(profile_value(kProfile24, row.key), "-3;0;0;0;0;0;0;-24");
    EXPECT_EQ(profile_value(kProfile5, row.key), "-27;0;0;0;0;0;0;-48");
  }
}

TEST(BssServiceSettings, ValueInPlaceIsASuccess) {
  for (const number_pair& row : kPairs) {
    EXPECT_EQ(errors_of([&] { EXPECT_EQ(row.set(2, 0), 0); }), "no change\n") << row.set_name;
  }
}

TEST(BssServiceSettings, PairsReportWhatIsMissing) {
  write_file(kProfile24, "Other=1\n");
  for (const number_pair& row : kPairs) {
    EXPECT_EQ(errors_of([&] { EXPECT_EQ(row.set(1, 1), -1); }),
              rev_error_prefix(row.set_name) + kUpdate);
    int value = 99;
    EXPECT_EQ(errors_of([&] { EXPECT_EQ(row.get(1, &value), -1); }),
              rev_error_prefix(row.get_name) + kUpdate);
    EXPECT_EQ(value, 99);
    errors_of([&] { EXPECT_EQ(row.get(17, &value), -1); });
  }
  EXPECT_EQ(read_file(kProfile24), "Other=1\n");
}

TEST(BssServiceSettings, IndexOutsideTheBoardTouchesNoFieldOfABss) {
  const std::string before24 = read_file(kProfile24);
  const std::string before5 = read_file(kProfile5);
  for (const number_pair& row : kPairs) {
    int value = 99;
    errors_of([&] {
      for (const int bss : {0, -5, INT_MIN, INT_MAX}) {
        EXPECT_EQ(row.get(bss, &value), -1) << bss;
      }
      // For the store, a negative position means that nothing changes.
      EXPECT_EQ(row.set(0, 1), 0);
      EXPECT_EQ(row.set(-5, 1), 0);
      EXPECT_EQ(row.set(INT_MIN, 1), 0);
      EXPECT_EQ(row.set(INT_MAX, 1), -1);
    });
    EXPECT_EQ(value, 99);
  }
  EXPECT_EQ(read_file(kProfile24), before24);
  EXPECT_EQ(read_file(kProfile5), before5);
}

TEST(BssServiceSettings, GettersAreTraced) {
  switch_console_on();
  for (const number_pair& row : kPairs) {
    EXPECT_EQ(row.set(3, 5), 0);
    int value = 99;
    const std::string output = output_of([&] { EXPECT_EQ(row.get(3, &value), 0); });
    const std::string expected =
        row.trace == nullptr ? "" : rev_prefix(row.get_name) + row.trace + "5\n ";
    EXPECT_EQ(output, expected);
  }
}

TEST(ReplicateRadio, IsWrittenAsGivenAndReadByItsFirstCharacter) {
  EXPECT_EQ(wlan_set_hnc_replicate_radio(2, "5GHz"), 0);
  EXPECT_EQ(profile_value(kProfile24, "BSSHNCReplicateRadio"), "0;5GHz;0;0;0;0;0;0");
  char text[256] = "before";
  EXPECT_EQ(wlan_get_hnc_replicate_radio(2, text), 0);
  EXPECT_STREQ(text, "5");
  EXPECT_EQ(wlan_set_hnc_replicate_radio(9, ""), 0);
  EXPECT_EQ(wlan_get_hnc_replicate_radio(9, text), 0);
  EXPECT_STREQ(text, "");
  // The store does not cut a last field.
  EXPECT_EQ(wlan_set_hnc_replicate_radio(16, "24"), 0);
  EXPECT_EQ(wlan_get_hnc_replicate_radio(16, text), 0);
  EXPECT_STREQ(text, "24");
}

TEST(ReplicateRadio, TextThatIsNoFieldIsRefused) {
  const std::string before = read_file(kProfile24);
  for (const char* text : {"1;7", "1\nSSID1=x"}) {
    const std::string errors =
        errors_of([&] { EXPECT_EQ(wlan_set_hnc_replicate_radio(1, text), -1); });
    EXPECT_TRUE(errors.ends_with(rev_error_prefix("wlan_set_hnc_replicate_radio") + kUpdate))
        << errors;
  }
  errors_of([] { EXPECT_EQ(wlan_set_hnc_replicate_radio(1, std::string(8000, 'x').c_str()), -1); });
  EXPECT_EQ(read_file(kProfile24), before);
  write_file(kProfile24, "Other=1\n");
  char text[256] = "before";
  EXPECT_EQ(errors_of([&] { EXPECT_EQ(wlan_get_hnc_replicate_radio(1, text), -1); }),
            rev_error_prefix("wlan_get_hnc_replicate_radio") + kUpdate);
  EXPECT_STREQ(text, "before");
}

static constexpr char kVlans24[] = "10;20;30;0;0;0;0;0";

static void give_vlans() {
  set_profile_value(kProfile24, "VLANID", kVlans24);
  set_profile_value(kProfile5, "VLANID", "50;60;70;0;0;0;0;0");
}

TEST(SetBssHncService, AnswersWhatTheUpdateAnswers) {
  EXPECT_EQ(wlan_setBSSHNCService(3, 5), 1);
  EXPECT_EQ(profile_value(kProfile24, "BSSHNCService"), "0;0;5;0;0;0;0;0");
  EXPECT_EQ(errors_of([] { EXPECT_EQ(wlan_setBSSHNCService(3, 5), 2); }), "no change\n");
  EXPECT_EQ(wlan_setBSSHNCService(16, -1), 1);
  EXPECT_EQ(profile_value(kProfile5, "BSSHNCService"), "0;0;0;0;0;0;0;-1");
  errors_of([] {
    EXPECT_EQ(wlan_setBSSHNCService(0, 5), 2);
    EXPECT_EQ(wlan_setBSSHNCService(INT_MIN, 7), 2);
    EXPECT_EQ(wlan_setBSSHNCService(INT_MAX, 5), 0);
    unlink(kProfile24);
    EXPECT_EQ(wlan_setBSSHNCService(1, 5), 0);
  });
}

TEST(SetBssHncService, BackhaulBssGetsTheFirstVlan) {
  give_vlans();
  EXPECT_EQ(wlan_setBSSHNCService(3, 7), 1);
  EXPECT_EQ(profile_value(kProfile24, "VLANID"), "10;20;10;0;0;0;0;0");
  EXPECT_EQ(wlan_setBSSHNCService(10, 7), 1);
  EXPECT_EQ(profile_value(kProfile5, "VLANID"), "50;10;70;0;0;0;0;0");
  EXPECT_EQ(profile_value(kProfile5, "BSSHNCService"), "0;7;0;0;0;0;0;7");
}

TEST(SetBssHncService, VlanInPlaceIsNoFailure) {
  set_profile_value(kProfile24, "VLANID", "10;20;10;0;0;0;0;0");
  // The store's own message.
  EXPECT_EQ(errors_of([] { EXPECT_EQ(wlan_setBSSHNCService(3, 7), 1); }), "no change\n");
  EXPECT_EQ(profile_value(kProfile24, "VLANID"), "10;20;10;0;0;0;0;0");
}

TEST(SetBssHncService, VlanIsCopiedUpTo32Characters) {
  set_profile_value(kProfile24, "VLANID", "0123456789abcdefghijklmnopqrstuvwxyz;20;30");
  EXPECT_EQ(wlan_setBSSHNCService(2, 7), 1);
  EXPECT_EQ(profile_value(kProfile24, "VLANID"),
            "0123456789abcdefghijklmnopqrstuvwxyz;0123456789abcdefghijklmnopqrstuv;30");
}

TEST(SetBssHncService, AnyOtherServiceLeavesTheVlans) {
  give_vlans();
  for (const int service : {0, 6, 8, -7, 77}) {
    EXPECT_EQ(wlan_setBSSHNCService(3, service), 1 + (service == 0)) << service;
  }
  EXPECT_EQ(profile_value(kProfile24, "VLANID"), kVlans24);
}

TEST(SetBssHncService, VlanThatCannotBeWrittenIsReportedAndNoMore) {
  give_vlans();
  write_file(kProfile5, "BSSHNCService=0;0\n");
  const std::string errors = errors_of([] { EXPECT_EQ(wlan_setBSSHNCService(10, 7), 1); });
  EXPECT_EQ(errors, rev_error_prefix("wlan_setBSSHNCService") +
                        "wlan_setBSSHNCService:set VLANID failed for index:10\n");
  EXPECT_EQ(read_file(kProfile5), "BSSHNCService=0;7\n");
  write_file(kProfile24, "BSSHNCService=0;0\n");
  EXPECT_EQ(errors_of([] { EXPECT_EQ(wlan_setBSSHNCService(1, 7), 1); }), "");
}

// A kill between the two writes leaves a VLAN without its service, not a service without
// its VLAN.
TEST(SetBssHncService, VlanIsWrittenFirst) {
  give_vlans();
  write_file(kProfile5, "BSSHNCService=0;7\n");
  EXPECT_EQ(errors_of([] { EXPECT_EQ(wlan_setBSSHNCService(10, 7), 2); }),
            rev_error_prefix("wlan_setBSSHNCService") +
                "wlan_setBSSHNCService:set VLANID failed for index:10\nno change\n");
}
