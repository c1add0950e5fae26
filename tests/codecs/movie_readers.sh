#!/usr/bin/env bash
# Has a movie written with the codec read by ffprobe and ffmpeg, and compares their frames with
# those that went in. usage: movie_readers.sh RUNNER ARCH MJPG_CODEC_TEST.exe
set -euo pipefail
runner=$1 arch=$2 program=$3
for tool in ffprobe ffmpeg; do
  command -v "$tool" >/dev/null || { echo "SKIPPED: $tool is missing; run tools/setup"; exit 77; }
done

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
MOVIE_FOLDER="Z:${folder//\//\\}" "$runner" --arch "$arch" --closing-line '^\[  PASSED  \] 1 test' \
  "$program" --gtest_filter='*WritesAMovieForOtherReaders' >"$folder/log" || { cat "$folder/log"; exit 1; }

movie=$folder/movie.avi
found=$(ffprobe -v error -count_frames -select_streams v:0 -of csv=p=0 \
  -show_entries stream=codec_name,width,height,pix_fmt,avg_frame_rate,nb_read_frames "$movie")
echo "ffprobe: $found"
[ "$found" = mjpeg,320,200,yuvj420p,25/1,20 ] || { echo "expected mjpeg,320,200,yuvj420p,25/1,20"; exit 1; }

# A strict decoder must have nothing to say.
complaints=$(ffmpeg -v warning -xerror -err_detect explode -i "$movie" -f null - 2>&1)
[ -z "$complaints" ] || { echo "ffmpeg: $complaints"; exit 1; }

result=$(ffmpeg -hide_banner -nostats -i "$movie" -f rawvideo -pixel_format bgr0 -video_size 320x200 -framerate 25 \
  -i "$folder/frames.bgr0" -lavfi '[0]format=bgr24[a];[1]format=bgr24[b];[a][b]psnr' -f null - 2>&1 | grep -o 'min:[0-9.inf]*')
echo "ffmpeg: worst frame $result dB"
awk -v worst="${result#min:}" 'BEGIN { exit worst == "inf" || worst > 36 ? 0 : 1 }' ||
  { echo "the worst frame must be closer than 36 dB"; exit 1; }
