#pragma once

#include <cstdint>

// The routines of the lifecycle requests, for the worker. Each returns the
// address of the last result, 0 or -1, which nobody is told.
void* load_handler_func(const uint8_t* mask);
void* init_handler_func(const uint8_t* mask);
void* restart_handler_func(const uint8_t* mask);

// A queued reset; no operation queues it, since wlan_reset runs at once. Goes
// on where wlan_reset refuses.
void* reset_handler_func(const uint8_t* mask);

// The operations. Load, init and restart only queue and return 0.
int wlan_load();
int wlan_init();

// Of the radio of a BSS, or of both for 255; any other index is reported.
int wlan_restart(int index);
int wlan_restart_all();

// Resets in the caller's thread, once a load that runs has ended. 0, or -1 while
// an init or a restart runs.
int wlan_reset();
