#pragma once

#include <linux/wireless.h>

#include <cstdint>

// A request of the wireless extensions to the interface of a BSS, whatever its index:
// one without an interface is the kernel's to refuse. With a record, its data form.
[[nodiscard]] iwreq frame_of(int bss);
[[nodiscard]] iwreq frame_of(int bss, const void* record, uint16_t length, uint16_t flags);
