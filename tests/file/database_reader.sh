#!/bin/sh
# A reader written from the document alone reads what we write and wrote, and we read databases that other archivers
# packed anew with tables edited by hand. Skipped (exit code 77) without python3.
#   database_reader.sh DATABASE_TOOL
set -eu

tool=$1
here=$(dirname "$0")
command -v python3 >/dev/null 2>&1 || exit 77
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

"$tool" make "$work/shop.rvb"
"$tool" dump "$work/shop.rvb" >"$work/ours.txt"
python3 "$here/read_rvb.py" "$work/shop.rvb" >"$work/theirs.txt"
cmp "$work/ours.txt" "$work/theirs.txt"
grep -q '^  files ' "$work/ours.txt"
grep -q '^  content ' "$work/ours.txt"

# A file that was saved before objects stood in blocks holds the same for both.
"$tool" dump "$here/data/layout-4.rvb" >"$work/older.txt"
python3 "$here/read_rvb.py" "$here/data/layout-4.rvb" >"$work/older-theirs.txt"
cmp "$work/older.txt" "$work/older-theirs.txt"
grep -q '^ search key ' "$work/older.txt"
grep -q '^ lines 2 frozen 1 5$' "$work/older.txt"

# Adds a record and a column to a table, changes a cell.
edit() {
  python3 - "$1" <<'END'
import sys
path = sys.argv[1]
with open(path, encoding="utf-8-sig", newline="") as file:
    lines = file.read().split("\r\n")
assert lines == ["only", '""', "middle", '""', ""], lines
lines = ["only,added", '"",1', "changed,2.5", '"",', "fourth,4"]
with open(path, "w", encoding="utf-8", newline="") as file:
    file.write("\n".join(lines))
END
}

expect_edited() {
  "$tool" dump "$work/$1" >"$work/dump.txt"
  sed -n '/^table 73696e676c65$/,/^table /p' "$work/dump.txt" | grep -v '^table' >"$work/edited.txt"
  {
    echo " field 6f6e6c79 type 1 link 0 encrypted 0 hidden 0 width 100 position 0 [] [] [] [] []"
    echo " field 6164646564 type 2 link 0 encrypted 0 hidden 0 width 100 position 1 [] [] [] [] []"
    echo " lines 1 frozen 0 0"
    echo " record 1 flags 0000"; echo "  empty"; echo "  number 3ff0000000000000"
    echo " record 2 flags 0000"; echo "  text 6368616e676564"; echo "  number 4004000000000000"
    echo " record 3 flags 0000"; echo "  empty"; echo "  empty"
    echo " record 4 flags 0000"; echo "  text 666f75727468"; echo "  number 4010000000000000"
  } >"$work/expected.txt"
  cmp "$work/expected.txt" "$work/edited.txt" || { diff "$work/expected.txt" "$work/edited.txt"; exit 1; }
  # All other tables are as they were.
  grep -c '^  content ' "$work/dump.txt" >"$work/count.txt"
  [ "$(cat "$work/count.txt")" = "$(grep -c '^  content ' "$work/ours.txt")" ]
  echo "$1 opens"
}

mkdir "$work/files"
python3 -m zipfile -e "$work/shop.rvb" "$work/files"
edit "$work/files/single.txt"

(cd "$work/files" && python3 -c 'import shutil, sys; shutil.make_archive(sys.argv[1], "zip", ".")' "$work/python")
expect_edited python.zip
if command -v zip >/dev/null 2>&1; then
  (cd "$work/files" && zip -qr "$work/zip.rvb" .)
  expect_edited zip.rvb
  cp "$work/shop.rvb" "$work/updated.rvb"
  (cd "$work/files" && zip -q "$work/updated.rvb" single.txt)
  expect_edited updated.rvb
fi
if command -v 7z >/dev/null 2>&1; then
  (cd "$work/files" && 7z a -bd -tzip "$work/7z.rvb" . >/dev/null)
  expect_edited 7z.rvb
  cp "$work/shop.rvb" "$work/updated-7z.rvb"
  (cd "$work/files" && 7z u -bd -tzip "$work/updated-7z.rvb" single.txt >/dev/null)
  expect_edited updated-7z.rvb
fi
