# Makes a bug in the program harder to exploit. Scripts/check-hardening proves it on the linked program.
include(CheckCXXCompilerFlag)
include(CheckPIESupported)
check_pie_supported()
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

# Not with the sanitizers, which check more than this in their own way.
if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT QUILLFADE_SANITIZE AND NOT QUILLFADE_FUZZERS)
  # Control-flow protection has a different name on each architecture.
  foreach(flag -fstack-protector-strong -fstack-clash-protection -fcf-protection=full -mbranch-protection=standard)
    string(MAKE_C_IDENTIFIER "HAS${flag}" name)
    check_cxx_compiler_flag(${flag} ${name})
    if(${name})
      add_compile_options(${flag})
    endif()
  endforeach()
  # The library's checked functions need the optimiser.
  if(CMAKE_BUILD_TYPE MATCHES "^Rel")
    add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
  endif()
  add_link_options(-Wl,-z,relro,-z,now,-z,noexecstack)
endif()
