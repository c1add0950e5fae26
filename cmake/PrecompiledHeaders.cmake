# The headers that most sources read first, compiled once a build: reading them again takes more
# than half of the time of a file. They are the platform's and the compiler's own, and GoogleTest's
# for the tests; so no change of ours makes them anew. Every source still includes what it uses:
# the checked build does without them, and so proves it.
option(UTILS_STATICS_PRECOMPILED_HEADERS "Compile the headers that are used most only once" ON)

set(_common
  <algorithm> <array> <atomic> <cmath> <cstdarg> <cstddef> <cstdint> <cstdio> <cstdlib> <cstring>
  <cwchar> <exception> <filesystem> <functional> <iterator> <limits> <map> <memory> <mutex> <new>
  <optional> <set> <shared_mutex> <span> <string> <string_view> <type_traits> <utility> <vector>
  <winsock2.h>   # before windows.h, which brings its predecessor otherwise
  <windows.h> <commctrl.h> <shellapi.h> <shlwapi.h>)

# precompiled_set(NAME HEADERS... [LINK targets...]): a target that others can share headers with
# when they are compiled with the same flags.
function(precompiled_set name)
  cmake_parse_arguments(arg "" "" "LINK" ${ARGN})
  set(_source ${PROJECT_BINARY_DIR}/precompiled/${name}.cpp)
  file(CONFIGURE OUTPUT ${_source} CONTENT "")
  add_library(${name} OBJECT ${_source})
  target_link_libraries(${name} PRIVATE project_settings ${arg_LINK})
  target_compile_options(${name} PRIVATE -fpch-preprocess)   # asked for by the compiler cache
  target_precompile_headers(${name} PRIVATE ${arg_UNPARSED_ARGUMENTS})
endfunction()

# use_precompiled(TARGET SET)
function(use_precompiled name set)
  if(UTILS_STATICS_PRECOMPILED_HEADERS)
    # The compiler forgets of a precompiled header that it is the platform's, and reports what its
    # inlined functions only seem to do. A build without them keeps the warnings.
    target_compile_options(${name} PRIVATE
      $<$<COMPILE_LANGUAGE:CXX>:-fpch-preprocess>
      $<$<COMPILE_LANGUAGE:CXX>:-Wno-array-bounds;-Wno-stringop-overflow;-Wno-stringop-overread>)
    target_precompile_headers(${name} REUSE_FROM ${set})
  endif()
endfunction()

if(UTILS_STATICS_PRECOMPILED_HEADERS)
  precompiled_set(precompiled_module ${_common} LINK shipped_settings)
  if(UTILS_STATICS_TESTS)
    precompiled_set(precompiled_test ${_common} <chrono> <fstream> <random> <thread>
      <gtest/gtest.h> LINK GTest::gtest)
    target_compile_options(precompiled_test PRIVATE -O1)
  endif()
endif()
