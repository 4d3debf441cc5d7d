#pragma once

#include <cstdint>

// Radios of a restart.
constexpr uint8_t kMask24 = 0x01;
constexpr uint8_t kMask5 = 0x10;
constexpr uint8_t kMaskAll = 0xFF;

// The worker's sequence for a restart (see lifecycle_sequence): restarts the radios of
// all pending requests, whatever `mask` says, with band steering stopped.
void* restart_handler_func(const uint8_t* mask);

// Takes the interfaces of radio 1 or 9 down and raises those that its profile enables.
// Meanwhile dcs, mtk_ctrl and the radio's 802.1X authenticator are stopped, and the
// driver is not queried. Without loaded modules it reports that and does nothing. A failed
// step does not stop it. Returns 1.
int wifi_restart(int radio);
