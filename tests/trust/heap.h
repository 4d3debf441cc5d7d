#pragma once

// What heap_preload.c and the sweeps share: one page of a file that both map. The daemon
// under test is unmodified; the library is preloaded.

#define HEAP_PAGE_VARIABLE "TRUST_HEAP_PAGE"
#define HEAP_PAGE_SIZE 4096

// Threads whose allocations can be made to fail.
#define HEAP_THREAD_MAIN 1  // the one that main() and a service child run on
#define HEAP_THREAD_OTHER 2

struct heap_page {
  long blocks;    // allocated and not freed
  int thread;     // whose allocations are counted down; 0 for none
  int countdown;  // the allocation that takes it from 1 to 0 fails
  int failed;     // set by that allocation
  int loaded;     // set before main() begins
};
