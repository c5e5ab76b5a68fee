# What makes a fault harder to exploit, in every build but those with sanitizers, so that what is
# tested is what is shipped. tests/tools/hardened.sh looks for it in the built files.

include(CheckCXXCompilerFlag)

# _FORTIFY_SOURCE does nothing without optimisation, and Debug builds have none.
set(fortify "$<NOT:$<CONFIG:Debug>>")
target_compile_options(ebOptions INTERFACE -fstack-protector-strong
  $<${fortify}:-U_FORTIFY_SOURCE> $<${fortify}:-D_FORTIFY_SOURCE=3>)
foreach(flag stack-clash-protection cf-protection)
  check_cxx_compiler_flag(-f${flag} EB_HAS_${flag})
  if(EB_HAS_${flag})
    target_compile_options(ebOptions INTERFACE -f${flag})
  endif()
endforeach()
# Executables on a Mac are position independent, and nothing of the rest is known there.
if(NOT APPLE)
  target_link_options(ebOptions INTERFACE
    LINKER:-z,relro,-z,now,-z,noexecstack $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-pie>)
endif()
