# The kinds of target this project has, one function each. SOURCES are patterns everywhere: a folder
# is the list of its sources. Drivers, tests and benchmarks link what the folder's variable
# project_link lists too; of an import library that nothing is called of, nothing is linked.

# project_sources(OUT PATTERNS...): the files of this folder that the patterns name, absolute paths
# included.
function(project_sources out)
  file(GLOB _sources CONFIGURE_DEPENDS ${ARGN})
  if(NOT _sources)
    message(FATAL_ERROR "no source is named by: ${ARGN}")
  endif()
  set(${out} ${_sources} PARENT_SCOPE)
endfunction()

# project_guard(NAME): has a program or library of a checked build use the guarded heap.
function(project_guard name)
  if(UTILS_STATICS_CHECKED)
    target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:guardheap>)
  endif()
endfunction()

# project_module(NAME DESCRIPTION [PRODUCT])
#
# Every DLL and program that is shipped has a version resource, the same bytes wherever and whenever
# it is built, and in release builds its debug information in a file of its own beside it,
# NAME.debug.
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
  target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:shipped_settings>)
  if(NOT UTILS_STATICS_CHECKED)
    add_custom_command(TARGET ${name} POST_BUILD
      COMMAND ${PROJECT_SOURCE_DIR}/tools/split-debug ${CMAKE_OBJCOPY} $<TARGET_FILE:${name}>
      VERBATIM)
    install(FILES $<TARGET_FILE:${name}>.debug DESTINATION ${CMAKE_INSTALL_BINDIR}
      COMPONENT Debug)
  endif()
endfunction()

# project_library(NAME DESCRIPTION text [SOURCES patterns...] [LINK targets...]
#   [PRIVATE_LINK targets...])
# A DLL of all sources of its folder, with public headers in include/ below it. Its sources see
# NAME_EXPORTS defined (the export header of each library reads it), and nothing is exported that is
# not marked.
function(project_library name)
  cmake_parse_arguments(arg "" "DESCRIPTION" "SOURCES;LINK;PRIVATE_LINK" ${ARGN})
  project_sources(_sources *.cpp ${arg_SOURCES})
  add_library(${name} SHARED ${_sources})
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
  project_guard(${name})
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

# project_program(NAME DESCRIPTION text SOURCES patterns... [LINK targets...] [WIN32] [STATIC])
# A program that is shipped. A WIN32 one opens no console window; a STATIC one has all run-time
# libraries linked in.
function(project_program name)
  cmake_parse_arguments(arg "WIN32;STATIC" "DESCRIPTION" "SOURCES;LINK" ${ARGN})
  project_sources(_sources ${arg_SOURCES})
  add_executable(${name} ${_sources})
  target_link_libraries(${name} PRIVATE project_settings base ${arg_LINK})
  target_link_options(${name} PRIVATE -municode $<$<BOOL:${arg_STATIC}>:-static>)
  set_target_properties(${name} PROPERTIES WIN32_EXECUTABLE ${arg_WIN32})
  project_module(${name} ${arg_DESCRIPTION})
endfunction()

# project_codec(NAME [SOURCES patterns...] [LINK targets...])
# A codec for Video for Windows. Everything is linked in: a codec is loaded by its full path into
# programs that have none of our run-time libraries beside them.
function(project_codec name)
  cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
  project_loaded_module(${name} STATIC SOURCES ${arg_SOURCES} LINK ${arg_LINK} winmm)
  # Video for Windows looks for "DriverProc" without the decoration of stdcall.
  target_link_options(${name} PRIVATE -Wl,--exclude-all-symbols -Wl,--kill-at)
endfunction()

# project_loaded_module(NAME SOURCES patterns... [LINK targets...] [STATIC])
# A DLL without a description or a guarded heap, which programs load by its name. A STATIC one has
# all run-time libraries linked in, so that it loads from anywhere.
function(project_loaded_module name)
  cmake_parse_arguments(arg "STATIC" "" "SOURCES;LINK" ${ARGN})
  project_sources(_sources ${arg_SOURCES})
  add_library(${name} SHARED ${_sources})
  target_link_libraries(${name} PRIVATE project_settings ${arg_LINK})
  set_target_properties(${name} PROPERTIES PREFIX "" LINKER_LANGUAGE CXX)
  if(arg_STATIC)
    target_link_options(${name} PRIVATE -static)
  endif()
endfunction()

