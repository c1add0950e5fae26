# The kinds of target this project has, one function each.

# project_module(NAME DESCRIPTION [PRODUCT])
#
# What every DLL and program that is shipped has: a version resource, and in release builds its
# debug information in a file of its own beside it, NAME.debug.
function(project_module name description)
  set(DESCRIPTION ${description})
  set(PRODUCT Utils_Statics)
  if(ARGC GREATER 2)
    set(PRODUCT ${ARGV2})
  endif()
  set(FILE_NAME $<TARGET_FILE_NAME:${name}>)
  get_target_property(_type ${name} TYPE)
  set(FILE_TYPE VFT_DLL)
  if(_type STREQUAL "EXECUTABLE")
    set(FILE_TYPE VFT_APP)
  endif()
  set(_resource ${PROJECT_BINARY_DIR}/version/${name}.rc)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/version.rc.in ${_resource}.in @ONLY)
  file(GENERATE OUTPUT ${_resource} INPUT ${_resource}.in)
  target_sources(${name} PRIVATE ${_resource})
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
  if(NOT UTILS_STATICS_CHECKED)
    target_compile_options(${name} PRIVATE -g)
    add_custom_command(TARGET ${name} POST_BUILD
      COMMAND ${PROJECT_SOURCE_DIR}/tools/split-debug ${CMAKE_OBJCOPY} $<TARGET_FILE:${name}>
      VERBATIM)
    install(FILES $<TARGET_FILE:${name}>.debug DESTINATION ${CMAKE_INSTALL_BINDIR}
      COMPONENT Debug)
  endif()
endfunction()

# project_library(NAME DESCRIPTION text SOURCES... [LINK targets...] [PRIVATE_LINK targets...])
# A DLL with public headers in include/ below its folder. Its sources see NAME_EXPORTS defined (the
# export header of each library reads it), and nothing is exported that is not marked.
function(project_library name)
  cmake_parse_arguments(arg "" "DESCRIPTION" "SOURCES;LINK;PRIVATE_LINK" ${ARGN})
  add_library(${name} SHARED ${arg_SOURCES})
  target_include_directories(${name} PUBLIC
    $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  target_compile_definitions(${name} PUBLIC UNICODE _UNICODE)
  target_compile_features(${name} PUBLIC cxx_std_20)   # of the headers too
  target_link_libraries(${name} PUBLIC ${arg_LINK} PRIVATE
    $<BUILD_INTERFACE:project_settings> $<BUILD_INTERFACE:base> ${arg_PRIVATE_LINK})
  target_link_options(${name} PRIVATE -Wl,--exclude-all-symbols)
  set_target_properties(${name} PROPERTIES
    PREFIX "" IMPORT_PREFIX "lib" DEFINE_SYMBOL ${name}_EXPORTS)
  project_module(${name} ${arg_DESCRIPTION})
  use_precompiled(${name} precompiled_module)
  if(UTILS_STATICS_CHECKED)
    target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:guardheap>)
  endif()
  set_property(GLOBAL APPEND PROPERTY project_libraries ${name})
endfunction()

# project_host(NAME [LINK targets...]) The second set of headers of a library, in host/ below its
# folder: for the program that hosts the libraries, for the libraries beside it and for tests, which
# link NAME_host. The package has them as Utils_Statics::NAME_host.
function(project_host name)
  cmake_parse_arguments(arg "" "" "LINK" ${ARGN})
  target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/host)
  add_library(${name}_host INTERFACE)
  target_include_directories(${name}_host INTERFACE
    $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/host>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/host>)
  target_link_libraries(${name}_host INTERFACE ${name} ${arg_LINK})
  set_property(GLOBAL APPEND PROPERTY project_hosts ${name})
endfunction()

# project_test(NAME SOURCES... [LINK targets...] [DATA VAR=value...] [SERIAL])
# A GoogleTest program, run by CTest through tools/wine. The closing line is asked for, because Wine
# can end with status 0 without having run a program. SERIAL tests use what the whole session shares
# (cursor, focus, profile keys).
function(project_test name)
  cmake_parse_arguments(arg "SERIAL" "TIMEOUT" "SOURCES;LINK;ENVIRONMENT" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE project_settings base test_support GTest::gtest ${arg_LINK})
  # Tests are compiled far more often than they are waited for.
  target_compile_options(${name} PRIVATE -O1)
  use_precompiled(${name} precompiled_test)
  if(UTILS_STATICS_CHECKED)
    target_link_libraries(${name} PRIVATE guardheap)
  endif()
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 300)
  endif()
  add_test(NAME ${name}
    COMMAND ${PROJECT_SOURCE_DIR}/tools/wine --arch ${UTILS_STATICS_ARCH}
      --closing-line "^\\[  PASSED  \\]" $<TARGET_FILE:${name}>)
  set_tests_properties(${name} PROPERTIES
    TIMEOUT ${arg_TIMEOUT}
    ENVIRONMENT "${arg_ENVIRONMENT}")
  if(arg_SERIAL)
    set_tests_properties(${name} PROPERTIES RESOURCE_LOCK session)
  endif()
endfunction()

# project_benchmark(NAME SOURCES... [LINK targets...])
function(project_benchmark name)
  cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE
    project_settings base benchmark::benchmark benchmark_peers ${arg_LINK})
endfunction()
