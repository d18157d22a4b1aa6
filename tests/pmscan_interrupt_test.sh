#!/bin/sh
# Ctrl+C in the middle of a scan: the scan is cancelled, and the lines that came are kept.
#
#   pmscan_interrupt_test.sh WINE PMSCAN    the commands that run Windows programs, and pmscan.exe
set -eu
wine=$1
pmscan=$2
folder=$(mktemp -d)
cd "$folder"

fail() {
  echo "$1; this was said:" >&2
  cat output.txt errors.txt >&2
  rm -r "$folder"
  exit 1
}

# A coarse picture on the bed is quickly there, and a fine scan of it takes its time.
"$wine" "$pmscan" scan -o bed.png --mode grey --resolution 50 >output.txt 2>errors.txt
"$wine" "$pmscan" scan -o page.bmp --mode grey --resolution 1200 --original bed.png \
  --progress json >output.txt 2>errors.txt &
scan=$!
until grep -q '"lines"' errors.txt; do
  kill -0 "$scan" 2>/dev/null || fail "the scan ended before a line came"
  sleep 0.1
done
kill -INT "$scan"
code=0
wait "$scan" || code=$?

[ "$code" = 130 ] || fail "the exit code is $code, not 130"
lines=$(sed -n 's/^File .* \([0-9]*\) of 14040 lines,.*/\1/p' output.txt)
[ -n "$lines" ] || fail "the report tells no lines"
# The height stands at byte 22 of a bitmap file.
height=$(od -A n -t u4 -j 22 -N 4 page.bmp | tr -d ' ')
[ "$height" = "$lines" ] || fail "the picture has $height lines, not $lines"
[ ! -e page.bmp.part ] || fail "page.bmp.part was left behind"
rm -r "$folder"
