#include "trust/heap_page.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

static constexpr char kPath[] = "/run/trust_heap_page";

static heap_page* map_page() {
  const int file = open(kPath, O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  void* mapped = MAP_FAILED;
  if (file >= 0 && ftruncate(file, HEAP_PAGE_SIZE) == 0)
    mapped = mmap(nullptr, HEAP_PAGE_SIZE, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  if (mapped == MAP_FAILED) {
    perror(kPath);
    exit(2);
  }
  close(file);
  return static_cast<heap_page*>(mapped);
}

static heap_page* page() {
  static heap_page* const kMapped = map_page();
  return kMapped;
}

std::string heap_page_setting() {
  return std::string(HEAP_PAGE_VARIABLE "=") + kPath;
}

std::string heap_preload_setting() {
  return "LD_PRELOAD=" HEAP_PRELOAD;
}

void heap_page_reset() {
  page()->blocks = 0;
  page()->loaded = 0;
}

bool heap_page_loaded() {
  return __atomic_load_n(&page()->loaded, __ATOMIC_RELAXED) != 0;
}

void arm_heap(int thread, int nth) {
  page()->failed = 0;
  page()->countdown = nth;
  page()->thread = nth != 0 ? thread : 0;
}

bool heap_failed() {
  return __atomic_load_n(&page()->failed, __ATOMIC_RELAXED) != 0;
}

long heap_blocks() {
  return __atomic_load_n(&page()->blocks, __ATOMIC_RELAXED);
}
