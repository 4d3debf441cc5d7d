# 32-bit x86. No gateway has it, but such a daemon runs at full speed on the machine
# where it was built, and in gwbox, too. Its programs take the loader and the libraries
# from the sysroot, since the machine may not have them.
set(TARGET i386)
set(TRIPLET i686-linux-gnu)
set(TARGET_LIBRARIES i386-linux-gnu)
set(CMAKE_SYSTEM_PROCESSOR i686)
include(${CMAKE_CURRENT_LIST_DIR}/debian.cmake)
set(CMAKE_EXE_LINKER_FLAGS_INIT
  "-Wl,--dynamic-linker=${CMAKE_SYSROOT}/lib/ld-linux.so.2,--disable-new-dtags")
set(CMAKE_BUILD_RPATH
  ${CMAKE_SYSROOT}/lib/i386-linux-gnu ${CMAKE_SYSROOT}/usr/lib/i386-linux-gnu)
