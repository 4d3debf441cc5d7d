// Preloaded into the daemon: counts allocations and makes one fail as the page says. The
// C library's own allocations go through these functions too.

#include <errno.h>
#include <fcntl.h>
#include <stdbool.h>
#include <stddef.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <unistd.h>

#include "heap.h"

extern void* __libc_malloc(size_t size);
extern void* __libc_calloc(size_t count, size_t size);
extern void* __libc_realloc(void* block, size_t size);
extern void* __libc_memalign(size_t alignment, size_t size);
extern void __libc_free(void* block);

static struct heap_page unshared;
static struct heap_page* page = &unshared;
// True on the thread that runs constructors and main(), and in its forked copies.
static __thread bool is_main;

__attribute__((constructor)) static void map_page(void) {
  const char* path = getenv(HEAP_PAGE_VARIABLE);
  const int file = path != NULL ? open(path, O_RDWR | O_CLOEXEC) : -1;
  if (file >= 0) {
    void* mapped = mmap(NULL, HEAP_PAGE_SIZE, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (mapped != MAP_FAILED) page = mapped;
    close(file);
  }
  // The commands that the daemon runs are not under test.
  unsetenv("LD_PRELOAD");
  unsetenv(HEAP_PAGE_VARIABLE);
  is_main = true;
  page->loaded = 1;
}

static bool fails(void) {
  const int thread = is_main ? HEAP_THREAD_MAIN : HEAP_THREAD_OTHER;
  if (__atomic_load_n(&page->thread, __ATOMIC_RELAXED) != thread) return false;
  if (__atomic_sub_fetch(&page->countdown, 1, __ATOMIC_RELAXED) != 0) return false;
  page->failed = 1;
  errno = ENOMEM;
  return true;
}

static void note(void* block, int sign) {
  if (block != NULL) __atomic_add_fetch(&page->blocks, sign, __ATOMIC_RELAXED);
}

static void* noted(void* block) {
  note(block, 1);
  return block;
}

void* malloc(size_t size) {
  return fails() ? NULL : noted(__libc_malloc(size));
}

void* calloc(size_t count, size_t size) {
  return fails() ? NULL : noted(__libc_calloc(count, size));
}

void* realloc(void* block, size_t size) {
  if (fails()) return NULL;
  note(block, -1);
  void* grown = __libc_realloc(block, size);
  // A block that could not grow still exists; one shrunk to size 0 is gone.
  note(grown == NULL && size != 0 ? block : grown, 1);
  return grown;
}

void* memalign(size_t alignment, size_t size) {
  return fails() ? NULL : noted(__libc_memalign(alignment, size));
}

void* aligned_alloc(size_t alignment, size_t size) {
  return memalign(alignment, size);
}

int posix_memalign(void** block, size_t alignment, size_t size) {
  void* made = memalign(alignment, size);
  if (made == NULL) return ENOMEM;
  *block = made;
  return 0;
}

void free(void* block) {
  note(block, -1);
  __libc_free(block);
}
