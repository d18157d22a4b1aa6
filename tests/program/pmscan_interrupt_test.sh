#!/bin/sh
# Ctrl+C: the scan ends whatever it waits for, and what came is in a picture.
#
#   pmscan_interrupt_test.sh RUN PMSCAN [STI]   the command that runs a program, pmscan, and on
#                                               Windows the one beside a stand-in for the system's
#                                               service
set -eu
run=$1
pmscan=$2
sti=${3-}
folder=$(mktemp -d)
cd "$folder"

fail() {
  echo "$1; this was said:" >&2
  cat output.txt errors.txt >&2
  rm -r "$folder"
  exit 1
}

# await FILE TEXT: waits until the text is in the file; the scan has to go on meanwhile.
await() {
  until grep -q -e "$2" "$1"; do
    kill -0 "$scan" 2>/dev/null || fail "the scan ended before there was $2"
    sleep 0.02
  done
}

# interrupt FILE TEXT PROGRAM ARGUMENTS...: runs the program, sends Ctrl+C once the text is in the
# file, and waits until it ends, which has to be with exit code 130.
interrupt() {
  file=$1
  text=$2
  shift 2
  : >"$file"
  "$run" "$@" >output.txt 2>errors.txt &
  scan=$!
  await "$file" "$text"
  kill -INT "$scan"
  code=0
  wait "$scan" || code=$?
  [ "$code" = 130 ] || fail "the exit code is $code, not 130"
}

# kept FILE HEIGHT OFFSET FORMAT: the report tells less lines than the page has, and the picture has
# as many, by the number of that format at that offset.
kept() {
  lines=$(sed -n "s/^File .* \([0-9]*\) of $2 lines,.*/\1/p" output.txt)
  [ -n "$lines" ] || fail "the report tells no lines"
  # shellcheck disable=SC2086 # The format is a list of words.
  height=$(od -A n $4 -j "$3" -N 4 "$1" | tr -d ' ')
  [ "$height" = "$lines" ] || fail "the picture has $height lines, not $lines"
  [ ! -e "$1.part" ] || fail "$1.part was left behind"
}

# A coarse picture on the bed is quickly there, and a fine scan of it takes its time.
"$run" "$pmscan" scan -o bed.png --mode grey --resolution 50 >output.txt 2>errors.txt

echo "In a page from the feeder: the scan is cancelled, and the paper is ejected."
interrupt errors.txt '"lines"' "$pmscan" scan -o page.bmp --mode grey --resolution 1200 \
  --original bed.png --device sim:extended:QM2500 --source feeder --capture page.capture \
  --progress json
kept page.bmp 16800 22 "-t u4"
# Behind the last block: CAN, and FF for the paper.
sent=$(sed -n '/^call PMAbortScan/,/^return/s/^ *write 1 : \(..\).*/\1/p' page.capture | tr '\n' ' ')
[ "$sent" = "18 0C " ] || fail "the abort sent $sent"

echo "In the widest and deepest picture."
interrupt errors.txt '"lines"' "$pmscan" scan -o deep.png --mode deep-colour --resolution 1200 \
  --original bed.png --area 0px,0px,5000px,14000px --progress json
kept deep.png 14000 20 "-t u4 --endian=big"

echo "While the page is drawn, or at the beginning of the scan."
interrupt errors.txt "Preparing the scan" "$pmscan" scan -o soon.png --resolution 600 --progress bar
grep -q "the scan was interrupted" errors.txt || fail "nobody said that it was interrupted"

echo "Before the first line: the scanner warms up."
interrupt errors.txt "warming up" "$pmscan" scan -o warm.png --device sim:extended+warm-up=5000 \
  --warm-up 3600 --original bed.png
[ ! -e warm.png ] || fail "there is a picture of nothing"
[ ! -e warm.png.part ] || fail "warm.png.part was left behind"

echo "Where a picture goes that nobody takes: the second Ctrl+C ends what the first one cannot."
mkfifo full
exec 3<>full
: >errors.txt
"$run" "$pmscan" scan -o - --format bmp --mode grey --resolution 100 --original bed.png \
  --progress json >full 2>errors.txt &
scan=$!
await errors.txt '"lines": 1170'
kill -INT "$scan"
await errors.txt "Ctrl+C again ends at once"
# Sooner it would be the same one.
sleep 0.5
kill -INT "$scan"
code=0
wait "$scan" || code=$?
[ "$code" = 130 ] || fail "the exit code is $code, not 130"
exec 3>&-

if [ -z "$sti" ]; then
  rm -r "$folder"
  exit 0
fi
export WINEDLLOVERRIDES=sti=n FAKE_STI_LOG=log.txt

echo "In a page of a device that does not answer any more."
export FAKE_STI_FAULT=stuck
interrupt log.txt stuck "$sti" scan -o stuck.bmp --mode grey --device "sti:Desk scanner"
kept stuck.bmp 3510 22 "-t u4"
grep -q "The scanner does not answer" errors.txt || fail "nobody said why"

echo "Before the first line of a device that never answers."
export FAKE_STI_FAULT=silent
interrupt log.txt stuck "$sti" scan -o silent.bmp --mode grey --device "sti:Desk scanner"
[ ! -e silent.bmp ] || fail "there is a picture of nothing"
rm -r "$folder"
