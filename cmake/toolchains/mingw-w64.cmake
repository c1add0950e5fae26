# Cross-compiles for Windows with the mingw-w64 compilers of the distribution.
# UTILS_STATICS_ARCH (x86 or x64) chooses the architecture; the presets set it.
set(CMAKE_SYSTEM_NAME Windows)

list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES UTILS_STATICS_ARCH)

if(UTILS_STATICS_ARCH STREQUAL "x64")
  set(CMAKE_SYSTEM_PROCESSOR AMD64)
  set(_triplet x86_64-w64-mingw32)
else()
  set(CMAKE_SYSTEM_PROCESSOR X86)
  set(_triplet i686-w64-mingw32)
endif()

# The posix flavour brings std::thread and std::mutex.
set(CMAKE_C_COMPILER ${_triplet}-gcc-posix)
set(CMAKE_CXX_COMPILER ${_triplet}-g++-posix)
set(CMAKE_RC_COMPILER ${_triplet}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${_triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)
