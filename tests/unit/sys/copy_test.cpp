#include "sys/copy.h"

#include <gtest/gtest.h>

#include <string>

#include "unit_support.h"

// A megabyte of all byte values, including NUL, without a line end.
static std::string binary_content() {
  std::string content(1 << 20, '\0');
  for (size_t i = 0; i < content.size(); ++i) {
    content[i] = static_cast<char>((i * 2654435761u) >> 13);
  }
  return content;
}

TEST(FileCopy, IsExactForEveryByte) {
  const std::string content = binary_content();
  write_file("/tmp/source", content);
  EXPECT_EQ(_file_copy("/tmp/source", "/tmp/target"), 1);
  EXPECT_TRUE(read_file("/tmp/target") == content);
}

TEST(FileCopy, LongLinesAndAMissingLineEndAreKept) {
  const std::string content = std::string(1000, 'a') + "\n\n" + std::string(288, 'b') + "\nend";
  write_file("/tmp/source", content);
  EXPECT_EQ(_file_copy("/tmp/source", "/tmp/target"), 1);
  EXPECT_EQ(read_file("/tmp/target"), content);
}

TEST(FileCopy, LongerTargetIsTruncated) {
  write_file("/tmp/source", "short\n");
  write_file("/tmp/target", std::string(10000, 'x'));
  EXPECT_EQ(_file_copy("/tmp/source", "/tmp/target"), 1);
  EXPECT_EQ(read_file("/tmp/target"), "short\n");
}

TEST(FileCopy, EmptySourceMakesAnEmptyTarget) {
  write_file("/tmp/source", "");
  write_file("/tmp/target", "old");
  EXPECT_EQ(_file_copy("/tmp/source", "/tmp/target"), 1);
  EXPECT_TRUE(exists("/tmp/target"));
  EXPECT_EQ(read_file("/tmp/target"), "");
}

TEST(FileCopy, MissingSourceIsReportedAndTheTargetUntouched) {
  write_file("/tmp/target", "old");
  const std::string errors =
      errors_of([] { EXPECT_EQ(_file_copy("/tmp/none", "/tmp/target"), 0); });
  EXPECT_EQ(errors,
            "_file_copy fopen /tmp/none error\n"
            "fopen: No such file or directory\n");
  EXPECT_EQ(read_file("/tmp/target"), "old");
}

TEST(FileCopy, TargetThatCannotBeOpenedIsReported) {
  write_file("/tmp/source", "x");
  const int before = open_descriptors();
  const std::string errors =
      errors_of([] { EXPECT_EQ(_file_copy("/tmp/source", "/tmp/none/target"), 0); });
  EXPECT_EQ(errors,
            "_file_copy fopen /tmp/none/target error\n"
            "fopen: No such file or directory\n");
  EXPECT_EQ(open_descriptors(), before);
}

TEST(FileCopy, FullDeviceIsAFailure) {
  write_file("/tmp/source", std::string(100, 'x'));
  const int before = open_descriptors();
  const std::string errors =
      errors_of([] { EXPECT_EQ(_file_copy("/tmp/source", "/dev/full"), 0); });
  EXPECT_EQ(errors,
            "_file_copy write /dev/full error\n"
            "write: No space left on device\n");
  EXPECT_EQ(open_descriptors(), before);
}

TEST(FileCopy, SourceThatCannotBeReadIsAFailure) {
  errors_of([] { EXPECT_EQ(_file_copy("/tmp", "/tmp/target"), 0); });
}
