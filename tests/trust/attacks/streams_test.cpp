// Attacks on the daemon's output. Any user of the box can make the file that switches its
// traces on.

#include <gtest/gtest.h>
#include <signal.h>

#include "support/daemon.h"
#include "support/files.h"
#include "support/wire.h"
#include "trust/attacks/attacker.h"

// A daemon started through `start` serves while it traces, and its child survives.
static void serves_and_traces(const std::string& start) {
  if (!has_other_users()) GTEST_SKIP() << "this box has one user id only";
  const pid_t supervisor = start_supervisor_through(start);
  ASSERT_TRUE(wait_until(daemon_answers)) << daemon_errors();
  const pid_t child = service_child(supervisor);
  ASSERT_EQ(sh_as_nobody(": >/tmp/wlandbg"), 0);
  for (int i = 0; i < 100; ++i) {
    // This call writes a trace to standard output and a refusal to standard error.
    reply_message reply = {};
    ASSERT_TRUE(call(kSetSsid, xdr_word(99) + xdr_text("On air"), &reply)) << i;
  }
  EXPECT_EQ(service_child(supervisor), child);
  EXPECT_EQ(end_process(supervisor, SIGTERM), 0);
}

TEST(Streams, OutputWithoutAReaderEndsNobody) {
  serves_and_traces("exec > >(:); wait $!; exec ");
}

TEST(Streams, ErrorsWithoutAReaderEndNobody) {
  serves_and_traces("exec 2> >(:); wait $!; exec ");
}

TEST(Streams, OutputBeyondTheLargestFileEndsNobody) {
  serves_and_traces("ulimit -f 2; exec ");
}

TEST(Streams, RefusedStartKeepsItsStatusWithoutAReader) {
  write_file("/tmp/wlandbg", "");
  ASSERT_EQ(system("mkdir /tmp/.wlanrpc_lock"), 0);
  EXPECT_EQ(wait_for_end(start_supervisor_through("exec > >(:); wait $!; exec ")), 0);
}
