#pragma once

#include <cstddef>

#include "rpc/column_types.h"

// Packs result records. Payloads are heap copies that the dispatcher frees; when memory
// runs out the payload stays empty.

// One 32-bit value as the first of four words, the others zero. The count is the value's
// size in bytes, which is how the protocol counts words. Traced as `handler` with the
// value's `label`.
void pack_int(const char* handler, const char* label, int value, wlan_config_result_data_t* result);

// A NUL-terminated text of at most `size` bytes, including its NUL. Traced as above.
void pack_text(const char* handler, const char* label, const char* text, size_t size,
               wlan_config_result_data_t* result);

// Traces the packed text again, as the controller's text handlers do.
void trace_text_again(const char* handler, const wlan_config_result_data_t& result);

// `size` bytes of a record of 32-bit words, announced as `size` words: those after the
// record are zeros.
void pack_words(const void* record, size_t size, wlan_config_result_data_t* result);

// A record as `size` raw bytes.
void pack_image(const void* record, size_t size, wlan_config_result_data_t* result);
