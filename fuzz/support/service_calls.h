#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "rpc/column_types.h"

// The service as it runs in the daemon: its transport, the RPC library's own path from a
// datagram to the dispatcher, and all checks of a reply that do not depend on what a
// procedure means.

// The names are those in the table's column.
enum class result_shape { CODE, INT, TEXT, WORDS, IMAGE, NONE };

struct procedure_filters {
  uint32_t number;
  const char* name;
  xdrproc_t argument;
  size_t argument_size;
  xdrproc_t result;
  size_t result_size;
  result_shape shape;
  uint32_t shape_size;  // of integers, words and images, in bytes
};

// In the order of their numbers.
const std::vector<procedure_filters>& procedures();
const procedure_filters* find_filters(uint32_t number);

// Registers the service, once.
void start_service();

// Has the service take a datagram. A call must get exactly one reply, which must match
// its header and its arguments, which are decoded here as well; any other datagram gets
// none. Afterwards outside_after_call checks what the call left behind.
void serve_datagram(std::string_view datagram);

// The same with a header without credentials.
void serve_call(uint32_t procedure, std::string_view arguments);
