#include "lifecycle/lifecycle_support.h"

#include <sys/syscall.h>
#include <unistd.h>

#include "unit_support.h"

static constexpr char kCommands[] = "/tmp/commands";
static constexpr char kHeld[] = "/tmp/held";

// Quoted, the held part is compared literally, not as a pattern.
static constexpr char kStandIn[] = R"(#!/bin/bash
command="${@: -1}"
printf '%s\n' "$command" >> /tmp/commands
while held=$(cat /tmp/held 2>/dev/null) && [[ $command == *"$held"* ]]; do /bin/sleep 0.01; done
cat /tmp/answer
)";

void note_commands(const std::string& answer) {
  write_file("/tmp/answer", answer);
  write_file("/tmp/note", kStandIn);
  run("chmod +x /tmp/note; mount --bind /tmp/note /usr/bin/dash");
}

std::string commands() {
  const std::string noted = read_file(kCommands);
  unlink(kCommands);
  return noted;
}

static std::string held_part;

void hold_command(const std::string& part) {
  held_part = part;
  write_file(kHeld, part);
}

bool wait_for_held_command() {
  return wait_until([] { return contains(read_file(kCommands), held_part); });
}

void release_command() {
  unlink(kHeld);
}

bool wait_until_blocked(pid_t thread) {
  const std::string path = "/proc/self/task/" + std::to_string(thread) + "/syscall";
  const std::string futex = std::to_string(SYS_futex) + " ";
  return wait_until([&] { return read_file(path).starts_with(futex); });
}

void pretend_mt7615() {
  write_file("/proc/bus/pci/devices", "0200\t14c37615\t42\n");
}

void pretend_single_band() {
  write_file("/proc/bus/pci/devices", "0100\t14c37603\t42\n");
}

bool in_order(const std::string& text, std::initializer_list<std::string> parts) {
  size_t from = 0;
  for (const std::string& part : parts) {
    from = text.find(part, from);
    if (from == std::string::npos) return false;
    from += part.size();
  }
  return true;
}
