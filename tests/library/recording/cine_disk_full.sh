#!/usr/bin/env bash
# Runs the tests of a disk that fills up in the middle of a frame, with a real limit on the size of files.
# usage: cine_disk_full.sh RUNNER ARCH CINE_STORE_TEST.exe CINE_STORE_AVI_TEST.exe
set -euo pipefail
runner=$1 arch=$2 program=$3 movie_program=$4
limit_kib=64

# Wine's server must not come under the limit, or it could not save its registry. So a first program, running until its
# input ends, starts the server (or keeps the one that runs) outside of it.
coproc keeper { "$runner" --arch "$arch" "$program" --gtest_also_run_disabled_tests \
  --gtest_filter=CineStoreChild.DISABLED_RunsUntilItsInputEnds; }
while read -r -t 60 line <&"${keeper[0]}"; do [[ $line == *"keeper runs"* ]] && break; done
[[ ${line:-} == *"keeper runs"* ]] || { echo "the keeper program did not start"; exit 1; }

status=0
(
  trap '' XFSZ   # the write that crosses the limit fails, instead of ending the process
  ulimit -f "$limit_kib"
  export CINE_FILE_LIMIT=$((limit_kib * 1024))
  for test in "$program" "$movie_program"; do
    "$runner" --arch "$arch" --closing-line '^\[  PASSED  \] 1 test' "$test" --gtest_filter='*.DiskFull*'
  done
) || status=$?

eval "exec ${keeper[1]}>&-"
wait "$keeper_PID" 2>/dev/null || true
exit "$status"
