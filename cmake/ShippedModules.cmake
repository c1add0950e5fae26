# Every module that is shipped is compiled and linked with the interface target shipped_settings,
# too. Its bytes depend on the sources and the compilers alone, not on the folder or
# the time of the build. A checked build is never shipped.
add_library(shipped_settings INTERFACE)
if(UTILS_STATICS_CHECKED)
  return()
endif()

# Of several maps that apply, the compiler takes the last one. The relative folder is what the
# compiler cache makes of the sources' one. The cache knows that there are maps, but not which:
# whoever changes them builds once with CCACHE_RECACHE=1.
cmake_path(RELATIVE_PATH PROJECT_SOURCE_DIR BASE_DIRECTORY ${PROJECT_BINARY_DIR}
  OUTPUT_VARIABLE _sources_from_build)
target_compile_options(shipped_settings INTERFACE
  -ffile-prefix-map=${UTILS_STATICS_DEPENDENCIES_USED}=/dependencies
  -ffile-prefix-map=${_sources_from_build}=/Utils_Statics
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}=/Utils_Statics
  -ffile-prefix-map=${PROJECT_BINARY_DIR}=/Utils_Statics/build
  # The module's debug file does not tell in which order the options came.
  -g -gno-record-gcc-switches)
target_link_options(shipped_settings INTERFACE -Wl,--no-insert-timestamp)
