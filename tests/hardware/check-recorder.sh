#!/usr/bin/env bash
# Checks every engine member on a real recorder with real media, and reads each disc back with
# tools nobody here wrote (xorriso, cd-paranoia). Run it as a user who may open the drive:
#
#   tests/hardware/check-recorder.sh /dev/sr0 [build-dir]
#   DEST=/dev/sr1 tests/hardware/check-recorder.sh /dev/sr0 [build-dir]   # with a second drive
#
# It asks for media as it goes; answer "s" to skip a step whose medium you don't have. A file
# instead of a drive ("stdio:/tmp/disc.iso") runs without hardware and without questions: each
# step starts from the medium it needs (the file removed is a blank disc), and what a file can't
# do is skipped by name.
set -u
DEV=${1:?usage: check-recorder.sh DEVICE [BUILD_DIR]}
BUILD=${2:-$(dirname "$0")/../../build}
TOOL=$BUILD/bin/tessaly-drivecheck
# Read offset of the drive in samples, for the audio comparison (see accuraterip's list).
OFFSET=${OFFSET:-0}
WORK=$(mktemp -d)
trap 'rm -rf "$WORK"' EXIT
PASSED=0
FAILED=0
SKIPPED=0
XDEV=$DEV
FILE=0
case $DEV in stdio:*) XDEV=${DEV#stdio:} FILE=1 ;; esac
DEST=${DEST:-}
XDEST=${DEST#stdio:}

for t in xorriso cmp sha256sum; do
    command -v "$t" >/dev/null || { echo "missing tool: $t"; exit 1; }
done
[ -x "$TOOL" ] || { echo "build tessaly-drivecheck first (cmake --build $BUILD)"; exit 1; }

ok() { echo "PASS  $*"; PASSED=$((PASSED + 1)); }
bad() { echo "FAIL  $*"; FAILED=$((FAILED + 1)); }
check() { if eval "$2"; then ok "$1"; else bad "$1"; fi; }
skip() { echo "SKIP  $1: $2"; SKIPPED=$((SKIPPED + 1)); }
# On a file drive a check that needs a drive is skipped with the reason: filecheck NAME REASON TEST
filecheck() { if [ "$FILE" = 1 ]; then skip "$1" "$2"; else check "$1" "$3"; fi; }
# ask STATE PROMPT: a person puts the medium in; a file drive is made blank (STATE blank) or
# kept as the last step left it (STATE any).
ask() {
    if [ "$FILE" = 1 ]; then
        [ "$1" = blank ] && rm -f "$XDEV"
        return 0
    fi
    read -r -p ">>> $2 [Enter when ready, s to skip] " answer
    if [ "$answer" = s ]; then SKIPPED=$((SKIPPED + 1)); return 1; fi
    "$TOOL" "$DEV" tray close >/dev/null
    return 0
}
LOG=$PWD/check-recorder.log
: >"$LOG"
run() {
    "$TOOL" "$DEV" "$@" >"$WORK/out" 2>&1
    { echo "==== $*"; cat "$WORK/out"; } >>"$LOG"
    grep -q "RESULT complete" "$WORK/out"
}
info() { infoat "$DEV" "$1"; }
infoat() { "$TOOL" "$1" info | awk -v k="$2" '$1 == k { print $2 }'; }
files() { # DIR SEED: a tree of files that differ from each other
    mkdir -p "$1/sub"
    head -c 3000000 /dev/urandom >"$1/big.bin"
    head -c 12345 /dev/urandom >"$1/sub/small.bin"
    echo "seed $2" >"$1/sub/text.txt"
}
same() { # IMAGE-OR-DEVICE SBSECTOR PATH-ON-DISC LOCAL-FILE
    local load=()
    [ "$2" = head ] || load=(-load sbsector "$2")
    rm -f "$WORK/x"
    xorriso -osirrox on -indev "$1" "${load[@]}" -extract "$3" "$WORK/x" >/dev/null 2>&1 &&
        cmp -s "$WORK/x" "$4"
}

# One tree per step, so that a read-back passes only on what its own step wrote.
for n in one two three four five; do files "$WORK/$n" "$n"; done

echo "== drive list"
"$TOOL" "$DEV" list
listed() { "$TOOL" "$DEV" list | head -n -1 | grep -q -e " $(basename "$XDEV") " -e " FILE "; }
check "the drive is listed before the Image Recorder" listed

echo "== blank write-once disc (CD-R, DVD-R or DVD+R): simulation, two sessions, closing"
if ask blank "put a BLANK write-once disc (CD-R best) into $DEV"; then
    "$TOOL" "$DEV" info
    check "blank: DiscStatus 0" '[ "$(info DiscStatus)" = 0 ]'
    check "blank: one empty session counted" '[ "$(info SessionCount)" = 1 ]'
    filecheck "MaxWriteSpeed is known" "a file drive has no write speed" \
        '[ "$(info MaxWriteSpeed)" -gt 0 ]'
    check "simulation completes" 'run write --test "$WORK/one"'
    check "simulation leaves the disc blank" '[ "$(info DiscStatus)" = 0 ]'
    check "first session is written and verified" 'run write "$WORK/one"'
    grep -E "Write type|reads back" "$WORK/out"
    check "disc is open with 2 sessions counted" \
        '[ "$(info DiscStatus)" = 1 ] && [ "$(info SessionCount)" = 2 ]'
    # shellcheck disable=SC2034 # read by check's eval
    S1=$(info LastSessionStart)
    check "second session is appended" 'run append "$WORK/two"'
    # shellcheck disable=SC2034 # read by check's eval
    S2=$(info LastSessionStart)
    xorriso -indev "$XDEV" -toc 2>&1 | grep -E "session|Media"
    check "session 1 reads back byte-identical" 'same "$XDEV" "$S1" /big.bin "$WORK/one/big.bin"'
    check "session 2 holds session 1's files" 'same "$XDEV" "$S2" /sub/small.bin "$WORK/one/sub/small.bin"'
    check "session 2 holds the new files" 'same "$XDEV" "$S2" /added/big.bin "$WORK/two/big.bin"'
    NOCLOSE="a file has no table of contents: nothing on it is ever closed"
    filecheck "closing the session" "$NOCLOSE" 'run finish session'
    filecheck "closing the disc" "$NOCLOSE" 'run finish disc'
    filecheck "the disc is closed" "$NOCLOSE" \
        '[ "$(info DiscStatus)" = 2 ] && [ "$(info LastSessionStatus)" = 3 ]'
    filecheck "a closed disc refuses a write" "$NOCLOSE" '! run write "$WORK/one"'
fi

echo "== rewritable disc (CD-RW or DVD-RW): cancel, erase"
if ask any "put a REWRITABLE CD-RW or DVD-RW into $DEV (its contents will be lost)"; then
    check "full erase" 'run erase full'
    check "erased: DiscStatus 0" '[ "$(info DiscStatus)" = 0 ]'
    head -c 200000000 /dev/urandom >"$WORK/big.bin" 2>/dev/null
    mkdir -p "$WORK/large" && mv "$WORK/big.bin" "$WORK/large/"
    "$TOOL" "$DEV" cancel "$WORK/large" >"$WORK/out" 2>&1
    check "a write cancelled at 1 % ends cancelled" 'grep -q "RESULT cancelled" "$WORK/out"'
    check "the drive is released after the cancel" '"$TOOL" "$DEV" info >/dev/null'
    check "quick erase after the cancel" 'run erase quick'
    check "the next write works" 'run write "$WORK/three"'
    check "and reads back" 'same "$XDEV" "$(info LastSessionStart)" /big.bin "$WORK/three/big.bin"'
fi

echo "== audio CD (SAO), ripped back with cd-paranoia"
if [ "$FILE" = 1 ]; then
    skip "audio CD" "libburn writes only data to a file drive"
elif command -v cd-paranoia >/dev/null && command -v ffmpeg >/dev/null &&
    ask blank "put a BLANK CD-R or an erased CD-RW into $DEV"; then
    ffmpeg -loglevel error -f lavfi -i "sine=frequency=440:duration=20" -ac 2 -ar 44100 \
        -c:a pcm_s16le "$WORK/t1.wav"
    ffmpeg -loglevel error -f lavfi -i "anoisesrc=duration=15:seed=7" -ac 2 -ar 44100 \
        -c:a pcm_s16le "$WORK/t2.wav"
    check "audio tracks are written" 'run audio "$WORK/t1.wav" "$WORK/t2.wav"'
    grep -E "Write type" "$WORK/out"
    check "the disc holds two audio tracks" 'cd-paranoia -d "$XDEV" -Q 2>&1 | grep -cE "^ +[0-9]+\." | grep -q 2'
    (cd "$WORK" && cd-paranoia -d "$XDEV" -O "$OFFSET" -r 1 rip1.raw >/dev/null 2>&1)
    ffmpeg -loglevel error -i "$WORK/t1.wav" -f s16le -c:a pcm_s16le "$WORK/t1.pcm"
    check "track 1 rips back bit-exact (OFFSET=$OFFSET samples)" \
        'cmp -s <(head -c "$(stat -c %s "$WORK/t1.pcm")" "$WORK/rip1.raw") "$WORK/t1.pcm"'
fi

echo "== disc written at any address (DVD+RW, DVD-RAM, BD-RE): emulated sessions"
if ask any "put a DVD+RW, DVD-RAM or BD-RE into $DEV (its contents will be lost)"; then
    check "quick erase" 'run erase quick'
    check "blank: next session at 32" '[ "$(info NextWritable)" = 32 ]'
    check "first session" 'run write "$WORK/one"'
    check "second session" 'run append "$WORK/two"'
    xorriso -indev "$XDEV" -toc 2>&1 | grep -E "session"
    check "xorriso sees 2 sessions" '[ "$(xorriso -indev "$XDEV" -toc 2>&1 | grep -c "ISO session")" = 2 ]'
    check "session 1 at block 32" 'same "$XDEV" 32 /big.bin "$WORK/one/big.bin"'
    check "the head leads to session 2" 'same "$XDEV" head /added/big.bin "$WORK/two/big.bin"'
    check "closing has nothing to do" 'run finish disc'
fi

echo "== ISO file to a blank disc"
if ask blank "put a BLANK disc into $DEV"; then
    check "the disc is blank" '[ "$(info DiscStatus)" = 0 ]'
    xorriso -as mkisofs -R -o "$WORK/plain.iso" "$WORK/four" >/dev/null 2>&1
    check "ISO file is written" 'run iso "$WORK/plain.iso"'
    check "and reads back" 'same "$XDEV" 0 /big.bin "$WORK/four/big.bin"'
fi

echo "== disc to image and back: ISO, BIN/CUE, the cue sheet written to a blank disc"
if ask blank "put a BLANK disc into $DEV (a data session is written first)"; then
    check "a data session is written" 'run write "$WORK/five"'
    check "the disc is read into an ISO file" 'run readdisc "$WORK/disc.iso"'
    # shellcheck disable=SC2034 # read by check's eval
    START=$(info LastSessionStart)
    check "the ISO equals the session's blocks" \
        'cmp -s "$WORK/disc.iso" <(dd if="$XDEV" bs=2048 skip="$START" status=none \
            count=$(($(stat -c %s "$WORK/disc.iso") / 2048)))'
    check "the disc is read into a BIN with its cue sheet" 'run readdisc "$WORK/disc.bin"'
    check "the BIN starts with the ISO's blocks" \
        'cmp -s -n "$(stat -c %s "$WORK/disc.iso")" "$WORK/disc.iso" "$WORK/disc.bin"'
    if ask blank "put a BLANK disc into $DEV for the cue sheet"; then
        check "the cue sheet is written" 'run cue "$WORK/disc.cue"'
        check "and reads back" 'same "$XDEV" 0 /big.bin "$WORK/five/big.bin"'
    fi
fi

echo "== disc copy to a second drive (DEST=...)"
if [ -z "$DEST" ]; then
    skip "disc copy" "no second drive named in DEST"
elif ask any "leave the disc of the last step in $DEV; put a BLANK disc into $DEST"; then
    [ "$FILE" = 1 ] && [ "${DEST#stdio:}" != "$DEST" ] && rm -f "$XDEST"
    check "a test copy completes" 'run copy "$DEST" --test'
    check "and leaves the destination blank" '[ "$(infoat "$DEST" DiscStatus)" = 0 ]'
    check "the copy completes" 'run copy "$DEST"'
    check "the copy reads back" 'same "$XDEST" 0 /big.bin "$WORK/five/big.bin"'
fi

echo "== tray"
if [ "$FILE" = 1 ]; then
    skip "tray" "a file drive has no tray"
elif ask any "leave a disc in $DEV, the tray will open and close"; then
    "$TOOL" "$DEV" tray open
    # shellcheck disable=SC2034 # read by check's eval
    read -r -p ">>> did the tray open? [y/n] " a
    check "tray opens" '[ "$a" = y ]'
    "$TOOL" "$DEV" tray close
    check "tray closes and the disc is seen again" '[ "$(info MediaType)" != 254 ]'
fi

echo
echo "passed $PASSED, failed $FAILED, skipped $SKIPPED; every step's output is in $LOG"
[ "$FAILED" = 0 ]
