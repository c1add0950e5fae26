# The coverage build: counters in the library tell which of its lines and branches have run.
# tools/coverage builds it, runs the library's tests and reads the counters.
option(UTILS_STATICS_COVERAGE "Count which lines and branches of the library run" OFF)

# project_count_lines(NAME [SOURCES...]): has a target count, where that is asked for, with these
# sources besides. Counters stand for lines only where the compiler does not optimise. The compiler
# cache does not know where they are written.
function(project_count_lines name)
  if(UTILS_STATICS_COVERAGE)
    target_sources(${name} PRIVATE ${ARGN})
    target_compile_options(${name} PRIVATE
      $<$<COMPILE_LANGUAGE:CXX>:--coverage;-O0;-fprofile-abs-path;-fprofile-update=prefer-atomic>)
    target_link_options(${name} PRIVATE --coverage)
    set_target_properties(${name} PROPERTIES
      CXX_COMPILER_LAUNCHER "" DISABLE_PRECOMPILE_HEADERS ON)
  endif()
endfunction()
