#include "profile/profile_support.h"

#include <gtest/gtest.h>
#include <unistd.h>

void set_up(const std::string& content) {
  for (const char* path : {kMirror24, kMirror5, kLock24, kLock5}) {
    unlink(path);
  }
  write_file(kProfile24, content);
}

std::string with(const std::string& old_part, const std::string& new_part) {
  std::string content = kContent;
  const size_t at = content.find(old_part);
  EXPECT_NE(at, content.npos);
  return content.replace(at, old_part.size(), new_part);
}

void expect_untouched(const std::string& content) {
  EXPECT_EQ(read_file(kProfile24), content);
  EXPECT_FALSE(exists(kMirror24));
  EXPECT_TRUE(names_in("/tmp", "wifitemp").empty());
}

void expect_written(const std::string& content) {
  EXPECT_EQ(read_file(kProfile24), content);
  EXPECT_EQ(read_file(kMirror24), content);
  EXPECT_TRUE(names_in("/tmp", "wifitemp").empty());
}
