// The thread that waits in a trapped call: its memory, its descriptors, its name.
#pragma once

#include <sys/types.h>
#include <cstddef>
#include <cstdint>

#include <string>
#include <vector>

// The last caller, as the journal names it.
struct caller_known {
  int32_t tid;
  pid_t pid;    // of the thread's process
  int comm_fd;  // open /proc/<tid>/comm
};

[[nodiscard]] bool caller_read(int32_t tid, uint64_t address, void* to, size_t size);
[[nodiscard]] bool caller_write(int32_t tid, uint64_t address, const void* from, size_t size);

// A text up to its terminator or to LIMIT bytes; false when it cannot be read.
[[nodiscard]] bool caller_read_text(int32_t tid, uint64_t address, size_t limit, std::string& text);

// "/proc/<tid>/NAME"
std::string caller_proc_path(int32_t tid, const std::string& name);

// The threads of a process; none when it has ended.
std::vector<int32_t> caller_threads(pid_t pid);

// Process and name of the thread. KNOWN caches the last caller.
void caller_identify(caller_known& known, int32_t tid, pid_t& pid, std::string& comm);
