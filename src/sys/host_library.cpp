#include "sys/host_library.h"

#include <dlfcn.h>

using rev_set_bh_setting_t = void (*)(int, int, const char*);

// RPC thread only.
static rev_set_bh_setting_t host_function;

void rev_set_bh_setting(int bss_index, int kind, const char* value) {
  if (host_function == nullptr) {
    void* library = dlopen("libvexal_rev_rpc_client.so", RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) return;
    host_function = reinterpret_cast<rev_set_bh_setting_t>(dlsym(library, "rev_set_bh_setting"));
    if (host_function == nullptr) {
      dlclose(library);
      return;
    }
  }
  host_function(bss_index, kind, value);
}
