#pragma once

#include <string>

#include "trust/heap.h"

// The sweep's side of the page that it shares with the preloaded library.

// The settings for the daemon's environment.
std::string heap_page_setting();
std::string heap_preload_setting();

// Called before the daemon starts; an armed failure stays armed.
void heap_page_reset();
bool heap_page_loaded();

// Makes the `nth` allocation from now on fail, counted on the service child's main thread
// or on its others. With 0 none fails.
void arm_heap(int thread, int nth);
bool heap_failed();

long heap_blocks();
