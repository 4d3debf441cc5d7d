#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>
#include <string>

#include "rpc/column_types.h"
#include "support/check.h"
#include "support/input.h"
#include "support/outside.h"

// Every XDR filter: two bytes choose the type, the others are decoded with its filter.
// The result is encoded to as many bytes as were read, and decoding and encoding those
// again must give the same bytes.

namespace {

struct wire_type {
  const char* name;
  xdrproc_t filter;
  size_t size;
  bool has_array;  // its count is the second word
};

}  // namespace

#define FILTER(filter) reinterpret_cast<xdrproc_t>(reinterpret_cast<void (*)()>(filter))

static constexpr bool is_array(std::string_view name) {
  return name == "wlan_config_result_data_t" || name == "wlan_device_result_data_t";
}

static const wire_type kTypes[] = {
#define TYPE(name) {#name, FILTER(xdr_##name), sizeof(name), is_array(#name)},
#include "wire_types.def"
    TYPE(string_t) TYPE(bool_t)};

static constexpr size_t kRoom = 1 << 18;
static char room[2][kRoom];

// Encodes into room[where] and returns the length.
static size_t encode(const wire_type& type, void* object, int where) {
  XDR stream;
  xdrmem_create(&stream, room[where], kRoom, XDR_ENCODE);
  if (!type.filter(&stream, object)) broken("%s does not encode", type.name);
  return xdr_getpos(&stream);
}

// How many bytes were read; 0 if they do not decode.
static size_t decode(const wire_type& type, const char* bytes, size_t size, void* object) {
  XDR stream;
  memset(object, 0, type.size);
  xdrmem_create(&stream, const_cast<char*>(bytes), static_cast<u_int>(size), XDR_DECODE);
  return type.filter(&stream, object) ? xdr_getpos(&stream) : 0;
}

static void run_type(const wire_type& type, std::string_view bytes) {
  // In a block of its own, so that the sanitizer sees reads beyond its end.
  const std::unique_ptr<char[]> exact(new char[bytes.size()]);
  const std::unique_ptr<char[]> object(new char[type.size]);
  bytes.copy(exact.get(), bytes.size());
  const size_t read = decode(type, exact.get(), bytes.size(), object.get());
  if (read != 0) {
    const size_t length = encode(type, object.get(), 0);
    xdr_free(type.filter, object.get());
    CHECK(length == read);
    CHECK(decode(type, room[0], length, object.get()) == length);
    CHECK(encode(type, object.get(), 1) == length);
    CHECK(memcmp(room[0], room[1], length) == 0);
  }
  xdr_free(type.filter, object.get());
}

// The library allocates memory for all announced elements before it reads the first one.
// No argument of a call has an array.
static bool asks_for_memory(std::string_view bytes) {
  uint32_t count = 0;
  if (bytes.size() < 8) return false;
  memcpy(&count, bytes.data() + 4, sizeof count);
  return ntohl(count) > bytes.size();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const wire_type& type = kTypes[take_u16(&bytes) % std::size(kTypes)];
  if (bytes.size() > kRoom / 4 || (type.has_array && asks_for_memory(bytes))) return 0;
  outside world;  // has the files that switch traces on
  outside_begin(&world);
  run_type(type, bytes);
  outside_end();
  return 0;
}
