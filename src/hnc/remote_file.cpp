#include "hnc/remote_file.h"

#include "sys/whole_file.h"

int rpc_getRemoteFile_s(const char* path, int32_t offset, rpc_file_chunk* chunk) {
  size_t count = 0;
  if (!file_read_piece(path, offset, chunk->data, kRemoteFilePiece, &count)) return -1;
  chunk->count = static_cast<uint32_t>(count);
  return 0;
}
