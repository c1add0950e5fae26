#!/bin/sh
# umbrella_check.sh FOLDER: succeeds when FOLDER/Utils_Statics.h includes every other public header.
status=0
for header in "$1"/*.h; do
  name=${header##*/}
  case $name in Utils_Statics.h|export.h) continue ;; esac
  grep -q "#include <Utils_Statics/$name>" "$1/Utils_Statics.h" || { echo "Utils_Statics.h does not include $name"; status=1; }
done
exit $status