# project_driver(NAME [SOURCES patterns...] [LINK targets...])
# A program with a wide main function that a script or a test runs. Without SOURCES it is NAME.cpp.
function(project_driver name)
  cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
  if(NOT arg_SOURCES)
    set(arg_SOURCES ${name}.cpp)
  endif()
  project_sources(_sources ${arg_SOURCES})
  add_executable(${name} ${_sources})
  target_link_libraries(${name} PRIVATE project_settings base ${project_link} ${arg_LINK})
  target_link_options(${name} PRIVATE -municode)
  project_guard(${name})
endfunction()

# project_test_properties(NAME property value...): gives a test these properties, and then those
# that the caller of its function asks for.
macro(project_test_properties name)
  set_tests_properties(${name} PROPERTIES ${ARGN} ${arg_PROPERTIES})
  if(arg_TIMEOUT)
    set_tests_properties(${name} PROPERTIES TIMEOUT ${arg_TIMEOUT})
  endif()
  if(arg_SERIAL)
    set_tests_properties(${name} PROPERTIES RESOURCE_LOCK session)
  endif()
endmacro()

# project_test(NAMES... [SOURCES patterns...] [LINK targets...] [NEEDS targets...]
#   [DEFINE definitions...] [SERIAL] [TIMEOUT seconds] [PROPERTIES property value...])
# GoogleTest programs, run by CTest through tools/wine; without SOURCES, each is NAME.cpp. The
# closing line is asked for, because Wine can end with status 0 without having run a program. NEEDS
# are built before. SERIAL tests use what the whole session shares (cursor, focus, profile keys).
# Tests whose programs crash lock `crashes` instead, or too: the settings of the crash handler.
function(project_test)
  cmake_parse_arguments(arg "SERIAL" "TIMEOUT" "SOURCES;LINK;NEEDS;DEFINE;PROPERTIES" ${ARGN})
  foreach(name IN LISTS arg_UNPARSED_ARGUMENTS)
    if(arg_SOURCES)
      project_sources(_sources ${arg_SOURCES})
    else()
      project_sources(_sources ${name}.cpp)
    endif()
    add_executable(${name} ${_sources})
    target_link_libraries(${name} PRIVATE
      project_settings base test_support GTest::gtest ${project_link} ${arg_LINK})
    # Tests are compiled far more often than they are waited for.
    target_compile_options(${name} PRIVATE -O1)
    target_compile_definitions(${name} PRIVATE ${arg_DEFINE})
    use_precompiled(${name} precompiled_test)
    project_guard(${name})
    if("${_sources}" MATCHES "/Utils_Statics/[a-z]+/[^/;]+\\.cpp")
      project_count_lines(${name})   # it has sources of the library in itself
    endif()
    if(arg_NEEDS)
      add_dependencies(${name} ${arg_NEEDS})
    endif()
    add_test(NAME ${name}
      COMMAND ${PROJECT_SOURCE_DIR}/tools/wine --arch ${UTILS_STATICS_ARCH}
        --closing-line "^\\[  PASSED  \\]" $<TARGET_FILE:${name}>)
    project_test_properties(${name} TIMEOUT 300)
  endforeach()
endfunction()

# project_script_test(NAME SCRIPT ARGS... [SERIAL] [TIMEOUT seconds]
#   [PROPERTIES property value...])
# A script that runs programs: its arguments are tools/wine and ARGS. It ends with status 77 where a
# tool is missing, which skips the test. SERIAL is as for project_test.
function(project_script_test name script)
  cmake_parse_arguments(arg "SERIAL" "TIMEOUT" "PROPERTIES" ${ARGN})
  cmake_path(ABSOLUTE_PATH script BASE_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR})
  add_test(NAME ${name}
    COMMAND ${script} ${PROJECT_SOURCE_DIR}/tools/wine ${arg_UNPARSED_ARGUMENTS})
  project_test_properties(${name} SKIP_RETURN_CODE 77)
endfunction()

# project_benchmark(NAMES... [SOURCES patterns...] [LINK targets...] [NEEDS targets...]
#   [DEFINE definitions...])
# Programs of Google Benchmark, each NAME.cpp and SOURCES.
function(project_benchmark)
  cmake_parse_arguments(arg "" "" "SOURCES;LINK;NEEDS;DEFINE" ${ARGN})
  foreach(name IN LISTS arg_UNPARSED_ARGUMENTS)
    project_sources(_sources ${name}.cpp ${arg_SOURCES})
    add_executable(${name} ${_sources})
    target_link_libraries(${name} PRIVATE
      project_settings base benchmark::benchmark benchmark_peers ${project_link} ${arg_LINK})
    target_compile_definitions(${name} PRIVATE ${arg_DEFINE})
    if(arg_NEEDS)
      add_dependencies(${name} ${arg_NEEDS})
    endif()
  endforeach()
endfunction()
