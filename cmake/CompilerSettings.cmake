# Compiler settings that every target of this project gets, through the interface target
# project_settings.
add_library(project_settings INTERFACE)

target_compile_features(project_settings INTERFACE cxx_std_20)
target_compile_definitions(project_settings INTERFACE
  UNICODE _UNICODE
  NOMINMAX                # std::min and std::max are used, never the macros
  WINVER=0x0601 _WIN32_WINNT=0x0601)

target_compile_options(project_settings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror
  # A product and a sum round separately on every processor, so that results are the same bits
  # everywhere.
  -ffp-contract=off
  # For this target the compiler counts on the registers that its own copy of an inline function
  # leaves alone; the linker may keep the copy of another source, which leaves others.
  -fno-ipa-ra)

if(UTILS_STATICS_ARCH STREQUAL "x86")
  target_compile_options(project_settings INTERFACE
    # x87 registers would carry excess precision, and the results would depend on the optimiser.
    -msse2 -mfpmath=sse
    # Windows calls back with a stack aligned to 4 bytes only; SSE spills need 16.
    -mstackrealign)
  # A program may use all that Windows has for it: 4 GiB on x64, not 2.
  target_link_options(project_settings INTERFACE -Wl,--large-address-aware)
endif()

if(UTILS_STATICS_CHECKED)
  target_compile_definitions(project_settings INTERFACE _GLIBCXX_ASSERTIONS)
  target_compile_options(project_settings INTERFACE
    # A trap tells where it came from by the chain of frame pointers.
    -O1 -fno-omit-frame-pointer
    -fsanitize=undefined -fsanitize-undefined-trap-on-error -fno-sanitize-recover=all)
endif()

# The compiler's own libraries are shared by all modules: C++ objects and exceptions cross the DLL
# boundary.
set(_originals)
foreach(_dll libstdc++-6.dll libwinpthread-1.dll)
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${_dll}
    OUTPUT_VARIABLE _path OUTPUT_STRIP_TRAILING_WHITESPACE)
  list(APPEND _originals ${_path})
endforeach()
if(UTILS_STATICS_ARCH STREQUAL "x64")
  set(_libgcc libgcc_s_seh-1.dll)
else()
  set(_libgcc libgcc_s_dw2-1.dll)
endif()
execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${_libgcc}
  OUTPUT_VARIABLE _path OUTPUT_STRIP_TRAILING_WHITESPACE)
list(APPEND _originals ${_path})

# Beside our own modules they lie as these do: stripped, with their debug information in files of
# its own.
file(MAKE_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
set(UTILS_STATICS_RUNTIME_DLLS)
foreach(_path IN LISTS _originals)
  if(NOT EXISTS ${_path})
    message(FATAL_ERROR "The compiler's run-time library ${_path} is missing; run tools/setup")
  endif()
  cmake_path(GET _path FILENAME _name)
  set(_dll ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${_name})
  if(NOT EXISTS ${_dll}.debug OR NOT ${_dll}.debug IS_NEWER_THAN ${_path})
    file(COPY ${_path} DESTINATION ${CMAKE_RUNTIME_OUTPUT_DIRECTORY} FOLLOW_SYMLINK_CHAIN)
    execute_process(COMMAND ${PROJECT_SOURCE_DIR}/tools/split-debug ${CMAKE_OBJCOPY} ${_dll}
      COMMAND_ERROR_IS_FATAL ANY)
  endif()
  list(APPEND UTILS_STATICS_RUNTIME_DLLS ${_dll})
endforeach()
