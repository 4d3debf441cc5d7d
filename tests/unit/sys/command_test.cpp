#include "sys/command.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <sched.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <sstream>
#include <string>

#include "sys/lock.h"
#include "unit_support.h"

// The command's output as ex_cmd returns it.
static std::string output_by_ex_cmd(const std::string& command) {
  char* output = nullptr;
  EXPECT_EQ(ex_cmd("caller", command.c_str(), &output), 0) << command;
  EXPECT_NE(output, nullptr) << command;
  const std::string text = output != nullptr ? output : "(null)";
  free(output);
  return text;
}

TEST(ExCmd, CapturesWhatTheCommandPrints) {
  EXPECT_EQ(output_by_ex_cmd("echo hello"), "hello\n");
  EXPECT_EQ(output_by_ex_cmd("printf 'no line end'"), "no line end");
}

TEST(ExCmd, CommandIsAShellCommandLine) {
  EXPECT_EQ(output_by_ex_cmd("x=2; for i in 1 $x 3; do echo $i; done | tail -n 2"), "2\n3\n");
}

TEST(ExCmd, SilentCommandLeavesAnEmptyBufferOf256Bytes) {
  char* output = nullptr;
  ASSERT_EQ(ex_cmd("caller", "true", &output), 0);
  ASSERT_NE(output, nullptr);
  EXPECT_STREQ(output, "");
  EXPECT_GE(malloc_usable_size(output), 256u);
  free(output);
}

TEST(ExCmd, LineOf255CharactersIsReadWholeAndTheBufferGrownOnceMore) {
  char* output = nullptr;
  ASSERT_EQ(ex_cmd("caller", "printf '%0255d' 7", &output), 0);
  ASSERT_NE(output, nullptr);
  EXPECT_EQ(std::string(output), std::string(254, '0') + "7");
  EXPECT_GE(malloc_usable_size(output), 255u + 256u);
  free(output);
}

TEST(ExCmd, LongLinesAreReadWhole) {
  for (const int length : {254, 255, 256, 257, 511, 512, 5000}) {
    const std::string expected = std::string(static_cast<size_t>(length) - 1, '0') + "1\nend\n";
    const std::string command = "printf '%0" + std::to_string(length) + "d\\nend\\n' 1";
    EXPECT_EQ(output_by_ex_cmd(command), expected) << length;
  }
}

TEST(ExCmd, ManyLinesAreReadInOrder) {
  std::string expected;
  for (int i = 1; i <= 500; ++i) {
    expected += std::to_string(i) + "\n";
  }
  EXPECT_EQ(output_by_ex_cmd("seq 500"), expected);
}

TEST(ExCmd, OutputThatBeginsWithANulIsEmpty) {
  EXPECT_EQ(output_by_ex_cmd("printf '\\0hidden\\nline\\n'"), "");
  EXPECT_EQ(output_by_ex_cmd("printf 'first\\n\\0hidden\\nline\\n'"), "first\n");
}

TEST(ExCmd, OutputThatMemoryDoesNotHoldIsAFailureAndWhatThereIsGoesToTheCaller) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "the sanitizer's allocator ends the program instead of failing";
#endif
  switch_log_on();
  const int before = open_descriptors();
  // Enough memory for the shell but not for its output.
  const long pages = atol(read_file("/proc/self/statm").c_str());
  const rlim_t room = static_cast<rlim_t>(pages * sysconf(_SC_PAGESIZE)) + (4 << 20);
  const rlimit limit = {room, RLIM_INFINITY};
  ASSERT_EQ(setrlimit(RLIMIT_AS, &limit), 0);
  char* output = nullptr;
  const int status = ex_cmd("wifi_restart", "seq 3000000 2>/dev/null", &output);
  const rlimit none = {RLIM_INFINITY, RLIM_INFINITY};
  ASSERT_EQ(setrlimit(RLIMIT_AS, &none), 0);
  EXPECT_EQ(status, -1);
  ASSERT_NE(output, nullptr);
  EXPECT_TRUE(std::string(output).starts_with("1\n2\n3\n"));
  free(output);
  EXPECT_EQ(logged(), "wifi_restart: realloc seq 3000000 2>/dev/null error\n");
  EXPECT_EQ(open_descriptors(), before);
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "the shell was collected";
}

