# What tools/setup cross-built or brought from the distribution, as imported targets.
if(DEFINED ENV{UTILS_STATICS_CACHE})
  set(_cache $ENV{UTILS_STATICS_CACHE})
elseif(DEFINED ENV{XDG_CACHE_HOME})
  set(_cache $ENV{XDG_CACHE_HOME}/utils-statics)
else()
  set(_cache $ENV{HOME}/.cache/utils-statics)
endif()

set(UTILS_STATICS_DEPENDENCIES ${_cache}/deps-${UTILS_STATICS_ARCH}-1
  CACHE PATH "Folder of the cross-built dependencies, made by tools/setup")
if(NOT EXISTS ${UTILS_STATICS_DEPENDENCIES})
  message(FATAL_ERROR "${UTILS_STATICS_DEPENDENCIES} is missing; run tools/setup")
endif()

list(APPEND CMAKE_PREFIX_PATH ${UTILS_STATICS_DEPENDENCIES})
list(APPEND CMAKE_FIND_ROOT_PATH ${UTILS_STATICS_DEPENDENCIES})
find_package(Threads REQUIRED)
find_package(pugixml CONFIG REQUIRED)
if(UTILS_STATICS_TESTS)
  find_package(GTest CONFIG REQUIRED)
endif()

# Header-only packages of the distribution.
add_library(spdlog_headers INTERFACE)
target_include_directories(spdlog_headers SYSTEM INTERFACE ${UTILS_STATICS_DEPENDENCIES}/host-include)
target_compile_definitions(spdlog_headers INTERFACE SPDLOG_FMT_EXTERNAL FMT_HEADER_ONLY)

if(UTILS_STATICS_BENCHMARKS)
  find_package(benchmark CONFIG REQUIRED)
  add_library(benchmark_peers INTERFACE)   # Boost.Signals2 and Eigen
  target_include_directories(benchmark_peers SYSTEM INTERFACE ${UTILS_STATICS_DEPENDENCIES}/host-include)
endif()
