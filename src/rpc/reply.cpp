#include "rpc/reply.h"

#include <cstdlib>
#include <cstring>

#include "diag/trace.h"

void pack_words(const void* record, size_t size, wlan_config_result_data_t* result) {
  u_int* words = static_cast<u_int*>(calloc(size, sizeof(u_int)));
  if (words == nullptr) return;
  memcpy(words, record, size);
  result->return_words.return_words_val = words;
  result->return_words.return_words_len = static_cast<u_int>(size);
}

void pack_image(const void* record, size_t size, wlan_config_result_data_t* result) {
  char* image = static_cast<char*>(malloc(size));
  if (image == nullptr) return;
  memcpy(image, record, size);
  result->return_data.return_data_val = image;
  result->return_data.return_data_len = static_cast<u_int>(size);
}

void pack_int(const char* handler, const char* label, int value,
              wlan_config_result_data_t* result) {
  pack_words(&value, sizeof value, result);
  trace_rpc(handler, " WLAN RPC server : [%s = %d ]\n", label, value);
}

void pack_text(const char* handler, const char* label, const char* text, size_t size,
               wlan_config_result_data_t* result) {
  const size_t length = strnlen(text, size - 1);
  char* copy = static_cast<char*>(malloc(length + 1));
  if (copy == nullptr) return;
  memcpy(copy, text, length);
  copy[length] = '\0';
  result->return_data.return_data_val = copy;
  result->return_data.return_data_len = static_cast<u_int>(length + 1);
  trace_rpc(handler, " WLAN RPC server : [len = %zu]\n", length + 1);
  trace_rpc(handler, " WLAN RPC server : [%s %s]\n", label, copy);
}

void trace_text_again(const char* handler, const wlan_config_result_data_t& result) {
  const char* text = result.return_data.return_data_val;
  if (text == nullptr) return;
  trace_rpc(handler, "DEBUG>>>>>>>>>>>>>>>>>In %s fun. result->return_data.return_data_val:-%s-\n",
            handler, text);
}
