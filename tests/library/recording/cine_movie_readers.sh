#!/usr/bin/env bash
# Has the library's movies read by ffprobe and ffmpeg: an uncompressed one must come back bit for bit, one through the
# Motion-JPEG codec within the error of JPEG.
# usage: cine_movie_readers.sh RUNNER ARCH CINE_STORE_AVI_TEST.exe
set -euo pipefail
runner=$1 arch=$2 program=$3
for tool in ffprobe ffmpeg; do
  command -v "$tool" >/dev/null || { echo "SKIPPED: $tool is missing; run tools/setup"; exit 77; }
done

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
MOVIE_FOLDER="Z:${folder//\//\\}" "$runner" --arch "$arch" --closing-line '^\[  PASSED  \] 1 test' \
  "$program" --gtest_filter='*WritesMoviesForOtherReaders' >"$folder/log" || { cat "$folder/log"; exit 1; }

frames=(-f rawvideo -pixel_format bgr0 -video_size 64x48 -framerate 30 -i "$folder/frames.bgr0")
for movie in Uncompressed MJPG; do
  file=$folder/$movie.avi
  found=$(ffprobe -v error -count_frames -select_streams v:0 -of csv=p=0 \
    -show_entries stream=width,height,avg_frame_rate,nb_read_frames "$file")
  worst=$(ffmpeg -hide_banner -nostats -i "$file" "${frames[@]}" \
    -lavfi '[0]format=bgr24[a];[1]format=bgr24[b];[a][b]psnr' -f null - 2>&1 | grep -o 'min:[0-9.inf]*')
  echo "$movie: $found, worst frame $worst dB"
  [ "$found" = 64,48,30/1,25 ] || { echo "expected 64,48,30/1,25"; exit 1; }
  case $movie in
    Uncompressed) [ "$worst" = min:inf ] || { echo "every bit must come back"; exit 1; } ;;
    *) awk -v worst="${worst#min:}" 'BEGIN { exit worst > 36 ? 0 : 1 }' || { echo "must be closer than 36 dB"; exit 1; } ;;
  esac
done
