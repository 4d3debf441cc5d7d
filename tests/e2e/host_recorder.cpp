#include <cstdio>

// Stands in for the host's reverse RPC client and writes a line per call.
extern "C" void rev_set_bh_setting(int bss_index, int kind, const char* value);

void rev_set_bh_setting(int bss_index, int kind, const char* value) {
  FILE* calls = fopen("/tmp/host_calls", "ae");
  if (calls == nullptr) return;
  fprintf(calls, "%d %d %s\n", bss_index, kind, value);
  fclose(calls);
}
