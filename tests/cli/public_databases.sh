#!/usr/bin/env bash
# Every csv file of the npm packages vega-datasets and csv-spectrum, saved as a database, opened again and written as
# text, gives the same text as without the database. The packages are looked for in NODE_PATH and in bench/node_modules;
# without them the test is skipped (exit code 77).
#   public_databases.sh RVB
set -euo pipefail
rvb=$1
modules=${NODE_PATH:-$(dirname "$0")/../../bench/node_modules}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

count=0
while IFS= read -r file; do
  rm -f "$folder"/*
  "$rvb" --quiet export "$file" "$folder/direct.csv"
  "$rvb" --quiet import "$folder/a.rvb" "$file"
  "$rvb" --quiet export "$folder/a.rvb" "$folder/saved.csv"
  cmp "$folder/direct.csv" "$folder/saved.csv" || { echo "$file comes back changed"; exit 1; }
  unzip -qt "$folder/a.rvb" >/dev/null || { echo "the database of $file is no sound archive"; exit 1; }
  count=$((count + 1))
done < <(find "$modules/vega-datasets/data" "$modules/csv-spectrum/csvs" -name '*.csv' 2>/dev/null)
echo "$count files"
[ "$count" -gt 0 ] || exit 77
