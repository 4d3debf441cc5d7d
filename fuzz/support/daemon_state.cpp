#include "support/daemon_state.h"

#include <cstddef>
#include <memory>

static std::unique_ptr<char[]> noted;

// A sanitizer adds bytes that may not be touched to each object, and the object's size
// includes them. So the copy is made byte by byte and unchecked.
__attribute__((no_sanitize("address", "undefined"))) static void copy_object(
    volatile char* to, const volatile char* from, size_t size) {
  for (size_t i = 0; i < size; ++i)
    to[i] = from[i];
}

static size_t total_size() {
  size_t size = 0;
  for (const state_object* object = kStateObjects; object->start != nullptr; ++object)
    size += object->size;
  return size;
}

void note_daemon_state() {
  noted = std::make_unique<char[]>(total_size());
  char* to = noted.get();
  for (const state_object* object = kStateObjects; object->start != nullptr; ++object) {
    copy_object(to, object->start, object->size);
    to += object->size;
  }
}

void restore_daemon_state() {
  if (noted == nullptr) note_daemon_state();
  const char* from = noted.get();
  for (const state_object* object = kStateObjects; object->start != nullptr; ++object) {
    copy_object(object->start, from, object->size);
    from += object->size;
  }
}

extern "C" __attribute__((weak)) void __lsan_ignore_object(const void*);

// The sanitizer ignores words that are not pointers to allocated memory.
void end_daemon_state() {
  if (__lsan_ignore_object == nullptr) return;
  for (const state_object* object = kStateObjects; object->start != nullptr; ++object) {
    for (size_t at = 0; at + sizeof(void*) <= object->size; at += sizeof(void*)) {
      void* pointer = nullptr;
      copy_object(reinterpret_cast<char*>(&pointer), object->start + at, sizeof pointer);
      __lsan_ignore_object(pointer);
    }
  }
}
