#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "hnc/settings.h"
#include "lifecycle/lifecycle_support.h"
#include "support/hnc_listener.h"
#include "unit_support.h"

static constexpr char kMarker[] = "/nvram/hnc_enable";
static const std::string kSwitched = rev_error_prefix("hnc_setEnable") + "hnc_setEnable:";

TEST(HncEnable, MakesAndRemovesTheMarkerAndSaysSo) {
  start_listener();
  EXPECT_EQ(errors_of([] { EXPECT_EQ(hnc_setEnable(1, 0), 0); }),
            kSwitched + "HNC status is disabled and request is to disable. Nothing to do. \n");
  EXPECT_FALSE(exists(kMarker));
  EXPECT_EQ(errors_of([] { EXPECT_EQ(hnc_setEnable(1, 1), 0); }),
            kSwitched + "Creating hnc_enable fle to START HNC process. \n");
  EXPECT_TRUE(exists(kMarker));
  EXPECT_EQ(errors_of([] { EXPECT_EQ(hnc_setEnable(99, 1), 0); }),
            kSwitched + "HNC status is enabled and request is to enable. Nothing to do. \n");
  EXPECT_TRUE(exists(kMarker));
  EXPECT_EQ(errors_of([] { EXPECT_EQ(hnc_setEnable(INT_MIN, 0), 0); }),
            kSwitched + "Stopping HNC by deleting hnc_enable fle. \n");
  EXPECT_FALSE(exists(kMarker));
  EXPECT_TRUE(listener_requests().empty());
}

TEST(HncEnable, RunsOneCommandThroughTheShellWhereThereIsSomethingToDo) {
  const auto commands_of = [](int value) {
    errors_of([&] { EXPECT_EQ(hnc_setEnable(1, value), 0); });
    return commands();
  };
  note_commands();
  EXPECT_EQ(commands_of(0), "");
  EXPECT_EQ(commands_of(2), "");
  EXPECT_EQ(commands_of(1), "touch /nvram/hnc_enable\n");
  write_file(kMarker, "");
  EXPECT_EQ(commands_of(1), "");
  EXPECT_EQ(commands_of(2), "");
  EXPECT_EQ(commands_of(0), "rm -rf /nvram/hnc_enable\n");
}

TEST(HncEnable, NeighboursOfTheMarkerSurvive) {
  const std::string neighbours[] = {"/nvram/hnc_enable2", "/nvram/hnc_enabl", "/nvram/other"};
  write_file(kMarker, "");
  for (const std::string& neighbour : neighbours)
    write_file(neighbour, "kept");
  errors_of([] { EXPECT_EQ(hnc_setEnable(1, 0), 0); });
  errors_of([] { EXPECT_EQ(hnc_setEnable(1, 1), 0); });
  errors_of([] { EXPECT_EQ(hnc_setEnable(1, 0), 0); });
  EXPECT_FALSE(exists(kMarker));
  for (const std::string& neighbour : neighbours)
    EXPECT_EQ(read_file(neighbour), "kept") << neighbour;
}

TEST(HncEnable, AnyOtherValueDoesNothing) {
  for (const int value : {2, -1, INT_MIN, INT_MAX}) {
    EXPECT_EQ(errors_of([&] { EXPECT_EQ(hnc_setEnable(1, value), 0); }), "") << value;
    EXPECT_FALSE(exists(kMarker)) << value;
  }
  write_file(kMarker, "");
  for (const int value : {2, -1, INT_MIN, INT_MAX}) {
    EXPECT_EQ(errors_of([&] { EXPECT_EQ(hnc_setEnable(1, value), 0); }), "") << value;
    EXPECT_TRUE(exists(kMarker)) << value;
  }
}

TEST(HncEnable, TracesItsValue) {
  switch_console_on();
  std::string output;
  errors_of([&] { output = output_of([] { EXPECT_EQ(hnc_setEnable(1, 2), 0); }); });
  EXPECT_EQ(output, rev_prefix("hnc_setEnable") + "hnc_setEnable Entered. HNC set to : |2|\n");
}

TEST(HncEnable, FailedCommandIsNotNoticed) {
  mount_tmpfs("/nvram", "ro");
  errors_of([] { EXPECT_EQ(hnc_setEnable(1, 1), 0); });
  EXPECT_FALSE(exists(kMarker));
}

TEST(HncEnable, MarkerOfAnyKindCountsAsRunning) {
  start_listener();
  run("mkdir -p /nvram/hnc_enable/something");
  int enabled = 0;
  listener_answers("1");
  EXPECT_EQ(hnc_getEnable(1, &enabled), 0);
  EXPECT_EQ(enabled, 1);
  errors_of([] { EXPECT_EQ(hnc_setEnable(1, 0), 0); });
  EXPECT_FALSE(exists(kMarker));
}
