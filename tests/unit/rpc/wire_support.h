#pragma once

#include <rpc/rpc.h>

#include <functional>
#include <string>
#include <vector>

#include "rpc/column_types.h"

// XDR by hand, so that filters and dispatcher are held against the bytes.

// One four-byte item, big-endian.
std::string word(unsigned value);

// Length, bytes, padding.
std::string text_item(const std::string& text);

// So many words of zero.
std::string zeros(unsigned words);

// What the filter makes of the object; "(refused)" when it fails.
template <typename T>
std::string encoded(bool_t (*filter)(XDR*, T*), T* object) {
  std::string bytes(131072, '#');
  XDR stream;
  xdrmem_create(&stream, bytes.data(), static_cast<u_int>(bytes.size()), XDR_ENCODE);
  if (!filter(&stream, object)) return "(refused)";
  bytes.resize(xdr_getpos(&stream));
  return bytes;
}

// Decodes into the zeroed object; the bytes left over in *rest.
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

// A call of the dispatcher over a transport that exists in memory only.
struct fake_call {
  std::string argument;          // what the request carries behind its header
  int failing_replies = 0;       // so many of the first replies cannot be sent
  bool failing_release = false;  // freeing the argument fails
  bool decodes_nothing = false;  // decoding succeeds, and leaves the area as it is
  std::function<void()> before_decoding = [] {};
  // The outcome.
  struct reply {
    accept_stat status;
    std::string body;
  };
  std::vector<reply> replies;  // also those that could not be sent
  size_t left_over = 0;        // bytes of the argument that the decoder did not take
  int decodes = 0;
  int releases = 0;
  std::string area_before;  // the argument area as the decoder found it, `area_size` bytes
  size_t area_size = 0;
};

// Has the dispatcher serve the call.
void dispatch(uint32_t procedure, fake_call* call);

// The one reply to a call, its body when it succeeded; anything else as
// "(status N)", "(no reply)" or "(N replies)".
std::string answer_to(uint32_t procedure, const std::string& argument = "");
