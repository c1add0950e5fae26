# Shared by the commands that build. Sourced after lib.sh, never run.

# check_checkout: ends with one sentence when this user cannot write where the commands do.
check_checkout() {
  local folder
  for folder in "$top" "$top/build" "$top/out"; do
    [ ! -e "$folder" ] || [ -w "$folder" ] ||
      die "cannot write to $folder; copy the checkout to a folder of yours, and run it there"
  done
}

# build_preset PRESET [TARGET]: configures and builds. With a target the tests are not configured,
# so that what only they need may be missing.
build_preset() {
  local log=$top/build/$1-build.log
  step "building $1"
  mkdir -p "$top/build"
  drop_foreign_folder "$1"
  configure_preset "$@"
  export NINJA_STATUS="[%f/%t %es] "
  cmake --build --preset "$1" ${2:+--target "$2"} 2>&1 | tee "$log" | show_progress ||
    die "building $1 failed; the whole log is $log. A further run goes on where this one stopped"
}

# drop_foreign_folder PRESET: CMake refuses a build folder that has come with a moved or copied
# checkout.
drop_foreign_folder() {
  local folder=$top/build/$1 home
  home=$(cached "$1" CMAKE_HOME_DIRECTORY)
  [ -n "$home" ] && ! [ "$home" -ef "$top" ] || return 0
  note "==> build/$1 was made in $home and is made anew"
  rm -rf "$folder"
}

# cached PRESET NAME: a value in the cache of the build folder; nothing when there is none.
cached() { sed -n "s/^$2:[A-Z]*=//p" "$top/build/$1/CMakeCache.txt" 2>/dev/null || true; }

configure_preset() { # configure_preset PRESET [TARGET]
  local log=$top/build/$1-configure.log options=()
  # A folder that has the tests keeps them: CMake deletes what is no longer part of a build.
  if [ -n "${2:-}" ] && ! { [ "$(cached "$1" UTILS_STATICS_TESTS)" = ON ] && is_built "$1" googletest; }; then
    options=(-D UTILS_STATICS_TESTS=OFF -D UTILS_STATICS_BENCHMARKS=OFF)
  fi
  cmake --preset "$1" "${options[@]}" >"$log" 2>&1 && return
  tail -n 15 "$log" >&2
  die "configuring $1 failed; the whole log is $log"
}

# show_progress: passes the builder's lines on. On a terminal one line of progress replaces the one
# before it, as the builder itself does there.
show_progress() {
  [ -t 1 ] || { cat; return; }
  local line width open=
  width=$(tput cols 2>/dev/null || echo 80)
  while IFS= read -r line; do
    if [[ $line =~ ^\[[0-9]+/[0-9]+ ]]; then
      printf '\r\033[K%s' "${line:0:width-1}"
      open=yes
    else
      printf '%s%s\n' "${open:+$'\n'}" "$line"
      open=
    fi
  done
  [ -z "$open" ] || echo
}
