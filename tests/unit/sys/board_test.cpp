#include "sys/board.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "unit_support.h"

// Covers the directory, which replaces the whole device list.
static void set_devices(const std::string& list) {
  mount_tmpfs("/proc/bus/pci", "size=64k");
  write_file("/proc/bus/pci/devices", list);
}

static void remove_devices() {
  mount_tmpfs("/proc/bus/pci", "size=64k");
}

static const std::string kPort = "0000\t0e8d0801\t4\t               0\tpcieport\n";

static std::string card(const std::string& id) {
  return "0100\t" + id + "\t4\tdriver\n";
}

TEST(Board, BssBelongsToOneOfTwoRadios) {
  for (int bss = 1; bss <= 8; ++bss) {
    EXPECT_EQ(bss_to_radio_index(bss), 1) << bss;
  }
  for (int bss = 9; bss <= 16; ++bss) {
    EXPECT_EQ(bss_to_radio_index(bss), 9) << bss;
  }
}

TEST(Board, InterfaceHasTheIndexLessOne) {
  EXPECT_STREQ(bss_interface(1).text, "ra0");
  EXPECT_STREQ(bss_interface(16).text, "ra15");
  EXPECT_STREQ(bss_interface(0).text, "ra-1");
  EXPECT_STREQ(bss_interface(INT_MAX).text, "ra2147483646");
  EXPECT_STREQ(bss_interface(INT_MIN).text, "ra-2147483649");
}

TEST(Board, IndexOutsideTheBoardHasNoRadio) {
  for (const int bss : {0, 17, -3, -1, 255, INT_MAX, INT_MIN}) {
    EXPECT_EQ(bss_to_radio_index(bss), -1) << bss;
  }
}

TEST(Board, IndexSelectsProfilePositionAndKeyNumber) {
  const struct {
    int bss;
    const char* profile;
    int position;
    int key_number;
  } rows[] = {
      {1, kProfile24, 0, 1},  {3, kProfile24, 2, 3},
      {8, kProfile24, 7, 8},  {9, kProfile5, 0, 1},
      {12, kProfile5, 3, 4},  {16, kProfile5, 7, 8},
      {0, kProfile24, -1, 0}, {-5, kProfile24, -6, -5},
      {17, kProfile5, 8, 9},  {INT_MAX, kProfile5, INT_MAX - 9, INT_MAX - 8},
  };
  for (const auto& row : rows) {
    EXPECT_STREQ(bss_profile(row.bss), row.profile) << row.bss;
    EXPECT_EQ(bss_list_position(row.bss), row.position) << row.bss;
    EXPECT_EQ(bss_key_number(row.bss), row.key_number) << row.bss;
  }
}

TEST(Board, SmallestIndexIsStillNegativeInAList) {
  EXPECT_STREQ(bss_profile(INT_MIN), kProfile24);
  EXPECT_LT(bss_list_position(INT_MIN), 0);
  EXPECT_EQ(bss_key_number(INT_MIN), INT_MIN);
}

TEST(Board, TwoCardsAreDualBandWithoutAnMt7615) {
  switch_log_on();
  set_devices(kPort + card("14c37603") + card("14c37612"));
  EXPECT_EQ(hasMTK7615(), 0);
  EXPECT_EQ(logged(), "MTK 7615 PCIE not detected\n");
  EXPECT_EQ(isSingleBand(), 0);
  EXPECT_EQ(logged(), "MTK 7615 PCIE not detected\nMTK PCIE detected\n");
}

TEST(Board, Mt7662IsDualBandToo) {
  switch_log_on();
  set_devices(kPort + card("14c37662"));
  EXPECT_EQ(isSingleBand(), 0);
  EXPECT_TRUE(logged().ends_with("MTK PCIE detected\n")) << logged();
}

TEST(Board, Mt7603AloneIsSingleBandWithBothMessages) {
  switch_log_on();
  set_devices(kPort + card("14c37603"));
  EXPECT_EQ(isSingleBand(), 1);
  EXPECT_EQ(logged(),
            "MTK 7615 PCIE not detected\n"
            "No MTK 2.4GHz PCIE detected\n"
            "Cannot open file /proc/bus/pci/devices\n");
}

TEST(Board, Mt7615IsDualBandAndTheListIsNotSearchedAgain) {
  switch_log_on();
  set_devices(kPort + card("14c37615"));
  EXPECT_EQ(hasMTK7615(), 1);
  remove_devices();
  EXPECT_EQ(isSingleBand(), 0);
  EXPECT_EQ(logged(), "MTK 7615 PCIE detected\n");
}

TEST(Board, Mt7615IsFoundByTheBandProbeItself) {
  switch_log_on();
  set_devices(card("14c37615"));
  EXPECT_EQ(isSingleBand(), 0);
  EXPECT_EQ(logged(), "MTK 7615 PCIE detected\n");
}

TEST(Board, EmptyBoardIsSingleBand) {
  set_devices("");
  EXPECT_EQ(hasMTK7615(), 0);
  EXPECT_EQ(isSingleBand(), 1);
}

TEST(Board, MissingListIsReportedAtEveryCallOfTheOneProbeAndOnceByTheOther) {
  switch_log_on();
  remove_devices();
  const std::string unable = "Unable to open file /proc/bus/pci/devices\n";
  EXPECT_EQ(hasMTK7615(), 0);
  EXPECT_EQ(hasMTK7615(), 0);
  EXPECT_EQ(logged(), unable + unable);
  EXPECT_EQ(isSingleBand(), 1);
  EXPECT_EQ(isSingleBand(), 1);
  EXPECT_EQ(logged(), unable + unable + unable + "Cannot open file /proc/bus/pci/devices\n");
}

TEST(Board, SearchForTheMt7615IsTriedAgainAfterAFailedOpen) {
  remove_devices();
  EXPECT_EQ(hasMTK7615(), 0);
  set_devices(card("14c37615"));
  EXPECT_EQ(hasMTK7615(), 1);
}

TEST(Board, BandProbeIsNotTriedAgainAfterAFailedOpen) {
  remove_devices();
  EXPECT_EQ(isSingleBand(), 1);
  set_devices(card("14c37612"));
  EXPECT_EQ(isSingleBand(), 1);
}

TEST(Board, ResultsAreRemembered) {
  switch_log_on();
  set_devices(card("14c37612"));
  EXPECT_EQ(hasMTK7615(), 0);
  EXPECT_EQ(isSingleBand(), 0);
  const std::string messages = logged();
  set_devices(card("14c37615"));
  EXPECT_EQ(hasMTK7615(), 0);
  set_devices(card("14c37603"));
  EXPECT_EQ(isSingleBand(), 0);
  EXPECT_EQ(logged(), messages);
}

TEST(Board, MessagesAreProgressTracesOfTheProbes) {
  switch_console_on();
  set_devices(card("14c37603"));
  std::string output;
  const std::string errors =
      errors_of([&] { output = output_of([] { EXPECT_EQ(isSingleBand(), 1); }); });
  EXPECT_EQ(errors, "");
  EXPECT_TRUE(output.starts_with(rpc_prefix("hasMTK7615") + "MTK 7615 PCIE not detected\n"))
      << output;
}

TEST(Board, ListOfTheBoxShowsTwoCards) {
  // The board on which these tests run.
  EXPECT_EQ(hasMTK7615(), 0);
  EXPECT_EQ(isSingleBand(), 0);
}
