# The folder of what tools/setup made or fetched, in _cache.
if(DEFINED ENV{UTILS_STATICS_CACHE})
  set(_cache $ENV{UTILS_STATICS_CACHE})
elseif(DEFINED ENV{XDG_CACHE_HOME})
  set(_cache $ENV{XDG_CACHE_HOME}/utils-statics)
else()
  set(_cache $ENV{HOME}/.cache/utils-statics)
endif()
