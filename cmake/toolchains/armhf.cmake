# 32-bit ARM with a floating-point unit, ARMv7 or later.
set(TARGET armhf)
set(TRIPLET arm-linux-gnueabihf)
set(TARGET_LIBRARIES arm-linux-gnueabihf)
set(CMAKE_SYSTEM_PROCESSOR armv7l)
include(${CMAKE_CURRENT_LIST_DIR}/debian.cmake)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm -L ${CMAKE_SYSROOT})
