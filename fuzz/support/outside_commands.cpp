#include <algorithm>
#include <cerrno>
#include <cstring>

#include "support/check.h"
#include "support/known_commands.h"
#include "support/outside.h"
#include "support/sim_calls.h"

// Streams, shell commands and children.

namespace {

struct stream_text {
  std::string content;
  size_t offset;
  outside_file* file;  // null: nothing is written
};

// kInterrupted: the wait for the command is interrupted once. Other numbers: it runs.
enum command_outcome : uint8_t { kRuns, kNoShell, kInterrupted };

constexpr pid_t kChild = 5000;

}  // namespace

static ssize_t read_stream(void* cookie, char* data, size_t size) {
  auto* text = static_cast<stream_text*>(cookie);
  const size_t length = text->content.copy(data, size, text->offset);
  text->offset += length;
  return static_cast<ssize_t>(length);
}

static ssize_t write_stream(void* cookie, const char* data, size_t size) {
  outside_file* file = static_cast<stream_text*>(cookie)->file;
  if (file == nullptr) return 0;
  file->content.append(data, size);
  return static_cast<ssize_t>(size);
}

static int close_stream(void* cookie) {
  delete static_cast<stream_text*>(cookie);
  return 0;
}

static FILE* make_stream(const char* what, std::string content, outside_file* file) {
  auto* text = new stream_text{std::move(content), 0, file};
  FILE* stream = fopencookie(text, file == nullptr ? "r" : "a",
                             {read_stream, write_stream, nullptr, close_stream});
  CHECK(stream != nullptr);
  simulated->streams[stream] = what;
  return stream;
}

static int end_stream(FILE* stream, const char* what) {
  const auto found = simulated->streams.find(stream);
  CHECK(found != simulated->streams.end() && found->second == what);
  simulated->streams.erase(found);
  return fclose(stream);
}

// The boards' lists of PCI devices; the last board has no list at all.
static std::string pci_devices() {
  static constexpr const char* kLists[] = {"0100\t14c37603\t2d\n0200\t14c37612\t2e\n",
                                           "0100\t14c37603\t2d\n", "0100\t14c37615\t2d\n", ""};
  return kLists[simulated->board % std::size(kLists)];
}

FILE* sim_fopen(const char* path, const char* mode) {
  uint8_t how = 0;
  if (strike(&how)) return nullptr;
  const std::string_view name = path;
  if (name == "/proc/bus/pci/devices") {
    errno = ENOENT;
    return simulated->board % 4 == 3 ? nullptr : make_stream("file", pci_devices(), nullptr);
  }
  if (name != "/tmp/auto_debug/dbg_rpc.log" || mode[0] != 'a') {
    broken("%s is opened with \"%s\"", path, mode);
  }
  return make_stream("file", "", make_file(name));
}

int sim_fclose(FILE* stream) {
  return end_stream(stream, "file");
}

static outside_answer run(const char* command) {
  if (!is_known_command(command)) broken("unknown command: %s", command);
  if (++simulated->commands_run > 4096) broken("commands without end");
  return next_answer(&simulated->commands);
}

FILE* sim_popen(const char* command, const char* mode) {
  CHECK(strcmp(mode, "re") == 0);
  const outside_answer answer = run(command);
  errno = EMFILE;
  if (answer.outcome % 4 == kNoShell) return nullptr;
  return make_stream("command", std::string(answer.bytes), nullptr);
}

int sim_pclose(FILE* stream) {
  return end_stream(stream, "command");
}

int sim_system(const char* command) {
  const outside_answer answer = run(command);
  if (answer.outcome % 4 == kNoShell) return -1;
  return answer.outcome;
}

int sim_posix_spawn(pid_t* child, const char* path, const posix_spawn_file_actions_t*,
                    const posix_spawnattr_t*, char* const words[], char* const[]) {
  CHECK(strcmp(path, "/bin/sh") == 0 && strcmp(words[1], "-c") == 0 && words[3] == nullptr);
  const outside_answer answer = run(words[2]);
  if (answer.outcome % 4 == kNoShell) return EAGAIN;
  *child = kChild;
  simulated->children.push_back(answer.outcome % 4);
  return 0;
}

// The daemon has to repeat a wait that a signal interrupts.
pid_t sim_waitpid(pid_t child, int* status, int options) {
  CHECK(status == nullptr && options == 0 && child == kChild);
  CHECK(!simulated->children.empty());
  const bool interrupted = simulated->children.back() == kInterrupted;
  if (interrupted) {
    simulated->children.back() = kRuns;
    errno = EINTR;
    return -1;
  }
  simulated->children.pop_back();
  return child;
}
