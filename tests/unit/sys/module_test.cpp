#include "sys/module.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "unit_support.h"

namespace {

// A system call as the kernel sees it.
struct seen_call {
  bool seen = false;
  unsigned long long arguments[6] = {};
  std::string text;  // at the chosen argument
};

}  // namespace

static std::string text_at(pid_t child, unsigned long long address) {
  std::string text;
  while (address != 0) {
    errno = 0;
    const long word = ptrace(PTRACE_PEEKDATA, child, reinterpret_cast<void*>(address), nullptr);
    if (errno != 0) break;
    char bytes[sizeof word];
    memcpy(bytes, &word, sizeof word);
    const size_t length = strnlen(bytes, sizeof bytes);
    text.append(bytes, length);
    if (length < sizeof bytes) break;
    address += sizeof bytes;
  }
  return text;
}

// Runs the function in a child and watches for the call. `text` is the position of an
// argument that points to a text.
template <typename Function>
static seen_call watch(long number, int text, Function function) {
  const pid_t child = fork();
  if (child == 0) {
    ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    raise(SIGSTOP);
    function();
    _exit(0);
  }
  seen_call call;
  int status = 0;
  bool started = false;
  while (waitpid(child, &status, 0) == child && WIFSTOPPED(status)) {
    if (!started) ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD);
    started = true;
    __ptrace_syscall_info info = {};
    ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof info, &info);
    if (info.op == PTRACE_SYSCALL_INFO_ENTRY &&
        info.entry.nr == static_cast<unsigned long long>(number)) {
      call.seen = true;
      memcpy(call.arguments, info.entry.args, sizeof call.arguments);
      call.text = text_at(child, call.arguments[text]);
    }
    ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
  }
  EXPECT_TRUE(WIFEXITED(status));
  return call;
}

static constexpr char kModule[] = "/tmp/junk.ko";

TEST(Module, MissingFileIsReportedAndFails) {
  switch_log_on();
  const int before = open_descriptors();
  const std::string errors =
      errors_of([] { EXPECT_EQ(insert_module("/tmp/none.ko", nullptr), -1); });
  EXPECT_EQ(errors, rpc_error_prefix("insert_module") + "Can't mmap kernel module file\n");
  EXPECT_EQ(logged(), "Can't mmap kernel module file\n");
  EXPECT_EQ(open_descriptors(), before);
}

TEST(Module, EmptyFileAndDirectoryCannotBeMapped) {
  write_file(kModule, "");
  const int before = open_descriptors();
  std::string errors = errors_of([] { EXPECT_EQ(insert_module(kModule, "a=1"), -1); });
  EXPECT_TRUE(contains(errors, "Can't mmap kernel module file\n")) << errors;
  errors = errors_of([] { EXPECT_EQ(insert_module("/tmp", "a=1"), -1); });
  EXPECT_TRUE(contains(errors, "Can't mmap kernel module file\n")) << errors;
  EXPECT_EQ(open_descriptors(), before);
}

TEST(Module, RefusalOfTheKernelIsReturnedWithoutAMessage) {
  write_file(kModule, "no module at all");
  const int before = open_descriptors();
  const std::string errors = errors_of([] {
    errno = 0;
    EXPECT_EQ(insert_module(kModule, nullptr), -1);
    // Not allowed, not a module, or a kernel without modules.
    EXPECT_TRUE(errno == EPERM || errno == ENOEXEC || errno == ENOSYS) << errno;
  });
  EXPECT_EQ(errors, "");
  EXPECT_EQ(open_descriptors(), before);
}

TEST(Module, ErrnoOfTheKernelSurvivesTheCleanup) {
  write_file(kModule, "no module at all");
  fail_system_call(SYS_init_module, EKEYREJECTED);
  errno = 0;
  EXPECT_EQ(insert_module(kModule, "a=1"), -1);
  EXPECT_EQ(errno, EKEYREJECTED);
}

TEST(Module, SuccessOfTheKernelIsReturned) {
  write_file(kModule, "taken for a module");
  fail_system_call(SYS_init_module, 0);
  EXPECT_EQ(insert_module(kModule, "a=1"), 0);
}

TEST(Module, KernelIsGivenTheWholeFileAndTheParameters) {
  const std::string image(10000, 'm');
  write_file(kModule, image);
  seen_call call = watch(SYS_init_module, 2, [] { return insert_module(kModule, "mode=1 b=x"); });
  EXPECT_TRUE(call.seen);
  EXPECT_EQ(call.arguments[1], image.size());
  EXPECT_EQ(call.text, "mode=1 b=x");
  call = watch(SYS_init_module, 0, [] { return insert_module(kModule, "mode=1"); });
  EXPECT_TRUE(call.text.substr(0, image.size()) == image);
}

TEST(Module, NoParametersArePassedAsAnEmptyTextNeverNull) {
  write_file(kModule, "no module at all");
  const seen_call call = watch(SYS_init_module, 2, [] { return insert_module(kModule, nullptr); });
  EXPECT_TRUE(call.seen);
  EXPECT_NE(call.arguments[2], 0u);
  EXPECT_EQ(call.text, "");
}

TEST(Module, RemovalNeitherWaitsNorForces) {
  const seen_call call = watch(SYS_delete_module, 0, [] { return remove_module("mt7603e_ap"); });
  EXPECT_TRUE(call.seen);
  EXPECT_EQ(call.text, "mt7603e_ap");
  EXPECT_EQ(call.arguments[1], static_cast<unsigned long long>(O_NONBLOCK | O_EXCL));
}

TEST(Module, RemovalReturnsTheResultOfTheKernelWithoutAMessage) {
  fail_system_call(SYS_delete_module, EWOULDBLOCK);
  const std::string errors = errors_of([] {
    errno = 0;
    EXPECT_EQ(remove_module("mt7603e_ap"), -1);
    EXPECT_EQ(errno, EWOULDBLOCK);
  });
  EXPECT_EQ(errors, "");
}

TEST(Module, RemovalThatSucceedsReturnsZero) {
  fail_system_call(SYS_delete_module, 0);
  EXPECT_EQ(remove_module("mt7603e_ap"), 0);
}
