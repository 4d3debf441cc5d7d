// Loading and unloading of the driver's modules.
#include <elf.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <cerrno>
#include <cstdio>

#include "gateway/call.h"
#include "host/module_image.h"

// The name is near the start of an image, so the rest is not read.
static constexpr size_t kImageLimit = 65536;
static constexpr size_t kNameLimit = 55;  // as the kernel's, without the terminator
static constexpr size_t kParamsLimit = 4096;
static constexpr uint64_t kFinitFlags = 7;  // all the flags that there are

static int recognise(trap_call& c, journal_entry& entry, const std::string& image) {
  std::string name = module_image_name(image);
  c.module = modules_find(name);
  entry.decoded.insert(entry.decoded.begin(), {"module", name});
  return c.module ? 0 : -ENOEXEC;
}

static bool read_params(const trap_call& c, uint64_t address, journal_entry& entry) {
  std::string params;
  bool readable = caller_read_text(c.tid, address, kParamsLimit, params);
  entry.decoded.push_back({"params", params});
  return readable;
}

// init_module(image, size, params)
static int read_init(trap_call& c, journal_entry& entry) {
  uint64_t size = c.arguments[1];
  if (size < sizeof(Elf64_Ehdr)) return -ENOEXEC;
  std::string image(size < kImageLimit ? size : kImageLimit, 0);
  if (!caller_read(c.tid, c.arguments[0], image.data(), image.size())) return -EFAULT;
  if (!read_params(c, c.arguments[2], entry)) return -EFAULT;
  return recognise(c, entry, image);
}

// Reopens the caller's file. Only a regular file is opened.
static int read_open_file(const trap_call& c, std::string& image) {
  std::string path =
      caller_proc_path(c.tid, "fd/" + std::to_string(static_cast<int>(c.arguments[0])));
  struct stat entry;
  if (stat(path.c_str(), &entry) < 0) return -EBADF;
  if (!S_ISREG(entry.st_mode)) return -EINVAL;
  int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (fd < 0) return -EBADF;
  image.resize(kImageLimit);
  ssize_t got = pread(fd, image.data(), image.size(), 0);
  close(fd);
  image.resize(got > 0 ? static_cast<size_t>(got) : 0);
  return 0;
}

// finit_module(descriptor, params, flags)
static int read_finit(trap_call& c, journal_entry& entry) {
  std::string image;
  if (c.arguments[2] & ~kFinitFlags) return -EINVAL;
  int status = read_open_file(c, image);
  if (status != 0) return status;
  if (!read_params(c, c.arguments[1], entry)) return -EFAULT;
  return recognise(c, entry, image);
}

// delete_module(name, flags)
static int read_delete(trap_call& c, journal_entry& entry) {
  std::string name;
  char flags[24];
  if (!caller_read_text(c.tid, c.arguments[0], kNameLimit, name)) return -EFAULT;
  snprintf(flags, sizeof flags, "0x%x", static_cast<unsigned>(c.arguments[1]));
  entry.decoded = {{"module", name}, {"flags", flags}};
  c.module = modules_find(name);
  return c.module ? 0 : -ENOENT;
}

static int read_module(trap_state&, trap_call& c, journal_entry& entry) {
  switch (c.request) {
    case kFaultInitModule:
      entry.name = "init_module";
      return read_init(c, entry);
    case kFaultFinitModule:
      entry.name = "finit_module";
      return read_finit(c, entry);
    default:
      entry.name = "delete_module";
      return read_delete(c, entry);
  }
}

// A radio is announced by its first interface; a module may drive both.
static int load(trap_state& trap, const module_row& module) {
  int status = modules_load(trap.modules, module);
  if (status != 0) return status;
  for (int first : {0, kBoardFirst5ghz}) {
    if (first < module.first || first >= module.first + module.count) continue;
    driver_radio_loaded(trap.driver, first, driver_now_us(trap.driver));
  }
  return 0;
}

static int do_module(trap_state& trap, trap_call& c, journal_entry&) {
  if (c.request != kFaultDeleteModule) return load(trap, *c.module);
  int status = modules_unload(trap.modules, *c.module);
  trap_catch_up(trap);  // the model learns before the caller does that the interfaces are gone
  return status;
}

const trap_kind kTrapKindModule = {read_module, do_module};

bool trap_load_modules(trap_state& trap) {
  for (int row = 0; row < kModulesMax; ++row) {
    const module_row& module = modules_row(row);
    if (modules_fits(module, *trap.modules.hardware) && load(trap, module) != 0) return false;
  }
  return true;
}
