# 32-bit MIPS, little-endian, release 2 of the architecture or later.
set(TARGET mipsel)
set(TRIPLET mipsel-linux-gnu)
set(TARGET_LIBRARIES mipsel-linux-gnu)
set(CMAKE_SYSTEM_PROCESSOR mipsel)
include(${CMAKE_CURRENT_LIST_DIR}/debian.cmake)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-mipsel -L ${CMAKE_SYSROOT})
