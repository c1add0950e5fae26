# Shared by the shell tools: where things are, and how they speak. Sourced, never run.

top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)

# What is slow to make and the same for every checkout of a user lives here. The environment has it
# for cmake/Dependencies.cmake.
cache=${UTILS_STATICS_CACHE:-${XDG_CACHE_HOME:-${HOME:+$HOME/.cache}}}
[ -z "$cache" ] || [ -n "${UTILS_STATICS_CACHE:-}" ] || cache=$cache/utils-statics
export UTILS_STATICS_CACHE=$cache

# A folder below the cache carries its version in its name; raising it makes every machine rebuild
# that folder.
deps_version=4   # cmake/Dependencies.cmake reads it here

say()  { printf '%s\n' "$*"; }
note() { printf '%s\n' "$*" >&2; }
die()  { printf '%s: %s\n' "${0##*/}" "$*" >&2; exit 1; }

# step WHAT: says what begins, which step of how many it is, and since when the command runs. Before
# its first step a command says with expect_steps how many there will be.
steps=0 step_number=0
expect_steps() { steps=$1; }
step() {
  local number='' since=''
  if [ "$steps" -gt 0 ]; then
    step_number=$((step_number + 1))
    number="${0##*/} $step_number/$steps: "
  fi
  [ "$SECONDS" -lt 1 ] || since=" (after $((SECONDS / 60)) min $((SECONDS % 60)) s)"
  say "==> $number$*$since"
}

# usage: prints what a tool says of itself in the comment at its top. A tool with options of its own
# replaces it.
usage() { sed -n '2,/^[^#]/s/^# \{0,1\}//p' "$0"; }

# no_arguments "$@": for a tool that takes none but --help.
no_arguments() {
  [ $# -gt 0 ] || return 0
  case $1 in
    --help|-h) usage; exit 0 ;;
    *) misuse "unknown argument '$1'" ;;
  esac
}

# misuse WHAT: for a wrong option; its line stands alone and the status is 2.
misuse() { printf '%s: %s; see --help\n' "${0##*/}" "$*" >&2; exit 2; }

# The Wine of x86 programs: 8 is that of this Debian release, 10 that of the next. Every tool that
# a tool starts inherits the choice.
export UTILS_STATICS_WINE=${UTILS_STATICS_WINE:-8}
case $UTILS_STATICS_WINE in
  8|10) ;;
  *) die "UTILS_STATICS_WINE is '$UTILS_STATICS_WINE' and has to be 8 or 10" ;;
esac

choose_arch() { # choose_arch ARCH: for the option --arch
  case $1 in
    x86|x64) arch=$1 ;;
    *) misuse "--arch takes x86 or x64" ;;
  esac
}
choose_wine() { # choose_wine VERSION: for the option --wine
  case $1 in
    8|10) UTILS_STATICS_WINE=$1 ;;
    *) misuse "--wine takes 8 or 10" ;;
  esac
}

# The folder of the 32-bit root with the chosen Wine.
wine_root() {
  case $UTILS_STATICS_WINE in
    8) say "$cache/wine-i386-3" ;;
    10) say "$cache/wine10-i386-2" ;;
  esac
}

# need_commands NAME...: ends with one sentence when the machine lacks one of them.
need_commands() {
  local name missing=()
  for name; do command -v "$name" >/dev/null || missing+=("$name"); done
  [ ${#missing[@]} = 0 ] ||
    die "missing on this machine: ${missing[*]} (tools/setup brings what Debian itself does not)"
}

# Ends with one sentence when the cache cannot be used; called once the options are understood.
check_cache() {
  [ -n "$cache" ] || die "HOME is not set; set it, or UTILS_STATICS_CACHE to a folder of yours"
  [[ $cache = /* ]] || die "the cache folder '$cache' has to be a full path, beginning with /"
  mkdir -p "$cache" 2>/dev/null && (: >>"$cache/setup.lock") 2>/dev/null ||
    die "cannot write to $cache; set UTILS_STATICS_CACHE to a folder of yours"
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
    8) say "$cache/wineprefix-$1-4" ;;
    *) say "$cache/wineprefix$UTILS_STATICS_WINE-$1-4" ;;
  esac
}

deps_of() { say "$cache/deps-$1-$deps_version"; }

# is_built ARCH NAME: whether a dependency is in that folder, whole.
is_built() { [ -f "$(deps_of "$1")/.built/$2" ]; }

# enter_root: leaves in `runner` what runs a program inside the root of the 32-bit Wine. Everything
# of the machine but its own programs and libraries is visible there under the same path.
enter_root() {
  local root folder
  root=$(wine_root)
  # /sys is where Wine looks up the processors.
  runner=(bwrap --bind "$root" / --proc /proc --dev-bind /dev /dev
    --ro-bind /sys /sys --ro-bind /etc/passwd /etc/passwd)
  for folder in /*; do
    case $folder in
      /bin|/boot|/dev|/etc|/lib*|/proc|/sbin|/sys|/usr|/var|/lost+found) ;;
      *) [ ! -d "$folder" ] || [ -L "$folder" ] || runner+=(--bind "$folder" "$folder") ;;
    esac
  done
}

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

# take_screen alone|beside: exports as DISPLAY a virtual screen that the user has to himself until
# this tool ends, as a whole run needs it, or beside other programs that are run by hand. A user has
# one at a time: the programs of a Wine prefix share one desktop, which cannot be on two screens.
take_screen() {
  local how=--exclusive
  [ "$1" = alone ] || how=--shared
  need_commands Xvfb flock setsid
  exec 8>>"$cache/screen.lock"
  if ! flock -w 1 "$how" 8; then
    local whom=''
    [ "$1" = alone ] || whom=", which has the screen to itself: $(cat "$cache/screen.user" || true)"
    note "==> waiting for another run on this machine$whom"
    flock "$how" 8
  fi
  [ "$1" != alone ] || say "${0##*/} in $top, process $$" >"$cache/screen.user"
  DISPLAY=$("$top/tools/screen" 8>&-) || exit
  export DISPLAY
}
