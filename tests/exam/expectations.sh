# Shared by the scripts that run the sample application. Sourced, never run. Their arguments are
# RUNNER EXAM and what else they need.
source "$(dirname "${BASH_SOURCE[0]}")/../support/expectations.sh"
runner=$1 exam=$2
sample=$(dirname "$exam")/sample/images/linear.cine

# expect STATUS PATTERN ARGS...: how the application ends, and a line that it prints. Leaves what it
# printed in `output`.
expect() {
  local status=$1 pattern=$2 actual; shift 2
  output=$("$runner" "$exam" "$@" 2>&1); actual=$?
  if [ "$actual" = "$status" ] && grep -Eq -- "$pattern" <<<"$output"; then
    held "exam $*"
  else
    broken "exam $*: status $actual, expected $status and a line matching '$pattern'; got: $output"
  fi
}
