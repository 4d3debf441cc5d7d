#pragma once

#include <cstdint>

// Radios of a restart.
constexpr uint8_t kMask24 = 0x01;
constexpr uint8_t kMask5 = 0x10;
constexpr uint8_t kMaskAll = 0xFF;

// The worker's routines for the lifecycle requests. Each returns the address of the last
// result, 0 or -1, which is not reported.
void* load_handler_func(const uint8_t* mask);
void* init_handler_func(const uint8_t* mask);
void* restart_handler_func(const uint8_t* mask);

// A queued reset, which goes on where wlan_reset refuses. No operation queues it, since
// wlan_reset runs at once.
void* reset_handler_func(const uint8_t* mask);

// Records the state after a reset: nothing loaded, no reset running. In a turn only.
void forget_drivers();
