#include "support/files.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <thread>

std::string read_file(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

void write_file(const std::string& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << text;
  file.close();
  ASSERT_TRUE(file.good()) << path;
}

bool exists(const std::string& path) {
  return access(path.c_str(), F_OK) == 0;
}

bool wait_until(const std::function<bool()>& condition, double seconds) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return true;
}

std::string run(const std::string& command, int* status) {
  std::string output;
  FILE* stream = popen(command.c_str(), "re");
  if (stream == nullptr) return output;
  char block[4096];
  size_t length;
  while ((length = fread(block, 1, sizeof block, stream)) > 0)
    output.append(block, length);
  const int ended = pclose(stream);
  if (status != nullptr) *status = WIFEXITED(ended) ? WEXITSTATUS(ended) : 128 + WTERMSIG(ended);
  return output;
}

static int saved[3] = {-1, -1, -1};

static std::string catch_path(int stream) {
  return "/tmp/.caught." + std::to_string(stream);
}

int count_of(const std::string& text, const std::string& part) {
  int count = 0;
  for (size_t at = text.find(part); at != text.npos; at = text.find(part, at + part.size())) {
    ++count;
  }
  return count;
}

void catch_stream(int stream) {
  fflush(nullptr);
  saved[stream] = dup(stream);
  FILE* file = fopen(catch_path(stream).c_str(), "w+e");
  ASSERT_NE(file, nullptr);
  dup2(fileno(file), stream);
  fclose(file);
}

std::string caught_stream(int stream) {
  fflush(nullptr);
  dup2(saved[stream], stream);
  close(saved[stream]);
  const std::string text = read_file(catch_path(stream));
  unlink(catch_path(stream).c_str());
  return text;
}
