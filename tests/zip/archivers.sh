#!/bin/sh
# Other archivers read what we write, and we read what they write. Those that are not installed are left out; with
# none of them the test is skipped (exit code 77).
#   archivers.sh ZIP_TOOL
set -eu
# Other archivers look for the names of files in the locale.
export LC_ALL=C.UTF-8

zip_tool=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
used=0

has() { command -v "$1" >/dev/null 2>&1; }

make_files() {
  mkdir -p "$work/in/folder/deep"
  printf 'short' >"$work/in/short.txt"
  : >"$work/in/empty"
  printf 'umlaut' >"$work/in/folder/Äpfel.txt"
  seq 1 500000 >"$work/in/folder/numbers.txt"
  seq 1 500000 >"$work/in/folder/deep/again.txt"
  head -c 2500000 /dev/urandom >"$work/in/random.bin"
  head -c 5000000 /dev/zero >"$work/in/zeros.bin"
}

# Compares the folder OUT with the files that were packed.
same() {
  diff -r "$work/in" "$work/out" || { echo "$1: files differ"; exit 1; }
  rm -rf "$work/out"
  used=$((used + 1))
}

check_ours() {
  archive=$work/ours-$1.zip
  "$zip_tool" pack "$1" "$archive" "$work/in"
  if has unzip; then
    unzip -tq "$archive" >/dev/null
    unzip -q "$archive" -d "$work/out"
    same "unzip of $1"
  fi
  if has 7z; then
    7z x -bd -y "-o$work/out" "$archive" >"$work/7z.log" || { cat "$work/7z.log"; exit 1; }
    ! grep -iE 'warning|error' "$work/7z.log"
    same "7z of $1"
  fi
  if has python3; then
    python3 -c 'import sys, zipfile
with zipfile.ZipFile(sys.argv[1]) as z:
    assert z.testzip() is None
    z.extractall(sys.argv[2])' "$archive" "$work/out"
    same "python of $1"
  fi
  "$zip_tool" unpack "$archive" "$work/out"
  same "ourselves of $1"
}

check_theirs() {
  mkdir -p "$work/out"
  "$zip_tool" unpack "$work/$1.zip" "$work/out"
  same "$1"
}

make_files
check_ours zip64
check_ours zip32
if has zip; then
  (cd "$work/in" && zip -qr "$work/zip.zip" .)
  check_theirs zip
  (cd "$work/in" && zip -qr - . | cat >"$work/zip-piped.zip")  # sizes after the data
  check_theirs zip-piped
  (cd "$work/in" && zip -qr0 "$work/zip-stored.zip" .)
  check_theirs zip-stored
fi
if has 7z; then
  (cd "$work/in" && 7z a -bd -tzip "$work/7z.zip" . >/dev/null)
  check_theirs 7z
  (cd "$work/in" && 7z a -bd -tzip -mcl "$work/7z-names.zip" . >/dev/null)  # names in the local code page
  check_theirs 7z-names
fi
if has python3; then
  python3 -c 'import os, sys, zipfile
with zipfile.ZipFile(sys.argv[1], "w", zipfile.ZIP_DEFLATED) as z:
    for folder, _, files in os.walk(sys.argv[2]):
        for name in files:
            path = os.path.join(folder, name)
            info = zipfile.ZipInfo.from_file(path, os.path.relpath(path, sys.argv[2]))
            with open(path, "rb") as source, z.open(info, "w", force_zip64=True) as target:
                target.write(source.read())
    z.comment = b"a comment"' "$work/python.zip" "$work/in"
  check_theirs python
fi
echo "$used comparisons"
[ "$used" -gt 2 ] || exit 77
