#!/bin/sh
# static_constructors_check.sh OBJDUMP OBJECT...
# Succeeds when StaticObjects.cpp is the only source with objects that are constructed at load: their order is a promise
# to clients, and the linker orders those of different sources as it likes.
objdump=$1; shift
found= status=0
for object; do
  "$objdump" -h "$object" | grep -Eq '[[:space:]]\.(ctors|init_array)' || continue
  case $object in
    *StaticObjects.cpp.*) found=yes ;;
    *) echo "constructed at load, but not in StaticObjects.cpp: $object"; status=1 ;;
  esac
done
[ -n "$found" ] || { echo "StaticObjects.cpp constructs nothing: does this check still look for the right section?"; status=1; }
[ "$status" -ne 0 ] || echo "only StaticObjects.cpp constructs objects at load ($# objects seen)"
exit $status
