# 32-bit x86: no gateway's, but a 32-bit daemon that runs at full speed where it was
# built, in gwbox too. Its programs take loader and libraries from the sysroot, since
# the machine may have none of theirs.
set(TARGET i386)
set(TRIPLET i686-linux-gnu)
set(TARGET_LIBRARIES i386-linux-gnu)
set(CMAKE_SYSTEM_PROCESSOR i686)
include(${CMAKE_CURRENT_LIST_DIR}/debian.cmake)
set(CMAKE_EXE_LINKER_FLAGS_INIT
  "-Wl,--dynamic-linker=${CMAKE_SYSROOT}/lib/ld-linux.so.2,--disable-new-dtags")
set(CMAKE_BUILD_RPATH
  ${CMAKE_SYSROOT}/lib/i386-linux-gnu ${CMAKE_SYSROOT}/usr/lib/i386-linux-gnu)
