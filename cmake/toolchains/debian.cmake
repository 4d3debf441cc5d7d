# Debian's cross compilers, with the target's libraries in a directory of their own.
# scripts/cross creates it; -DCMAKE_SYSROOT names another. To be included with
# CMAKE_SYSTEM_PROCESSOR, TRIPLET, TARGET and TARGET_LIBRARIES set.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_C_COMPILER ${TRIPLET}-gcc)
set(CMAKE_CXX_COMPILER ${TRIPLET}-g++)
if(NOT CMAKE_SYSROOT)
  get_filename_component(CMAKE_SYSROOT
    ${CMAKE_CURRENT_LIST_DIR}/../../build/sysroot-${TARGET} ABSOLUTE)
endif()
if(NOT IS_DIRECTORY ${CMAKE_SYSROOT})
  message(FATAL_ERROR "no directory ${CMAKE_SYSROOT}: \"scripts/cross ${TARGET}\" makes it")
endif()

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${CMAKE_SYSROOT})
set(ENV{PKG_CONFIG_LIBDIR}
  ${CMAKE_SYSROOT}/usr/lib/${TARGET_LIBRARIES}/pkgconfig:${CMAKE_SYSROOT}/usr/share/pkgconfig)
