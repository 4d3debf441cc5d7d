#pragma once

#include <cstdint>

// Reading a file of the box in pieces, for a management stack that fetches one.
// No procedure offers it.

constexpr uint32_t kRemoteFilePiece = 7936;

// `data` is the caller's and holds kRemoteFilePiece bytes at least.
struct rpc_file_chunk {
  uint32_t count;
  char* data;
};

// Fills the chunk with what the file has from `offset` on; nothing is there when
// the offset lies outside it. -1, and the chunk as it was, when the file cannot
// be opened, else 0.
[[nodiscard]] int rpc_getRemoteFile_s(const char* path, int32_t offset, rpc_file_chunk* chunk);
