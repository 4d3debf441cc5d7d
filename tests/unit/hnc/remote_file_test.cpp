#include "hnc/remote_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <climits>
#include <string>

#include "unit_support.h"

static constexpr char kFile[] = "/tmp/remote";

// The piece of the file that begins at `offset`; "(failed)" when it cannot be read.
static std::string piece(const char* path, int32_t offset) {
  std::string data(kRemoteFilePiece + 16, '#');
  rpc_file_chunk chunk = {4711, data.data()};
  if (rpc_getRemoteFile_s(path, offset, &chunk) != 0) {
    EXPECT_EQ(chunk.count, 4711u);
    EXPECT_EQ(data, std::string(data.size(), '#'));
    return "(failed)";
  }
  EXPECT_EQ(data.substr(chunk.count), std::string(data.size() - chunk.count, '#'));
  return data.substr(0, chunk.count);
}

TEST(RemoteFile, IsReadInPiecesOf7936Bytes) {
  std::string content;
  for (int i = 0; i < 20000; ++i)
    content += static_cast<char>(i * 13 + i / 256);
  write_file(kFile, content);
  const int before = open_descriptors();
  EXPECT_EQ(piece(kFile, 0), content.substr(0, 7936));
  EXPECT_EQ(piece(kFile, 1), content.substr(1, 7936));
  EXPECT_EQ(piece(kFile, 7936), content.substr(7936, 7936));
  EXPECT_EQ(piece(kFile, 15872), content.substr(15872));
  EXPECT_EQ(piece(kFile, 19999), content.substr(19999));
  EXPECT_EQ(open_descriptors(), before);
}

TEST(RemoteFile, HasNothingOutside) {
  write_file(kFile, "content");
  for (const int32_t offset : {7, 8, INT_MAX, -1, INT_MIN})
    EXPECT_EQ(piece(kFile, offset), "") << offset;
}

TEST(RemoteFile, ThatCannotBeOpenedLeavesTheChunk) {
  EXPECT_EQ(piece("/tmp/no such file", 0), "(failed)");
  EXPECT_EQ(piece("", 0), "(failed)");
}

TEST(RemoteFile, ThatIsNoFileHasNothing) {
  ASSERT_EQ(mkfifo("/tmp/fifo", 0600), 0);
  EXPECT_EQ(piece("/tmp/fifo", 0), "");
  EXPECT_EQ(piece("/tmp", 0), "");
}
