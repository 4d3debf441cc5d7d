#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>

#include "support/daemon.h"
#include "support/files.h"
#include "support/lifecycle.h"
#include "support/stations.h"
#include "support/transcript.h"

// Compares wificonf's output with the sessions in golden/, except for times and
// durations. Time stands still in these gateways.

static void expect_golden(const std::string& name) {
  const std::string session = read_file(GOLDEN_DIR "/" + name);
  ASSERT_NE(session, "");
  const std::string today = masked(replay(session, true));
  if (today == session) return;
  mkdir(NEW_GOLDEN_DIR, 0755);
  write_file(NEW_GOLDEN_DIR "/" + name, today);
  EXPECT_EQ(today, session) << "when this is as it should be: cp " NEW_GOLDEN_DIR "/" << name
                            << " " GOLDEN_DIR "/";
}

static void bring_radios_up() {
  beacon_at_once();
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
}

// New procedures make these lists longer; scripts/generate writes the file.
TEST(Golden, Lists) {
  const std::string session = read_file(GOLDEN_DIR "/lists.txt");
  ASSERT_NE(session, "");
  bring_radios_up();
  const std::string today = masked(replay(session, true));
  const char* file = getenv("GOLDEN_OUTPUT");
  if (file != nullptr) return write_file(file, today);
  EXPECT_EQ(today, session) << "when this is as it should be: scripts/generate";
}

TEST(Golden, WithoutADaemon) {
  expect_golden("without_a_daemon.txt");
}

TEST(Golden, Errors) {
  const pid_t supervisor = start_daemon();
  write_file("/tmp/service_child", std::to_string(service_child(supervisor)));
  expect_golden("errors.txt");
}

TEST(Golden, Radios) {
  bring_radios_up();
  expect_golden("radios.txt");
}
