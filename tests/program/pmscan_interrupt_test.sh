#!/bin/sh
# Ctrl+C in the middle of a page from the feeder: the scan is cancelled, the paper is ejected, and
# the lines that came are kept.
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
  --device sim:extended:QM2500 --source feeder --capture page.capture --progress json \
  >output.txt 2>errors.txt &
scan=$!
until grep -q '"lines"' errors.txt; do
  kill -0 "$scan" 2>/dev/null || fail "the scan ended before a line came"
  sleep 0.1
done
kill -INT "$scan"
code=0
wait "$scan" || code=$?

[ "$code" = 130 ] || fail "the exit code is $code, not 130"
lines=$(sed -n 's/^File .* \([0-9]*\) of 16800 lines,.*/\1/p' output.txt)
[ -n "$lines" ] || fail "the report tells no lines"
# The height stands at byte 22 of a bitmap file.
height=$(od -A n -t u4 -j 22 -N 4 page.bmp | tr -d ' ')
[ "$height" = "$lines" ] || fail "the picture has $height lines, not $lines"
[ ! -e page.bmp.part ] || fail "page.bmp.part was left behind"
# Behind the last block: CAN, and FF for the paper.
sent=$(sed -n '/^call PMAbortScan/,/^return/s/^ *write 1 : \(..\).*/\1/p' page.capture | tr '\n' ' ')
[ "$sent" = "18 0C " ] || fail "the abort sent $sent"
rm -r "$folder"
