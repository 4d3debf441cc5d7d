#pragma once

#include <cstddef>
#include <string_view>

#include "rpc/column_types.h"

// Packing of result records. Payloads are heap copies that the dispatcher
// frees; when memory cannot be had the payload stays empty.

// The name that a getter's trace gives its value: "wlan_get_channel_1_svc"
// reads "channel".
[[nodiscard]] std::string_view value_label(std::string_view handler);

// One 32-bit value as the first of four words; the count is the value's size in
// bytes, which is how the protocol counts words, and the other words are zeros.
void pack_int(const char* handler, int value, wlan_config_result_data_t* result);

// A NUL-terminated text of at most `size` bytes, its NUL included.
void pack_text(const char* handler, const char* text, size_t size,
               wlan_config_result_data_t* result);

// `size` bytes of a record of 32-bit words, announced as `size` words: those
// beyond the record are zeros.
void pack_words(const void* record, size_t size, wlan_config_result_data_t* result);

// The image of a record, `size` raw bytes.
void pack_image(const void* record, size_t size, wlan_config_result_data_t* result);
