# Read by CPack before it begins: gives all files of the archives one time, that of
# SOURCE_DATE_EPOCH or else of the last commit. An archive has it as the local time, so the zone is
# fixed, too.
if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(COMMAND git -C ${CPACK_PROJECT_SOURCES} log -1 --format=%ct
    OUTPUT_VARIABLE _time OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  if(NOT _time)
    set(_time 315532800)   # sources without a history: 1980, the first year that archives know
  endif()
  set(ENV{SOURCE_DATE_EPOCH} ${_time})
endif()
set(ENV{TZ} UTC0)
