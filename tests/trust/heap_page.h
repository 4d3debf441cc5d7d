#pragma once

#include <string>

#include "trust/heap.h"

// The driver's side of the page that it shares with the preloaded library.

// Makes the page's file; what the daemon's environment needs for it.
std::string heap_page_setting();
std::string heap_preload_setting();

// For a daemon that is about to start; what is armed stays so.
void heap_page_reset();
bool heap_page_loaded();

// The `nth` allocation from now on fails, of the service child's main thread or of its
// others; 0: none does.
void arm_heap(int thread, int nth);
bool heap_failed();

long heap_blocks();