TEST(ExCmd, StatusOfTheCommandIsNotLookedAt) {
  EXPECT_EQ(output_by_ex_cmd("echo before; exit 3"), "before\n");
}

TEST(ExCmd, MissingCommandIsNoFailureAndItsErrorNotCaptured) {
  std::string output;
  const std::string errors =
      errors_of([&] { output = output_by_ex_cmd("no-such-command-anywhere"); });
  EXPECT_EQ(output, "");
  EXPECT_TRUE(contains(errors, "no-such-command-anywhere")) << errors;
}

TEST(ExCmd, CommandThatCannotBeStartedIsReported) {
  switch_log_on();
  switch_console_on();
  char* output = reinterpret_cast<char*>(&output);
  std::string console = output_of([&] {
    const rlimit none = {0, 1024};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    EXPECT_EQ(ex_cmd("wifi_restart", "echo hello", &output), -1);
    const rlimit enough = {1024, 1024};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &enough), 0);
  });
  EXPECT_EQ(output, nullptr);
  EXPECT_EQ(console, rpc_prefix("ex_cmd") + "wifi_restart: popen echo hello error\n");
}

TEST(ExCmd, CommandThatCannotBeStartedIsLogged) {
  switch_log_on();
  fail_system_call(SYS_pipe2, EMFILE);
  char* output = reinterpret_cast<char*>(&output);
  EXPECT_EQ(ex_cmd("wifi_restart", "echo hello", &output), -1);
  EXPECT_EQ(output, nullptr);
  EXPECT_EQ(logged(), "wifi_restart: popen echo hello error\n");
}

TEST(ExCmd, LeavesNoChildAndNoDescriptor) {
  const int before = open_descriptors();
  output_by_ex_cmd("echo x");
  EXPECT_EQ(open_descriptors(), before);
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
}

// Lists the child's own descriptors with their targets.
static const char kListDescriptors[] = "ls -l /proc/self/fd";

TEST(ExCmd, ChildInheritsNoDescriptorOfTheDaemon) {
  const int lock = fwrite_lock("/tmp/.inherited.lock");
  ASSERT_GT(lock, 0);
  const std::string list = output_by_ex_cmd(kListDescriptors);
  EXPECT_TRUE(contains(list, "/proc/")) << list;
  EXPECT_FALSE(contains(list, "inherited.lock")) << list;
  funlock(lock);
}

TEST(ExCmd, OutputThatNobodyWantsIsDiscarded) {
  EXPECT_EQ(output_of([] { EXPECT_EQ(ex_cmd("caller", "echo lost", nullptr), 0); }), "");
}

TEST(Executecmd, RunsTheCommandAndWaitsForIt) {
  EXPECT_EQ(cfg_executecmd("caller", "echo done > /tmp/ran; exit 5"), 0);
  EXPECT_EQ(read_file("/tmp/ran"), "done\n");
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
}

TEST(Executecmd, OutputIsDiscarded) {
  EXPECT_EQ(output_of([] { EXPECT_EQ(cfg_executecmd("caller", "echo lost; seq 100000"), 0); }), "");
}

TEST(Executecmd, StandardOutputOfTheCommandIsTheNullDevice) {
  // The end of a pipe writes the file, so that the shell itself redirects nothing.
  EXPECT_EQ(cfg_executecmd("caller", "readlink /proc/$$/fd/1 | tee /tmp/where; true"), 0);
  EXPECT_EQ(read_file("/tmp/where"), "/dev/null\n");
}

