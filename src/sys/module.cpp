#include "sys/module.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

#include "diag/trace.h"

int insert_module(const char* path, const char* params) {
  // If the file cannot be opened, mapping descriptor -1 fails.
  const int file = open(path, O_RDONLY | O_CLOEXEC);
  struct stat status = {};
  fstat(file, &status);
  const size_t size = static_cast<size_t>(status.st_size);
  void* image = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
  if (image == MAP_FAILED) {
    RPC_ERROR("Can't mmap kernel module file\n");
    if (file >= 0) close(file);
    return -1;
  }
  const long result = syscall(SYS_init_module, image, size, params != nullptr ? params : "");
  const int error = errno;
  munmap(image, size);
  close(file);
  errno = error;
  return static_cast<int>(result);
}

int remove_module(const char* name) {
  return static_cast<int>(syscall(SYS_delete_module, name, O_NONBLOCK | O_EXCL));
}
