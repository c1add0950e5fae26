#!/usr/bin/env bash
# Has the pictures that the library saves read by ImageMagick, and the library read pictures of
# ImageMagick's.
# usage: picture_readers.sh RUNNER ARCH PICTURE_FILES_TEST.exe
set -euo pipefail
runner=$1 arch=$2 program=$3
for tool in convert compare identify; do
  command -v "$tool" >/dev/null || { echo "SKIPPED: $tool is missing; run tools/setup"; exit 77; }
done

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
run() {
  PICTURE_FOLDER="Z:${folder//\//\\}" "$runner" --arch "$arch" --closing-line '^\[  PASSED  \] 1 test' \
    "$program" --gtest_filter="$1" >"$folder/log" || { cat "$folder/log"; exit 1; }
  ! grep -q SKIPPED "$folder/log" || { cat "$folder/log"; exit 1; }
}

run '*WritesPicturesForOtherReaders'
expected=(-size 64x48 -depth 8 "rgb:$folder/expected.rgb")
for format in bmp gif jpg png tif; do
  file=$folder/saved.$format
  kind=$(identify -format '%m %wx%h' "$file")
  convert "${expected[@]}" "$folder/expected.png"
  worst=$(compare -metric PAE "$folder/expected.png" "$file" null: 2>&1 | grep -o '^[0-9.]*' || true)
  mean=$(compare -metric RMSE "$folder/expected.png" "$file" null: 2>&1 | grep -o '^[0-9.]*' || true)
  echo "$format: $kind, largest difference $worst, mean $mean of 65535"
  case $format in
    bmp | png | tif) limit=0 ;;
    jpg) limit=2000 ;;
    gif) limit=4000 ;; # 256 colours
  esac
  case $format in
    bmp) name=BMP3 ;;
    jpg) name=JPEG ;;
    tif) name=TIFF ;;
    *) name=${format^^} ;;
  esac
  [ "$kind" = "$name 64x48" ] || { echo "not a picture of its format and size"; exit 1; }
  awk -v mean="$mean" -v limit="$limit" 'BEGIN { exit mean <= limit ? 0 : 1 }' || { echo "differs too much"; exit 1; }
done

picture=(-size 40x30 gradient:'rgb(250,10,40)-rgb(20,240,80)')
for format in bmp gif jpg png tif; do convert "${picture[@]}" "$folder/made.$format"; done
convert -size 32x32 xc:'rgba(255,0,0,1)' -fill 'rgba(0,0,255,1)' -draw 'rectangle 0,16 31,31' "$folder/made.ico"
run '*ReadsPicturesOfOtherWriters'
