#include "base/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <cerrno>
#include <cstdint>

#include "base/report.h"

std::string file_read(const std::string& path) {
  return file_read_piece(path, SIZE_MAX);
}

std::string file_read_piece(const std::string& path, size_t size) {
  std::string text;
  int fd = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) return text;
  char piece[4096];
  for (ssize_t got; text.size() < size && (got = read(fd, piece, sizeof piece)) > 0;)
    text.append(piece, static_cast<size_t>(got));
  close(fd);
  if (text.size() > size) text.resize(size);
  return text;
}

bool file_write(const std::string& path, const std::string& text) {
  int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (fd < 0) return report_errno(nullptr, "open %s for writing", path.c_str());
  ssize_t written = write(fd, text.data(), text.size());
  if (written >= 0 && static_cast<size_t>(written) < text.size()) errno = ENOSPC;
  bool whole = written == static_cast<ssize_t>(text.size());
  if (!whole) report_errno(nullptr, "write %s", path.c_str());
  close(fd);
  return whole;
}

bool directory_make(const std::string& path) {
  for (size_t end = 1; end != std::string::npos;) {
    end = path.find('/', end + 1);
    std::string part = path.substr(0, end);
    if (mkdir(part.c_str(), 0755) < 0 && errno != EEXIST) {
      return report_errno(nullptr, "make the directory %s", part.c_str());
    }
  }
  return true;
}

std::string path_parent(const std::string& path) {
  size_t slash = path.rfind('/');
  return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}
