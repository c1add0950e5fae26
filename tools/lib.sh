# Shared by the shell tools: where things are, and how they speak. Sourced, never run.

top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)

# What is slow to make and the same for every checkout of a user lives here.
cache=${UTILS_STATICS_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/utils-statics}

# A folder below the cache carries its version in its name; raising it makes every machine rebuild
# that folder.
deps_version=2   # cmake/Dependencies.cmake reads it here

say()  { printf '%s\n' "$*"; }
step() { printf '==> %s\n' "$*"; }
die()  { printf '%s: %s\n' "${0##*/}" "$*" >&2; exit 1; }

# misuse WHAT: for a wrong option; its line stands alone and the status is 2.
misuse() { printf '%s: %s; see --help\n' "${0##*/}" "$*" >&2; exit 2; }

# The Wine of x86 programs: 8 is that of this Debian release, 10 that of the next. Every tool that
# a tool starts inherits the choice.
export UTILS_STATICS_WINE=${UTILS_STATICS_WINE:-8}

choose_wine() { # choose_wine VERSION: for the option --wine
  case ${1:-} in
    8|10) UTILS_STATICS_WINE=$1 ;;
    *) misuse "--wine takes 8 or 10" ;;
  esac
}

# The folder of the 32-bit root with the chosen Wine.
wine_root() {
  case $UTILS_STATICS_WINE in
    8) say "$cache/wine-i386-2" ;;
    10) say "$cache/wine10-i386-1" ;;
    *) die "UTILS_STATICS_WINE is '$UTILS_STATICS_WINE' and has to be 8 or 10" ;;
  esac
}

# triplet_of ARCH: the compiler's name for an architecture.
triplet_of() {
  case $1 in
    x86) say i686-w64-mingw32 ;;
    x64) say x86_64-w64-mingw32 ;;
    *) die "unknown architecture '$1' (x86 or x64)" ;;
  esac
}

# prefix_of ARCH: the prefix of the chosen Wine. Each Wine has one of its own for an architecture: a
# 64-bit Wine without its 32-bit half cannot share one, and a later Wine changes an earlier one's.
prefix_of() {
  case $UTILS_STATICS_WINE in
    8) say "$cache/wineprefix-$1-1" ;;
    *) say "$cache/wineprefix$UTILS_STATICS_WINE-$1-1" ;;
  esac
}

deps_of() { say "$cache/deps-$1-$deps_version"; }

# pe_machine FILE: x86 or x64, read from the program itself; fails for anything else.
pe_machine() {
  local offset machine
  [ "$(head -c 2 "$1" 2>/dev/null)" = MZ ] || return 1
  offset=$(od -An -tu4 -j60 -N4 "$1" | tr -d ' ')
  machine=$(od -An -tx2 -j$((offset + 4)) -N2 "$1" | tr -d ' ')
  case $machine in
    014c) say x86 ;;
    8664) say x64 ;;
    *) return 1 ;;
  esac
}

# start_screen: a virtual screen of our own, exported as DISPLAY; stop_screen ends it. One at a time for a user: the
# programs of a Wine prefix share one desktop, which cannot be on two screens.
screen_pid=
start_screen() {
  local pipe
  command -v Xvfb >/dev/null || die "Xvfb is missing; run tools/setup"
  exec 8>"$cache/screen.lock"
  flock -n 8 || { step "waiting for another run on this machine"; flock 8; }
  pipe=$(mktemp -u "${TMPDIR:-/tmp}/screen.XXXXXX")
  mkfifo "$pipe"
  Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$pipe" 8>&- >/dev/null 2>&1 &
  screen_pid=$!
  read -r -t 20 DISPLAY <"$pipe" || { rm -f "$pipe"; die "the virtual screen did not start within 20 seconds"; }
  rm -f "$pipe"
  export DISPLAY=:$DISPLAY
}

stop_screen() {
  local arch
  [ -n "$screen_pid" ] || return 0
  # Wine's desktop lives some seconds longer than the last program. It has to be gone before its screen is, or the next
  # program would find a desktop that cannot open windows.
  for arch in x86 x64; do
    WINEPREFIX=$(prefix_of "$arch") timeout 20 /usr/lib/wine/wineserver64 -w 8>&- 2>/dev/null || true
  done
  kill "$screen_pid" 2>/dev/null || true
  screen_pid=
  exec 8>&-
}

# build_preset PRESET: configures when needed and builds, showing the builder's progress.
build_preset() {
  local log=$top/build/$1-configure.log
  step "building $1"
  mkdir -p "$top/build"
  # Checkouts share compiled objects through the compiler cache, whatever folder they lie in.
  export CCACHE_BASEDIR=$top CCACHE_NOHASHDIR=1 NINJA_STATUS="[%f/%t %es] "
  cmake --preset "$1" >"$log" 2>&1 || { tail -n 15 "$log" >&2; die "configuring $1 failed; the whole log is $log"; }
  cmake --build --preset "$1" || die "building $1 failed"
}
