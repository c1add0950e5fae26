# Shared by the scripts that test the shell tools. Sourced, never run.

top=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd -P)
source "$top/tests/support/expectations.sh"

# Nothing that a test starts may set anything up or build: these end every attempt, and say so.
mkdir "$folder/forbidden"
for name in apt-get cmake ctest debootstrap; do
  printf '#!/bin/sh\necho "%s was called" >&2\nexit 99\n' "$name" >"$folder/forbidden/$name"
done
chmod +x "$folder"/forbidden/*

# run COMMAND...: leaves its status in `status` and what it printed in $folder/out and $folder/err.
run() {
  status=0
  PATH=$folder/forbidden:$PATH timeout 60 "$@" >"$folder/out" 2>"$folder/err" </dev/null ||
    status=$?
}

# refuses STATUS PATTERN COMMAND...: one line on stderr and nothing on stdout.
refuses() {
  local expected=$1 pattern=$2 what; shift 2
  what="$(basename "$1") ${*:2}"
  run "$@"
  if [ "$status" = "$expected" ] && [ ! -s "$folder/out" ] &&
     [ "$(wc -l <"$folder/err")" = 1 ] && grep -Eq -- "$pattern" "$folder/err"; then
    held "$what: $(cat "$folder/err")"
  else
    broken "$what: status $status, expected $expected and one line matching '$pattern'; got:"
    sed 's/^/            /' "$folder/out" "$folder/err"
  fi
}

# appears PATTERN FILE SECONDS: waits for a line.
appears() {
  local tries
  for ((tries = 0; tries < $3 * 20; ++tries)); do
    ! grep -Eqs -- "$1" "$2" || return 0
    sleep 0.05
  done
  return 1
}
