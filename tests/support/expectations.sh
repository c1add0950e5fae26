# Shared by the test scripts. Sourced, never run; `finish` ends a script.

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
failures=0

held() { printf '  ok      %s\n' "$*"; }
broken() { printf '  FAILED  %s\n' "$*"; failures=$((failures + 1)); }

# is WHAT EXPECTED FOUND
is() { if [ "$2" = "$3" ]; then held "$1"; else broken "$1: $3, expected $2"; fi; }

# check WHAT COMMAND...: the command succeeds.
check() {
  local what=$1 said; shift
  if said=$("$@" 2>&1); then held "$what"; else broken "$what: $said"; fi
}

# windows PATH: a path of this machine as the programs under Wine know it.
windows() { printf 'Z:%s' "${1//\//\\}"; }

# needs TOOL...: leaves the test out where a tool is missing.
needs() {
  local tool
  for tool; do
    command -v "$tool" >/dev/null || { echo "SKIPPED: $tool is missing; run tools/setup"; exit 77; }
  done
}

finish() { exit $((failures > 0)); }
