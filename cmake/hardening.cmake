# What makes a defect harder to exploit: in every build but those with sanitizers,
# which stop at the defect itself. Tests do without.
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
# Frames that skip the guard page; targets of jumps, on x86 and on 64-bit ARM.
set(CMAKE_REQUIRED_FLAGS -Werror)  # clang only warns of what it does not use
foreach(flag -fstack-clash-protection -fcf-protection -mbranch-protection=standard)
  string(MAKE_C_IDENTIFIER "WIFICONFD_HAS${flag}" known)
  check_compiler_flag(CXX ${flag} ${known})
  if(${known})
    target_compile_options(hardening INTERFACE ${flag})
  endif()
endforeach()
unset(CMAKE_REQUIRED_FLAGS)

# At any address; what the linker fills in is bound at the start and then read-only;
# nothing on the stack can be run.
target_link_options(hardened_program INTERFACE -pie -Wl,-z,relro,-z,now,-z,noexecstack)
