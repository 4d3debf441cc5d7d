# 64-bit ARM.
set(TARGET arm64)
set(TRIPLET aarch64-linux-gnu)
set(TARGET_LIBRARIES aarch64-linux-gnu)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
include(${CMAKE_CURRENT_LIST_DIR}/debian.cmake)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64 -L ${CMAKE_SYSROOT})
