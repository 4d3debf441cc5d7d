#pragma once

#include <rpc/rpc.h>

#include <functional>
#include <string>
#include <vector>

#include "rpc/column_types.h"

// XDR by hand, so that filters and dispatcher are checked against bytes.

// One four-byte item, big-endian.
std::string word(unsigned value);

// Length, bytes and padding.
std::string text_item(const std::string& text);

// That many zero words.
std::string zeros(unsigned words);

// The object as the filter encodes it; "(refused)" when it fails.
template <typename T>
std::string encoded(bool_t (*filter)(XDR*, T*), T* object) {
  std::string bytes(131072, '#');
  XDR stream;
  xdrmem_create(&stream, bytes.data(), static_cast<u_int>(bytes.size()), XDR_ENCODE);
  if (!filter(&stream, object)) return "(refused)";
  bytes.resize(xdr_getpos(&stream));
  return bytes;
}

// Decodes into the zeroed object. *rest is the number of bytes left over.
template <typename T>
bool decoded(bool_t (*filter)(XDR*, T*), std::string bytes, T* object, size_t* rest = nullptr) {
  XDR stream;
  xdrmem_create(&stream, bytes.data(), static_cast<u_int>(bytes.size()), XDR_DECODE);
  const bool done = filter(&stream, object);
  if (rest != nullptr) *rest = bytes.size() - xdr_getpos(&stream);
  return done;
}

template <typename T>
void released(bool_t (*filter)(XDR*, T*), T* object) {
  xdr_free(reinterpret_cast<xdrproc_t>(reinterpret_cast<void (*)()>(filter)), object);
}

// A call to the dispatcher over a transport in memory.
struct fake_call {
  std::string argument;          // what follows the request's header
  int failing_replies = 0;       // how many of the first replies cannot be sent
  bool failing_release = false;  // freeing the argument fails
  bool decodes_nothing = false;  // decoding succeeds but leaves the area unchanged
  std::function<void()> before_decoding = [] {};
  // The result.
  struct reply {
    accept_stat status;
    std::string body;
  };
  std::vector<reply> replies;  // including those that could not be sent
  size_t left_over = 0;        // bytes of the argument that were not decoded
  int decodes = 0;
  int releases = 0;
  std::string area_before;  // the argument area as the decoder found it, `area_size` bytes
  size_t area_size = 0;
};

void dispatch(uint32_t procedure, fake_call* call);

// The body of the only reply to a call if it succeeded; otherwise "(status N)", "(no
// reply)" or "(N replies)".
std::string answer_to(uint32_t procedure, const std::string& argument = "");
