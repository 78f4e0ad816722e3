#!/usr/bin/env bash
# One database, two systems: what rvb for Windows imports and saves is what rvb for Linux would have saved, each opens
# the other's file, and both write the same text.
#   two_systems.sh WINDOWS_RVB LINUX_RVB
# Besides the sample texts a file of the npm package vega-datasets is used where NODE_PATH or bench/node_modules has it.
# Exits with 77 when a program is missing.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
windows_program=$1
linux_rvb=$2
[ -x "$linux_rvb" ] || { echo "there is no $linux_rvb"; exit 77; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
windows_rvb() { "$here/../../packaging/windows/wine" "$windows_program" "$@"; }

# same_members A B: the members of two archives are the same bytes, whatever they were packed into.
same_members() {
  python3 - "$1" "$2" <<'PYTHON'
import sys, zipfile
first, second = (zipfile.ZipFile(name) for name in sys.argv[1:3])
names = [archive.namelist() for archive in (first, second)]
assert names[0] == names[1], f"other members: {names[0]} and {names[1]}"
for name in names[0]:
    assert first.read(name) == second.read(name), f"{name} differs"
assert any(name.endswith(".txt") and not name.startswith("META-INF") for name in names[0]), "no table in the archive"
PYTHON
}

count=0
try() {
  local source=$1
  rm -f "$work"/*
  windows_rvb --quiet import "$work/windows.rvb" "$source" --table "f/Größe"
  "$linux_rvb" --quiet import "$work/linux.rvb" "$source" --table "f/Größe"
  # Both are called the same inside, because members are named after the database.
  mkdir -p "$work/w" "$work/l"
  mv "$work/windows.rvb" "$work/w/same.rvb"
  mv "$work/linux.rvb" "$work/l/same.rvb"
  "$linux_rvb" --quiet insert "$work/w/same.rvb" "f/Größe" -o "$work/w/more.rvb"
  windows_rvb --quiet insert "$work/l/same.rvb" "f/Größe" -o "$work/l/more.rvb"
  same_members "$work/w/same.rvb" "$work/l/same.rvb"
  "$linux_rvb" --quiet export "$work/w/more.rvb" "$work/linux.csv"
  windows_rvb --quiet export "$work/l/more.rvb" "$work/windows.csv"
  cmp "$work/linux.csv" "$work/windows.csv"
  [ "$(windows_rvb info "$work/l/more.rvb")" = "$("$linux_rvb" info "$work/l/more.rvb")" ]
  rm -r "$work/w" "$work/l"
  count=$((count + 1))
}

for source in "$here"/../../samples/shop/*.csv; do try "$source"; done
modules=${NODE_PATH:-$here/../../bench/node_modules}
if [ -f "$modules/vega-datasets/data/airports.csv" ]; then try "$modules/vega-datasets/data/airports.csv"; fi
echo "$count files"
