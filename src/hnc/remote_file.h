#pragma once

#include <cstdint>

// Reads a file of the box in pieces, for a management stack that fetches one. No
// procedure offers it.

constexpr uint32_t kRemoteFilePiece = 7936;

// `data` is the caller's and holds at least kRemoteFilePiece bytes.
struct rpc_file_chunk {
  uint32_t count;
  char* data;
};

// Fills the chunk with the file's content from `offset` on, none if the offset is outside
// the file. Returns 0, or -1 with the chunk unchanged when the file cannot be opened.
[[nodiscard]] int rpc_getRemoteFile_s(const char* path, int32_t offset, rpc_file_chunk* chunk);
