#include "inside.h"

#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include <fstream>

run_result run(const std::string& command) {
  run_result result = {-1, ""};
  FILE* pipe = popen(("{ " + command + "\n} 2>&1").c_str(), "r");
  if (!pipe) return result;
  char piece[4096];
  for (size_t got; (got = fread(piece, 1, sizeof piece, pipe)) > 0;) {
    result.output.append(piece, got);
  }
  int status = pclose(pipe);
  result.status = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
  return result;
}

// The journal's lines that have the member.
static std::vector<nlohmann::json> journal_lines(const char* member) {
  std::vector<nlohmann::json> lines;
  std::ifstream file("/run/gwbox/journal.jsonl");
  EXPECT_TRUE(file.is_open());
  for (std::string line; std::getline(file, line);) {
    nlohmann::json entry = nlohmann::json::parse(line, nullptr, false);
    EXPECT_TRUE(entry.is_object()) << line;
    if (entry.contains(member)) lines.push_back(entry);
  }
  return lines;
}

std::vector<nlohmann::json> journal_entries() {
  return journal_lines("name");
}

std::vector<nlohmann::json> journal_effects() {
  return journal_lines("effect");
}

nlohmann::json status_now() {
  nlohmann::json status = nlohmann::json::parse(run("gwbox status --json").output, nullptr, false);
  EXPECT_TRUE(status.is_object());
  return status;
}

request_frame make_frame(const char* interface, void* pointer, uint16_t length, uint16_t flags) {
  request_frame frame = {};
  strncpy(frame.name, interface, sizeof frame.name - 1);
  frame.pointer = pointer;
  frame.length = length;
  frame.flags = flags;
  return frame;
}

int request(uint32_t number, request_frame& frame) {
  int fd = socket(AF_INET, SOCK_DGRAM, 0);
  EXPECT_GE(fd, 0);
  int error = ioctl(fd, number, &frame) < 0 ? errno : 0;
  close(fd);
  return error;
}

int set_text(const char* interface, std::string text) {
  request_frame frame =
      make_frame(interface, text.data(), static_cast<uint16_t>(text.size() + 1), 0);
  return request(0x8BE2, frame);
}
