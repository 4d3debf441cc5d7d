#include "support/lifecycle.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>

#include <map>
#include <sstream>

#include "support/daemon.h"
#include "support/files.h"
#include "support/gateway.h"
#include "support/wire.h"

static constexpr char kStrace[] = "/tmp/strace.out";
static pid_t traced_child;

static std::string fast_path() {
  mkdir("/tmp/fast", 0755);
  write_file("/tmp/fast/sleep", "#!/bin/sh\n");
  chmod("/tmp/fast/sleep", 0755);
  return std::string("PATH=/tmp/fast:") + getenv("PATH");
}

pid_t start_lifecycle_daemon(const std::vector<std::string>& environment) {
  write_file("/tmp/wlandbg", "");
  std::vector<std::string> all = {fast_path()};
  all.insert(all.end(), environment.begin(), environment.end());
  return service_child(start_daemon(all));
}

bool wait_for_trace(const std::string& text) {
  // Allows for a window of one second plus loading the drivers on the slowest board.
  return wait_until([&] { return count_traces(text) > 0; }, 15);
}

int count_traces(const std::string& text) {
  return count_of(daemon_output(), text);
}

int count_errors(const std::string& text) {
  std::string plain;
  const std::string errors = daemon_errors();
  for (size_t i = 0; i < errors.size(); ++i) {
    if (errors[i] == '\033')
      i = errors.find('m', i);
    else
      plain += errors[i];
  }
  return count_of(plain, text);
}

void queue_and_wait(uint32_t procedure, const std::string& trace) {
  const int before = count_traces(trace);
  const int dequeued = count_traces("de-queue'd");
  EXPECT_EQ(
      call_for_code(procedure, procedure == kLoad || procedure == kRestart ? xdr_word(1) : ""), 0);
  EXPECT_TRUE(wait_until(
      [&] { return count_traces(trace) > before && count_traces("de-queue'd") > dequeued; }, 20))
      << "no \"" << trace << "\" in\n"
      << daemon_output() << daemon_errors();
}

std::string context_switches(pid_t pid) {
  return run("grep -h ctxt_switches /proc/" + std::to_string(pid) + "/task/*/status");
}

int prek_status() {
  reply_message reply = {};
  EXPECT_TRUE(call(0x010000AB, xdr_word(1), &reply));
  const int value = static_cast<int>(word_at(reply.payload, 8));
  EXPECT_EQ(static_cast<int>(word_at(reply.payload, 0)), value);
  return value;
}

std::vector<lifecycle_step> lifecycle_steps() {
  return {{"load", kLoad, kLoaded},
          {"init", kInit, kInitialized},
          {"restart", kRestartAll, kRestarted},
          {"reset", kReset, "reset wifi done !!!\n"}};
}

void start_traced_daemon() {
  // LeakSanitizer does not work under strace.
  const pid_t child = start_lifecycle_daemon({"ASAN_OPTIONS=detect_leaks=0"});
  traced_child = child;
  run("strace -f -qq -s 400 -e signal=none "
      "-e trace=execve,ioctl,openat,init_module,finit_module,delete_module -o " +
      std::string(kStrace) + " -p " + std::to_string(child) + " >/dev/null 2>&1 &");
  EXPECT_TRUE(wait_until([&] {
    return run("grep -c 'TracerPid:.0$' /proc/" + std::to_string(child) + "/status") == "0\n";
  }));
}

static size_t traced_until;

void run_step(const lifecycle_step& step) {
  traced_until = read_file(kStrace).size();
  if (step.procedure != kReset) {
    queue_and_wait(step.procedure, step.trace);
    return;
  }
  // Under strace and a sanitizer it can take seconds.
  reply_message reply = {};
  EXPECT_TRUE(call(kReset, "", &reply, 20));
  EXPECT_EQ(word_at(reply.payload, 0), 0U);
}

