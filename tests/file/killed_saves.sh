#!/bin/bash
# Kills a program that saves a database over and over, at random moments: the file must always hold one state whole,
# and opening it must clear away what the killed program left.
#   killed_saves.sh DATABASE_TOOL [ROUNDS]
set -eu

tool=$1
rounds=${2:-30}
work=$(mktemp -d)
trap 'kill -9 "${saver:-}" 2>/dev/null || true; rm -rf "$work"' EXIT
file=$work/loop.rvb
left_behind=0
RANDOM=17

for ((round = 0; round < rounds; ++round)); do
  "$tool" save-loop "$file" &
  saver=$!
  while [ ! -e "$file" ]; do
    kill -0 $saver  # fails when there is nothing to wait for
    sleep 0.01
  done
  sleep "0.$(printf %03d $((RANDOM % 300)))"
  kill -9 $saver
  wait $saver 2>/dev/null || true
  [ "$(ls "$work" | wc -l)" -eq 1 ] || left_behind=$((left_behind + 1))
  "$tool" check "$file" >/dev/null
  if [ "$(ls "$work" | wc -l)" -ne 1 ]; then
    ls "$work"
    echo "round $round: opening did not clear away the temporary file"
    exit 1
  fi
done
echo "$rounds kills, $left_behind in the middle of a save"
[ $left_behind -gt 0 ]
