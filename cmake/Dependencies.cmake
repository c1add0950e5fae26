# Imports as targets what tools/setup cross-built or brought from the distribution.

# The version of the folder stands in one place only. A build folder made before it was raised
# follows it.
file(STRINGS ${PROJECT_SOURCE_DIR}/tools/lib.sh _version REGEX "^deps_version=")
string(REGEX MATCH "[0-9]+" _version "${_version}")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tools/lib.sh)

set(UTILS_STATICS_DEPENDENCIES_FOLDER ""
  CACHE PATH "Folder of the cross-built dependencies; empty for the one that tools/setup makes")
set(_dependencies ${UTILS_STATICS_DEPENDENCIES_FOLDER})
if(NOT _dependencies)
  set(_dependencies ${_cache}/deps-${UTILS_STATICS_ARCH}-${_version})
endif()
if(NOT EXISTS ${_dependencies})
  message(FATAL_ERROR "${_dependencies} is missing; run tools/setup")
endif()

if(UTILS_STATICS_DEPENDENCIES_USED AND NOT UTILS_STATICS_DEPENDENCIES_USED STREQUAL _dependencies)
  foreach(_package expat pugixml libjpeg-turbo minizip GTest benchmark)
    unset(${_package}_DIR CACHE)   # found in the folder used before
  endforeach()
endif()
set(UTILS_STATICS_DEPENDENCIES_USED ${_dependencies} CACHE INTERNAL "")

list(APPEND CMAKE_PREFIX_PATH ${_dependencies})
list(APPEND CMAKE_FIND_ROOT_PATH ${_dependencies})
find_package(Threads REQUIRED)
find_package(expat CONFIG REQUIRED COMPONENTS wchar_t)
find_package(pugixml CONFIG REQUIRED)
find_package(libjpeg-turbo CONFIG REQUIRED)
find_package(minizip CONFIG REQUIRED)   # brings zlib
if(UTILS_STATICS_TESTS)
  find_package(GTest CONFIG)
  if(NOT GTest_FOUND)
    message(FATAL_ERROR "${_dependencies} has no GoogleTest; run tools/setup")
  endif()
endif()

# Header-only packages of the distribution.
add_library(spdlog_headers INTERFACE)
target_include_directories(spdlog_headers SYSTEM INTERFACE ${_dependencies}/host-include)
target_compile_definitions(spdlog_headers INTERFACE SPDLOG_FMT_EXTERNAL FMT_HEADER_ONLY)

if(UTILS_STATICS_BENCHMARKS)
  find_package(benchmark CONFIG)
  if(NOT benchmark_FOUND)
    message(FATAL_ERROR "${_dependencies} has no Google Benchmark; run tools/setup")
  endif()
  add_library(benchmark_peers INTERFACE)   # Boost.Signals2 and Eigen
  target_include_directories(benchmark_peers SYSTEM INTERFACE ${_dependencies}/host-include)
endif()