TEST(Executecmd, CommandIsTracedInLogAndOnConsole) {
  switch_log_on();
  EXPECT_EQ(output_of([] { EXPECT_EQ(cfg_executecmd("wifi_init", "true"), 0); }), "");
  switch_console_on();
  EXPECT_EQ(output_of([] { EXPECT_EQ(cfg_executecmd("wifi_init", "echo a b"), 0); }),
            rpc_prefix("cfg_executecmd") + "cfg_executecmd: cmd:echo a b\n");
  EXPECT_EQ(logged(), "cfg_executecmd: cmd:true\ncfg_executecmd: cmd:echo a b\n");
}

TEST(Executecmd, MissingCommandIsNoFailure) {
  errors_of([] { EXPECT_EQ(cfg_executecmd("caller", "no-such-command-anywhere"), 0); });
}

TEST(Executecmd, ShellThatCannotBeStartedIsReported) {
  switch_log_on();
  // Fails only the calls that a spawn makes: the leak detector clones in its own way.
  fail_system_call(SYS_clone3, EAGAIN);
  fail_system_call_if(SYS_clone, 0, CLONE_VM | CLONE_VFORK | SIGCHLD, EAGAIN);
  EXPECT_EQ(cfg_executecmd("wifi_init", "true"), -1);
  EXPECT_EQ(logged(), "cfg_executecmd: cmd:true\nwifi_init: popen true error\n");
}

TEST(Executecmd, ProgramLeftBehindMayPrintAfterTheReturn) {
  const std::string command =
      "{ while [ ! -e /tmp/returned ]; do sleep 0.01; done; "
      "for i in 1 2 3; do seq 20000; done; echo alive > /tmp/marker; } &";
  EXPECT_EQ(cfg_executecmd("caller", command.c_str()), 0);
  EXPECT_FALSE(exists("/tmp/marker"));
  write_file("/tmp/returned", "");
  EXPECT_TRUE(wait_until([] { return read_file("/tmp/marker") == "alive\n"; }));
}

TEST(Executecmd, ChildInheritsNoDescriptorOfTheDaemon) {
  const int lock = fwrite_lock("/tmp/.inherited.lock");
  ASSERT_GT(lock, 0);
  const std::string command = std::string(kListDescriptors) + " > /tmp/list";
  EXPECT_EQ(cfg_executecmd("caller", command.c_str()), 0);
  EXPECT_TRUE(contains(read_file("/tmp/list"), "/tmp/list"));
  EXPECT_FALSE(contains(read_file("/tmp/list"), "inherited.lock"));
  funlock(lock);
}

TEST(Executecmd, LeavesNoDescriptor) {
  const int before = open_descriptors();
  EXPECT_EQ(cfg_executecmd("caller", "true"), 0);
  EXPECT_EQ(open_descriptors(), before);
}

TEST(RunCommand, ReturnsTheExitStatusOfTheCommand) {
  EXPECT_EQ(run_command("true"), 0);
  EXPECT_EQ(run_command("exit 7"), 7);
  EXPECT_EQ(run_command("/nonexistent/program 2>/dev/null"), 127);
  EXPECT_EQ(run_command("kill -9 $$"), 128 + SIGKILL);
}

TEST(ProbeNumber, IsWhatTheCommandPrints) {
  EXPECT_EQ(probe_number("echo 12", -1), 12);
  EXPECT_EQ(probe_number("echo 0; exit 1", -1), 0);
  EXPECT_EQ(probe_number("echo junk", -1), 0);
}

TEST(ProbeNumber, IsMissingWithoutOutputOrShell) {
  EXPECT_EQ(probe_number("true", -1), -1);
  fail_system_call(SYS_pipe2, EMFILE);
  EXPECT_EQ(probe_number("echo 12", -1), -1);
}

TEST(ProbeLines, ComeInPiecesOf63Characters) {
  std::string pieces;
  probe_lines(
      "printf 'one\\n%63s\\n%64s\\nlast' x y",
      [](const char* line, void* text) {
        *static_cast<std::string*>(text) += std::string(line) + "|";
      },
      &pieces);
  EXPECT_EQ(pieces,
            "one\n|" + std::string(62, ' ') + "x|\n|" + std::string(63, ' ') + "|y\n|last|");
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "the shell was collected";
  EXPECT_EQ(errno, ECHILD);
}
