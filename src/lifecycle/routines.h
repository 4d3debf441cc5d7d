#pragma once

#include <cstdint>

// Radios of a restart.
constexpr uint8_t kMask24 = 0x01;
constexpr uint8_t kMask5 = 0x10;
constexpr uint8_t kMaskAll = 0xFF;

// The routines of the lifecycle requests, for the worker. Each returns the
// address of the last result, 0 or -1, which nobody is told.
void* load_handler_func(const uint8_t* mask);
void* init_handler_func(const uint8_t* mask);
void* restart_handler_func(const uint8_t* mask);

// A queued reset; no operation queues it, since wlan_reset runs at once. Goes
// on where wlan_reset refuses.
void* reset_handler_func(const uint8_t* mask);

// What a reset leaves behind: nothing loaded and no reset running. In a turn only.
void forget_drivers();
