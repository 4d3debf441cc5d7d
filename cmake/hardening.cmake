# Options that make a defect harder to exploit, in every build except those with
# sanitizers, which stop at the defect itself. Tests are built without them.
#   hardening         for all code that ends up in a program that is installed
#   hardened_program  for those programs
# Flags that a compiler or a processor does not have are left out.
include(CheckCompilerFlag)

add_library(hardening INTERFACE)
add_library(hardened_program INTERFACE)
target_link_libraries(hardened_program INTERFACE hardening)
if(WIFICONFD_SANITIZE)
  return()
endif()

set(optimised $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
target_compile_options(hardening INTERFACE
  "$<${optimised}:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=3>" -fstack-protector-strong -fPIE)
# Against frames that skip the guard page, and against jumps to other than intended
# places, on x86 and on 64-bit ARM.
set(CMAKE_REQUIRED_FLAGS -Werror)  # clang only warns about flags that it does not use
foreach(flag -fstack-clash-protection -fcf-protection -mbranch-protection=standard)
  string(MAKE_C_IDENTIFIER "WIFICONFD_HAS${flag}" known)
  check_compiler_flag(CXX ${flag} ${known})
  if(${known})
    target_compile_options(hardening INTERFACE ${flag})
  endif()
endforeach()
unset(CMAKE_REQUIRED_FLAGS)

# Programs run at any address, what the linker fills in is resolved at the start and
# then read-only, and nothing on the stack can be executed.
target_link_options(hardened_program INTERFACE -pie -Wl,-z,relro,-z,now,-z,noexecstack)
