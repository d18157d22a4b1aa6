#!/bin/sh
# Standard output that takes a picture or a text, that does not take it, and that is closed.
#
#   pmscan_output_test.sh PMSCAN
#
# shellcheck disable=SC2086 # Several options are a list of words.
set -eu
pmscan=$1
folder=$(mktemp -d)
cd "$folder"
mkdir temporary
TMPDIR=$folder/temporary
export TMPDIR

fail() {
  echo "$1; this was said:" >&2
  cat errors.txt >&2
  rm -r "$folder"
  exit 1
}

# run CODE COMMAND...: runs it; its exit code has to be this one.
run() {
  expected=$1
  shift
  code=0
  "$@" 2>errors.txt || code=$?
  [ "$code" = "$expected" ] || fail "the exit code of $* is $code, not $expected"
}

said() {
  grep -q -e "$1" errors.txt || fail "nobody said: $1"
}

nothing_left() {
  [ -z "$(ls -A temporary)" ] || fail "there is left: $(ls -A temporary)"
}

# In BMP there is no date, so that all of these are the same; there is more of it than a pipe takes.
coarse="--format bmp --mode grey --resolution 100"
run 0 "$pmscan" scan -o page.bmp $coarse >/dev/null

echo "What lies in the folder for temporary files under a name that can be guessed is left alone."
echo mine >victim
# shellcheck disable=SC2016 # The number is that of the shell that becomes the program.
run 0 sh -c 'ln -s "$PWD/victim" "$TMPDIR/pmscan-$$" && exec "$0" scan -o - "$@" >piped.bmp' \
  "$pmscan" $coarse
cmp page.bmp piped.bmp || fail "standard output has another picture than the file"
[ "$(cat victim)" = mine ] || fail "what the link leads to was written over"
rm temporary/pmscan-*
nothing_left

echo "Nobody else may read what lies there, and it has no name, while nobody takes the picture."
mkfifo full
exec 3<>full
: >errors.txt
(umask 0 && exec "$pmscan" scan -o - $coarse --progress json) >full 2>errors.txt &
scan=$!
until grep -q '"lines": 1170' errors.txt; do
  kill -0 "$scan" 2>/dev/null || fail "the scan ended before the last line"
  sleep 0.02
done
nothing_left
rights=$(for file in "/proc/$scan/fd"/*; do
  case $(readlink "$file") in
    "$TMPDIR"/*) stat -L -c %a "$file" ;;
  esac
done | sort -u)
[ "$rights" = 600 ] || fail "the rights are \"$rights\", not 600"
kill -KILL "$scan"
wait "$scan" || true
exec 3>&-
nothing_left

echo "A reader that closes the pipe makes the scan fail, and nothing is left."
{
  code=0
  "$pmscan" scan -o - $coarse 2>errors.txt || code=$?
  echo "$code" >code
} | true
[ "$(cat code)" = 73 ] || fail "the exit code is $(cat code), not 73"
said "Standard output does not take the picture"
nothing_left

echo "A place without room makes the scan fail, and nothing is left."
run 73 "$pmscan" scan -o - $coarse >/dev/full
said "Standard output does not take the picture"
nothing_left

echo "Neither is anything left where the temporary file finds no room."
# shellcheck disable=SC2016 # The words are those of the shell that becomes the program.
run 73 sh -c 'trap "" XFSZ && ulimit -f 40000 && exec "$0" "$@" >/dev/null' "$pmscan" scan -o - \
  --format bmp --mode grey --resolution 600 --original page.bmp
said "the temporary file for standard output: cannot write: File too large"
nothing_left

echo "Nothing is left of a scan that fails."
run 15 "$pmscan" scan -o - $coarse --source feeder --device sim:extended:QM2500+jam-at-line=200
nothing_left

echo "Without a folder for temporary files there is no scan."
run 73 env TMPDIR="$folder/nowhere" "$pmscan" scan -o - --capture never.capture
said "There can be no temporary file in $folder/nowhere: No such file"
said "TMPDIR names another folder"
[ ! -e never.capture ] || fail "the scan began"

echo "A text that is not taken is a failure, after the command has done its work."
run 0 "$pmscan" info --capture info.capture >/dev/null
for command in --help --version "scan --help" devices "devices --json" info "info --json" \
  "scan --dry-run" "decode info.capture" "decode info.capture --json" "replay info.capture" \
  "scan --overwrite -o saved.bmp --resolution 50" "report info.capture --overwrite -o page.html"; do
  run 75 "$pmscan" $command >/dev/full
  said "error 75: the text cannot be printed"
done
[ -s saved.bmp ] || fail "the picture is lost with the text"

echo "A failure of the command itself counts more."
run 1 "$pmscan" info --json --device sim:extended+unplugged-at-transfer=0 >/dev/full
said "error 75: the text cannot be printed"
rm -r "$folder"