// The call of a traced line, without the thread id and the padding before the result. If
// another thread came in between, strace prints a call in two halves. Then the result is "" for
// the first half and the whole call for the second.
static std::string whole_call(const std::string& line, std::map<std::string, std::string>& halves) {
  static const std::string kUnfinished = " <unfinished ...>";
  const size_t call = line.find_first_not_of("0123456789 ");
  if (call == line.npos) return "";
  const std::string thread = line.substr(0, line.find(' '));
  std::string text = line.substr(call);
  // The end of a first half whose beginning belongs to the step before.
  if (text.starts_with("<unfinished ")) return "";
  // An execve's first half already has everything.
  if (text.ends_with(kUnfinished) && !text.starts_with("execve(")) {
    halves[thread] = text.substr(0, text.size() - kUnfinished.size());
    return "";
  }
  if (text.starts_with("<... ")) {
    const std::string first = halves[thread];
    halves.erase(thread);
    if (first.empty()) return "";
    text = first + text.substr(text.find("resumed>") + 8);
  }
  const size_t result = text.rfind(" = ");
  const size_t end = result == text.npos ? result : text.find_last_not_of(' ', result);
  return end == text.npos ? text : text.erase(end + 1, result - end - 1);
}

static constexpr size_t kAddressWidth = 10;  // "0x" and 8 digits, of a 32-bit daemon

// Removes what differs between runs (descriptors, addresses, indexes), and the flag with which
// a 32-bit daemon opens files.
static std::string without_numbers(std::string text) {
  static const std::string kLarge = "|O_LARGEFILE";
  if (const size_t at = text.find(kLarge); at != text.npos) text.erase(at, kLarge.size());
  for (size_t at = text.find("0x"); at != text.npos; at = text.find("0x", at + 2)) {
    size_t end = at + 2;
    while (end < text.size() && isxdigit(static_cast<unsigned char>(text[end])))
      ++end;
    if (end - at >= kAddressWidth) text.replace(at, end - at, "ADDRESS");
  }
  const size_t index = text.find("ifr_ifindex=");
  if (index != text.npos) text.replace(index, text.find('}', index) - index, "ifr_ifindex=INDEX");
  if (text.starts_with("ioctl(")) text.erase(6, text.find(", ") + 2 - 6);
  if (text.starts_with("openat(")) text.erase(text.find(" = "));
  return text;
}

// A traced call as a line of the transcript: shell command lines of any process, and other
// calls of the daemon's own threads. Of opened files only modules are kept. "" for everything
// else.
static std::string transcript_line(const std::string& thread, const std::string& text) {
  static const std::string kShell = "execve(\"/bin/sh\", [\"sh\", \"-c\", ";
  if (text.starts_with(kShell)) {
    return "sh -c " + text.substr(kShell.size(), text.find("], 0x") - kShell.size());
  }
  const bool own = exists("/proc/" + std::to_string(traced_child) + "/task/" + thread);
  // With FIONREAD the service reads the length of a request.
  const bool service = text.find("FIONREAD") != text.npos;
  const bool other_file = text.starts_with("openat(") && text.find(".ko\"") == text.npos;
  if (!own || service || other_file || text.starts_with("execve")) return "";
  return without_numbers(text);
}

std::string transcript_of_step() {
  std::istringstream lines(read_file(kStrace).substr(traced_until));
  std::map<std::string, std::string> halves;
  std::string transcript;
  for (std::string line; std::getline(lines, line);) {
    const std::string call = whole_call(line, halves);
    if (call.empty()) continue;
    const std::string text = transcript_line(line.substr(0, line.find(' ')), call);
    if (!text.empty()) transcript += text + "\n";
  }
  return transcript;
}

static std::string transcript_name(const std::string& step) {
  return board() + "." + step + ".txt";
}

std::string committed_transcript(const std::string& step) {
  return read_file(std::string(TRANSCRIPT_DIR) + "/" + transcript_name(step));
}

std::string save_transcript(const std::string& step) {
  const std::string path = std::string(NEW_TRANSCRIPT_DIR) + "/" + transcript_name(step);
  mkdir(NEW_TRANSCRIPT_DIR, 0755);
  write_file(path, transcript_of_step());
  return path;
}
