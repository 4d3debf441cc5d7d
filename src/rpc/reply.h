#pragma once

#include <cstddef>

#include "rpc/column_types.h"

// Packing of result records. Payloads are heap copies that the dispatcher
// frees; when memory cannot be had the payload stays empty.

// One 32-bit value as the first of four words; the count is the value's size in
// bytes, which is how the protocol counts words, and the other words are zeros.
// Traced as `handler` with the value's `label`.
void pack_int(const char* handler, const char* label, int value, wlan_config_result_data_t* result);

// A NUL-terminated text of at most `size` bytes, its NUL included. Traced as above.
void pack_text(const char* handler, const char* label, const char* text, size_t size,
               wlan_config_result_data_t* result);

// The packed text once more in the trace, as the controller's texts have it.
void trace_text_again(const char* handler, const wlan_config_result_data_t& result);

// `size` bytes of a record of 32-bit words, announced as `size` words: those
// beyond the record are zeros.
void pack_words(const void* record, size_t size, wlan_config_result_data_t* result);

// The image of a record, `size` raw bytes.
void pack_image(const void* record, size_t size, wlan_config_result_data_t* result);
